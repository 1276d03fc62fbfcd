// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/node_level.h"

#include <gtest/gtest.h>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

int levelOfKey(const std::string& key) {
    Form form("Form1");
    TreeView tree(form, "TreeView1");
    return NodeLevel(tree.add(nullptr, key, "p text", 1, 1).value());
}

TEST(NodeLevel, DependsOnTheFirstCharacterOfTheKey) {
    EXPECT_EQ(levelOfKey("f Collection 1"), 1);
    EXPECT_EQ(levelOfKey("g Selected Tracks"), 2);
    EXPECT_EQ(levelOfKey("p Track  1 - 00:03:05"), 3);
    EXPECT_EQ(levelOfKey("p"), 3);
}

TEST(NodeLevel, IsZeroForANullPointerAndForAKeyWithoutAKnownFirstCharacter) {
    EXPECT_EQ(NodeLevel(nullptr), 0);
    EXPECT_EQ(levelOfKey(""), 0);
    EXPECT_EQ(levelOfKey("x p"), 0);
    EXPECT_EQ(levelOfKey("F Collection 1"), 0);
    EXPECT_EQ(levelOfKey(" p"), 0);
}

TEST(NodeLevel, DoesNotChangeWhenTheNodeIsMoved) {
    Form form("Form1");
    TreeView tree(form, "TreeView1");
    const NodeRef root = tree.add(nullptr, "f 1", "a", 1, 1).value();
    const NodeRef group = tree.add(root, "g 1", "b", 1, 1).value();
    const NodeRef other = tree.add(nullptr, "f 2", "c", 1, 1).value();
    tree.setParent(other, group).passOver();
    EXPECT_EQ(NodeLevel(other), 1);
}

} // namespace
} // namespace sonarith
