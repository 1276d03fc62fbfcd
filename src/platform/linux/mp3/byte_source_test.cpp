// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/byte_source.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

namespace fs = std::filesystem;
using fixture::Data;
using fixture::junk;
using fixture::writeFile;

class FileSourceTest : public testing::Test {
  protected:
    ErrorNumber failureOf(const fs::path& path) {
        const auto opened = FileSource::open(path, stop);
        EXPECT_FALSE(opened.ok());
        return opened.ok() ? ErrorNumber{} : opened.error().number;
    }
    fakes::TempFolder folder;
    std::atomic<bool> stop = false;
};

TEST_F(FileSourceTest, ReadsAtAnyOffset) {
    const Data data = junk(5000);
    writeFile(folder / "a", data);
    const auto source = FileSource::open(folder / "a", stop);
    ASSERT_TRUE(source.ok());
    EXPECT_EQ(source.value()->size(), 5000);
    Data got(100);
    EXPECT_FALSE(source.value()->readAt(4900, got).failure);
    EXPECT_EQ(got, fixture::part(data, 4900, 5000));
}

TEST_F(FileSourceTest, RefusesAPathThatNamesNoRegularFile) {
    EXPECT_EQ(failureOf(folder.path()), ErrorNumber::pathFileAccess);
    EXPECT_EQ(failureOf(folder / "none"), ErrorNumber::pathNotFound);
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(failureOf(folder / "pipe"), ErrorNumber::pathFileAccess);
    EXPECT_EQ(failureOf(std::string("a\0b", 3)), ErrorNumber::badFileName);
}

TEST_F(FileSourceTest, ReadingFailsAtTheNewEndOfAFileThatHasBecomeShorter) {
    writeFile(folder / "a", junk(5000));
    const auto source = FileSource::open(folder / "a", stop);
    fs::resize_file(folder / "a", 1000);
    Data got(100);
    EXPECT_FALSE(source.value()->readAt(900, got).failure);
    const Reading reading = source.value()->readAt(950, got);
    EXPECT_TRUE(reading.failure);
    EXPECT_EQ(reading.bytes, 50U) << "the bytes before the end of the file must be read";
}

TEST_F(FileSourceTest, ReadingFailsAfterAStop) {
    writeFile(folder / "a", junk(5000));
    const auto source = FileSource::open(folder / "a", stop);
    stop = true;
    Data got(100);
    EXPECT_TRUE(source.value()->readAt(0, got).failure);
}

TEST_F(FileSourceTest, TheIdentityDiffersAfterTheFileIsChanged) {
    writeFile(folder / "a", junk(50));
    const auto before = FileIdentity::of(folder / "a");
    ASSERT_TRUE(before);
    EXPECT_EQ(FileIdentity::of(folder / "a"), before);
    writeFile(folder / "a", junk(51));
    EXPECT_NE(FileIdentity::of(folder / "a"), before);
    EXPECT_FALSE(FileIdentity::of(folder / "none"));
}

TEST(SourceWindowTest, ReturnsTheBytesAtOffsetsInAnyOrder) {
    const Data data = junk(300'000);
    const MemorySource source(data);
    SourceWindow window(source);
    for (const std::int64_t offset : {0, 1, 40'000, 100'000, 99'000, 299'999, 0, 288'476}) {
        const Bytes bytes = window.at(offset);
        const std::size_t left = data.size() - static_cast<std::size_t>(offset);
        ASSERT_GE(bytes.size(), std::min(left, SourceWindow::lookAhead)) << offset;
        EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), data.begin() + offset)) << offset;
    }
    EXPECT_TRUE(window.at(300'000).empty());
    EXPECT_TRUE(window.at(400'000).empty());
    EXPECT_FALSE(window.failure());
}

TEST(SourceWindowTest, ReturnsAllBytesBeforeAnUnreadableOffset) {
    const Data data = junk(200'000);
    const fixture::BadPlaceSource source(data, 100'000, 101'000);
    SourceWindow window(source);
    EXPECT_FALSE(window.at(0).empty());
    EXPECT_FALSE(window.failure());
    for (std::int64_t offset = 99'000; offset < 100'000; offset += 100) {
        const Bytes bytes = window.at(offset);
        ASSERT_EQ(bytes.size(), static_cast<std::size_t>(100'000 - offset));
        EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), data.begin() + offset)) << offset;
    }
    EXPECT_TRUE(window.at(100'000).empty());
    EXPECT_TRUE(window.failure());
    EXPECT_EQ(source.failures, 1)
        << "there must be only one failed read, because each may take seconds";
}

TEST(SourceWindowTest, ReturnsTheBytesAfterAnUnreadableRange) {
    const Data data = junk(200'000);
    const fixture::BadPlaceSource source(data, 100'000, 101'000);
    SourceWindow window(source);
    EXPECT_EQ(window.at(99'000).size(), 1000U);
    EXPECT_TRUE(window.at(100'500).empty());
    EXPECT_GT(window.at(150'000).size(), 40'000U);
    EXPECT_FALSE(window.failure());
}

TEST_F(FileSourceTest, AFailedOpenReturnsTheSystemsMessageWithoutThePath) {
    EXPECT_EQ(FileSource::open(folder / "none", stop).error().text, "No such file or directory");
    EXPECT_EQ(FileSource::open(folder.path(), stop).error().text, "Is a directory");
}

} // namespace
} // namespace sonarith::mp3
