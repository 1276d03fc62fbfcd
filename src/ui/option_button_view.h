// SPDX-License-Identifier: GPL-3.0-or-later
// Shows an OptionButton. Which one of a group is selected is the models' affair; here are the
// pointer and the keys: arrows select the next one of the group, and the tab key stops once in it.
#pragma once

#include <vector>

#include <QRadioButton>

#include "platform/controls/option_button.h"
#include "ui/control_view.h"

namespace sonarith {

class OptionButtonView : public QRadioButton {
  public:
    /// `label` stands beside the button while it has no caption of its own.
    OptionButtonView(OptionButton& button, const QString& label, QWidget* parent);

  protected:
    /// The state is the model's to change.
    void nextCheckState() override {}
    /// The second press of a double click is none: the first click's handler may go on for long.
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
