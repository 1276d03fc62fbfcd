// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the work tree in a visible window and connects it to the logic's handlers. Tests simulate
// mouse and keys, and check tree, lists and files: they test the widget together with the logic.
#pragma once

#include <memory>
#include <string>

#include <QCoreApplication>
#include <QTest>
#include <QWidget>

#include "support/work_tree_world.h"
#include "ui/label_editor.h"
#include "ui/tree_view_adapter.h"

namespace sonarith::test {

/// The tree contains two MP3 and two WAV files and shows their names without paths.
struct TreeEditingWorld : WorkTreeWorld {
    QWidget window;
    std::unique_ptr<TreeViewAdapter> adapter;

    TreeEditingWorld() {
        process.settings.showFullPath = 0;
        for (const char* path :
             {"c:\\music\\a.mp3", "c:\\music\\b.mp3", "c:\\music\\a.wav", "c:\\music\\b.wav"}) {
            disk.addFile(path, path);
            finder.files[destination][std::string(path).substr(11)].push_back(path);
        }
        adapter = std::make_unique<TreeViewAdapter>(view, "Work tree", &window);
        view.setWidth(Twips(300 * 15));
        view.setHeight(Twips(500 * 15));
        window.resize(300, 500);
        tree.showfiles();
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    ~TreeEditingWorld() override { adapter.reset(); }

    TreeWidget& widget() { return adapter->widget(); }
    QPoint placeOf(const std::string& text) {
        QCoreApplication::processEvents();
        auto& model = static_cast<TreeModel&>(*widget().model());
        return widget().visualRect(model.indexOf(node(text))).center();
    }
    void pressAt(const std::string& text, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(widget().viewport(), button, {}, placeOf(text));
    }
    void releaseAt(const std::string& text, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseRelease(widget().viewport(), button, {}, placeOf(text));
    }
    void moveTo(const std::string& text) { movePointer(placeOf(text)); }
    /// Moves the pointer while the left button is down.
    void movePointer(const QPoint& at) {
        QWidget* viewport = widget().viewport();
        QMouseEvent event(QEvent::MouseMove, at, viewport->mapToGlobal(at), Qt::NoButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &event);
    }
    LabelEditor* editor() {
        for (auto* found : window.findChildren<LabelEditor*>()) {
            if (found->isVisible()) {
                return found;
            }
        }
        return nullptr;
    }
    void typeAndReturn(const char* text) {
        LabelEditor* line = editor();
        ASSERT_NE(line, nullptr);
        line->setText(QString::fromUtf8(text));
        QTest::keyClick(line, Qt::Key_Return);
    }
};

} // namespace sonarith::test
