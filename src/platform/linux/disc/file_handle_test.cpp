// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/file_handle.h"

#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <system_error>

#include <sys/stat.h>

#include "platform/linux/disc/image_fixture.h"

namespace sonarith::disc {
namespace {

TEST(FileHandle, ReadsTheAvailableBytesAndReturnsTheirNumber) {
    const ImageFolder folder;
    const auto handle = FileHandle::open(folder.write("a", "0123456789"));
    ASSERT_TRUE(handle.ok());
    EXPECT_EQ(handle.value().bytes(), 10);
    std::array<std::byte, 4> bytes = {};
    EXPECT_EQ(handle.value().readAt(3, bytes), 4U);
    EXPECT_EQ(bytes[0], std::byte{'3'});
    EXPECT_EQ(handle.value().readAt(8, bytes), 2U);
    EXPECT_EQ(handle.value().readAt(10, bytes), 0U);
}

TEST(FileHandle, DetectsThatItsFileWasDeleted) {
    const ImageFolder folder;
    const auto path = folder.write("a", "x");
    const auto handle = FileHandle::open(path);
    EXPECT_TRUE(handle.value().stillThere());
    std::filesystem::remove(path);
    EXPECT_FALSE(handle.value().stillThere());
}

TEST(FileHandle, DetectsThatItsFileWasReplaced) {
    const ImageFolder folder;
    const auto path = folder.write("a", "x");
    const auto handle = FileHandle::open(path);
    folder.write("b", "x");
    std::filesystem::rename(folder.path("b"), path);
    EXPECT_FALSE(handle.value().stillThere());
}

TEST(FileHandle, RefusesALinkThatRefersToItselfWithTheSystemsMessage) {
    const ImageFolder folder;
    std::filesystem::create_symlink(folder.path("loop"), folder.path("loop"));
    EXPECT_EQ(FileHandle::open(folder.path("loop")).error().text,
              std::generic_category().message(ELOOP));
}

TEST(FileHandle, RefusesAPathThatNamesNoRegularFile) {
    const ImageFolder folder;
    EXPECT_EQ(FileHandle::open(folder.path("none")).error().number, ErrorNumber::fileNotFound);
    EXPECT_EQ(FileHandle::open(folder.path("")).error().text, "it is not a regular file");
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(FileHandle::open(folder.path("pipe")).error().text, "it is not a regular file");
    EXPECT_EQ(FileHandle::open("/dev/zero").error().text, "it is not a regular file");
    EXPECT_EQ(FileHandle::open(folder.path(std::string(300, 'x'))).error().number,
              ErrorNumber::badFileName);
}

} // namespace
} // namespace sonarith::disc
