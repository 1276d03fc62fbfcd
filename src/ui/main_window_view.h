// SPDX-License-Identifier: GPL-3.0-or-later
// Shows the main window: the menus, the bars at its edges, the work tree, and beside the tree the
// grip strip with a picture by which the user drags the window. Other files connect the controls to
// the logic; app/resize_layout.h places the tree.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QMainWindow>

#include "forms/form1.h"
#include "ui/form_adapter.h"
#include "ui/menu_view.h"
#include "ui/notice_bar.h"
#include "ui/picture_view.h"
#include "ui/popup_menus.h"
#include "ui/tree_view_adapter.h"

namespace sonarith {

class MainWindowView : public QMainWindow {
  public:
    /// Prepares the form for its first load: sets the heights of the bars, the inner size and the
    /// designed size. The inner size is the size in form1.h, or larger if the contents need more
    /// space. The designed size also includes the menu bar and the window's frame. Each load
    /// restores the designed size. May wait for the window manager. Does not show the window. The
    /// window is shown when the form becomes visible.
    explicit MainWindowView(Form1& form);

    /// The bar with the last notice, below the client area.
    [[nodiscard]] NoticeBar& noticeBar() { return *notices_; }

    /// Returns whether a disc image may be dropped now. Called repeatedly while a disc image is
    /// dragged over the window. While this function is not set, an image may always be dropped.
    std::function<bool()> acceptsImages;
    /// Called when a disc image (.cue, .toc) was dropped from a file manager. `machinePath` is the
    /// image's path, byte for byte. Also called if acceptsImages() returned true while the image
    /// was dragged but returns false at the drop.
    std::function<void(const std::string& machinePath)> onImageDropped;

  protected:
    bool event(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void answerDrag(QDropEvent& event) const;
    void takeDesignedSize();
    void arrange();
    void followBars();

    Form1& form_;
    MenuBarView* menu_;
    QWidget* client_;
    NoticeBar* notices_;
    BarView* toolBar_;
    BarView* cdBar_;
    BarView* activityBar_;
    BarView* statusBar_;
    BarView* gripStrip_;
    PictureView* grip_;
    TreeViewAdapter tree_;
    FormAdapter adapter_;
    PopupMenus popups_;
    bool arranging_ = false;
    std::vector<Connection> connections_;
};

} // namespace sonarith
