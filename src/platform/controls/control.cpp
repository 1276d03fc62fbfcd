// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/control.h"

#include "platform/controls/form.h"

namespace sonarith {

Control::Control(Form& owner, std::string name) : name_(std::move(name)) {
    owner.adopt(*this);
}

} // namespace sonarith
