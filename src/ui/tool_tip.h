// SPDX-License-Identifier: GPL-3.0-or-later
// Creates tool tips that show a text literally. Qt's tool tips interpret a text that looks like
// markup, but a file may be named "<b>x</b>.mp3".
#pragma once

#include <QString>

namespace sonarith {

/// Returns the tool tip that shows `text` literally.
[[nodiscard]] QString plainToolTip(const QString& text);

} // namespace sonarith
