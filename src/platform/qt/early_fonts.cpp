// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/early_fonts.h"

#include <fontconfig/fontconfig.h>

namespace sonarith {

EarlyFonts::EarlyFonts()
    : reader_([] {
          // A failure is ignored here: Qt reports it when it looks for fonts.
          static_cast<void>(FcInit());
      }) {}

} // namespace sonarith
