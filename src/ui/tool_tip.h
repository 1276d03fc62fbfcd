// SPDX-License-Identifier: GPL-3.0-or-later
// Tool tips that show a text literally. A desktop's tool tip interprets text that looks like
// markup, and a file may be named "<b>x</b>.mp3".
#pragma once

#include <QString>

namespace sonarith {

/// The tool tip to set so that `text` is shown literally.
[[nodiscard]] QString plainToolTip(const QString& text);

} // namespace sonarith
