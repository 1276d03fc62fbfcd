// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the in-place editing of labels in the tree; tree_view_test.cpp tests everything else.
#include "platform/controls/tree_view.h"

#include "support/tree_view_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct TreeLabelEditTest : test::ObservedTree {
    std::vector<std::string> events;
    bool refuseEdit = false;
    bool refuseLabel = false;
    TreeLabelEditTest() {
        tree.setSelectedItem(a).passOver();
        observer.log.clear();
        tree.onBeforeLabelEdit = [this](bool& cancel) {
            events.push_back("before");
            EXPECT_FALSE(cancel);
            cancel = refuseEdit;
        };
        tree.onAfterLabelEdit = [this](bool& cancel, const std::string& text) {
            events.push_back("after " + text);
            EXPECT_FALSE(cancel);
            cancel = refuseLabel;
        };
    }
};

TEST_F(TreeLabelEditTest, StartLabelEditAsksTheHandlerAndOpensTheEditorOnTheSelectedNode) {
    EXPECT_TRUE(tree.startLabelEdit().ok());
    EXPECT_EQ(tree.editedNode(), a);
    EXPECT_THAT(events, ElementsAre("before"));
    EXPECT_THAT(observer.log, ElementsAre("edit a"));
}

TEST_F(TreeLabelEditTest, TheEditorStaysClosedIfOnBeforeLabelEditRefuses) {
    refuseEdit = true;
    EXPECT_TRUE(tree.startLabelEdit().ok());
    EXPECT_EQ(tree.editedNode(), nullptr);
    EXPECT_THAT(observer.log, IsEmpty());
}

TEST_F(TreeLabelEditTest, StartLabelEditFailsAndRunsNoHandlerIfNoNodeIsSelected) {
    tree.remove(a).passOver();
    EXPECT_EQ(numberOf(tree.startLabelEdit()), ErrorNumber::objectNotSet);
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(TreeLabelEditTest, OnAfterLabelEditRunsBeforeTheNewTextBecomesTheLabel) {
    tree.startLabelEdit().passOver();
    std::string during;
    tree.onAfterLabelEdit = [&](bool&, const std::string&) {
        during = a->text();
    };
    tree.finishLabelEdit("new");
    EXPECT_EQ(during, "a");
    EXPECT_EQ(a->text(), "new");
    EXPECT_EQ(a->key(), "key a");
    EXPECT_EQ(tree.editedNode(), nullptr);
}

TEST_F(TreeLabelEditTest, ALabelThatOnAfterLabelEditRefusesIsNotSet) {
    refuseLabel = true;
    tree.startLabelEdit().passOver();
    tree.finishLabelEdit("new");
    EXPECT_EQ(a->text(), "a");
    EXPECT_THAT(events, ElementsAre("before", "after new"));
}

TEST_F(TreeLabelEditTest, CancelLabelEditRunsNoHandlerAndALaterFinishLabelEditDoesNothing) {
    tree.startLabelEdit().passOver();
    tree.cancelLabelEdit();
    EXPECT_EQ(tree.editedNode(), nullptr);
    tree.finishLabelEdit("new");
    EXPECT_THAT(events, ElementsAre("before"));
    EXPECT_EQ(a->text(), "a");
}

TEST_F(TreeLabelEditTest, NothingIsEditedIfOnBeforeLabelEditDeselectsOrRemovesTheNode) {
    tree.onBeforeLabelEdit = [this](bool&) {
        tree.setSelectedItem(b).passOver();
    };
    EXPECT_TRUE(tree.startLabelEdit().ok());
    EXPECT_EQ(tree.editedNode(), nullptr);
    tree.onBeforeLabelEdit = [this](bool&) {
        tree.remove(b).passOver();
    };
    EXPECT_TRUE(tree.startLabelEdit().ok());
    EXPECT_EQ(tree.editedNode(), nullptr);
}

TEST_F(TreeLabelEditTest, StartingAnEditAbandonsTheEditorOnAnotherNode) {
    tree.startLabelEdit().passOver();
    tree.setSelectedItem(b).passOver();
    observer.log.clear();
    tree.startLabelEdit().passOver();
    EXPECT_THAT(observer.log, ElementsAre("edit abandoned", "edit b"));
    tree.finishLabelEdit("new");
    EXPECT_EQ(a->text(), "a");
    EXPECT_EQ(b->text(), "new");
}

TEST_F(TreeLabelEditTest, AnEditorIsAbandonedWhenItsNodeIsRemovedWithTheParent) {
    tree.startLabelEdit().passOver();
    observer.log.clear();
    tree.remove(A).passOver();
    EXPECT_EQ(tree.editedNode(), nullptr);
    EXPECT_EQ(observer.log.back(), "edit abandoned");
    tree.finishLabelEdit("new");
    EXPECT_THAT(events, ElementsAre("before"));
    EXPECT_EQ(a->text(), "a");
}

TEST_F(TreeLabelEditTest, AnEditorStaysOpenWhenAnotherNodeIsRemoved) {
    tree.startLabelEdit().passOver();
    tree.remove(b).passOver();
    EXPECT_EQ(tree.editedNode(), a);
}

TEST_F(TreeLabelEditTest, OnAfterLabelEditMayRemoveTheNodeThatWasEdited) {
    tree.onAfterLabelEdit = [this](bool&, const std::string&) {
        tree.remove(a).passOver();
    };
    tree.startLabelEdit().passOver();
    tree.finishLabelEdit("new");
    EXPECT_EQ(a->text(), "a");
    EXPECT_TRUE(a->removed());
}

TEST_F(TreeLabelEditTest, OnAfterLabelEditMayOpenTheEditorAgain) {
    tree.onAfterLabelEdit = [this](bool& cancel, const std::string&) {
        cancel = true;
        tree.startLabelEdit().passOver();
    };
    tree.startLabelEdit().passOver();
    tree.finishLabelEdit("new");
    EXPECT_EQ(tree.editedNode(), a);
    EXPECT_EQ(a->text(), "a");
}

} // namespace
} // namespace sonarith
