// SPDX-License-Identifier: GPL-3.0-or-later
#include "playlist/tag_editor.h"

#include <gmock/gmock.h>

#include "support/playlist_world.h"

namespace sonarith {
namespace {

using test::commonHeader;
using test::FakeFileSystem;
using test::Mp3Bytes;
using test::padded;
using test::tagOf;
using testing::ElementsAre;
using testing::IsEmpty;

class TagEditorTest : public test::PlaylistWorld {
  protected:
    TagEditorTest() { editor.load(); }

    void fill(const std::vector<std::string>& texts) {
        for (std::size_t i = 0; i < texts.size(); ++i) {
            editor.Text4(i + 1).setText(texts[i]);
        }
    }
    /// The content of a sound file without a tag.
    static std::string sound(std::size_t length) {
        std::string bytes;
        for (std::size_t i = 0; i < length; ++i) {
            bytes += static_cast<char>('0' + i % 40);
        }
        return bytes;
    }
    void write(const std::string& path) {
        editor.Text5.setText(path);
        editor.cmdTag.click();
    }
    [[nodiscard]] std::string end(const std::string& path) const {
        const std::string content = disk.content(path).value_or("");
        return content.substr(content.size() < 128 ? 0 : content.size() - 128);
    }
};

TEST_F(TagEditorTest, WritesTheBoxesOverTheLast128BytesInOneCall) {
    disk.addFile(pathA, sound(1000));
    fill({"Artist", "Title", "Album", "1999", "Comment", "17"});
    write("  " + pathA + " ");
    EXPECT_EQ(disk.content(pathA),
              sound(872) + tagOf("Artist", "Title", "Album", "1999", "Comment", 17));
    EXPECT_THAT(disk.log, ElementsAre("openBinary c:\\music\\a.mp3 write",
                                      "writeBinary c:\\music\\a.mp3 872 128"));
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_EQ(loop.yieldCount(), 0);
    EXPECT_EQ(editor.Text5.text(), "  " + pathA + " ");
}

TEST_F(TagEditorTest, AReadFollowedByAWriteSwapsTitleAndArtistEachTime) {
    disk.addFile(pathA, Mp3Bytes(1000).header(1, commonHeader).end(tagOf("T", "A")).content);
    editor.Text5.setText(pathA);
    for (const bool exchanged : {true, false, true}) {
        editor.cmdHdr2.click();
        EXPECT_EQ(editor.Text4(1).text(), exchanged ? "A" : "T");
        EXPECT_EQ(editor.Text4(2).text(), exchanged ? "T" : "A");
        editor.cmdTag.click();
        EXPECT_EQ(end(pathA), exchanged ? tagOf("A", "T") : tagOf("T", "A"));
    }
}

TEST_F(TagEditorTest, WritingATagChangesNoBoxAndNoHeaderLine) {
    disk.addFile(pathA, sound(1000));
    fill({"a", "b", "c", "d", "e", "1", "seven", "eight"});
    editor.List1.addItem("line");
    write(pathA);
    EXPECT_THAT(boxes4(), ElementsAre("a", "b", "c", "d", "e", "1", "seven", "eight"));
    EXPECT_THAT(lines(editor.List1), ElementsAre("line"));
    EXPECT_EQ(editor.Text5.text(), pathA);
}

TEST_F(TagEditorTest, DoesNothingIfThePathIsEmptyOrBlank) {
    for (const char* nothing : {"", "   "}) {
        write(nothing);
        EXPECT_THAT(disk.log, IsEmpty());
    }
}

TEST_F(TagEditorTest, OverwritesAShortFileFromItsStart) {
    fill({"Artist"});
    for (const std::size_t length : {0U, 1U, 99U, 100U, 127U}) {
        disk.addFile(pathA, sound(length));
        write(pathA);
        EXPECT_EQ(disk.content(pathA), tagOf("Artist")) << length << " bytes";
    }
}

TEST_F(TagEditorTest, OverwritesTheEndOfAFileOf128BytesOrMore) {
    fill({"Artist"});
    for (const std::size_t length : {128U, 129U, 255U, 256U, 257U}) {
        disk.addFile(pathA, sound(length));
        write(pathA);
        EXPECT_EQ(disk.content(pathA), sound(length - 128) + tagOf("Artist")) << length << " bytes";
    }
}

TEST_F(TagEditorTest, CreatesAMissingFile) {
    fill({"Artist"});
    disk.addFolder("c:\\music");
    write("c:\\music\\new.mp3");
    EXPECT_EQ(disk.content("c:\\music\\new.mp3"), tagOf("Artist"));
}

TEST_F(TagEditorTest, AFileWithoutATagLosesItsLastBytesAndHasATagAtTheNextRead) {
    disk.addFile(pathA, Mp3Bytes(1000).header(1, commonHeader).content);
    fill({"", "", "", "", "", "255"});
    write(pathA);
    editor.cmdHdr2.click();
    EXPECT_EQ(editor.Text4(7).text(), "True");
    EXPECT_EQ(editor.Text4(6).text(), "255");
    EXPECT_EQ(disk.content(pathA)->size(), 1000U);
}

TEST_F(TagEditorTest, WritesAGenreFrom0To255AsAByteAndAnyOtherGenreAs0) {
    struct Row {
        const char* text;
        int code;
    };
    for (const Row& row :
         {Row{"0", 0}, Row{"255", 255}, Row{" 17 ", 17}, Row{"12.5", 12}, Row{"1e2", 100},
          Row{"256", 0}, Row{"257", 0}, Row{"65", 65}, Row{"-1", 0}, Row{"", 0}, Row{"Rock", 0},
          Row{"17x", 0}, Row{"99999999999", 0}, Row{"1e300", 0}}) {
        disk.addFile(pathA, sound(500));
        editor.Text4(6).setText(row.text);
        write(pathA);
        EXPECT_EQ(static_cast<unsigned char>(end(pathA)[127]), row.code) << row.text;
    }
}

TEST_F(TagEditorTest, AnEmptyGenreIsReadBackAs0) {
    disk.addFile(pathA, Mp3Bytes(1000).header(1, commonHeader).content);
    write(pathA);
    editor.cmdHdr2.click();
    EXPECT_EQ(editor.Text4(6).text(), "0");
}

TEST_F(TagEditorTest, TheCommentsLastByteIsABlankUnlessTheUserTypes30Characters) {
    const std::string thirty = "123456789012345678901234567890";
    disk.addFile(
        pathA, Mp3Bytes(1000).header(1, commonHeader).end(tagOf("T", "A", "", "", thirty)).content);
    editor.Text5.setText(pathA);
    editor.cmdHdr2.click();
    EXPECT_EQ(editor.Text4(5).text(), thirty.substr(0, 29));
    editor.cmdTag.click();
    EXPECT_EQ(end(pathA).substr(97, 30), thirty.substr(0, 29) + " ");
    editor.Text4(5).setText(thirty + "1");
    editor.cmdTag.click();
    EXPECT_EQ(end(pathA).substr(97, 30), thirty);
}

TEST_F(TagEditorTest, WritesCharactersOutsideTheCodePageAsQuestionMarks) {
    disk.addFile(pathA, sound(500));
    fill({"Zu\xcc\x88rich", "\xe4\xb8\xad!", "", "20"});
    write(pathA);
    EXPECT_EQ(end(pathA), tagOf("Z\xfcrich", "?!", "", "20"));
}

TEST_F(TagEditorTest, AReadAndAWriteKeepEveryByteValueFrom1To255) {
    for (int first = 1; first < 256; first += 29) {
        std::string field;
        for (int code = first; code < first + 29; ++code) {
            field += code > 255 ? 'x' : static_cast<char>(code);
        }
        field += 'x';
        const std::string tag =
            tagOf(field, field, field, field.substr(0, 3) + "x", field.substr(0, 28) + "x", 1);
        disk.addFile(pathA, Mp3Bytes(1000).header(1, commonHeader).end(tag).content);
        editor.Text5.setText(pathA);
        editor.cmdHdr2.click();
        editor.cmdTag.click();
        EXPECT_EQ(end(pathA), tag) << "the fields begin with the character code " << first;
    }
}

TEST_F(TagEditorTest, AFileThatShrankSinceItWasReadGetsTheTagAtItsNewEnd) {
    for (const std::size_t length : {50U, 128U, 1000U}) {
        addMp3(pathA, "Title");
        editor.Text5.setText(pathA);
        editor.cmdHdr2.click();
        disk.addFile(pathA, sound(length));
        editor.cmdTag.click();
        const std::string kept = length < 128 ? "" : sound(length - 128);
        EXPECT_EQ(disk.content(pathA), kept + tagOf(pathA, "Title")) << length << " bytes";
        EXPECT_EQ(editor.Text4(8).text(), "48000 bytes")
            << "writing the tag must not read the file again";
    }
}

TEST_F(TagEditorTest, AFileDeletedAfterItWasReadIsCreatedWithTheTagAlone) {
    addMp3(pathA, "Title");
    editor.Text5.setText(pathA);
    editor.cmdHdr2.click();
    EXPECT_TRUE(disk.removeFile(pathA).ok());
    editor.cmdTag.click();
    EXPECT_EQ(disk.content(pathA), tagOf(pathA, "Title"));
}

TEST_F(TagEditorTest, AFileDeletedAfterItWasOpenedIsNotCreatedAgain) {
    disk.addFile(pathA, sound(500));
    disk.meanwhile = [&](const std::string& entry) {
        if (entry.starts_with("writeBinary ")) {
            disk.meanwhile = nullptr;
            EXPECT_TRUE(disk.removeFile(pathA).ok());
        }
    };
    write(pathA);
    EXPECT_FALSE(disk.fileExists(pathA));
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(TagEditorTest, AFileThatCannotBeWrittenIsNotChanged) {
    fill({"Artist"});
    for (const auto operation :
         {FakeFileSystem::Operation::openBinary, FakeFileSystem::Operation::writeBinary}) {
        disk.addFile(pathA, sound(500));
        disk.failWith(operation, pathA, ErrorNumber::permissionDenied);
        write(pathA);
        EXPECT_EQ(disk.content(pathA), sound(500));
        disk.stopFailing();
    }
    write("c:\\music");
    write("z:\\nowhere\\a.mp3");
    EXPECT_THAT(boxes.shown, IsEmpty());
}

// If an unknown length counted as 0, the tag would overwrite the first 128 bytes of the sound.
TEST_F(TagEditorTest, AFileWhoseLengthIsUnknownIsNotChanged) {
    disk.addFile(pathA, sound(500));
    disk.failWith(FakeFileSystem::Operation::lengthOfOpenFile, pathA,
                  ErrorNumber::deviceUnavailable);
    write(pathA);
    EXPECT_EQ(disk.content(pathA), sound(500));
    EXPECT_THAT(disk.log, ElementsAre("openBinary c:\\music\\a.mp3 write"));
}

} // namespace
} // namespace sonarith
