// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/progress_view.h"

namespace sonarith {

ProgressView::ProgressView(ProgressBar& model, QString label, QWidget* parent)
    : QProgressBar(parent),
      view_(model, *this, {}, std::move(label), [this, &model](Property which) {
          if (which == Property::all) {
              setRange(model.minimum(), model.maximum());
          }
          if (concerns(which, Property::value)) {
              setValue(model.value());
          }
      }) {
    // The bar shows no text, because a label below it shows the percentage.
    setTextVisible(false);
}

} // namespace sonarith
