// SPDX-License-Identifier: GPL-3.0-or-later
// Declares the libsamplerate functions that this program calls. Each is loaded on its first call.
#pragma once

#include <samplerate.h>

#include "platform/linux/late/late_library.h"
#include "platform/linux/late/sonames.h"

namespace sonarith {

inline constinit const LateLibrary samplerateLibrary{soname::samplerate};

SONARITH_LATE_FUNCTION(samplerateLibrary, src_delete);
SONARITH_LATE_FUNCTION(samplerateLibrary, src_float_to_short_array);
SONARITH_LATE_FUNCTION(samplerateLibrary, src_new);
SONARITH_LATE_FUNCTION(samplerateLibrary, src_process);
SONARITH_LATE_FUNCTION(samplerateLibrary, src_short_to_float_array);
SONARITH_LATE_FUNCTION(samplerateLibrary, src_strerror);

} // namespace sonarith
