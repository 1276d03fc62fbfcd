// SPDX-License-Identifier: GPL-3.0-or-later
// What a form does with each of its parts (controls, timers, players): it keeps how the part was
// designed, and puts it back into that state at each load.
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
    /// The present state is the designed one.
    virtual void keepDesign() {}
    /// The form loads: back to the designed state. No handler of the part runs.
    virtual void atLoad() {}
    /// The form has been unloaded.
    virtual void atUnload() {}
};

} // namespace sonarith
