// SPDX-License-Identifier: GPL-3.0-or-later
// Declares libsndfile functions for the program and its tests. Each is looked up on its first call.
#pragma once

#include <sndfile.h>

#include "platform/linux/late/late_library.h"
#include "platform/linux/late/sonames.h"

namespace sonarith {

inline constinit const LateLibrary sndfileLibrary{soname::sndfile};

SONARITH_LATE_FUNCTION(sndfileLibrary, sf_close);
SONARITH_LATE_FUNCTION(sndfileLibrary, sf_command);
SONARITH_LATE_FUNCTION(sndfileLibrary, sf_error);
SONARITH_LATE_FUNCTION(sndfileLibrary, sf_open);
SONARITH_LATE_FUNCTION(sndfileLibrary, sf_open_fd);
SONARITH_LATE_FUNCTION(sndfileLibrary, sf_readf_short);
SONARITH_LATE_FUNCTION(sndfileLibrary, sf_seek);
SONARITH_LATE_FUNCTION(sndfileLibrary, sf_strerror);
SONARITH_LATE_FUNCTION(sndfileLibrary, sf_write_short);

} // namespace sonarith
