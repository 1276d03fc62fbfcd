// SPDX-License-Identifier: GPL-3.0-or-later
// Connects a TreeView to the widget that shows it. Passes every change of the tree to the item
// model and the widget, in the order that item views require.
#pragma once

#include "platform/controls/tree_view.h"
#include "ui/control_view.h"
#include "ui/tree_model.h"
#include "ui/tree_widget.h"

namespace sonarith {

class TreeViewAdapter : public TreeObserver {
  public:
    /// Registers as the tree's observer. `tree` must outlive the adapter. The widget is a
    /// member of the adapter, so the adapter must be destroyed before `parent`, which deletes the
    /// child widgets that still exist.
    TreeViewAdapter(TreeView& tree, QString label, QWidget* parent);
    ~TreeViewAdapter() override;
    TreeViewAdapter(const TreeViewAdapter&) = delete;
    TreeViewAdapter& operator=(const TreeViewAdapter&) = delete;

    [[nodiscard]] TreeWidget& widget() { return widget_; }

    void beforeInsert(const NodeRef& parent, int position) override;
    void afterInsert(const NodeRef& node) override;
    void beforeRemove(const NodeRef& node) override;
    void afterRemove() override;
    void beforeMove(const NodeRef& node, const NodeRef& parent, int position) override;
    void afterMove(const NodeRef& node) override;
    void textChanged(const NodeRef& node) override;
    void selectionChanged() override;
    void dropHighlightChanged() override;
    void revealRequested(const NodeRef& node) override;
    void editRequested(const NodeRef& node) override;
    void editAbandoned() override;
    void dragRequested() override;

  private:
    TreeView& tree_;
    TreeModel model_;
    TreeWidget widget_;
    ControlView view_;
    /// The node that is shown with the picture of a selected node.
    NodeRef shownSelection_;
};

} // namespace sonarith
