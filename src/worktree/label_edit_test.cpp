// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/label_edit.h"

#include "support/work_tree_world.h"

namespace sonarith {
namespace {

struct LabelEditTest : test::WorkTreeWorld {
    LabelEditTest() { tree.showfiles(); }

    bool refused(const std::string& text) {
        const NodeRef added =
            addItem(view, node("WAV Files"), "p " + std::to_string(view.count()), text).value();
        view.setSelectedItem(added).passOver();
        bool cancel = false;
        labels.TreeView1_BeforeLabelEdit(cancel);
        return cancel;
    }
};

TEST_F(LabelEditTest, FilesMayBeEditedWhoseEndingIsInOneCase) {
    for (const char* text : {"a.wav", "a.WAV", "a.mp3", "a.MP3", "c:\\x\\a.wav", ".wav"}) {
        EXPECT_FALSE(refused(text)) << text;
    }
}

TEST_F(LabelEditTest, AnythingElseMayNot) {
    for (const char* text : {"a.Wav", "a.wAV", "a.Mp3", "a.mP3", "awav", "a.ogg", "a.wav ", "wav",
                             "", "Track  1 - 00:03:05"}) {
        EXPECT_TRUE(refused(text)) << text;
    }
}

TEST_F(LabelEditTest, GroupsAndCollectionsMayNot) {
    for (const char* text : {"CD Tracks", "Selected Tracks", "WAV Files", "MP3 Files Folder"}) {
        press(node(text));
        EXPECT_EQ(view.editedNode(), nullptr) << text;
    }
}

TEST_F(LabelEditTest, WithNothingSelectedItIsRefused) {
    bool cancel = false;
    labels.TreeView1_BeforeLabelEdit(cancel);
    EXPECT_TRUE(cancel);
}

TEST_F(LabelEditTest, ANewLabelIsRefusedSoThatTheOldOneStays) {
    const NodeRef file = addItem(view, node("WAV Files"), "p a", "a.wav").value();
    press(file);
    ASSERT_EQ(view.editedNode(), file);
    view.finishLabelEdit("b.wav");
    EXPECT_EQ(file->text(), "a.wav");
    EXPECT_EQ(view.editedNode(), nullptr);
}

} // namespace
} // namespace sonarith
