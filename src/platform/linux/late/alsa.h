// SPDX-License-Identifier: GPL-3.0-or-later
// Declares the ALSA functions that this program calls. Each is looked up on its first call.
#pragma once

#include <alsa/asoundlib.h>

#include "platform/linux/late/late_library.h"
#include "platform/linux/late/sonames.h"

namespace sonarith {

inline constinit const LateLibrary alsaLibrary{soname::asound};

SONARITH_LATE_FUNCTION(alsaLibrary, snd_device_name_free_hint);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_device_name_get_hint);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_device_name_hint);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_lib_error_set_handler);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_close);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_delay);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_drop);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_open);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_prepare);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_readi);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_set_params);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_start);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_sw_params);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_sw_params_current);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_sw_params_get_boundary);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_sw_params_set_start_threshold);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_sw_params_sizeof);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_wait);
SONARITH_LATE_FUNCTION(alsaLibrary, snd_pcm_writei);

} // namespace sonarith
