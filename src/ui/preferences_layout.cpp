// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/preferences_layout.h"

#include <QBoxLayout>
#include <QFormLayout>
#include <QGridLayout>

#include "platform/qt/text.h"
#include "ui/button_view.h"
#include "ui/check_box_view.h"
#include "ui/combo_box_view.h"
#include "ui/drive_list_view.h"
#include "ui/fixed_text.h"
#include "ui/folder_list_view.h"
#include "ui/frame_view.h"
#include "ui/picture_view.h"
#include "ui/tab_control_view.h"
#include "ui/text_box_view.h"
#include "ui/text_lines_view.h"
#include "ui/window_measures.h"

namespace sonarith {
namespace {

// Device-independent pixels.
constexpr int limitWidth = 70;
constexpr int folderListHeight = 120;

/// Shows a label whose text never changes. If `named` is not null, screen readers read the text as
/// the label of that widget.
QLabel* makeText(const Label& label, QWidget* named, QWidget* parent) {
    return makeFixedText(toQString(label.caption()), named, parent);
}

/// Creates a row with a check box and the text box of the limit that the check box switches on.
/// `name` is the accessible name of the text box.
QLayout* makeLimit(CheckBox& box, TextBox& limit, const QString& name, QWidget* parent) {
    auto* row = new QHBoxLayout;
    row->setSpacing(windowGap);
    row->addWidget(new CheckBoxView(box, QString(), parent), 1);
    auto* number = new TextBoxView(limit, name, parent);
    number->setFixedWidth(limitWidth);
    row->addWidget(number);
    row->addWidget(makeFixedText(QObject::tr("MB"), number, parent));
    return row;
}

void layOutDiskSpace(FrmPrefs& form, FormWindow& window, QWidget& page) {
    auto* pageRows = new QVBoxLayout(&page);
    auto* frame = new FrameView(form.DriveSpace, &page);
    pageRows->addWidget(frame);
    auto* rows = new QVBoxLayout(frame);
    rows->setSpacing(windowGap);
    rows->addLayout(makeLimit(form.Check6, form.Text7, QObject::tr("Warning limit in MB"), frame));
    rows->addLayout(makeLimit(form.Check7, form.Text8, QObject::tr("Stop limit in MB"), frame));
    auto* set = new QHBoxLayout;
    set->addStretch();
    set->addWidget(window.makeButton(form.Command1, frame));
    rows->addLayout(set);
    auto* space =
        new TextLinesView(form.Text6, QObject::tr("Available space in hard drive(s)"), frame);
    rows->addWidget(makeText(form.lblSpace, space, frame));
    rows->addWidget(space, 1);
    auto* refresh = new QHBoxLayout;
    refresh->addStretch();
    refresh->addWidget(window.makeButton(form.Command3, frame));
    rows->addLayout(refresh);
}

void addChoice(QFormLayout& rows, const Label& label, ComboBox& box, QWidget* parent) {
    auto* view = new ComboBoxView(box, toQString(label.caption()), parent);
    rows.addRow(makeText(label, view, parent), view);
}

void layOutAudio(FrmPrefs& form, QWidget& page) {
    auto* rows = new QVBoxLayout(&page);
    rows->setSpacing(windowGap);
    auto* encoding = new FrameView(form.Encoding, &page);
    rows->addWidget(encoding);
    auto* encodingRows = new QFormLayout(encoding);
    encodingRows->setSpacing(windowGap);
    addChoice(*encodingRows, form.lblQuality, form.Combo1, encoding);
    addChoice(*encodingRows, form.lblBitsize, form.Combo2, encoding);
    for (CheckBox* box : {&form.Check11, &form.Check10, &form.Check3, &form.Check5}) {
        encodingRows->addRow(new CheckBoxView(*box, QString(), encoding));
    }
    encodingRows->addRow(
        new CheckBoxView(form.Check4, toQString(form.lblTray.caption()), encoding));
    auto* audio = new FrameView(form.Audio, &page);
    rows->addWidget(audio);
    auto* audioRows = new QFormLayout(audio);
    audioRows->setSpacing(windowGap);
    addChoice(*audioRows, form.lblFormat, form.cbxFormat, audio);
    auto* mute = new CheckBoxView(form.Check1, QString(), audio);
    audioRows->addRow(makeText(form.lblMute, mute, audio), mute);
    rows->addStretch(1);
}

/// Creates the views with which the user chooses a new destination folder. The logic makes them
/// visible only while Check2 is ticked.
QWidget* makeFolderChoice(FrmPrefs& form, FormWindow& window, QWidget* parent) {
    auto* choice = new BarView(form.Picture6, QObject::tr("New destination"), Qt::TopEdge, parent);
    auto* columns = new QHBoxLayout(choice);
    columns->setContentsMargins(0, windowGap, 0, 0);
    columns->setSpacing(windowMargin);
    auto* left = new QVBoxLayout;
    left->setSpacing(windowGap);
    auto* name = new TextBoxView(form.Text10, QObject::tr("Name of the new directory"), choice);
    left->addWidget(makeText(form.lblCreate, name, choice));
    left->addWidget(name);
    for (const Label* step : {&form.lblCreate1, &form.lblCreate2, &form.lblCreate3}) {
        QLabel* line = makeText(*step, nullptr, choice);
        line->setWordWrap(true);
        left->addWidget(line);
    }
    left->addWidget(window.makeButton(form.Co111, choice), 0, Qt::AlignLeft);
    left->addStretch(1);
    columns->addLayout(left, 1);
    auto* right = new QVBoxLayout;
    right->setSpacing(windowGap);
    auto* drive = new DriveListView(form.Drive2, QObject::tr("Drive"), choice);
    right->addWidget(makeFixedText(QObject::tr("Drive"), drive, choice));
    right->addWidget(drive);
    auto* folders = new FolderListView(form.Dir2, QObject::tr("Folder"), choice);
    folders->setMinimumHeight(folderListHeight);
    right->addWidget(folders, 1);
    columns->addLayout(right, 1);
    return choice;
}

void layOutDestination(FrmPrefs& form, FormWindow& window, QWidget& page) {
    auto* rows = new QVBoxLayout(&page);
    rows->setSpacing(windowGap);
    auto* path = new TextBoxView(form.Text9, QObject::tr("Destination path"), &page);
    rows->addWidget(makeText(form.lblDestination, path, &page));
    rows->addWidget(path);
    rows->addWidget(new CheckBoxView(form.Check2, QString(), &page));
    rows->addWidget(makeFolderChoice(form, window, &page), 1);
    rows->addStretch(0);
}

void layOut(FrmPrefs& form, FormWindow& window) {
    QWidget& client = window.client();
    auto* rows = new QVBoxLayout(&client);
    rows->setContentsMargins(windowMargin, windowMargin, windowMargin, windowMargin);
    auto* tabs = new TabControlView(form.SSTab2, QObject::tr("Preferences"), &client);
    rows->addWidget(tabs);
    layOutDiskSpace(form, window, tabs->page(0));
    layOutAudio(form, tabs->page(1));
    layOutDestination(form, window, tabs->page(2));
}

} // namespace

WindowLayout preferencesLayout(FrmPrefs& form) {
    return {.form = form, .icon = Symbol::preferences, .layOut = [&form](FormWindow& window) {
                layOut(form, window);
            }};
}

} // namespace sonarith
