// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/block_view.h"

#include <utility>

namespace sonarith {

BlockView::BlockView(Label& model, QString label, const QColor& color, QWidget* parent)
    : QWidget(parent),
      view_(model, *this, {}, std::move(label), {}, Placement::byControl, Pace::positions) {
    QPalette filled = palette();
    filled.setColor(QPalette::Window, color);
    setPalette(filled);
    setAutoFillBackground(true);
    // The parent receives mouse presses on the block.
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

} // namespace sonarith
