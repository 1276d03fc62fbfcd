// SPDX-License-Identifier: GPL-3.0-or-later
// The place of an MP3 control on a form: each load of the form finds a new control there.
#pragma once

#include <memory>

#include "platform/active_mp3.h"
#include "platform/controls/form.h"

namespace sonarith {

class ActiveMp3Host : public FormPart {
  public:
    ActiveMp3Host(Form& owner, Mp3Controls& controls)
        : controls_(controls), control_(controls.create()) {
        owner.adopt(*this);
    }
    [[nodiscard]] ActiveMP3& operator*() const { return *control_; }
    [[nodiscard]] ActiveMP3* operator->() const { return control_.get(); }

  private:
    /// What the control does ends with its form; a control that is reached for later is idle.
    void atUnload() override { control_ = controls_.create(); }

    Mp3Controls& controls_;
    std::unique_ptr<ActiveMP3> control_;
};

} // namespace sonarith
