// SPDX-License-Identifier: GPL-3.0-or-later
// The functions of libsndfile that are called here, loaded when they are first called.
#pragma once

#include <sndfile.h>

#include "platform/linux/late/late_library.h"

namespace sonarith {

inline constinit const LateLibrary sndfileLibrary{"libsndfile.so.1"};

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
