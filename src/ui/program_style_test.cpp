// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/program_style.h"

#include <QApplication>
#include <QImage>
#include <gmock/gmock.h>

#include "ui/icons.h"

namespace sonarith {
namespace {

QImage painted(const QIcon& icon) {
    return icon.pixmap(QSize(24, 24), 1.0).toImage();
}

TEST(ProgramStyle, UsesTheProgramsOwnIconForTheMenuBarsExtensionButton) {
    const ProgramStyle style;
    const QIcon arrow =
        style.standardIcon(QStyle::SP_ToolBarHorizontalExtensionButton, nullptr, nullptr);
    EXPECT_EQ(painted(arrow), painted(makeIcon(Symbol::more)));
}

TEST(ProgramStyle, UsesTheDesktopsIconForMessageBoxes) {
    const ProgramStyle style;
    const QIcon ours = style.standardIcon(QStyle::SP_MessageBoxCritical, nullptr, nullptr);
    const QIcon theirs =
        QApplication::style()->standardIcon(QStyle::SP_MessageBoxCritical, nullptr, nullptr);
    EXPECT_EQ(painted(ours), painted(theirs));
    EXPECT_FALSE(ours.isNull());
}

} // namespace
} // namespace sonarith
