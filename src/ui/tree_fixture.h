// SPDX-License-Identifier: GPL-3.0-or-later
// A test fixture for tests of the tree's widget. It opens a window that shows a small tree: one
// collection, two groups and two items. It logs the events that the widget passes to the control
// (TreeView). It contains no logic of the program.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QCoreApplication>
#include <QDialog>
#include <QGuiApplication>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <gmock/gmock.h>

#include "platform/controls/form.h"
#include "platform/qt/dialog_loop.h"
#include "ui/label_editor.h"
#include "ui/tree_view_adapter.h"

namespace sonarith {

class TreeFixture : public testing::Test {
  protected:
    TreeFixture() {
        collection = add(nullptr, "Folder");
        wav = add(collection, "WAV Files");
        mp3 = add(collection, "MP3 Files");
        first = add(wav, "one.wav");
        second = add(wav, "two.wav");
        tree.setWidth(Twips(300 * 15));
        tree.setHeight(Twips(300 * 15));
        adapter = std::make_unique<TreeViewAdapter>(tree, "Work tree", &window);
        window.resize(300, 300);
        window.show();
        window.activateWindow();
        tree.ensureVisible(first).passOver();
        QCoreApplication::processEvents();

        tree.onMouseDown = [this](MouseButtons b, NodeRef node) {
            note("down", b, node);
        };
        tree.onMouseUp = [this](MouseButtons b, NodeRef node) {
            note("up", b, node);
        };
        tree.onMouseMove = [this](MouseButtons b, NodeRef node) {
            note("move", b, node);
        };
        tree.onDoubleClick = [this] {
            log.push_back("double");
        };
        tree.onDragOver = [this](NodeRef node) {
            note("over", {}, node);
        };
        tree.onDragDrop = [this](NodeRef node) {
            note("drop", {}, node);
        };
    }

    NodeRef add(const NodeRef& parent, const std::string& text) {
        // The first letter of a key is the level of its node: collection (f), group (g) or item
        // (p).
        const std::string level = !parent ? "f " : parent == collection ? "g " : "p ";
        return tree.add(parent, level + text, text, 1, 4).value();
    }
    void note(const std::string& event, MouseButtons buttons, const NodeRef& node) {
        log.push_back(event + (buttons.left ? " left" : "") + (buttons.right ? " right" : "") +
                      " " + (node ? node->text() : "nothing"));
    }
    /// From now on, a mouse press on a node selects the node and starts an edit, as in the program.
    void editOnPress() {
        tree.onMouseDown = [this](MouseButtons, NodeRef node) {
            tree.setSelectedItem(node).passOver();
            tree.startLabelEdit().passOver();
        };
    }

    /// From now on, moving the pointer with the left button held starts a drag, as in the program.
    void dragOnMove() {
        tree.onMouseMove = [this](MouseButtons buttons, NodeRef) {
            if (buttons.left) {
                tree.beginDrag();
            }
        };
    }
    static bool isDragCursorShown() { return QGuiApplication::overrideCursor() != nullptr; }
    static void runDialogAnd(const std::function<void()>& act) {
        QDialog dialog;
        QTimer::singleShot(0, &dialog, [&] {
            act();
            dialog.accept();
        });
        EXPECT_EQ(runDialog(dialog), QDialog::Accepted);
    }

    TreeWidget& widget() { return adapter->widget(); }
    QModelIndex indexOf(const NodeRef& node) {
        TreeModel& model = static_cast<TreeModel&>(*widget().model());
        return model.indexOf(node);
    }
    QPoint placeOf(const NodeRef& node) { return widget().visualRect(indexOf(node)).center(); }
    LabelEditor* editor() {
        for (auto* found : window.findChildren<LabelEditor*>()) {
            if (found->isVisible()) {
                return found;
            }
        }
        return nullptr;
    }
    void pressAt(const NodeRef& node, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(widget().viewport(), button, {}, placeOf(node));
    }
    void releaseAt(const NodeRef& node, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseRelease(widget().viewport(), button, {}, placeOf(node));
    }
    /// Moves the pointer over a node while the left button is down.
    void moveTo(const NodeRef& node) { movePointer(placeOf(node)); }
    void movePointer(const QPoint& at) {
        QWidget* viewport = widget().viewport();
        QMouseEvent move(QEvent::MouseMove, at, viewport->mapToGlobal(at), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &move);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&widget(), key, modifiers);
    }

    Form form{"Form1"};
    TreeView tree{form, "TreeView1"};
    QWidget window;
    NodeRef collection;
    NodeRef wav;
    NodeRef mp3;
    NodeRef first;
    NodeRef second;
    std::unique_ptr<TreeViewAdapter> adapter;
    std::vector<std::string> log;
};

} // namespace sonarith
