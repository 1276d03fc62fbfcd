// SPDX-License-Identifier: GPL-3.0-or-later
// Gives the main window the shape of its picture. Computes nothing itself (region_from_bitmap.h)
// and masks nothing: the view does that.
#pragma once

#include "forms/form1.h"
#include "settings/process_state.h"

namespace sonarith {

/// Masks `form` with what its picture leaves without white, and keeps that region in
/// `process.WindowRegion`. Without a picture the window is whole.
void ShapeFromPicture(Form1& form, ProcessState& process);

} // namespace sonarith
