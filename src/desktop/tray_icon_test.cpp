// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/tray_icon.h"

#include <gmock/gmock.h>

#include "support/fake_tray.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::Pair;

class TrayIconTest : public testing::Test {
  protected:
    std::string shownTip(const std::string& title) {
        icons.ModifyTrayIcon(7, form, title);
        return tray.icons.at(7);
    }

    test::FakeTray tray;
    Form form{"form"};
    TrayIconCalls icons{tray};
};

TEST_F(TrayIconTest, AddsModifiesAndDeletesAnIconByItsIdentifier) {
    icons.AddTrayIcon(7, form, "Sonarith");
    EXPECT_THAT(tray.icons, ElementsAre(Pair(7, "Sonarith")));
    icons.ModifyTrayIcon(7, form, "Extracting Track 1");
    EXPECT_THAT(tray.icons, ElementsAre(Pair(7, "Extracting Track 1")));
    icons.DeleteTrayIcon(7);
    EXPECT_TRUE(tray.icons.empty());
    EXPECT_THAT(tray.log, ElementsAre("add Sonarith", "modify Extracting Track 1", "remove"));
}

TEST_F(TrayIconTest, IgnoresFailuresOfTheTray) {
    icons.ModifyTrayIcon(7, form, "x");
    icons.DeleteTrayIcon(7);
    icons.AddTrayIcon(7, form, "x");
    icons.AddTrayIcon(7, form, "y");
    EXPECT_THAT(tray.log, ElementsAre("modify x failed", "remove failed", "add x", "add y failed"));
}

TEST_F(TrayIconTest, ShortensTheTipTo63Characters) {
    icons.AddTrayIcon(7, form, std::string(64, 'a'));
    EXPECT_EQ(tray.icons.at(7), std::string(63, 'a'));
    EXPECT_EQ(shownTip(std::string(63, 'b')), std::string(63, 'b'));
    EXPECT_EQ(shownTip(std::string(10'000, 'c')), std::string(63, 'c'));
    EXPECT_EQ(shownTip(""), "");
}

TEST_F(TrayIconTest, CountsTheCharactersOfTheTipAndNotItsBytes) {
    icons.AddTrayIcon(7, form, "x");
    std::string title;
    std::string shortened;
    for (int i = 0; i < 70; ++i) {
        title += "\xe2\x99\xaa"; // a musical note, three bytes in UTF-8
        shortened += i < 63 ? "\xe2\x99\xaa" : "";
    }
    EXPECT_EQ(shownTip(title), shortened);
}

} // namespace
} // namespace sonarith
