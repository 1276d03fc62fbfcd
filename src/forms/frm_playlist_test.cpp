// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/frm_playlist.h"

#include <gmock/gmock.h>

#include "support/fake_machine.h"

namespace sonarith {
namespace {

class FrmPlayListTest : public testing::Test, protected test::FakeMachine {
  protected:
    FrmPlayList editor{mp3};
};

TEST_F(FrmPlayListTest, StartsWithTheDesignedTexts) {
    EXPECT_EQ(editor.caption(), "Playlist Editor");
    EXPECT_EQ(editor.Playlist.caption(), "MP3 PlayList ");
    EXPECT_EQ(editor.Command20.caption(), "Add to PlayList");
    EXPECT_EQ(editor.Command6.caption(), "Delist");
    EXPECT_EQ(editor.Check11.caption(), "Click on a file to add it to the Files List");
    EXPECT_EQ(editor.Check11.value(), 0);
    EXPECT_EQ(editor.cmdHdr1.caption(), "...");
    EXPECT_EQ(editor.cmdHdr2.caption(), "Read header");
    EXPECT_EQ(editor.Command2.caption(), "Rename File");
    EXPECT_EQ(editor.Command10.caption(), "Delete  File");
    EXPECT_EQ(editor.cmdTag.caption(), " Write tag");
    EXPECT_THAT(FrmPlayList::text4Labels,
                testing::ElementsAre("Artist", "Title", "Album", "Year", "Comment", "Genre",
                                     "HasTag", "Length"));
    EXPECT_EQ(editor.Text5.text(), "");
    for (std::size_t number = 1; number <= FrmPlayList::text4Count; ++number) {
        EXPECT_EQ(editor.Text4(number).text(), "");
        EXPECT_EQ(editor.Text4(number).name(), "Text4(" + std::to_string(number) + ")");
        EXPECT_EQ(editor.Text4(number).typingLimit(), 0);
    }
}

TEST_F(FrmPlayListTest, HasItsToolTips) {
    EXPECT_EQ(editor.List2.toolTip(), "PlayList");
    EXPECT_EQ(editor.Text5.toolTip(), "Currently editing this file");
    EXPECT_EQ(editor.Command6.toolTip(), "Remove File from PlayList");
    EXPECT_EQ(editor.Command11.toolTip(), "Play");
    EXPECT_EQ(editor.Command12.toolTip(), "Stop");
    EXPECT_EQ(editor.cmdHdr2.toolTip(), "Read Header");
    EXPECT_EQ(editor.Command10.toolTip(), "Delete File");
    EXPECT_EQ(editor.List1.toolTip(), "Header Info");
}

TEST_F(FrmPlayListTest, HidesItsScratchList) {
    EXPECT_FALSE(editor.List3.visible());
    EXPECT_TRUE(editor.List2.visible());
    EXPECT_TRUE(editor.List1.visible());
}

TEST_F(FrmPlayListTest, HasItsOwnMp3ControlAndReplacesItWhenUnloaded) {
    EXPECT_EQ(mp3.created, 1);
    editor.load();
    editor.unload();
    EXPECT_EQ(mp3.created, 2);
}

} // namespace
} // namespace sonarith
