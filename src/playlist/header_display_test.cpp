// SPDX-License-Identifier: GPL-3.0-or-later
#include "playlist/header_display.h"

#include <gmock/gmock.h>

#include <optional>

#include "support/must_run.h"
#include "support/playlist_world.h"

namespace sonarith {
namespace {

using test::commonHeader;
using test::FakeFileSystem;
using test::Mp3Bytes;
using test::ShownBox;
using test::tagOf;
using testing::ElementsAre;
using testing::IsEmpty;

class HeaderDisplayTest : public test::PlaylistWorld {
  protected:
    HeaderDisplayTest() { editor.load(); }

    void read(const std::string& path) {
        editor.Text5.setText(path);
        editor.cmdHdr2.click();
    }
    [[nodiscard]] std::string line(int index) const { return editor.List1.list(index); }
};

// --- reading ---------------------------------------------------------------------------------

TEST_F(HeaderDisplayTest, ShowsTwelveLinesAndTheTag) {
    disk.addFile(pathA, Mp3Bytes(4'000'000)
                            .header(1, 0xFFFA936D)
                            .end(tagOf("Title", "Artist", "Album", "1999", "Comment", 17))
                            .content);
    read(pathA);
    EXPECT_THAT(lines(editor.List1),
                ElementsAre("Bitrate            128", "Frequency       44100",
                            "Duration          250", "MpegVersion   1", "MpegLayer      3",
                            "Original           yes", "Emphasis        50/15",
                            "CopyRight        yes", "Mode               joint stereo",
                            "Padding           yes", "CRC                yes",
                            "Private             yes"));
    EXPECT_THAT(boxes4(), ElementsAre("Artist", "Title", "Album", "1999", "Comment", "17", "True",
                                      "4000000 bytes"));
    EXPECT_EQ(editor.Text5.text(), pathA);
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(HeaderDisplayTest, AFileWithoutATagShowsEmptyTextsAndGenre255) {
    disk.addFile(pathA, Mp3Bytes(1000).header(1, commonHeader).content);
    read(pathA);
    EXPECT_THAT(boxes4(), ElementsAre("", "", "", "", "", "255", "False", "1000 bytes"));
}

TEST_F(HeaderDisplayTest, ShowsTheAverageBitrateForAVariableRate) {
    disk.addFile(pathA, Mp3Bytes(4'000'000).header(1, commonHeader).variableRate(1, 6000).content);
    read(pathA);
    EXPECT_EQ(editor.List1.listCount(), 12);
    EXPECT_EQ(line(0), "Bitrate            204");
    EXPECT_EQ(line(2), "Duration          156");
    EXPECT_TRUE(playlist.header.info().IsVbr);
}

TEST_F(HeaderDisplayTest, IgnoresBlanksAroundThePathAndShowsFieldsUpToTheirFirstNull) {
    disk.addFile(pathA, Mp3Bytes(1000)
                            .header(1, commonHeader)
                            .end(tagOf(test::padded("Title", 30, '\0'), std::string("Art\0ist", 7)))
                            .content);
    read("  " + pathA + "  ");
    EXPECT_EQ(editor.Text4(2).text(), "Title");
    EXPECT_EQ(editor.Text4(1).text(), "Art");
    EXPECT_EQ(playlist.header.info().Title, test::padded("Title", 30, '\0'));
    EXPECT_EQ(editor.Text5.text(), "  " + pathA + "  ");
}

TEST_F(HeaderDisplayTest, DoesNothingForAPathThatIsEmptyOrBlank) {
    addMp3(pathA, "Title");
    read(pathA);
    const auto before = boxes4();
    for (const char* nothing : {"", "   "}) {
        read(nothing);
        EXPECT_EQ(boxes4(), before);
        EXPECT_EQ(editor.List1.listCount(), 12);
    }
}

TEST_F(HeaderDisplayTest, ClearsHeaderAndTagBeforeItShowsTheNoDataMessage) {
    addMp3(pathA, "Title");
    read(pathA);
    boxes.whileUp = [&](const ShownBox&) {
        EXPECT_THAT(boxes4(), ElementsAre("", "", "", "", "", "", "True", "48000 bytes"));
        EXPECT_THAT(lines(editor.List1), IsEmpty());
        EXPECT_EQ(editor.Text5.text(), "c:\\none.mp3");
    };
    read("c:\\none.mp3");
    EXPECT_THAT(boxes.shown, ElementsAre(ShownBox{"File contains no data"}));
}

TEST_F(HeaderDisplayTest, AFileThatCannotBeReadOrIsTooShortIsReportedToContainNoData) {
    std::vector<std::string> paths = {"c:\\none.mp3", "c:\\music", "z:\\a.mp3"};
    for (const std::size_t length : {0U, 1U, 99U}) {
        paths.push_back("c:\\" + std::to_string(length) + ".mp3");
        disk.addFile(paths.back(), std::string(length, 'x'));
    }
    disk.addFile(pathA, std::string(500, 'x'));
    disk.failWith(FakeFileSystem::Operation::fileLength, pathA, ErrorNumber::permissionDenied);
    paths.push_back(pathA);
    // The length of this file is known, but the file is not readable.
    addMp3(pathB, "Title B");
    disk.failWith(FakeFileSystem::Operation::openBinary, pathB, ErrorNumber::permissionDenied);
    paths.push_back(pathB);
    for (const std::string& path : paths) {
        boxes.shown.clear();
        read(path);
        EXPECT_THAT(boxes.shown, ElementsAre(ShownBox{"File contains no data"})) << path;
        EXPECT_EQ(editor.Text5.text(), "");
        EXPECT_EQ(editor.Text4(8).text(), "");
        EXPECT_THAT(lines(editor.List1), IsEmpty());
    }
}

TEST_F(HeaderDisplayTest, AFileOf100To255BytesShowsThePreviousFilesHeaderAndTag) {
    addMp3(pathA, "Title A");
    read(pathA);
    const auto header = lines(editor.List1);
    for (const std::size_t length : {100U, 127U, 128U, 255U}) {
        disk.addFile(pathB, std::string(length, 'x'));
        read(pathB);
        EXPECT_EQ(lines(editor.List1), header);
        EXPECT_EQ(editor.Text4(2).text(), "Title A");
        EXPECT_EQ(editor.Text4(8).text(), std::to_string(length) + " bytes");
    }
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(HeaderDisplayTest, AFileOf256BytesOrMoreShowsItsOwnHeaderAndTag) {
    for (const std::size_t length : {256U, 257U}) {
        addMp3(pathA, "Title A");
        read(pathA);
        disk.addFile(pathB, Mp3Bytes(length).header(1, 0xFFFBB000).end(tagOf("Title B")).content);
        read(pathB);
        EXPECT_EQ(line(0), "Bitrate            192") << length;
        EXPECT_EQ(editor.Text4(2).text(), "Title B") << length;
    }
}

TEST_F(HeaderDisplayTest, AnInvalidHeaderShowsThePreviousFilesHeaderBesideTheNewTag) {
    addMp3(pathA, "Title A");
    read(pathA);
    disk.addFile(pathB, Mp3Bytes(1000).header(1, 0xFFFB0000).end(tagOf("Title B", "B")).content);
    read(pathB);
    EXPECT_EQ(line(2), "Duration          3");
    EXPECT_EQ(editor.Text4(2).text(), "Title B");
}

TEST_F(HeaderDisplayTest, AFirstFileUnder256BytesShowsZerosAndEmptyTexts) {
    disk.addFile(pathA, std::string(100, 'x'));
    read(pathA);
    EXPECT_EQ(line(0), "Bitrate            0");
    EXPECT_EQ(line(8), "Mode               ");
    EXPECT_THAT(boxes4(), ElementsAre("", "", "", "", "", "0", "False", "100 bytes"));
}

TEST_F(HeaderDisplayTest, TheHeaderThatWasReadLastIsKeptWhenTheWindowCloses) {
    addMp3(pathA, "Title A");
    read(pathA);
    editor.unload();
    editor.load();
    disk.addFile(pathB, std::string(100, 'x'));
    read(pathB);
    EXPECT_EQ(line(0), "Bitrate            128");
}

TEST_F(HeaderDisplayTest, AGenreOf32ShowsThePreviousFilesGenre) {
    disk.addFile(
        pathA, Mp3Bytes(1000).header(1, commonHeader).end(tagOf("T", "", "", "", "", 17)).content);
    disk.addFile(
        pathB, Mp3Bytes(1000).header(1, commonHeader).end(tagOf("T", "", "", "", "", 32)).content);
    read(pathA);
    read(pathB);
    EXPECT_EQ(editor.Text4(6).text(), "17");
}

TEST_F(HeaderDisplayTest, YieldsOnceBetweenTheAnalysisAndTheDisplay) {
    addMp3(pathA, "Title A");
    bool seen = false;
    loop.atYield(1, [&] {
        seen = true;
        EXPECT_EQ(playlist.header.info().Title, "Title A");
        EXPECT_THAT(lines(editor.List1), IsEmpty());
        EXPECT_EQ(editor.Text4(2).text(), "");
        EXPECT_EQ(editor.Text4(8).text(), "48000 bytes");
    });
    read(pathA);
    EXPECT_TRUE(seen);
    EXPECT_EQ(loop.yieldCount(), 1);
}

TEST_F(HeaderDisplayTest, ReadingAnotherFileDuringTheYieldShows24LinesAndTheOtherFilesTag) {
    addMp3(pathA, "Title A");
    addMp3(pathB, "Title B");
    loop.atYield(1, [&] { read(pathB); });
    read(pathA);
    EXPECT_EQ(editor.List1.listCount(), 24);
    EXPECT_EQ(editor.Text4(2).text(), "Title B");
    EXPECT_EQ(editor.Text5.text(), pathB);
}

TEST_F(HeaderDisplayTest, ReadsOnlyTheHeadAndTheTailOfTheFile) {
    addMp3(pathA, "Title A");
    disk.log.clear();
    read(pathA);
    EXPECT_THAT(disk.log,
                ElementsAre("openBinary c:\\music\\a.mp3 read", // is the file readable?
                            "openBinary c:\\music\\a.mp3 read",
                            "readBinary c:\\music\\a.mp3 0 5047",
                            "readBinary c:\\music\\a.mp3 47744 256"));
}

// --- a file that changes between two steps ----------------------------------------------------

TEST_F(HeaderDisplayTest, AFileRemovedAfterItsLengthIsReadShowsThePreviousFilesHeader) {
    addMp3(pathA, "Title A");
    read(pathA);
    const auto header = lines(editor.List1);
    addMp3(pathB, "Title B");
    int openings = 0;
    disk.meanwhile = [&](const std::string& entry) {
        // The first opening tests whether the file is readable.
        if (entry == "openBinary " + pathB + " read" && ++openings == 2) {
            disk.meanwhile = nullptr;
            EXPECT_TRUE(disk.removeFile(pathB).ok());
        }
    };
    read(pathB);
    EXPECT_FALSE(disk.fileExists(pathB));
    EXPECT_EQ(lines(editor.List1), header);
    EXPECT_EQ(editor.Text4(2).text(), "Title A");
    EXPECT_EQ(editor.Text4(8).text(), "48000 bytes");
    EXPECT_EQ(editor.Text5.text(), pathB);
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(HeaderDisplayTest, AFileThatShrinksAfterItsHeaderIsReadShowsNoTag) {
    addMp3(pathA, "Title A");
    disk.meanwhile = [&](const std::string& entry) {
        if (entry == "readBinary " + pathA + " 47744 256") {
            disk.addFile(pathA, Mp3Bytes(300).header(1, commonHeader).content);
        }
    };
    read(pathA);
    EXPECT_EQ(line(0), "Bitrate            128");
    EXPECT_EQ(line(2), "Duration          0")
        << "the duration must be computed from the length of the shrunken file";
    EXPECT_THAT(boxes4(), ElementsAre("", "", "", "", "", "255", "False", "48000 bytes"));
}

TEST_F(HeaderDisplayTest, AFileRemovedWhileItsTagIsReadShowsThePreviousFilesHeader) {
    addMp3(pathA, "Title A");
    disk.addFile(pathB, Mp3Bytes(2000).header(1, 0xFFFBB000).end(tagOf("Title B")).content);
    read(pathB);
    EXPECT_EQ(line(0), "Bitrate            192");
    disk.meanwhile = [&](const std::string& entry) {
        if (entry == "readBinary " + pathA + " 47744 256") {
            disk.meanwhile = nullptr;
            EXPECT_TRUE(disk.removeFile(pathA).ok());
        }
    };
    read(pathA);
    EXPECT_EQ(line(0), "Bitrate            192");
    EXPECT_EQ(editor.Text4(2).text(), "Title A");
}

TEST_F(HeaderDisplayTest, AFileRemovedDuringTheYieldShowsTheHeaderThatWasRead) {
    addMp3(pathA, "Title A");
    loop.atYield(1, test::mustRun([&] { EXPECT_TRUE(disk.removeFile(pathA).ok()); }));
    read(pathA);
    EXPECT_EQ(line(0), "Bitrate            128");
    EXPECT_EQ(editor.Text4(2).text(), "Title A");
    EXPECT_EQ(editor.Text5.text(), pathA);
    EXPECT_THAT(boxes.shown, IsEmpty());
}

// --- browsing --------------------------------------------------------------------------------

TEST_F(HeaderDisplayTest, MakesTheChosenFileTheEditedFileAndReadsIt) {
    addMp3(pathA, "Title A");
    dialog.choices = {pathA};
    editor.Text5.setText("  " + pathB + " ");
    editor.cmdHdr1.click();
    ASSERT_EQ(dialog.opened.size(), 1U);
    EXPECT_EQ(dialog.opened[0].initialFolder, pathB);
    EXPECT_EQ(dialog.opened[0].fileName, "");
    EXPECT_EQ(editor.Text5.text(), pathA);
    EXPECT_EQ(editor.Text4(8).text(), "48000 bytes");
    EXPECT_EQ(editor.Text4(2).text(), "Title A");
    EXPECT_THAT(pointer.shapes, ElementsAre(Pointer::hourglass, Pointer::normal));
}

TEST_F(HeaderDisplayTest, ShowsTheHourglassWhileTheDialogIsOpenAndWhileTheFileIsRead) {
    addMp3(pathA, "Title A");
    dialog.choices = {pathA};
    dialog.whileUp =
        test::mustRun([&] { EXPECT_THAT(pointer.shapes, ElementsAre(Pointer::hourglass)); });
    loop.atYield(
        1, test::mustRun([&] { EXPECT_THAT(pointer.shapes, ElementsAre(Pointer::hourglass)); }));
    editor.cmdHdr1.click();
    EXPECT_EQ(pointer.shapes.back(), Pointer::normal);
}

TEST_F(HeaderDisplayTest, ACancelBeforeAnyChoiceDoesNothing) {
    addMp3(pathA, "Title A");
    editor.Text5.setText(pathA);
    editor.cmdHdr1.click();
    EXPECT_EQ(editor.List1.listCount(), 0);
    EXPECT_EQ(editor.Text5.text(), pathA);
    EXPECT_THAT(pointer.shapes, ElementsAre(Pointer::hourglass, Pointer::normal));
}

TEST_F(HeaderDisplayTest, ACancelAfterAnEarlierChoiceReadsTheEditedFile) {
    addMp3(pathA, "Title A");
    addMp3(pathB, "Title B");
    dialog.choices = {pathA, std::nullopt};
    editor.cmdHdr1.click();
    editor.Text5.setText(pathB);
    editor.cmdHdr1.click();
    EXPECT_EQ(dialog.opened.back().fileName, pathA);
    EXPECT_EQ(editor.Text5.text(), pathB);
    EXPECT_EQ(editor.Text4(2).text(), "Title B");
}

TEST_F(HeaderDisplayTest, TheFileNameOfAnEarlierDialogIsForgottenWhenTheWindowIsReloaded) {
    addMp3(pathA, "Title A");
    dialog.choices = {pathA, std::nullopt};
    editor.cmdHdr1.click();
    editor.unload();
    editor.load();
    editor.Text5.setText(pathA);
    editor.cmdHdr1.click();
    EXPECT_EQ(editor.List1.listCount(), 0);
}

TEST_F(HeaderDisplayTest, IfTheDialogFailsThePreviouslyChosenFileBecomesTheEditedFile) {
    addMp3(pathA, "Title A");
    dialog.choices = {pathA};
    editor.cmdHdr1.click();
    editor.Text5.setText(pathB);
    dialog.failure = Error{ErrorNumber::badFileName, "Bad file name or number"};
    editor.cmdHdr1.click();
    EXPECT_EQ(editor.Text5.text(), pathA);
}

TEST_F(HeaderDisplayTest, AChosenFileThatIsMissingIsReportedToContainNoData) {
    dialog.choices = {pathA};
    editor.Text4(8).setText("before");
    editor.cmdHdr1.click();
    EXPECT_THAT(boxes.texts(), ElementsAre("File contains no data"));
    EXPECT_EQ(editor.Text4(8).text(), "before");
    EXPECT_EQ(editor.Text5.text(), "");
    EXPECT_EQ(pointer.shapes.back(), Pointer::normal);
}

TEST_F(HeaderDisplayTest, OfAChosenFileThatIsTooShortOnlyTheLengthIsShown) {
    disk.addFile(pathA, std::string(99, 'x'));
    dialog.choices = {pathA};
    editor.cmdHdr1.click();
    EXPECT_THAT(boxes.texts(), ElementsAre("File contains no data"));
    EXPECT_EQ(editor.Text4(8).text(), "99 bytes");
    EXPECT_EQ(editor.Text5.text(), "");
}

// The handler of cmdHdr2 clears List1 twice: before and after it reads the file.
TEST_F(HeaderDisplayTest, LinesThatWereAddedDuringTheReadingAreCleared) {
    addMp3(pathA, "Title A");
    disk.meanwhile = [&](const std::string& entry) {
        if (entry == "readBinary " + pathA + " 47744 256") {
            editor.List1.addItem("added");
        }
    };
    read(pathA);
    EXPECT_EQ(editor.List1.listCount(), 12);
    EXPECT_EQ(line(0), "Bitrate            128");
}

} // namespace
} // namespace sonarith
