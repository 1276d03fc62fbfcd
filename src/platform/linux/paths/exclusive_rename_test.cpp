// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/exclusive_rename.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/temp_folder.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;

/// Each test runs twice: once with renameExclusively(), once with renameByLink().
class ExclusiveRenameTest
    : public ::testing::TestWithParam<int (*)(const std::string&, const std::string&)> {
  protected:
    std::string path(const std::string& name) { return (folder_ / name).string(); }
    void write(const std::string& name, const std::string& content) {
        std::ofstream(path(name)) << content;
    }
    std::string read(const std::string& name) {
        std::ifstream file(path(name));
        return (std::stringstream() << file.rdbuf()).str();
    }
    int rename(const std::string& from, const std::string& to) {
        return GetParam()(path(from), path(to));
    }

    fakes::TempFolder folder_;
};

TEST_P(ExclusiveRenameTest, GivesTheFileItsNewName) {
    write("a", "sound");
    EXPECT_EQ(rename("a", "b"), 0);
    EXPECT_FALSE(fs::exists(path("a")));
    EXPECT_EQ(read("b"), "sound");
}

TEST_P(ExclusiveRenameTest, NeverReplacesAnExistingFile) {
    write("a", "new");
    write("b", "old");
    EXPECT_EQ(rename("a", "b"), EEXIST);
    EXPECT_EQ(read("a"), "new");
    EXPECT_EQ(read("b"), "old");
}

TEST_P(ExclusiveRenameTest, NeverReplacesADanglingLink) {
    write("a", "new");
    fs::create_symlink("/no/such", path("b"));
    EXPECT_EQ(rename("a", "b"), EEXIST);
    EXPECT_TRUE(fs::is_symlink(path("b")));
}

TEST_P(ExclusiveRenameTest, RenamesAFolderAndNeverReplacesAFolder) {
    fs::create_directory(path("a"));
    fs::create_directory(path("c"));
    EXPECT_EQ(rename("a", "b"), 0);
    EXPECT_TRUE(fs::is_directory(path("b")));
    EXPECT_EQ(rename("b", "c"), EEXIST);
}

TEST_P(ExclusiveRenameTest, ReportsAMissingFile) {
    EXPECT_EQ(rename("a", "b"), ENOENT);
}

INSTANTIATE_TEST_SUITE_P(BothMethods, ExclusiveRenameTest,
                         ::testing::Values(&renameExclusively, &renameByLink));

} // namespace
} // namespace sonarith
