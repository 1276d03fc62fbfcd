// SPDX-License-Identifier: GPL-3.0-or-later
// Defines FormWindow, the top-level window of a form, and WindowLayout, its description. The layout
// creates the contents of the window; the handlers of the form and its controls implement the
// window's behaviour. The main window has a class of its own (main_window_view.h). lazy_window.h
// creates each window when its form is first shown.
//
// A window is laid out in a file ui/<name>_layout.cpp, by one function that returns its
// WindowLayout:
//
//     WindowLayout finderLayout(FrmSearch& form) {
//         return {.form = form,
//                 .icon = Symbol::search,
//                 .cancelButton = &form.cmdend,
//                 .layOut = [&form](FormWindow& window) {
//                     QWidget& client = window.client();
//                     auto* name = new TextBoxView(form.Text1, QObject::tr("Name"), &client);
//                     auto* rows = new QVBoxLayout(&client);
//                     rows->addWidget(makeFixedText(QObject::tr("Name"), name, &client));
//                     rows->addWidget(name);
//                     rows->addWidget(new ListBoxView(form.lstfiles, QObject::tr("Files found"),
//                                                     ListBoxView::LineTips::whenCut, &client), 1);
//                     rows->addWidget(window.makeButton(form.Command1, &client));
//                 }};
//     }
//
// In main.cpp: `const LazyWindow finder(finderLayout(windows.frmsearch), help);`
// In the test of the layout: `FormWindow window(finderLayout(form)); form.show();`
//
// The name of a view for screen readers is the first of these texts that is not empty: the
// control's caption (unless it is blank), the control's tool tip, the label that the layout passes.
// A drop-down list (ComboBoxView, DriveListView) also needs a fixed text beside it: screen readers
// read that text as its label.
//
// The tab order is the order in which the widgets are created. The widget of a control has the
// control's name: `window.findChild<QWidget*>("lstfiles")`. A frame (FrameView), a page
// (TabControlView::page), a bar (BarView) and a picture that contains controls (PictureView) are
// the parents of the widgets on them.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <QWidget>

#include "platform/controls/basic_controls.h"
#include "platform/controls/form.h"
#include "ui/button_view.h"
#include "ui/form_adapter.h"
#include "ui/icons.h"
#include "ui/popup_menus.h"

namespace sonarith {

class FormWindow;

/// Whether the contents limit how small the window can be made (`contents`) or not (`none`).
/// Without a limit, contents that do not fit are clipped.
enum class LeastSize { contents, none };

struct WindowLayout {
    /// Must outlive the window.
    Form& form;
    Symbol icon = Symbol::program;
    /// The headings of the window's menu bar; if empty, the window has no menu bar.
    std::vector<MenuItem*> menus = {};
    LeastSize leastSize = LeastSize::contents;
    /// The escape key clicks this button while it is visible and enabled. If it is null, the key
    /// does nothing.
    CommandButton* cancelButton = nullptr;
    /// Runs when the menu key is pressed on a widget without a menu of its own. If it is not set,
    /// the menu key has the effect of a press of the right mouse button on the form.
    std::function<void()> menuKey = {};
    /// Creates the widgets on `window.client()`.
    std::function<void(FormWindow& window)> layOut;
};

/// Called when the user requests help for the window of a form.
using HelpCall = std::function<void(const Form&)>;

class FormWindow : public QWidget {
  public:
    /// Shows the window at once if the form is already visible. With LeastSize::contents, enlarges
    /// a designed size that is too small for the contents.
    explicit FormWindow(WindowLayout layout, HelpCall help = {});

    /// The part of the window below the menu bar.
    [[nodiscard]] QWidget& client() { return *client_; }
    /// Creates a button with a mnemonic letter that is not used by the menu bar or by a button that
    /// this function has created before.
    [[nodiscard]] TextButtonView* makeButton(CommandButton& model, QWidget* parent);

  protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    void build();
    void connectKeys();
    void growToContents();

    WindowLayout layout_;
    HelpCall help_;
    QString letters_; ///< the mnemonic letters in use, in lower case
    MenuBarView* bar_ = nullptr;
    QWidget* client_;
    std::optional<FormAdapter> adapter_;
    std::optional<PopupMenus> popups_;
};

} // namespace sonarith
