// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/late/device_libraries.h"

#include "platform/linux/late/alsa.h"
#include "platform/linux/late/cdio.h"
#include "platform/linux/late/mpg123.h"
#include "platform/linux/late/sndfile.h"
#include "platform/linux/late/speexdsp.h"

namespace sonarith {

void loadDeviceLibraries() {
    for (const LateLibrary* library : {&cdioLibrary, &cddaLibrary, &paranoiaLibrary, &alsaLibrary,
                                       &sndfileLibrary, &mpg123Library, &speexdspLibrary}) {
        library->load();
    }
}

} // namespace sonarith
