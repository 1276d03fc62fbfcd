// SPDX-License-Identifier: GPL-3.0-or-later
// Declares the libspeexdsp functions that this program calls. Each is looked up on its first call.
#pragma once

#include <speex/speex_resampler.h>

#include "platform/linux/late/late_library.h"
#include "platform/linux/late/sonames.h"

namespace sonarith {

inline constinit const LateLibrary speexdspLibrary{soname::speexdsp};

SONARITH_LATE_FUNCTION(speexdspLibrary, speex_resampler_destroy);
SONARITH_LATE_FUNCTION(speexdspLibrary, speex_resampler_get_input_latency);
SONARITH_LATE_FUNCTION(speexdspLibrary, speex_resampler_init);
SONARITH_LATE_FUNCTION(speexdspLibrary, speex_resampler_process_interleaved_int);
SONARITH_LATE_FUNCTION(speexdspLibrary, speex_resampler_skip_zeros);
SONARITH_LATE_FUNCTION(speexdspLibrary, speex_resampler_strerror);

} // namespace sonarith
