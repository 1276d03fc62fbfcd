// SPDX-License-Identifier: GPL-3.0-or-later
// Sets the region of the main window from its picture. The computation is in region_from_bitmap.h;
// the view applies the region to the window.
#pragma once

#include "forms/form1.h"
#include "settings/process_state.h"

namespace sonarith {

/// Sets the region of `form` to all pixels of its picture that are not white, and stores the
/// region in `process.WindowRegion`. Without a picture the window has no region.
void ShapeFromPicture(Form1& form, ProcessState& process);

} // namespace sonarith
