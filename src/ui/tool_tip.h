// SPDX-License-Identifier: GPL-3.0-or-later
// Tool tips that say a text as it stands. A desktop's tool tip takes what looks like markup for
// markup, and a file may be named "<b>x</b>.mp3".
#pragma once

#include <QString>

namespace sonarith {

/// What is to be set as a tool tip so that `text` is read, letter for letter.
[[nodiscard]] QString plainToolTip(const QString& text);

} // namespace sonarith
