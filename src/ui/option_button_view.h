// SPDX-License-Identifier: GPL-3.0-or-later
// Shows an OptionButton. The models decide which button of a group is selected; this view handles
// the pointer and the keys. The arrow keys select the next or previous button of the group.
// The tab key stops only at the selected button of a group. If no button is selected, or if the
// selected button is disabled or hidden, the tab key stops at each button.
#pragma once

#include <vector>

#include <QRadioButton>

#include "platform/controls/option_button.h"
#include "ui/control_view.h"

namespace sonarith {

class OptionButtonView : public QRadioButton {
  public:
    /// `label` is shown beside the button while the control has no caption.
    OptionButtonView(OptionButton& button, const QString& label, QWidget* parent);

  protected:
    /// Does nothing, because only the model changes the state.
    void nextCheckState() override {}
    /// Ignores the second press of a double click: the handler of the first click may still be
    /// running.
    void mouseDoubleClickEvent(QMouseEvent*) override {}
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showTabStop();
    void chooseNeighbour(int step);
    [[nodiscard]] OptionButtonView* viewOf(const OptionButton& button) const;

    OptionButton& button_;
    ControlView view_;
    std::vector<Connection> groupChanged_;
};

} // namespace sonarith
