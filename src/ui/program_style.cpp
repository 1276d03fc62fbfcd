// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/program_style.h"

#include "ui/icons.h"

namespace sonarith {

QIcon ProgramStyle::standardIcon(StandardPixmap which, const QStyleOption* option,
                                 const QWidget* widget) const {
    return which == SP_ToolBarHorizontalExtensionButton
               ? makeIcon(Symbol::more)
               : QProxyStyle::standardIcon(which, option, widget);
}

} // namespace sonarith
