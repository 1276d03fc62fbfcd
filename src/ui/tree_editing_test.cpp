// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the editing of the work tree by mouse and keys. The events of the widget run the handlers
// of the logic, and the tests check the results of these handlers.
#include "support/tree_editing_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using TreeEditingTest = test::TreeEditingWorld;

TEST_F(TreeEditingTest, ADragMovesAnMp3FileToTheGroupUnderThePointerWhileTheButtonIsStillDown) {
    pressAt("a.mp3");
    moveTo("Selected MP3 Files");
    EXPECT_THAT(childrenOf("Selected MP3 Files"), ElementsAre("a.mp3"));
    EXPECT_THAT(lines(form.List4), ElementsAre("c:\\music\\a.mp3"));
    EXPECT_EQ(view.dropHighlight(), node("Selected MP3 Files"));
    EXPECT_EQ(editor(), nullptr);
    releaseAt("Selected MP3 Files");
    EXPECT_EQ(view.dropHighlight(), nullptr);
    EXPECT_EQ(drag.DragNode, nullptr);

    pressAt("a.mp3");
    moveTo("MP3 Files");
    EXPECT_THAT(childrenOf("Selected MP3 Files"), IsEmpty());
    releaseAt("MP3 Files");
    EXPECT_THAT(childrenOf("MP3 Files"), ElementsAre("b.mp3", "a.mp3"));
    EXPECT_THAT(lines(form.List4), IsEmpty());
}

TEST_F(TreeEditingTest, AFileCanBeRenamedInTheTree) {
    pressAt("a.wav");
    releaseAt("a.wav");
    typeAndReturn("new.wav");
    EXPECT_TRUE(disk.fileExists("c:\\music\\new.wav"));
    EXPECT_NE(node("new.wav"), nullptr);
    EXPECT_EQ(editor(), nullptr);
}

TEST_F(TreeEditingTest, ARefusedNameOpensTheEditorAgainWithTheOldLabel) {
    pressAt("a.wav");
    releaseAt("a.wav");
    typeAndReturn("b.wav");
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(editor()->text(), "a.wav");
    EXPECT_EQ(disk.content("c:\\music\\b.wav"), "c:\\music\\b.wav");
    typeAndReturn("c.wav");
    EXPECT_EQ(disk.content("c:\\music\\c.wav"), "c:\\music\\a.wav");
    EXPECT_EQ(editor(), nullptr);
}

TEST_F(TreeEditingTest, APressOnAnotherNodeSelectsThatNodeEvenIfTheTypedNameIsRefused) {
    pressAt("a.wav");
    releaseAt("a.wav");
    ASSERT_NE(editor(), nullptr);
    editor()->setText("b.wav");
    pressAt("b.mp3");
    releaseAt("b.mp3");
    EXPECT_EQ(disk.content("c:\\music\\a.wav"), "c:\\music\\a.wav");
    EXPECT_EQ(disk.content("c:\\music\\b.wav"), "c:\\music\\b.wav");
    EXPECT_THAT(childrenOf("WAV Files"), testing::UnorderedElementsAre("a.wav", "b.wav"));
    EXPECT_EQ(view.selectedItem(), node("b.mp3"));
    EXPECT_EQ(drag.DragNode, node("b.mp3"));
    EXPECT_EQ(form.Label3.caption(), "Next Action:  Process  b.mp3");
    // The editor now edits the name of the other node.
    EXPECT_EQ(view.editedNode(), node("b.mp3"));
    typeAndReturn("c.mp3");
    EXPECT_EQ(disk.content("c:\\music\\c.mp3"), "c:\\music\\b.mp3");
}

TEST_F(TreeEditingTest, AnEditByF2RenamesTheCurrentNodeEvenAfterARefusedName) {
    pressAt("a.wav");
    releaseAt("a.wav");
    QTest::keyClick(editor(), Qt::Key_Escape);
    auto& model = static_cast<TreeModel&>(*widget().model());
    widget().setCurrentIndex(model.indexOf(node("b.wav")));
    QTest::keyClick(&widget(), Qt::Key_F2);
    typeAndReturn("a.wav");
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(view.selectedItem(), node("b.wav"));
    typeAndReturn("c.wav");
    EXPECT_EQ(disk.content("c:\\music\\c.wav"), "c:\\music\\b.wav");
    EXPECT_EQ(disk.content("c:\\music\\a.wav"), "c:\\music\\a.wav");
}

TEST_F(TreeEditingTest, ARightPressOnAnotherNodeClosesAReopenedEditor) {
    pressAt("a.wav");
    releaseAt("a.wav");
    typeAndReturn("b.wav");
    ASSERT_NE(editor(), nullptr);
    pressAt("b.mp3", Qt::RightButton);
    releaseAt("b.mp3", Qt::RightButton);
    EXPECT_EQ(editor(), nullptr);
    EXPECT_EQ(drag.DragNode, node("b.mp3"));
    form.mnuFileRemove.click();
    EXPECT_EQ(node("b.mp3"), nullptr);
}

} // namespace
} // namespace sonarith
