// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/label_edit.h"

#include "support/work_tree_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Fills the tree with files, shown without their folders.
struct LabelEditTest : test::WorkTreeWorld {
    LabelEditTest() {
        process.settings.showFullPath = 0;
        for (const char* path : {"c:\\music\\a.wav", "c:\\music\\taken.wav", "c:\\music\\b.mp3"}) {
            disk.addFile(path, path);
        }
        finder.files[destination]["wav"] = {"c:\\music\\taken.wav", "c:\\music\\a.wav"};
        finder.files[destination]["mp3"] = {"c:\\music\\b.mp3"};
        tree.showfiles();
    }

    /// Edits a label as a user does: presses the node, types, and ends with Return.
    void relabel(const std::string& text, const std::string& newText) {
        press(node(text));
        ASSERT_EQ(view.editedNode(), node(text)) << text;
        view.finishLabelEdit(newText);
    }
    [[nodiscard]] std::string contentOf(const std::string& path) const {
        return disk.content(path).value_or("none");
    }
    bool refused(const std::string& text) {
        const NodeRef added =
            addItem(view, node("WAV Files"), "p " + std::to_string(view.count()), text).value();
        view.setSelectedItem(added).passOver();
        bool cancel = false;
        labels.TreeView1_BeforeLabelEdit(cancel);
        return cancel;
    }
};

// --- which labels may be edited ----------------------------------------------------------------

TEST_F(LabelEditTest, LabelsThatEndInWavOrMp3InLowerOrUpperCaseMayBeEdited) {
    for (const char* text : {"a.wav", "a.WAV", "a.mp3", "a.MP3", "c:\\x\\a.wav", ".wav"}) {
        EXPECT_FALSE(refused(text)) << text;
    }
}

TEST_F(LabelEditTest, LabelsWithAMixedCaseEndingOrAnyOtherEndingMayNotBeEdited) {
    for (const char* text : {"a.Wav", "a.wAV", "a.Mp3", "a.mP3", "awav", "a.ogg", "a.wav ", "wav",
                             "", "Track  1 - 00:03:05"}) {
        EXPECT_TRUE(refused(text)) << text;
    }
}

TEST_F(LabelEditTest, GroupsAndCollectionsMayNotBeEdited) {
    for (const char* text : {"CD Tracks", "Selected Tracks", "WAV Files", "MP3 Files Folder"}) {
        press(node(text));
        EXPECT_EQ(view.editedNode(), nullptr) << text;
    }
}

TEST_F(LabelEditTest, WithNothingSelectedTheEditIsRefused) {
    bool cancel = false;
    labels.TreeView1_BeforeLabelEdit(cancel);
    EXPECT_TRUE(cancel);
}

// --- after an edit ------------------------------------------------------------------------------

TEST_F(LabelEditTest, ANewNameChangesTheFileAndTheListEntryAndTheLabelButNotTheNodesKey) {
    const NodeRef file = node("a.wav");
    const std::string key = file->key();
    relabel("a.wav", "New Name.wav");
    EXPECT_EQ(contentOf("c:\\music\\New Name.wav"), "c:\\music\\a.wav");
    EXPECT_FALSE(disk.fileExists("c:\\music\\a.wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\New Name.wav", "c:\\music\\taken.wav"));
    EXPECT_EQ(file->text(), "New Name.wav");
    EXPECT_EQ(file->key(), key);
    EXPECT_EQ(view.selectedItem(), file);
    EXPECT_EQ(view.dropHighlight(), file);
    EXPECT_EQ(view.editedNode(), nullptr);
}

TEST_F(LabelEditTest, ANewNameSetsDragNodeAndClearsLabelEditGuard) {
    press(node("a.wav"));
    drag.DragNode = nullptr;
    drag.LabelEditGuard = "x";
    view.finishLabelEdit("n.wav");
    EXPECT_EQ(drag.DragNode, node("n.wav"));
    EXPECT_EQ(drag.LabelEditGuard, "");
}

TEST_F(LabelEditTest, TheEntryOfAnMp3FileIsFoundInEitherListOfMp3Files) {
    relabel("b.mp3", "n.mp3");
    EXPECT_THAT(lines(form.List2), ElementsAre("c:\\music\\n.mp3"));
    EXPECT_TRUE(disk.fileExists("c:\\music\\n.mp3"));
    form.List2.clear();
    fill(form.List4, {"x", "c:\\music\\n.mp3"});
    relabel("n.mp3", "m.mp3");
    EXPECT_THAT(lines(form.List4), ElementsAre("x", "c:\\music\\m.mp3"));
}

TEST_F(LabelEditTest, OnlyTheFirstOfTwoListEntriesWithTheOldNameIsRenamed) {
    disk.addFile("d:\\a.wav", "d");
    fill(form.List1, {"c:\\music\\taken.wav"});
    fill(form.List5, {"d:\\a.wav", "c:\\music\\a.wav"});
    relabel("a.wav", "n.wav");
    EXPECT_THAT(lines(form.List5), ElementsAre("d:\\n.wav", "c:\\music\\a.wav"));
    EXPECT_TRUE(disk.fileExists("c:\\music\\a.wav"));
}

TEST_F(LabelEditTest, AnUpperCaseEndingMayBecomeALowerCaseEnding) {
    disk.addFile("c:\\music\\Loud.WAV", "loud");
    fill(form.List1, {"c:\\music\\Loud.WAV"});
    addItem(view, node("WAV Files"), "p loud", "Loud.WAV").passOver();
    relabel("Loud.WAV", "quiet.wav");
    EXPECT_EQ(contentOf("c:\\music\\quiet.wav"), "loud");
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\quiet.wav"));
    EXPECT_EQ(node("quiet.wav")->key(), "p loud");
}

