// SPDX-License-Identifier: GPL-3.0-or-later
// Stands in for a window that is not built yet: its caption, and a sentence that says so.
#pragma once

#include <QWidget>

#include "platform/controls/form.h"
#include "ui/form_adapter.h"

namespace sonarith {

class ComingWindow : public QWidget {
  public:
    /// `form` outlives the window.
    explicit ComingWindow(Form& form);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    FormAdapter adapter_;
};

} // namespace sonarith
