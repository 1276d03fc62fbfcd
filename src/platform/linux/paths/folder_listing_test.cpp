// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/folder_listing.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>

#include <sys/stat.h>

#include "support/temp_folder.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

class FolderListingTest : public testing::Test {
  protected:
    fakes::TempFolder folder_;

    void write(const std::string& name) { std::ofstream(folder_ / name) << "x"; }
    std::map<std::string, EntryKind> entries() {
        std::map<std::string, EntryKind> all;
        auto listing = FolderListing::open(folder_.path().string());
        EXPECT_TRUE(listing.has_value());
        ListedEntry entry;
        while (listing && listing->next(entry)) {
            all[entry.name] = entry.kind;
        }
        return all;
    }
};

TEST_F(FolderListingTest, DistinguishesFilesFromFoldersAndOmitsTheDotEntries) {
    write("a");
    fs::create_directory(folder_ / "b");
    EXPECT_THAT(entries(),
                UnorderedElementsAre(Pair("a", EntryKind::file), Pair("b", EntryKind::folder)));
}

TEST_F(FolderListingTest, ALinkHasTheKindOfItsTarget) {
    write("file");
    fs::create_directory(folder_ / "folder");
    fs::create_symlink("file", folder_ / "to file");
    fs::create_symlink("folder", folder_ / "to folder");
    fs::create_symlink("nowhere", folder_ / "to nothing");
    fs::create_symlink("to itself", folder_ / "to itself");
    EXPECT_THAT(entries(),
                UnorderedElementsAre(
                    Pair("file", EntryKind::file), Pair("folder", EntryKind::folder),
                    Pair("to file", EntryKind::file), Pair("to folder", EntryKind::folder),
                    Pair("to nothing", EntryKind::other), Pair("to itself", EntryKind::other)));
}

TEST_F(FolderListingTest, APipeHasTheKindOther) {
    ASSERT_EQ(::mkfifo((folder_ / "pipe.wav").c_str(), 0600), 0);
    EXPECT_THAT(entries(), UnorderedElementsAre(Pair("pipe.wav", EntryKind::other)));
}

TEST_F(FolderListingTest, ReturnsNamesOfAnyBytesUnchanged) {
    const std::string longest(255, 'n');
    for (const std::string& name : {std::string("\xff\xfe.wav"), std::string(" a\nb "), longest}) {
        write(name);
    }
    EXPECT_THAT(entries(), UnorderedElementsAre(Pair("\xff\xfe.wav", EntryKind::file),
                                                Pair(" a\nb ", EntryKind::file),
                                                Pair(longest, EntryKind::file)));
}

TEST_F(FolderListingTest, OnlyFoldersAreOpened) {
    write("file");
    EXPECT_FALSE(FolderListing::open((folder_ / "file").string()).has_value());
    EXPECT_FALSE(FolderListing::open((folder_ / "none").string()).has_value());
    EXPECT_FALSE(FolderListing::open("").has_value());
}

TEST_F(FolderListingTest, AFolderWithoutPermissionIsNotOpened) {
    const fs::path locked = folder_ / "locked";
    fs::create_directory(locked);
    fs::permissions(folder_.path(), fs::perms::all);
    fs::permissions(locked, fs::perms::none);
    EXPECT_EQ(test::runUnprivileged(
                  [&] { return FolderListing::open(locked.string()).has_value() ? 1 : 0; }),
              0);
    fs::permissions(locked, fs::perms::all);
    EXPECT_EQ(test::runUnprivileged(
                  [&] { return FolderListing::open(locked.string()).has_value() ? 1 : 0; }),
              1);
}

TEST_F(FolderListingTest, AFolderHasTheSameIdentityOnEveryPathToIt) {
    fs::create_directory(folder_ / "a");
    fs::create_directory(folder_ / "b");
    fs::create_symlink("a", folder_ / "link");
    const auto identity = [this](const std::string& name) {
        return FolderListing::open((folder_ / name).string())->identity();
    };
    EXPECT_EQ(identity("a"), identity("link"));
    EXPECT_EQ(identity("a"), identity("b/../a"));
    EXPECT_FALSE(identity("a") == identity("b"));
}

TEST_F(FolderListingTest, AListingEndsEarlyIfItsFolderIsDeletedMeanwhile) {
    const fs::path gone = folder_ / "gone";
    fs::create_directory(gone);
    constexpr int moreThanOneReadOfTheKernel = 3000;
    for (int i = 0; i < moreThanOneReadOfTheKernel; ++i) {
        std::ofstream(gone / ("a rather long name of a file " + std::to_string(i)));
    }
    auto listing = FolderListing::open(gone.string());
    ASSERT_TRUE(listing.has_value());
    ListedEntry entry;
    ASSERT_TRUE(listing->next(entry));
    fs::remove_all(gone);
    int rest = 0;
    while (listing->next(entry)) {
        ++rest;
    }
    EXPECT_LT(rest, moreThanOneReadOfTheKernel - 1);
    EXPECT_FALSE(listing->next(entry));
}

} // namespace
} // namespace sonarith
