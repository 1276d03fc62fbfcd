// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/early_fonts.h"

#include <fontconfig/fontconfig.h>

namespace sonarith {

EarlyFonts::EarlyFonts()
    : reader_([] {
          // A failure shows when Qt looks for fonts: it has words for it.
          static_cast<void>(FcInit());
      }) {}

} // namespace sonarith
