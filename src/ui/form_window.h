// SPDX-License-Identifier: GPL-3.0-or-later
// The top-level window of a form, and its description. The layout creates its contents; the form
// has its behaviour. The main window has a class of its own (main_window_view.h). Windows are
// created when they are first shown: lazy_window.h.
//
// How a window is laid out: a file ui/<name>_layout.cpp with one function that describes it.
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
// In its test: `FormWindow window(finderLayout(form)); form.show();`
//
// The name of a view for screen readers is the control's caption, the control's tool tip, or the
// label that the layout passes. A drop-down list (ComboBoxView, DriveListView) also needs a fixed
// text beside it: screen readers read that text as its label.
//
// The tab order is the order in which the widgets are created. The widget of a control has the
// control's name: `window.findChild<QWidget*>("lstfiles")`. A frame (FrameView), a page
// (TabControlView::page) and a picture that contains controls (PictureView) are the parents of the
// widgets on them.
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

/// Whether the window can be made smaller than its contents, which are then clipped.
enum class LeastSize { contents, none };

struct WindowLayout {
    /// Must outlive the window.
    Form& form;
    Symbol icon = Symbol::program;
    /// The headings of the window's menu bar; if empty, the window has no menu bar.
    std::vector<MenuItem*> menus = {};
    LeastSize leastSize = LeastSize::contents;
    /// The escape key clicks this button while it is visible and enabled. Null: the key does
    /// nothing.
    CommandButton* cancelButton = nullptr;
    /// Runs at the menu key on a widget without its own menu. If it is not set, the menu key is a
    /// right press on the form.
    std::function<void()> menuKey = {};
    /// Creates the widgets on `window.client()`.
    std::function<void(FormWindow& window)> layOut;
};

/// The user requests help for the window of a form.
using HelpCall = std::function<void(const Form&)>;

class FormWindow : public QWidget {
  public:
    /// Shows the window at once if the form is visible. If the designed size is too small for the
    /// contents, the size of the contents replaces it.
    explicit FormWindow(WindowLayout layout, HelpCall help = {});

    /// The part of the window below the menu bar.
    [[nodiscard]] QWidget& client() { return *client_; }
    /// A button with a mnemonic letter that neither the menu bar nor another of these buttons uses.
    [[nodiscard]] TextButtonView* makeButton(CommandButton& model, QWidget* parent);

  protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    void build();
    void connectKeys();
    void growToContents();

    WindowLayout layout_;
    HelpCall help_;
    QString letters_; ///< the letters in use, in lower case
    MenuBarView* bar_ = nullptr;
    QWidget* client_;
    std::optional<FormAdapter> adapter_;
    std::optional<PopupMenus> popups_;
};

} // namespace sonarith
