// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tree_model.h"

#include <QAbstractItemModelTester>
#include <QIcon>
#include <gmock/gmock.h>

#include "ui/tool_tip.h"
#include "ui/tree_view_adapter.h"

#include "platform/controls/form.h"

namespace sonarith {
namespace {

using Reporting = QAbstractItemModelTester::FailureReportingMode;

TEST(TreeModel, HasTheTextsAndTheStructureOfTheTree) {
    Form form("Form1");
    TreeView tree(form, "TreeView1");
    const NodeRef root = tree.add(nullptr, "f", "CD Tracks", 1, 4).value();
    const NodeRef child = tree.add(root, "g", "Gruppe \xC3\x9C", 2, 5).value();
    const TreeModel model(tree);
    EXPECT_EQ(model.rowCount(), 1);
    const QModelIndex index = model.index(0, 0, model.index(0, 0));
    EXPECT_EQ(index.data(Qt::DisplayRole).toString(), "Gruppe Ü");
    EXPECT_EQ(index.data(Qt::ToolTipRole).toString(), "Gruppe Ü");
    EXPECT_EQ(model.nodeAt(index), child);
    EXPECT_EQ(model.indexOf(child), index);
    EXPECT_FALSE(model.index(1, 0).isValid());
    EXPECT_FALSE(model.index(0, 1).isValid());
    EXPECT_FALSE(model.index(-1, 0).isValid());
}

TEST(TreeModel, AToolTipShowsAFileNameAsPlainText) {
    Form form("Form1");
    TreeView tree(form, "TreeView1");
    const NodeRef node = tree.add(nullptr, "p", "<b>x</b>.mp3", 3, 6).value();
    const TreeModel model(tree);
    EXPECT_EQ(model.indexOf(node).data(Qt::DisplayRole).toString(), "<b>x</b>.mp3");
    EXPECT_EQ(model.indexOf(node).data(Qt::ToolTipRole).toString(),
              plainToolTip(QStringLiteral("<b>x</b>.mp3")));
    EXPECT_NE(model.indexOf(node).data(Qt::ToolTipRole), model.indexOf(node).data(Qt::DisplayRole));
}

TEST(TreeModel, ANodeThatIsNotInTheTreeHasNoIndex) {
    Form form("Form1");
    TreeView tree(form, "TreeView1");
    const TreeModel model(tree);
    const NodeRef node = tree.add(nullptr, "f", "gone", 1, 4).value();
    tree.remove(node).passOver();
    EXPECT_FALSE(model.indexOf(node).isValid());
    EXPECT_FALSE(model.indexOf(nullptr).isValid());
    EXPECT_EQ(model.nodeAt(QModelIndex()), nullptr);
}

TEST(TreeModel, ANodeHasAnotherPictureWhileItIsSelected) {
    Form form("Form1");
    TreeView tree(form, "TreeView1");
    const NodeRef node = tree.add(nullptr, "f", "CD Tracks", 1, 4).value();
    const TreeModel model(tree);
    const auto picture = [&] {
        return model.indexOf(node).data(Qt::DecorationRole).value<QIcon>().pixmap(32).toImage();
    };
    const QImage closed = picture();
    tree.setSelectedItem(node).passOver();
    EXPECT_NE(picture(), closed);
}

TEST(TreeModel, ObeysTheRulesOfQtsItemModelsAtEveryChange) {
    Form form("Form1");
    TreeView tree(form, "TreeView1");
    QWidget window;
    TreeViewAdapter adapter(tree, "", &window);
    // Ends the test program at the first broken rule.
    const QAbstractItemModelTester tester(adapter.widget().model(), Reporting::Fatal);
    std::vector<NodeRef> groups;
    for (int g = 0; g < 3; ++g) {
        groups.push_back(tree.add(nullptr, "g" + std::to_string(g), "group", 2, 5).value());
        for (int i = 0; i < 4; ++i) {
            const std::string name = std::to_string(g) + "-" + std::to_string(i);
            ASSERT_TRUE(tree.add(groups.back(), name, name, 3, 6).ok());
        }
    }
    tree.setSelectedItem(groups[1]->children()[2]).passOver();
    tree.setParent(groups[1]->children()[2], groups[0]).passOver();
    tree.setParent(groups[2], groups[0]).passOver();
    tree.setText(groups[0], "renamed").passOver();
    tree.remove(groups[0]->children()[1]).passOver();
    tree.remove(groups[1]).passOver();
    EXPECT_EQ(adapter.widget().model()->rowCount(), 1);
    tree.clear();
    EXPECT_EQ(adapter.widget().model()->rowCount(), 0);
}

} // namespace
} // namespace sonarith
