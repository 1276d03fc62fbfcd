// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/finder_layout.h"

#include <QBoxLayout>
#include <QFormLayout>
#include <QGridLayout>

#include "ui/button_view.h"
#include "ui/check_box_view.h"
#include "ui/drive_list_view.h"
#include "ui/fixed_text.h"
#include "ui/folder_list_view.h"
#include "ui/label_view.h"
#include "ui/list_box_view.h"
#include "ui/text_box_view.h"
#include "ui/window_measures.h"

namespace sonarith {
namespace {

// Device-independent pixels.
constexpr int sideWidth = 200;
constexpr int listsWidth = 360;

QWidget* makeSide(FrmSearch& form, FormWindow& window, QWidget* parent) {
    auto* side = new QWidget(parent);
    side->setObjectName(QStringLiteral("side"));
    side->setAccessibleName(QObject::tr("What to search for, and where"));
    side->setMinimumWidth(sideWidth);
    auto* rows = new QVBoxLayout(side);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(windowGap);
    auto* wanted = new QFormLayout;
    wanted->setSpacing(windowGap);
    auto* name = new TextBoxView(form.Text1, QObject::tr("File Name (optional)"), side);
    name->setPlaceholderText(QObject::tr("all names"));
    wanted->addRow(makeFixedText(QObject::tr("File Name (optional)"), name, side), name);
    auto* extension = new TextBoxView(form.zFileExt, QObject::tr("File Type"), side);
    wanted->addRow(makeFixedText(QObject::tr("File Type"), extension, side), extension);
    rows->addLayout(wanted);
    auto* drive = new DriveListView(form.Drive1, QObject::tr("Drive"), side);
    rows->addWidget(makeFixedText(QObject::tr("Search in"), drive, side));
    rows->addWidget(drive);
    rows->addWidget(new FolderListView(form.Dir1, QObject::tr("Folder"), side), 1);
    rows->addWidget(new CheckBoxView(form.chkhidelist, QString(), side));
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(windowGap);
    buttons->addWidget(window.makeButton(form.Command1, side), 1);
    buttons->addWidget(window.makeButton(form.cmdend, side), 1);
    rows->addLayout(buttons);
    return side;
}

/// The list of folders still to scan lies behind the two other lists, in the same cells. It can be
/// seen only while a search hides the two other lists.
QWidget* makeLists(FrmSearch& form, QWidget* parent) {
    using Tips = ListBoxView::LineTips;
    using Gathered = ListBoxView::Gathered;
    auto* lists = new QWidget(parent);
    lists->setObjectName(QStringLiteral("lists"));
    lists->setAccessibleName(QObject::tr("Results"));
    lists->setMinimumWidth(listsWidth);
    auto* grid = new QGridLayout(lists);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    auto* toDo = new ListBoxView(form.lstdirs, QObject::tr("Folders to search"), Tips::whenCut,
                                 lists, Gathered::changes);
    toDo->setFocusPolicy(Qt::ClickFocus);
    auto* files = new ListBoxView(form.lstfiles, QObject::tr("Files found"), Tips::whenCut, lists,
                                  Gathered::changes);
    auto* folders = new ListBoxView(form.List1, QObject::tr("Folders searched"), Tips::whenCut,
                                    lists, Gathered::changes);
    grid->addWidget(toDo, 0, 0, 2, 1);
    grid->addWidget(files, 0, 0);
    grid->addWidget(folders, 1, 0);
    grid->setRowStretch(0, 2);
    grid->setRowStretch(1, 1);
    return lists;
}

void layOut(FrmSearch& form, FormWindow& window) {
    QWidget& client = window.client();
    auto* rows = new QVBoxLayout(&client);
    rows->setContentsMargins(windowMargin, windowMargin, windowMargin, windowMargin);
    rows->setSpacing(windowGap);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(windowMargin);
    columns->addWidget(makeSide(form, window, &client));
    columns->addWidget(makeLists(form, &client), 1);
    rows->addLayout(columns, 1);
    rows->addWidget(new LabelView(form.lbltime, QObject::tr("Progress"), LabelView::Cut::middle,
                                  &client, Pace::captions));
    rows->addWidget(
        new LabelView(form.Label1, QObject::tr("Summary"), LabelView::Cut::end, &client));
    auto* hint = new LabelView(form.Label2, QObject::tr("Hint"), LabelView::Cut::end, &client);
    hint->setSecondary();
    rows->addWidget(hint);
}

} // namespace

WindowLayout finderLayout(FrmSearch& form) {
    return {.form = form,
            .icon = Symbol::search,
            .cancelButton = &form.cmdend,
            .layOut = [&form](FormWindow& window) {
                layOut(form, window);
            }};
}

} // namespace sonarith
