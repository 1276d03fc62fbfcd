// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/devices_window.h"

#include <algorithm>
#include <chrono>

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "platform/device_node.h"
#include "platform/qt/dialog_loop.h"
#include "platform/qt/text.h"
#include "ui/icons.h"
#include "ui/tool_tip.h"

namespace sonarith {
namespace {

/// The role under which an entry stores its name, as bytes: a path need not be UTF-8.
constexpr int nameRole = Qt::UserRole;
/// Interval between two updates of the disc report.
constexpr std::chrono::milliseconds reportInterval{500};

QByteArray asData(const std::string& name) {
    return QByteArray::fromStdString(name);
}

std::string nameIn(const QVariant& data) {
    return data.toByteArray().toStdString();
}

template <typename Widget>
Widget* named(Widget* widget, const char* objectName, const QString& accessibleName) {
    widget->setObjectName(QLatin1String(objectName));
    widget->setAccessibleName(accessibleName);
    return widget;
}

/// Fills a box with the devices and selects the stored device. If that device is missing at
/// present, or if no device is stored, adds and selects an entry that says so.
void fill(QComboBox& box, const std::vector<DeviceEntry>& devices, const std::string& stored) {
    box.clear();
    for (const DeviceEntry& device : devices) {
        const std::string& text = device.description.empty() ? device.name : device.description;
        box.addItem(toQString(text), asData(device.name));
        box.setItemData(box.count() - 1, plainToolTip(toQString(text)), Qt::ToolTipRole);
    }
    int chosen = box.findData(asData(stored));
    if (chosen < 0) {
        const QString text = stored.empty() ? QObject::tr("None")
                                            : QObject::tr("%1 (not found)").arg(toQString(stored));
        box.insertItem(0, text, asData(stored));
        chosen = 0;
    }
    box.setCurrentIndex(chosen);
}

} // namespace

DevicesWindow::DevicesWindow(DeviceChoice& devices, DevicesWindowCalls calls)
    : devices_(devices),
      calls_(std::move(calls)),
      drives_(named(new QListWidget(this), "drives", tr("Drive"))),
      pickButton_(named(new QPushButton(tr("Choose Disc &Image..."), this), "pickImage",
                        tr("Choose Disc Image..."))),
      output_(named(new QComboBox(this), "output", tr("Sound output"))),
      source_(named(new QComboBox(this), "source", tr("Recording source"))),
      report_(named(new QPlainTextEdit(this), "report", tr("The disc"))) {
    setObjectName(QStringLiteral("Devices"));
    setWindowTitle(tr("Devices"));
    setAccessibleName(tr("Devices"));
    setModal(false);
    buildLayout();
    // Device-independent pixels. If the layout needs more, it enlarges the window.
    resize(330, 430);

    const auto chooseItem = [this](const QListWidgetItem* item) {
        choose(*item);
    };
    connect(drives_, &QListWidget::itemClicked, this, chooseItem);
    connect(drives_, &QListWidget::itemActivated, this, chooseItem);
    reportTimer_.setInterval(reportInterval);
    connect(&reportTimer_, &QTimer::timeout, this, [this] { showReport(); });
    connect(pickButton_, &QPushButton::clicked, this, [this] { pickImage(); });
    connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this, [this] {
        if (calls_.help) {
            calls_.help();
        }
    });
    connect(output_, &QComboBox::activated, this,
            [this](int index) { devices_.setOutput(nameIn(output_->itemData(index))); });
    connect(source_, &QComboBox::activated, this,
            [this](int index) { devices_.setSource(nameIn(source_->itemData(index))); });
}

void DevicesWindow::buildLayout() {
    const auto label = [this](const QString& text, const char* objectName, QWidget* buddy) {
        auto* made = named(new QLabel(text, this), objectName, QString(text).remove(u'&'));
        made->setBuddy(buddy);
        return made;
    };
    // Device-independent pixels: three drives and three lines of the report fit without scrolling.
    drives_->setMinimumSize(280, 80);
    drives_->setTextElideMode(Qt::ElideMiddle);
    drives_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    report_->setReadOnly(true);
    report_->setTabChangesFocus(true);
    report_->setMinimumHeight(60);
    for (QComboBox* box : {output_, source_}) {
        // Long device names are shortened instead of widening the window.
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(24);
    }
    pickButton_->setAutoDefault(false);
    auto* buttons =
        named(new QDialogButtonBox(QDialogButtonBox::Close, this), "buttons", tr("Buttons"));
    QPushButton* closeButton =
        named(buttons->button(QDialogButtonBox::Close), "close", tr("Close"));
    closeButton->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::rejected, this, [this] { hide(); });

    auto* rows = new QVBoxLayout(this);
    rows->addWidget(label(tr("&Drive"), "driveLabel", drives_));
    rows->addWidget(drives_, 1);
    rows->addWidget(pickButton_, 0, Qt::AlignLeft);
    rows->addSpacing(6);
    rows->addWidget(label(tr("The dis&c"), "reportLabel", report_));
    rows->addWidget(report_, 1);
    rows->addSpacing(6);
    rows->addWidget(label(tr("Sound &output"), "outputLabel", output_));
    rows->addWidget(output_);
    rows->addWidget(label(tr("&Recording source"), "sourceLabel", source_));
    rows->addWidget(source_);
    rows->addSpacing(6);
    rows->addWidget(buttons);
}

