// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/option_button_view.h"

#include <algorithm>

#include <QButtonGroup>
#include <QKeyEvent>

#include "platform/qt/text.h"
#include "ui/mnemonics.h"

namespace sonarith {

OptionButtonView::OptionButtonView(OptionButton& button, const QString& label, QWidget* parent)
    : QRadioButton(parent),
      button_(button),
      view_(
          button, *this, [&button] { return button.caption(); }, label,
          [this, label](Property which) {
              if (concerns(which, Property::caption)) {
                  setText(withoutMnemonic(
                      button_.caption().empty() ? label : toQString(button_.caption())));
              }
              if (concerns(which, Property::value)) {
                  setChecked(button_.selected());
              }
          }) {
    // The models make the buttons of a group exclude each other, so Qt's own exclusion must be off.
    // With setAutoExclusive(false), screen readers would treat the button as a check box. So the
    // button is put into a button group of its own that is not exclusive.
    auto* alone = new QButtonGroup(this);
    alone->setExclusive(false);
    alone->addButton(this);
    connect(this, &QRadioButton::clicked, this, [this] { button_.choose(); });
    for (OptionButton* other : button_.group().buttons()) {
        groupChanged_.push_back(other->changed.connect([this](Property which) {
            if (concerns(which, Property::value, Property::enabled, Property::visible)) {
                showTabStop();
            }
        }));
    }
    showTabStop();
}

/// Makes the tab key stop at this button, unless another button of the group is selected, enabled
/// and visible.
void OptionButtonView::showTabStop() {
    const auto& buttons = button_.group().buttons();
    const bool elsewhere =
        std::any_of(buttons.begin(), buttons.end(), [this](const OptionButton* other) {
            return other != &button_ && other->selected() && other->enabled() && other->visible();
        });
    setFocusPolicy(elsewhere ? Qt::ClickFocus : Qt::StrongFocus);
}

void OptionButtonView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Left:
        chooseNeighbour(-1);
        break;
    case Qt::Key_Down:
    case Qt::Key_Right:
        chooseNeighbour(1);
        break;
    default:
        QRadioButton::keyPressEvent(event);
    }
}

/// Chooses the next enabled and visible button of the group: forwards if `step` is 1, backwards if
/// `step` is -1. The first button counts as the neighbour of the last button.
void OptionButtonView::chooseNeighbour(int step) {
    const auto& buttons = button_.group().buttons();
    const int count = static_cast<int>(buttons.size());
    const auto here = std::find(buttons.begin(), buttons.end(), &button_) - buttons.begin();
    for (int i = 1; i < count; ++i) {
        const auto place = (static_cast<int>(here) + i * step + i * count) % count;
        OptionButton& neighbour = *buttons[static_cast<std::size_t>(place)];
        OptionButtonView* view = viewOf(neighbour);
        if (view && view->isVisible() && view->isEnabled()) {
            view->setFocus(Qt::OtherFocusReason);
            neighbour.choose();
            return;
        }
    }
}

OptionButtonView* OptionButtonView::viewOf(const OptionButton& button) const {
    for (QRadioButton* candidate : window()->findChildren<QRadioButton*>()) {
        auto* view = dynamic_cast<OptionButtonView*>(candidate);
        if (view && &view->button_ == &button) {
            return view;
        }
    }
    return nullptr;
}

} // namespace sonarith
