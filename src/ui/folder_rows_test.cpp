// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/folder_rows.h"

#include <gmock/gmock.h>

namespace sonarith {
namespace {

using testing::ElementsAre;

TEST(FolderRows, BeginWithTheDriveThenListTheFoldersOfThePathAndThenTheSubfolders) {
    const FolderRows made = folderRows("c:\\music\\wav", {"b", "A"});
    EXPECT_THAT(made.rows,
                ElementsAre(FolderRow{"c:\\", "c:\\", 0}, FolderRow{"music", "c:\\music", 1},
                            FolderRow{"wav", "c:\\music\\wav", 2},
                            FolderRow{"A", "c:\\music\\wav\\A", 3},
                            FolderRow{"b", "c:\\music\\wav\\b", 3}));
    EXPECT_EQ(made.current, 2);
}

TEST(FolderRows, KeepTheBackslashOfTheRootOfADrive) {
    const FolderRows made = folderRows("d:\\", {"albums"});
    EXPECT_THAT(made.rows,
                ElementsAre(FolderRow{"d:\\", "d:\\", 0}, FolderRow{"albums", "d:\\albums", 1}));
    EXPECT_EQ(made.current, 0);
}

TEST(FolderRows, AreEmptyWithoutAPath) {
    const FolderRows made = folderRows("", {});
    EXPECT_TRUE(made.rows.empty());
    EXPECT_EQ(made.current, -1);
}

TEST(FolderRows, SortSubfoldersIgnoringCaseEvenForNonAsciiLetters) {
    std::vector<std::string> names;
    for (const FolderRow& row : folderRows("c:\\", {"\xC3\x96"
                                                    "c",
                                                    "\xC3\xB6"
                                                    "b",
                                                    "z"})
                                    .rows) {
        names.push_back(row.name);
    }
    EXPECT_THAT(names, ElementsAre("c:\\", "z",
                                   "\xC3\xB6"
                                   "b",
                                   "\xC3\x96"
                                   "c"));
}

} // namespace
} // namespace sonarith
