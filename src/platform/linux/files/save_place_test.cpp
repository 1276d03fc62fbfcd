// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/files/save_place.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>

#include <fcntl.h>
#include <sys/stat.h>

#include "support/temp_folder.h"
#include "support/unprivileged.h"

namespace sonarith::files {
namespace {

namespace fs = std::filesystem;

class SavePlaceTest : public testing::Test {
  protected:
    static ErrorNumber failure(const fs::path& target) {
        const Result<SavePlace> place = locate(target);
        EXPECT_FALSE(place.ok()) << target;
        return place.ok() ? ErrorNumber{} : place.error().number;
    }
    /// Whether the place's folder is the folder at `path`. Compares devices and inodes, not paths.
    static bool isIn(const SavePlace& place, const fs::path& path) {
        struct stat opened {};
        struct stat wanted {};
        return ::fstat(place.folder.get(), &opened) == 0 && ::stat(path.c_str(), &wanted) == 0 &&
               opened.st_dev == wanted.st_dev && opened.st_ino == wanted.st_ino;
    }
    fakes::TempFolder folder;
};

TEST_F(SavePlaceTest, HoldsTheFolderAndTheNameButNoModeIfTheFileDoesNotExist) {
    const Result<SavePlace> place = locate(folder / "new.wav");
    ASSERT_TRUE(place.ok());
    EXPECT_EQ(place.value().name, "new.wav");
    EXPECT_EQ(place.value().mode, std::nullopt);
    EXPECT_TRUE(isIn(place.value(), folder.path()));
}

TEST_F(SavePlaceTest, HoldsTheModeOfAnExistingFile) {
    std::ofstream(folder / "old.wav") << "old";
    fs::permissions(folder / "old.wav", fs::perms(0640));
    EXPECT_EQ(locate(folder / "old.wav").value().mode, mode_t{0640});
}

TEST_F(SavePlaceTest, FollowsASymbolicLink) {
    fs::create_directory(folder / "real");
    std::ofstream(folder / "real/file.wav") << "old";
    fs::create_symlink("real/file.wav", folder / "link.wav");
    const Result<SavePlace> place = locate(folder / "link.wav");
    ASSERT_TRUE(place.ok());
    EXPECT_EQ(place.value().name, "file.wav");
    EXPECT_TRUE(isIn(place.value(), folder / "real"));
}

TEST_F(SavePlaceTest, ReportsWhyATargetCannotBeUsed) {
    fs::create_directory(folder / "folder");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("nowhere", folder / "dangling");
    EXPECT_EQ(failure(folder / "folder"), ErrorNumber::pathFileAccess);
    EXPECT_EQ(failure(folder / "folder" / ""), ErrorNumber::pathFileAccess);
    EXPECT_EQ(failure(folder / "."), ErrorNumber::pathFileAccess);
    EXPECT_EQ(failure(folder / ".."), ErrorNumber::pathFileAccess);
    EXPECT_EQ(failure(folder / "pipe"), ErrorNumber::pathFileAccess);
    EXPECT_EQ(failure(folder / "dangling"), ErrorNumber::pathFileAccess);
    EXPECT_EQ(failure(folder / "pipe" / "below"), ErrorNumber::pathNotFound);
    EXPECT_EQ(failure(folder / "none" / "a.wav"), ErrorNumber::pathNotFound);
    EXPECT_EQ(failure(folder / std::string("a\0b", 3)), ErrorNumber::badFileName);
    EXPECT_EQ(failure(folder / std::string(256, 'n')), ErrorNumber::badFileName);
}

TEST_F(SavePlaceTest, AcceptsAFolderThatCannotBeListedOrFlushed) {
    fs::permissions(folder.path(), fs::perms(0333));
    EXPECT_EQ(test::runUnprivileged([&] {
                  const FileDescriptor opened = openFolder(folder.path());
                  const bool makesFiles =
                      ::faccessat(opened.get(), ".", W_OK | X_OK, AT_EACCESS) == 0;
                  return makesFiles && flushFolder(opened) == 0 ? 0 : 1;
              }),
              0);
    fs::permissions(folder.path(), fs::perms(0755));
    EXPECT_EQ(flushFolder(openFolder(folder.path())), 0);
}

TEST_F(SavePlaceTest, OpensOnlyFolders) {
    std::ofstream(folder / "file") << "old";
    EXPECT_FALSE(openFolder(folder / "file").valid());
    EXPECT_EQ(errno, ENOTDIR);
    EXPECT_FALSE(openFolder(folder / "none").valid());
    EXPECT_EQ(errno, ENOENT);
}

} // namespace
} // namespace sonarith::files
