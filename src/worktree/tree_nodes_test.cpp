// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/tree_nodes.h"

#include <gtest/gtest.h>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

struct TreeNodesTest : testing::Test {
    Form form{"Form1"};
    TreeView tree{form, "TreeView1"};
    NodeRef collection = addCollection(tree, "f 1", "collection").value();
    NodeRef group = addGroup(tree, collection, "g 1", "group").value();
    NodeRef item = addItem(tree, group, "p 1", "item").value();
};

TEST_F(TreeNodesTest, EachKindHasItsPictures) {
    EXPECT_EQ(collection->image(), 1);
    EXPECT_EQ(collection->selectedImage(), 4);
    EXPECT_EQ(group->image(), 2);
    EXPECT_EQ(group->selectedImage(), 5);
    EXPECT_EQ(item->image(), 3);
    EXPECT_EQ(item->selectedImage(), 6);
}

TEST_F(TreeNodesTest, AddingAGroupOrAnItemWithoutAParentFails) {
    const auto lostGroup = addGroup(tree, nullptr, "g 2", "lost");
    const auto lostItem = addItem(tree, nullptr, "p 2", "lost");
    ASSERT_FALSE(lostGroup.ok());
    ASSERT_FALSE(lostItem.ok());
    EXPECT_EQ(lostGroup.error().number, ErrorNumber::objectNotSet);
    EXPECT_EQ(lostItem.error().number, ErrorNumber::objectNotSet);
    EXPECT_EQ(tree.count(), 3);
}

TEST_F(TreeNodesTest, FindsTheNodeOfTheLowestIndexAmongNodesWithTheSameText) {
    const NodeRef twin = addItem(tree, group, "p twin", "item").value();
    EXPECT_EQ(firstNodeOfText(tree, "item"), item);
    tree.remove(item).passOver();
    EXPECT_EQ(firstNodeOfText(tree, "item"), twin);
    EXPECT_EQ(firstNodeOfText(tree, "Item"), nullptr);
}

TEST_F(TreeNodesTest, TheTextOfANullNodeIsEmpty) {
    EXPECT_EQ(textOf(item), "item");
    EXPECT_EQ(textOf(nullptr), "");
}

TEST_F(TreeNodesTest, TheParentsTextIsEmptyIfThereIsNoParent) {
    EXPECT_EQ(parentText(item), "group");
    EXPECT_EQ(parentText(collection), "");
    EXPECT_EQ(parentText(nullptr), "");
    tree.remove(item).passOver();
    EXPECT_EQ(parentText(item), "");
}

TEST(IsTrackText, IsTrueIfTheFirstFiveCharactersAreTrackWithACapitalT) {
    EXPECT_TRUE(isTrackText("Track  1 - 00:03:05"));
    EXPECT_TRUE(isTrackText("Tracklist.mp3"));
    EXPECT_FALSE(isTrackText("track  1 - 00:03:05"));
    EXPECT_FALSE(isTrackText("Trac"));
    EXPECT_FALSE(isTrackText("CD Tracks"));
}

} // namespace
} // namespace sonarith
