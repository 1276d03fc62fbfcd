// SPDX-License-Identifier: GPL-3.0-or-later
// The desktop's style, with one icon that the program paints itself.
#pragma once

#include <QProxyStyle>

namespace sonarith {

/// When a menu bar is created, it requests the arrow of its extension button from the style, even
/// if the button is not visible. For this arrow, Qt's styles read a picture file and load all
/// picture plugins, which takes 3 to 4 ms of the program's start (measured). This style paints the
/// arrow instead.
class ProgramStyle : public QProxyStyle {
  public:
    [[nodiscard]] QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                                     const QWidget* widget) const override;
};

} // namespace sonarith
