// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/path_names.h"

#include <gmock/gmock.h>

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(PathNames, AreThePartsBetweenSeparators) {
    EXPECT_THAT(namesOf("\\Music\\old/new.wav", "\\/"), ElementsAre("Music", "old", "new.wav"));
    EXPECT_THAT(namesOf("/a\\b//c/", "/"), ElementsAre("a\\b", "c"));
    EXPECT_THAT(namesOf("", "/"), IsEmpty());
    EXPECT_THAT(namesOf("//", "/"), IsEmpty());
}

TEST(PathNames, OmitDotsAndResolveDoubleDotsAndIgnoreDoubleDotsAtTheRoot) {
    EXPECT_THAT(namesOf("/a/./b/../c", "/"), ElementsAre("a", "c"));
    EXPECT_THAT(namesOf("/../../a/...", "/"), ElementsAre("a", "..."));
}

TEST(PlainMachinePath, IsNormalised) {
    EXPECT_EQ(plainMachinePath("/home//me/./x/.."), "/home/me");
    EXPECT_EQ(plainMachinePath("/home/me/"), "/home/me");
    EXPECT_EQ(plainMachinePath("/"), "/");
    EXPECT_EQ(plainMachinePath(""), "/");
}

TEST(IsWithin, IsTrueOnlyForTheFolderAndForPathsBelowIt) {
    EXPECT_TRUE(isWithin("/home/me", "/home/me"));
    EXPECT_TRUE(isWithin("/home/me/x", "/home/me"));
    EXPECT_TRUE(isWithin("/home", "/"));
    EXPECT_FALSE(isWithin("/home/meg", "/home/me"));
    EXPECT_FALSE(isWithin("/home", "/home/me"));
}

TEST(AbsolutePath, AlwaysBeginsWithADriveLetter) {
    const std::string here = "d:\\music";
    EXPECT_EQ(absolutePath("c:\\a", here), "c:\\a");
    EXPECT_EQ(absolutePath("c:", here), "c:");
    EXPECT_EQ(absolutePath("\\a", here), "d:\\a");
    EXPECT_EQ(absolutePath("/a", here), "d:/a");
    EXPECT_EQ(absolutePath("a", here), "d:\\music\\a");
    EXPECT_EQ(absolutePath("", here), "d:\\music\\");
}

} // namespace
} // namespace sonarith
