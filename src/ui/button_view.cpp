// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/button_view.h"

#include "platform/qt/text.h"
#include "ui/mnemonics.h"
#include "ui/tool_tip.h"

namespace sonarith {
namespace {

/// The default side of a picture, in device-independent pixels. With this side, the tool bar fits
/// into the designed width of the main window.
constexpr int iconSide = 22;

} // namespace

IconButtonView::IconButtonView(CommandButton& model, Symbol symbol, QWidget* parent)
    : QToolButton(parent),
      view_(
          model, *this, [&model] { return model.caption(); }, QString(),
          [this, &model](Property which) {
              if (concerns(which, Property::caption, Property::toolTip) &&
                  model.toolTip().empty()) {
                  setToolTip(plainToolTip(toQString(model.caption())));
              }
          }) {
    setIcon(makeIcon(symbol));
    setIconSize(QSize(iconSide, iconSide));
    setAutoRaise(true);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QToolButton::clicked, this, [&model] { model.click(); });
}

TextButtonView::TextButtonView(CommandButton& model, QString takenLetters, QWidget* parent)
    : QPushButton(parent),
      view_(
          model, *this, [&model] { return model.caption(); }, QString(),
          [this, &model, taken = std::move(takenLetters)](Property which) {
              if (concerns(which, Property::caption)) {
                  setText(withMnemonics({toQString(model.caption())}, taken).front());
              }
          }) {
    setAutoDefault(false);
    connect(this, &QPushButton::clicked, this, [&model] { model.click(); });
}

} // namespace sonarith
