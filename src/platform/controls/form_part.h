// SPDX-License-Identifier: GPL-3.0-or-later
// The interface through which a form saves and restores the designed state of its parts (controls,
// timers, dialogs). The form restores the designed state at each load.
#pragma once

namespace sonarith {

class Form;

class FormPart {
  public:
    virtual ~FormPart() = default;
    FormPart(const FormPart&) = delete;
    FormPart& operator=(const FormPart&) = delete;

  protected:
    FormPart() = default;

  private:
    friend class Form;
    /// Makes the present state the designed state.
    virtual void keepDesign() {}
    /// The form is being loaded: restores the designed state. Runs no handler of the part.
    virtual void atLoad() {}
    /// The form is being unloaded; its unload step has run.
    virtual void atUnload() {}
};

} // namespace sonarith
