// SPDX-License-Identifier: GPL-3.0-or-later
// Declares functions and variables of libcdio and its paranoia reader for the program and its
// tests. Each function is looked up on its first call, each variable on every use (late_library.h).
#pragma once

#include <cdio/cdio.h>
#include <cdio/logging.h>
#include <cdio/mmc_util.h>
#include <cdio/paranoia/paranoia.h>

#include "platform/linux/late/late_library.h"
#include "platform/linux/late/sonames.h"

namespace sonarith {

inline constinit const LateLibrary cdioLibrary{soname::cdio};

SONARITH_LATE_FUNCTION(cdioLibrary, cdio_close_tray);
SONARITH_LATE_FUNCTION(cdioLibrary, cdio_destroy);
SONARITH_LATE_FUNCTION(cdioLibrary, cdio_eject_media_drive);
SONARITH_LATE_FUNCTION(cdioLibrary, cdio_get_first_track_num);
SONARITH_LATE_FUNCTION(cdioLibrary, cdio_get_last_session);
SONARITH_LATE_FUNCTION(cdioLibrary, cdio_get_media_changed);
SONARITH_LATE_FUNCTION(cdioLibrary, cdio_get_num_tracks);
SONARITH_LATE_FUNCTION(cdioLibrary, cdio_get_track_format);
SONARITH_LATE_FUNCTION(cdioLibrary, cdio_get_track_lsn);
SONARITH_LATE_FUNCTION(cdioLibrary, cdio_init);
SONARITH_LATE_FUNCTION(cdioLibrary, cdio_log_set_handler);
SONARITH_LATE_FUNCTION(cdioLibrary, cdio_open);
SONARITH_LATE_FUNCTION(cdioLibrary, cdio_read_audio_sectors);
SONARITH_LATE_VARIABLE(cdioLibrary, cdio_loglevel_default);
SONARITH_LATE_VARIABLE(cdioLibrary, mmc_read_timeout_ms);

inline constinit const LateLibrary cddaLibrary{soname::cdda};

SONARITH_LATE_FUNCTION(cddaLibrary, cdio_cddap_close_no_free_cdio);
SONARITH_LATE_FUNCTION(cddaLibrary, cdio_cddap_free_messages);
SONARITH_LATE_FUNCTION(cddaLibrary, cdio_cddap_identify_cdio);
SONARITH_LATE_FUNCTION(cddaLibrary, cdio_cddap_open);

inline constinit const LateLibrary paranoiaLibrary{soname::paranoia};

SONARITH_LATE_FUNCTION(paranoiaLibrary, cdio_paranoia_cachemodel_size);
SONARITH_LATE_FUNCTION(paranoiaLibrary, cdio_paranoia_free);
SONARITH_LATE_FUNCTION(paranoiaLibrary, cdio_paranoia_init);
SONARITH_LATE_FUNCTION(paranoiaLibrary, cdio_paranoia_modeset);
SONARITH_LATE_FUNCTION(paranoiaLibrary, cdio_paranoia_read_limited);
SONARITH_LATE_FUNCTION(paranoiaLibrary, cdio_paranoia_seek);
SONARITH_LATE_FUNCTION(paranoiaLibrary, cdio_paranoia_set_range);

} // namespace sonarith