TEST_F(LabelEditTest, AChangeOfOnlyTheCaseChangesOnlyTheLabel) {
    relabel("a.wav", "A.wav");
    EXPECT_THAT(disk.log, IsEmpty());
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav", "c:\\music\\taken.wav"));
    EXPECT_NE(node("A.wav"), nullptr);
}

TEST_F(LabelEditTest, AChangeOfTheEndingFromWavToMp3ChangesOnlyTheLabel) {
    relabel("a.wav", "a.mp3");
    EXPECT_THAT(disk.log, IsEmpty());
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav", "c:\\music\\taken.wav"));
    EXPECT_NE(node("a.mp3"), nullptr);
}

TEST_F(LabelEditTest, AnEndingThatIsNeitherWavNorMp3ChangesOnlyTheLabelAndNotDragNode) {
    const NodeRef file = node("a.wav");
    press(file);
    drag.DragNode = nullptr;
    view.finishLabelEdit("a.ogg");
    EXPECT_THAT(disk.log, IsEmpty());
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav", "c:\\music\\taken.wav"));
    EXPECT_EQ(file->text(), "a.ogg");
    EXPECT_EQ(drag.DragNode, nullptr);
    EXPECT_EQ(view.editedNode(), nullptr);
}

TEST_F(LabelEditTest, AnEmptyLabelChangesNeitherFileNorEntry) {
    const NodeRef file = node("a.wav");
    relabel("a.wav", "");
    EXPECT_THAT(disk.log, IsEmpty());
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav", "c:\\music\\taken.wav"));
    EXPECT_EQ(file->text(), "");
    EXPECT_EQ(view.editedNode(), nullptr);
    // Such a node no longer counts as a file: it can be neither renamed nor removed.
    press(file);
    EXPECT_EQ(view.editedNode(), nullptr);
    form.mnuRemoveDelete.click();
    EXPECT_FALSE(file->removed());
    EXPECT_TRUE(disk.fileExists("c:\\music\\a.wav"));
}

TEST_F(LabelEditTest, ANewNameWithAMixedCaseEndingRenamesTheFileButDoesNotSetDragNode) {
    press(node("a.wav"));
    drag.DragNode = nullptr;
    view.finishLabelEdit("n.Wav");
    EXPECT_TRUE(disk.fileExists("c:\\music\\n.Wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\n.Wav", "c:\\music\\taken.wav"));
    EXPECT_EQ(drag.DragNode, nullptr);
    EXPECT_NE(node("n.Wav"), nullptr);
}

TEST_F(LabelEditTest, ATakenNameChangesNothingAndOpensTheEditorAgain) {
    const NodeRef file = node("a.wav");
    relabel("a.wav", "taken.wav");
    EXPECT_EQ(contentOf("c:\\music\\taken.wav"), "c:\\music\\taken.wav");
    EXPECT_EQ(contentOf("c:\\music\\a.wav"), "c:\\music\\a.wav");
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav", "c:\\music\\taken.wav"));
    EXPECT_EQ(file->text(), "a.wav");
    EXPECT_EQ(view.editedNode(), file);
    EXPECT_EQ(view.selectedItem(), file);
    EXPECT_EQ(view.dropHighlight(), file);
    // The user tries another name.
    view.finishLabelEdit("free.wav");
    EXPECT_TRUE(disk.fileExists("c:\\music\\free.wav"));
    EXPECT_EQ(view.editedNode(), nullptr);
}

TEST_F(LabelEditTest, ARenameThatFailsSelectsAndHighlightsDragNode) {
    press(node("a.wav"));
    drag.DragNode = node("b.mp3");
    view.finishLabelEdit("taken.wav");
    EXPECT_EQ(view.editedNode(), node("a.wav"));
    EXPECT_EQ(view.selectedItem(), node("b.mp3"));
    EXPECT_EQ(view.dropHighlight(), node("b.mp3"));
}

TEST_F(LabelEditTest, NothingIsRenamedIfTheTreeWasEmptiedDuringTheEdit) {
    press(node("a.wav"));
    bool cancel = false;
    view.clear();
    labels.TreeView1_AfterLabelEdit(cancel, "n.wav");
    EXPECT_TRUE(cancel);
    EXPECT_THAT(disk.log, IsEmpty());
}

TEST_F(LabelEditTest, AFullPathAsTheNewNameFailsAndOpensTheEditorAgain) {
    process.settings.showFullPath = 1;
    view.clear();
    tree.showfiles();
    relabel("c:\\music\\a.wav", "c:\\music\\n.wav");
    EXPECT_THAT(disk.log, ElementsAre("rename c:\\music\\a.wav c:\\music\\c:\\music\\n.wav"));
    EXPECT_EQ(view.editedNode(), node("c:\\music\\a.wav"));
    EXPECT_TRUE(disk.fileExists("c:\\music\\a.wav"));
}

TEST_F(LabelEditTest, AnOldNameWithABracketIsAPatternAndDoesNotMatchItsOwnEntry) {
    disk.addFile("c:\\music\\x[1].wav", "x");
    fill(form.List1, {"c:\\music\\x[1].wav"});
    addItem(view, node("WAV Files"), "p x", "x[1].wav").passOver();
    relabel("x[1].wav", "n.wav");
    EXPECT_THAT(disk.log, IsEmpty());
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\x[1].wav"));
    EXPECT_NE(node("n.wav"), nullptr);
}

} // namespace
} // namespace sonarith
