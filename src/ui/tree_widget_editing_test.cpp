// SPDX-License-Identifier: GPL-3.0-or-later
#include <QAccessible>
#include <QScrollBar>

#include "ui/tree_fixture.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TreeEditTest : public TreeFixture {
  protected:
    TreeEditTest() {
        tree.onAfterLabelEdit = [this](bool&, const std::string& text) {
            log.push_back("after " + text);
        };
        tree.setSelectedItem(first).passOver();
        tree.startLabelEdit().passOver();
    }
    /// The rectangle of a node's row, in coordinates of the window.
    QRect rowOf(const NodeRef& node) {
        const QRect row = widget().visualRect(indexOf(node));
        return {widget().viewport()->mapTo(&window, row.topLeft()), row.size()};
    }
};

TEST_F(TreeEditTest, TheEditorIsOverItsRowAndHasItsWholeTextSelected) {
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(editor()->selectedText(), "one.wav");
    EXPECT_TRUE(editor()->hasFocus());
    EXPECT_TRUE(rowOf(first).contains(editor()->geometry().center()));
}

/// Whether an assistive program that visits `top` and its descendants finds the widget.
bool isReachedFrom(QAccessibleInterface* top, const QWidget* widget) {
    if (!top || top->object() == widget) {
        return top != nullptr;
    }
    for (int i = 0; i < top->childCount(); ++i) {
        if (isReachedFrom(top->child(i), widget)) {
            return true;
        }
    }
    return false;
}

TEST_F(TreeEditTest, TheEditorIsAccessible) {
    EXPECT_TRUE(isReachedFrom(QAccessible::queryAccessibleInterface(&window), editor()));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(editor())->text(QAccessible::Name), "New name");
}

TEST_F(TreeEditTest, TheEditorMovesWithItsRowAndHasNoSizeWhileTheRowIsNotVisible) {
    for (int i = 0; i < 50; ++i) {
        add(wav, std::to_string(i));
    }
    tree.setLeft(150_twips);
    tree.setTop(300_twips);
    EXPECT_TRUE(rowOf(first).contains(editor()->geometry().center()));
    QScrollBar& bar = *widget().verticalScrollBar();
    bar.setValue(1);
    EXPECT_TRUE(rowOf(first).contains(editor()->geometry().center()));
    bar.setValue(bar.maximum());
    EXPECT_TRUE(editor()->size().isEmpty());
    editor()->setText("later.wav");
    bar.setValue(0);
    EXPECT_TRUE(rowOf(first).contains(editor()->geometry().center()));
    QTest::keyClick(editor(), Qt::Key_Return);
    EXPECT_THAT(log, ElementsAre("after later.wav"));
}

TEST_F(TreeEditTest, TheReturnKeyPassesTheNewTextToTheTree) {
    editor()->setText("caf\u00E9.wav");
    QTest::keyClick(editor(), Qt::Key_Return);
    EXPECT_THAT(log, ElementsAre("after caf\xC3\xA9.wav"));
    EXPECT_EQ(first->text(), "caf\xC3\xA9.wav");
    EXPECT_EQ(editor(), nullptr);
    EXPECT_TRUE(widget().hasFocus());
}

TEST_F(TreeEditTest, TheReturnKeyOnAnUnchangedTextRenamesNothing) {
    QTest::keyClick(editor(), Qt::Key_Return);
    EXPECT_THAT(log, IsEmpty());
    EXPECT_EQ(tree.editedNode(), nullptr);
}

TEST_F(TreeEditTest, TheEscapeKeyKeepsTheOldLabel) {
    editor()->setText("other.wav");
    QTest::keyClick(editor(), Qt::Key_Escape);
    EXPECT_THAT(log, IsEmpty());
    EXPECT_EQ(first->text(), "one.wav");
    EXPECT_EQ(editor(), nullptr);
    EXPECT_EQ(tree.editedNode(), nullptr);
}

TEST_F(TreeEditTest, AMousePressOnAnotherNodeFinishesTheEditBeforeTheHandlerOfThePressRuns) {
    editor()->setText("other.wav");
    pressAt(second);
    EXPECT_THAT(log, ElementsAre("after other.wav", "down left two.wav"));
    releaseAt(second);
}

TEST_F(TreeEditTest, HidingTheWindowCancelsTheEdit) {
    editor()->setText("other.wav");
    window.hide();
    EXPECT_THAT(log, IsEmpty());
    EXPECT_EQ(tree.editedNode(), nullptr);
}

TEST_F(TreeEditTest, AHandlerThatRefusesANameMayOpenTheEditorAgain) {
    tree.onAfterLabelEdit = [&](bool& cancel, const std::string& text) {
        log.push_back("refused " + text);
        cancel = true;
        tree.startLabelEdit().passOver();
    };
    editor()->setText("taken.wav");
    QTest::keyClick(editor(), Qt::Key_Return);
    EXPECT_THAT(log, ElementsAre("refused taken.wav"));
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(editor()->text(), "one.wav");
    EXPECT_EQ(tree.editedNode(), first);
}

TEST_F(TreeEditTest, RemovingTheParentOfTheEditedNodeClosesTheEditor) {
    tree.remove(wav).passOver();
    EXPECT_EQ(editor(), nullptr);
    EXPECT_EQ(tree.editedNode(), nullptr);
}

TEST_F(TreeEditTest, TheEditorClosesWhenAnotherNodeIsSelected) {
    tree.setSelectedItem(first).passOver();
    tree.startLabelEdit().passOver();
    ASSERT_NE(editor(), nullptr);
    tree.setSelectedItem(second).passOver();
    EXPECT_EQ(editor(), nullptr);
    EXPECT_EQ(tree.editedNode(), nullptr);
}

TEST_F(TreeEditTest, AnEditOfAnotherNodeReplacesTheEditor) {
    tree.setSelectedItem(second).passOver();
    tree.startLabelEdit().passOver();
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(editor()->text(), "two.wav");
    EXPECT_EQ(tree.editedNode(), second);
}

TEST_F(TreeEditTest, AnEditKeepsBytesOfTheNameThatAreNotUtf8) {
    QTest::keyClick(editor(), Qt::Key_Escape);
    const NodeRef odd = add(wav, "caf\xE9.wav");
    tree.setSelectedItem(odd).passOver();
    tree.startLabelEdit().passOver();
    editor()->setText(editor()->text().replace(QStringLiteral(".wav"), QStringLiteral("2.wav")));
    QTest::keyClick(editor(), Qt::Key_Return);
    EXPECT_EQ(odd->text(), "caf\xE9"
                           "2.wav");
}

} // namespace
} // namespace sonarith
