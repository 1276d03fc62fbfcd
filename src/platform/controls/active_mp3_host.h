// SPDX-License-Identifier: GPL-3.0-or-later
// Owns the MP3 control of a form. Each unload of the form replaces the control with a new one.
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
    /// Destroying the old control ends decoding and playing. The new control is idle.
    void atUnload() override { control_ = controls_.create(); }

    Mp3Controls& controls_;
    std::unique_ptr<ActiveMP3> control_;
};

} // namespace sonarith
