// SPDX-License-Identifier: GPL-3.0-or-later
// The widget of the work tree. It converts mouse and keyboard input to events of the TreeView and
// shows the state of the TreeView. It does not select, edit or move nodes itself.
#pragma once

#include <optional>

#include <QPersistentModelIndex>
#include <QTimer>
#include <QTreeView>

#include "platform/controls/tree_view.h"
#include "ui/tree_model.h"

namespace sonarith {

class LabelEditor;
class TreeDelegate;

class TreeWidget : public QTreeView {
  public:
    /// `tree` and `model` must outlive the widget. When an edit starts, the widget must have a
    /// parent widget, because the editor over a label is created as a child of that parent.
    TreeWidget(TreeView& tree, TreeModel& model, QWidget* parent);
    ~TreeWidget() override;

    // Notifications from the tree, passed on by TreeViewAdapter.
    void showSelection();
    void showDropHighlight() { viewport()->update(); }
    /// Expands the node's ancestors now. Scrolls the node into view later, when the next events are
    /// handled, because thousands of nodes may be added and revealed one after the other.
    void reveal(const NodeRef& node);
    void openEditor(const NodeRef& node);
    /// Closes the editor if no node is being edited any more, for example because the edited node
    /// was removed.
    void dropEditorWithoutNode();
    void startDrag();

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void updateEditorGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    void moveEvent(QMoveEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;
    [[nodiscard]] QItemSelectionModel::SelectionFlags
    selectionCommand(const QModelIndex& index, const QEvent* event) const override;

  private:
    [[nodiscard]] NodeRef nodeAtGlobal(const QPoint& global) const;
    [[nodiscard]] QModelIndex branchAt(const QPoint& position) const;
    [[nodiscard]] QRect labelRect(const QModelIndex& index) const;

    void press(MouseButtons buttons, const NodeRef& node, const QPoint& global);
    void release(Qt::MouseButton button, const QPoint& global);
    void doubleClick(const NodeRef& node);
    void watchForRelease(bool watch);
    void abandonPress();

    void pressByKey(MouseButtons buttons, const QModelIndex& index);
    void clickByKey(MouseButtons buttons, const QModelIndex& index);
    void doubleClickByKey(const QModelIndex& index);

    /// How a node is dragged. With keys, the current node is picked up and later dropped at the row
    /// that is current then.
    enum class Drag { none, byMouse, byKeys };
    [[nodiscard]] bool dragging() const { return drag_ != Drag::none; }
    void takeUpByKeys();
    void dropByKeys();
    void keyWhileDragging(QKeyEvent& event);
    void dragOver(const NodeRef& node);
    void drop(const NodeRef& node);
    void endDrag();
    void scrollWhileDragging();

    enum class Focus { toTree, untouched };
    void closeEditor(Focus focus);
    void finishEdit(const QString& text);
    [[nodiscard]] bool takesPressFromEditor(QMouseEvent& event);

    TreeView& tree_;
    TreeModel& model_;
    TreeDelegate* delegate_;
    LabelEditor* editor_ = nullptr;
    QPersistentModelIndex editedIndex_;
    QPersistentModelIndex toReveal_;
    QTimer revealTimer_;
    QTimer dragScrollTimer_;
    /// The last mouse press that was reported to tree_: its position on the screen, and its time by
    /// the timestamps of events.
    QPoint pressedAt_;
    quint64 pressedMilliseconds_ = 0;
    bool watchingRelease_ = false;
    bool movedFar_ = false;
    Drag drag_ = Drag::none;
    bool takingUp_ = false;
    /// The argument of the latest dragOver() of the current drag: a node, or a null pointer for the
    /// area without nodes. No value before the first such call.
    std::optional<NodeRef> over_;
    bool showingSelection_ = false;
};

} // namespace sonarith
