// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/form6.h"

namespace sonarith {

using namespace std::chrono_literals;

Form6::Form6(EventLoop& loop, Mp3Controls& mp3Controls)
    : Form("Form6"),
      ActiveMP31(*this, mp3Controls),
      Timer1(*this, loop, "Timer1", 500ms, TimerAtLoad::on),
      Timer2(*this, loop, "Timer2", 500ms) {
    keepDesign();
}

} // namespace sonarith
