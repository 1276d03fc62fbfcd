// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/fixed_text.h"

#include <QLineEdit>
#include <gmock/gmock.h>

namespace sonarith {
namespace {

TEST(FixedText, IsShownAsPlainTextWithAndWithoutABuddyWidget) {
    QWidget parent;
    QLineEdit box(&parent);
    box.setAccessibleName("Folder");
    QLabel* alone = makeFixedText("<b>Rock & Roll</b>", nullptr, &parent);
    QLabel* naming = makeFixedText("Rock & Roll", &box, &parent);
    EXPECT_EQ(alone->text(), "<b>Rock & Roll</b>");
    EXPECT_EQ(alone->textFormat(), Qt::PlainText);
    EXPECT_EQ(alone->accessibleName(), "<b>Rock & Roll</b>");
    EXPECT_EQ(naming->text(), "Rock && Roll");
    EXPECT_EQ(naming->buddy(), &box);
    EXPECT_EQ(naming->accessibleName(), "Rock & Roll");
}

TEST(FixedText, AHeadingIsPalerThanOtherTexts) {
    QWidget parent;
    const QLabel* heading = makeHeading("Tracks:", &parent);
    EXPECT_LT(heading->palette().color(QPalette::WindowText).alpha(),
              parent.palette().color(QPalette::WindowText).alpha());
}

} // namespace
} // namespace sonarith
