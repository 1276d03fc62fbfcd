// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/form_window.h"

#include <cstdlib>
#include <utility>

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QShortcut>
#include <QVBoxLayout>

#include "platform/qt/primary_screen.h"
#include "platform/qt/twips.h"
#include "ui/accessible_window.h"
#include "ui/mnemonics.h"
#include "ui/popup_place.h"

namespace sonarith {

FormWindow::FormWindow(WindowLayout layout, HelpCall help)
    : layout_(std::move(layout)), help_(std::move(help)), client_(new QWidget(this)) {
    QAccessible::installFactory(makeAccessibleWindow); // Qt ignores repeated calls
    build();
    connectKeys();
    growToContents();
    // The adapter is created last, because it shows the window if the form is already visible.
    popups_.emplace(layout_.form, *this, bar_);
    adapter_.emplace(layout_.form, *this, *client_);
}

void FormWindow::build() {
    setWindowIcon(makeIcon(layout_.icon));
    client_->setObjectName(QStringLiteral("client"));
    client_->setAccessibleName(tr("Work area"));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    if (layout_.leastSize == LeastSize::none) {
        rows->setSizeConstraint(QLayout::SetNoConstraint);
    }
    if (!layout_.menus.empty()) {
        bar_ = new MenuBarView(layout_.menus, this);
        rows->setMenuBar(bar_);
        letters_ = bar_->letters();
    }
    rows->addWidget(client_);
    layout_.layOut(*this);
}

void FormWindow::connectKeys() {
    if (CommandButton* cancel = layout_.cancelButton) {
        connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [cancel] {
            if (cancel->visible() && cancel->enabled()) {
                cancel->click();
            }
        });
    }
    connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this, [this] {
        if (help_) {
            help_(layout_.form);
        }
    });
}

TextButtonView* FormWindow::makeButton(CommandButton& model, QWidget* parent) {
    auto* button = new TextButtonView(model, letters_, parent);
    letters_ += mnemonicOf(button->text());
    return button;
}

/// Enlarges the designed size if it is too small for the contents. If the form's load step has
/// centred the window on the screen, the window stays centred.
void FormWindow::growToContents() {
    ensurePolished();
    Form& form = layout_.form;
    const QSize designed(toPixels(form.width()), toPixels(form.height()));
    const QSize grown = designed.expandedTo(layout()->totalMinimumSize());
    if (layout_.leastSize == LeastSize::none || grown == designed) {
        return;
    }
    const QSize screen = primaryScreen().size();
    const QRect place(QPoint(toPixels(form.left()), toPixels(form.top())), designed);
    // The comparison allows for the rounding of position and size to whole twips and pixels.
    const bool isCentred = std::abs(2 * place.x() + place.width() - screen.width()) <= 2 &&
                           std::abs(2 * place.y() + place.height() - screen.height()) <= 2;
    form.setDesignedSize(toTwips(grown.width()), toTwips(grown.height()));
    if (isCentred) {
        form.setLeft(toTwips((screen.width() - grown.width()) / 2));
        form.setTop(toTwips((screen.height() - grown.height()) / 2));
    }
}

void FormWindow::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
    if (event->reason() != QContextMenuEvent::Keyboard) {
        // For a mouse event, the press has already opened the menu.
        return;
    }
    const QWidget* at = QApplication::focusWidget();
    if (!at || !isAncestorOf(at)) {
        at = client_;
    }
    const PopupPlace place(at->mapToGlobal(at->rect().center()));
    if (layout_.menuKey) {
        layout_.menuKey();
    } else {
        run(layout_.form.onMouseDown, MouseButtons{.right = true});
    }
}

} // namespace sonarith
