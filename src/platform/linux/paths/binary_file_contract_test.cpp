// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the behaviour that the machine's files have in common with the fake files. The machine's
// files are accessed directly, and through the classes that limit the wait for a disk
// (patient_paths.h).
#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>

#include "platform/linux/paths/binary_file_fixture.h"

namespace sonarith {
namespace {

using test::BinaryFileTest;
using test::bytesOf;
using test::FakeWorld;
using test::gibibyte;
using test::MachineWorld;
using test::PatientWorld;
using test::readFailure;
using test::textAt;

using Worlds = testing::Types<MachineWorld, PatientWorld, FakeWorld>;
TYPED_TEST_SUITE(BinaryFileTest, Worlds);

TYPED_TEST(BinaryFileTest, ReadsTheExistingBytes) {
    this->world_.put("a.mp3", "0123456789");
    const auto file = this->open("a.mp3", FileAccess::read);
    EXPECT_EQ(file->length().value(), 10);
    EXPECT_EQ(textAt(*file, 0, 4), "0123");
    EXPECT_EQ(textAt(*file, 7, 100), "789");
    EXPECT_EQ(textAt(*file, 10, 4), "");
    EXPECT_EQ(textAt(*file, 5 * gibibyte, 4), "");
    EXPECT_EQ(textAt(*file, std::numeric_limits<std::int64_t>::max(), 4), "");
    EXPECT_EQ(textAt(*file, 3, 0), "");
}

TYPED_TEST(BinaryFileTest, WritesInPlaceAndGrowsTheFile) {
    this->world_.put("a.mp3", "0123456789");
    const auto file = this->open("a.mp3", FileAccess::readWrite);
    EXPECT_TRUE(file->write(4, bytesOf("ab")).ok());
    EXPECT_EQ(this->world_.content("a.mp3"), "0123ab6789");
    EXPECT_TRUE(file->write(12, bytesOf("z")).ok());
    EXPECT_EQ(this->world_.content("a.mp3"), std::string("0123ab6789\0\0z", 13));
    EXPECT_EQ(file->length().value(), 13);
    EXPECT_EQ(textAt(*file, 3, 3), "3ab");
    EXPECT_TRUE(file->write(100, {}).ok()); // writing no bytes does not extend the file
    EXPECT_EQ(file->length().value(), 13);
}

TYPED_TEST(BinaryFileTest, RefusesNegativeOffsets) {
    this->world_.put("a.mp3", "0123");
    const auto file = this->open("a.mp3", FileAccess::readWrite);
    EXPECT_EQ(readFailure(*file, -1), ErrorNumber::badRecordNumber);
    EXPECT_EQ(file->write(-1, bytesOf("x")).error().number, ErrorNumber::badRecordNumber);
    EXPECT_EQ(this->world_.content("a.mp3"), "0123");
}

TYPED_TEST(BinaryFileTest, RefusesAccessForWhichItWasNotOpened) {
    this->world_.put("a.mp3", "0123");
    EXPECT_EQ(this->open("a.mp3", FileAccess::read)->write(0, bytesOf("x")).error().number,
              ErrorNumber::badFileMode);
    EXPECT_EQ(readFailure(*this->open("a.mp3", FileAccess::write), 0), ErrorNumber::badFileMode);
    EXPECT_EQ(this->world_.content("a.mp3"), "0123");
}

TYPED_TEST(BinaryFileTest, CreatesAMissingFileIfItIsOpenedForWriting) {
    EXPECT_EQ(this->refusal("new.mp3", FileAccess::read), ErrorNumber::fileNotFound);
    EXPECT_EQ(this->world_.content("new.mp3"), std::nullopt);
    EXPECT_NE(this->open("new.mp3", FileAccess::write), nullptr);
    EXPECT_NE(this->open("newer.mp3", FileAccess::readWrite), nullptr);
    EXPECT_EQ(this->world_.content("new.mp3"), "");
    EXPECT_EQ(this->world_.content("newer.mp3"), "");
}

TYPED_TEST(BinaryFileTest, OpeningDoesNotChangeTheContents) {
    this->world_.put("a.mp3", "0123");
    EXPECT_NE(this->open("a.mp3", FileAccess::write), nullptr);
    EXPECT_NE(this->open("a.mp3", FileAccess::readWrite), nullptr);
    EXPECT_EQ(this->world_.content("a.mp3"), "0123");
}

TYPED_TEST(BinaryFileTest, OpeningFailsForAFolderAndForAFileWhoseFolderIsMissing) {
    this->world_.makeFolder("music");
    for (const FileAccess access : {FileAccess::read, FileAccess::write, FileAccess::readWrite}) {
        EXPECT_EQ(this->refusal("music", access), ErrorNumber::pathFileAccess);
        EXPECT_EQ(this->refusal("", access), ErrorNumber::pathFileAccess);
        EXPECT_EQ(this->refusal("none\\a.mp3", access), ErrorNumber::pathNotFound);
    }
}

TYPED_TEST(BinaryFileTest, StaysOpenWhenItsNameIsChangedOrRemoved) {
    this->world_.put("a.mp3", "0123");
    const auto file = this->open("a.mp3", FileAccess::readWrite);
    ASSERT_TRUE(this->world_.files().rename("d:\\a.mp3", "d:\\b.mp3").ok());
    EXPECT_TRUE(file->write(0, bytesOf("x")).ok());
    EXPECT_EQ(this->world_.content("b.mp3"), "x123");
    ASSERT_TRUE(this->world_.files().removeFile("d:\\b.mp3").ok());
    EXPECT_EQ(textAt(*file, 0, 4), "x123");
}

TYPED_TEST(BinaryFileTest, AReadOfAFileThatHasBecomeShorterReturnsFewerBytes) {
    this->world_.put("a.mp3", "0123456789");
    const auto file = this->open("a.mp3", FileAccess::read);
    EXPECT_EQ(textAt(*file, 2, 4), "2345");
    this->world_.put("a.mp3", "012");
    EXPECT_EQ(textAt(*file, 2, 4), "2");
    EXPECT_EQ(textAt(*file, 6, 4), "");
    EXPECT_EQ(file->length().value(), 3);
}

TYPED_TEST(BinaryFileTest, FileDateWorksForFilesAndNotForFolders) {
    this->world_.put("a.mp3", "0123");
    this->world_.makeFolder("music");
    FileSystem& files = this->world_.files();
    EXPECT_TRUE(files.fileDate("d:\\a.mp3").ok());
    EXPECT_EQ(files.fileDate("d:\\b.mp3").error().number, ErrorNumber::fileNotFound);
    EXPECT_EQ(files.fileDate("d:\\music").error().number, ErrorNumber::fileNotFound);
    EXPECT_EQ(files.fileDate("d:\\none\\a.mp3").error().number, ErrorNumber::pathNotFound);
}

} // namespace
} // namespace sonarith
