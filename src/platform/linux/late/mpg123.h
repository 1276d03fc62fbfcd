// SPDX-License-Identifier: GPL-3.0-or-later
// Declares the libmpg123 functions that this program calls. Each is looked up on its first call.
#pragma once

#include <mpg123.h>

#include "platform/linux/late/late_library.h"
#include "platform/linux/late/sonames.h"

namespace sonarith {

inline constinit const LateLibrary mpg123Library{soname::mpg123};

SONARITH_LATE_FUNCTION(mpg123Library, mpg123_decode_frame);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_delete);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_feed);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_format2);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_format_none);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_framepos);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_getformat2);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_init);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_new);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_open_feed);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_open_handle);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_param2);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_plain_strerror);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_replace_reader_handle);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_strerror);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_supported_decoders);

} // namespace sonarith
