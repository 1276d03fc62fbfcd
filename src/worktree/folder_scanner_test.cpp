// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/folder_scanner.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

TEST(NoFolderScanner, FindsNothingAnywhere) {
    NoFolderScanner finder;
    EXPECT_TRUE(finder.setFolder("c:\\music").ok());
    finder.search("wav");
    EXPECT_EQ(finder.lstfiles().listCount(), 0);
    EXPECT_EQ(finder.lstfiles().listIndex(), -1);
}

} // namespace
} // namespace sonarith
