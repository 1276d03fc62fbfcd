// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/shape_from_picture.h"

#include "desktop/region_from_bitmap.h"

namespace sonarith {

void ShapeFromPicture(Form1& form, ProcessState& process) {
    process.WindowRegion.reset();
    // Deliberate: computes the region twice, although the second time changes nothing.
    for (int time = 0; time < 2; ++time) {
        process.WindowRegion = RegionFromBitmap(form.picture().get(), whitePixel);
        form.setWindowRegion(process.WindowRegion);
    }
}

} // namespace sonarith
