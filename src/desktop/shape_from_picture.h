// SPDX-License-Identifier: GPL-3.0-or-later
// Gives the main window the shape of its picture. How a region is computed is told in
// region_from_bitmap.h; how a window is masked is the view's affair.
#pragma once

#include "forms/form1.h"
#include "settings/process_state.h"

namespace sonarith {

/// Masks `form` with what its picture leaves without white, and keeps that region in
/// `process.WindowRegion`. Without a picture the window is whole.
void ShapeFromPicture(Form1& form, ProcessState& process);

} // namespace sonarith
