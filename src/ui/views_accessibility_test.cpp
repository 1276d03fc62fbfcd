// SPDX-License-Identifier: GPL-3.0-or-later
// Tests what a screen reader reads from most kinds of controls: their roles, names, and values or
// states.
#include <QAccessible>
#include <QMetaEnum>
#include <QTabBar>
#include <QTest>
#include <gmock/gmock.h>

#include "platform/controls/form.h"
#include "support/fake_directories.h"
#include "support/fake_file_system.h"
#include "ui/block_view.h"
#include "ui/button_view.h"
#include "ui/check_box_view.h"
#include "ui/combo_box_view.h"
#include "ui/drive_list_view.h"
#include "ui/fixed_text.h"
#include "ui/folder_list_view.h"
#include "ui/frame_view.h"
#include "ui/label_view.h"
#include "ui/option_button_view.h"
#include "ui/progress_view.h"
#include "ui/tab_control_view.h"
#include "ui/text_box_view.h"
#include "ui/text_lines_view.h"
#include "ui/trace_view.h"

namespace sonarith {
namespace {

class ViewsAccessibility : public testing::Test {
  protected:
    /// What a screen reader reads from the view: its role, its name, its value, and whether it is
    /// checked.
    static std::string read(QWidget& view) {
        QAccessibleInterface* found = QAccessible::queryAccessibleInterface(&view);
        if (!found) {
            return "nothing";
        }
        const QMetaEnum roles = QMetaEnum::fromType<QAccessible::Role>();
        QString description = QString::fromLatin1(roles.valueToKey(found->role())) + ": " +
                              found->text(QAccessible::Name);
        const QString value = found->text(QAccessible::Value);
        if (!value.isEmpty() && value != found->text(QAccessible::Name)) {
            description += " = " + value;
        }
        if (found->state().checked) {
            description += ", checked";
        }
        return description.toStdString();
    }

    /// The text that is linked to the view as its label; empty if there is none.
    static std::string labelOf(QWidget& view) {
        QAccessibleInterface* found = QAccessible::queryAccessibleInterface(&view);
        const auto labels = found->relations(QAccessible::Label);
        return labels.isEmpty() ? "" : labels.first().first->text(QAccessible::Name).toStdString();
    }

    Form form{"FrmPrefs"};
    QWidget parent;
};

TEST_F(ViewsAccessibility, ReadsAButtonByItsCaption) {
    CommandButton set(form, "Command1", "Set");
    TextButtonView text(set, "", &parent);
    EXPECT_EQ(read(text), "Button: Set");
    set.setToolTip("Saves all four");
    IconButtonView picture(set, Symbol::play, &parent);
    EXPECT_EQ(read(picture), "Button: Set");
}

TEST_F(ViewsAccessibility, ReadsCheckBoxesAndOptionButtonsWithTheirState) {
    CheckBox box(form, "Check6", "Warn me");
    CheckBoxView boxView(box, "", &parent);
    EXPECT_EQ(read(boxView), "CheckBox: Warn me");
    box.setValue(1).passOver();
    EXPECT_EQ(read(boxView), "CheckBox: Warn me, checked");
    OptionGroup group;
    OptionButton option(form, group, "Option1");
    option.setToolTip("Unmute");
    OptionButtonView optionView(option, "Unmute", &parent);
    EXPECT_EQ(read(optionView), "RadioButton: Unmute");
    option.setSelected(true);
    EXPECT_EQ(read(optionView), "RadioButton: Unmute, checked");
}

TEST_F(ViewsAccessibility, ReadsTheTextOfATextBoxAndTheCaptionOfALabel) {
    TextBox box(form, "Text7", "100");
    TextBoxView line(box, "Warning limit", &parent);
    EXPECT_EQ(read(line), "EditableText: Warning limit = 100");
    QLabel* word = makeFixedText("Warn below", &line, &parent);
    EXPECT_EQ(labelOf(line), "Warn below");
    EXPECT_EQ(read(*word), "StaticText: Warn below");
    TextBox list(form, "Text6", "c: 10 MB");
    TextLinesView lines(list, "Available space", &parent);
    EXPECT_EQ(read(lines), "EditableText: Available space = c: 10 MB");
    Label label(form, "lbltime", "Time taken: 0 second(s)");
    LabelView labelView(label, "Time", LabelView::Cut::end, &parent);
    EXPECT_EQ(read(labelView), "StaticText: Time taken: 0 second(s)");
}

TEST_F(ViewsAccessibility, ReadsDropDownListsByTheirEntryAndListsByTheirLabel) {
    ComboBox combo(form, "Combo1");
    combo.addItem("good");
    combo.setListIndex(0).passOver();
    ComboBoxView comboView(combo, "Encoding Quality", &parent);
    // On Linux, Qt uses the value of a drop-down list as its accessible name. The label beside the
    // list says what the value means.
    EXPECT_EQ(read(comboView), "ComboBox: good");
    EXPECT_EQ(labelOf(comboView), "");
    static_cast<void>(makeFixedText("Encoding Quality", &comboView, &parent));
    EXPECT_EQ(labelOf(comboView), "Encoding Quality");
    test::FakeDirectories disk;
    test::FakeFileSystem files;
    disk.addFolder("c:\\music");
    files.setProgramFolder("c:\\music");
    DriveListBox drives(form, "Drive2", disk, files);
    DirListBox folders(form, "Dir2", disk, files);
    form.load();
    DriveListView drivesView(drives, "Drive", &parent);
    EXPECT_EQ(read(drivesView), "ComboBox: c:");
    FolderListView foldersView(folders, "Folder", &parent);
    parent.show();
    EXPECT_EQ(read(foldersView), "List: Folder");
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&foldersView);
    ASSERT_EQ(list->childCount(), 2);
    EXPECT_EQ(list->child(1)->text(QAccessible::Name), "music");
}

TEST_F(ViewsAccessibility, ReadsFramesAndTabsByTheirCaptions) {
    Frame frame(form, "Audio", "Audio Preferences");
    FrameView frameView(frame, &parent);
    EXPECT_EQ(read(frameView), "Grouping: Audio Preferences");
    TabControl tabs(form, "SSTab2", {"Disk Space", " Destination Path"});
    TabControlView tabsView(tabs, "Preferences", &parent);
    QAccessibleInterface* bar = QAccessible::queryAccessibleInterface(tabsView.tabBar());
    EXPECT_EQ(bar->role(), QAccessible::PageTabList);
    EXPECT_EQ(bar->child(1)->text(QAccessible::Name), "Destination Path");
    EXPECT_EQ(bar->child(1)->role(), QAccessible::PageTab);
}

TEST_F(ViewsAccessibility, ReadsPicturesByTheirLabelAndAProgressBarWithItsValue) {
    PictureBox picture(form, "picPeakVol");
    TraceView trace(picture, "Sound Level Meter", {Qt::black, Qt::green}, &parent);
    EXPECT_EQ(read(trace), "Client: Sound Level Meter");
    Label bar(form, "Label4");
    BlockView block(bar, "Level", Qt::green, &parent);
    EXPECT_EQ(read(block), "Client: Level");
    ProgressBar progress(form, "ProgressBar1", 0, 100);
    progress.setValue(42).passOver();
    ProgressView progressView(progress, "Progress", &parent);
    EXPECT_EQ(read(progressView), "ProgressBar: Progress = 42");
}

} // namespace
} // namespace sonarith