void DevicesWindow::open() {
    showChoices();
    show();
    raise();
    activateWindow();
    drives_->setFocus();
}

void DevicesWindow::showChoices() {
    showDrives();
    fill(*output_, devices_.outputs(), devices_.output());
    fill(*source_, devices_.sources(), devices_.source());
    refused_ = false;
    showReport();
}

void DevicesWindow::showDrives() {
    const std::string stored = devices_.drive();
    drives_->clear();
    const auto add = [&](const std::string& name, const QString& text, Symbol symbol) {
        auto* item = new QListWidgetItem(makeIcon(symbol), text, drives_);
        item->setData(nameRole, asData(name));
        item->setToolTip(plainToolTip(name.empty() ? text : toQString(name)));
        if (name == stored) {
            QFont bold = item->font();
            bold.setBold(true);
            item->setFont(bold);
            drives_->setCurrentItem(item);
        }
    };
    add({}, tr("First drive found"), Symbol::disc);
    const std::vector<std::string> found = devices_.opticalDrives();
    for (const std::string& drive : found) {
        add(drive, toQString(drive), Symbol::disc);
    }
    const bool listed =
        stored.empty() || std::find(found.begin(), found.end(), stored) != found.end();
    if (!listed) {
        const bool device = namesADevice(stored);
        add(stored,
            device ? tr("%1 (not found)").arg(toQString(stored))
                   : tr("Disc image: %1").arg(toQString(stored.substr(stored.rfind('/') + 1))),
            device ? Symbol::disc : Symbol::collection);
    }
}

void DevicesWindow::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    reportTimer_.start();
}

void DevicesWindow::hideEvent(QHideEvent* event) {
    reportTimer_.stop();
    QDialog::hideEvent(event);
}

void DevicesWindow::showReport() {
    const std::string report = devices_.report();
    QString text = refused_ ? tr("The drive is in use. Choose again after the action has ended.")
                   : report.empty() ? tr("No problems were found.")
                                    : toQString(report);
    const std::vector<std::string> notices = calls_.notices();
    if (!notices.empty()) {
        text += QStringLiteral("\n\n") + tr("Notices, newest first:");
    }
    for (auto notice = notices.rbegin(); notice != notices.rend(); ++notice) {
        text += QStringLiteral("\n") + toQString(*notice);
    }
    // While the text is unchanged, the user's selection in the report and the scroll position are
    // kept.
    if (text != report_->toPlainText()) {
        report_->setPlainText(text);
    }
}

/// A drive that is chosen again is read again, but not during a refresh or within the double-click
/// interval after the last choice. So a double click, or a click and Return in quick succession,
/// reads the drive once.
void DevicesWindow::choose(const QListWidgetItem& item) {
    const std::string name = nameIn(item.data(nameRole));
    const bool chosenJustNow =
        refreshing_ ||
        (sinceChoice_.isValid() && !sinceChoice_.hasExpired(QApplication::doubleClickInterval()));
    if (name != devices_.drive() || !chosenJustNow) {
        chooseDrive(name);
        sinceChoice_.start();
    }
}

void DevicesWindow::chooseDrive(const std::string& drive) {
    if (calls_.driveInUse()) {
        if (!isVisible()) {
            // The window may be hidden, because an image can be dropped on another window. The user
            // must see the message.
            open();
        }
        refused_ = true;
        showDrives();
        showReport();
        return;
    }
    refused_ = false;
    devices_.setDrive(drive);
    // A refresh yields. After a choice that is made during a refresh, the next refresh starts when
    // the running one has ended, not inside it.
    refreshAgain_ = refreshing_;
    if (refreshing_) {
        return;
    }
    refreshing_ = true;
    do {
        refreshAgain_ = false;
        calls_.readChosenDisc();
    } while (refreshAgain_);
    refreshing_ = false;
    showDrives();
    showReport();
}

void DevicesWindow::pickImage() {
    const std::string current = devices_.drive();
    const std::string picked = calls_.pickImage ? calls_.pickImage(current) : pickInDialog(current);
    if (!picked.empty()) {
        chooseDrive(picked);
    }
}

std::string DevicesWindow::pickInDialog(const std::string& current) {
    const QString folder = current.empty() || namesADevice(current)
                               ? QString()
                               : QFileInfo(toQString(current)).absolutePath();
    QFileDialog dialog(this, tr("Choose Disc Image"), folder,
                       tr("Disc images (*.cue *.CUE *.toc *.TOC);;All files (*)"));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (runDialog(dialog) != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return {};
    }
    return QFile::encodeName(dialog.selectedFiles().front()).toStdString();
}

} // namespace sonarith
