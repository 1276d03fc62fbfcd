// SPDX-License-Identifier: GPL-3.0-or-later
// The composition root: makes the real platform, the application and its windows, and runs them.
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <QApplication>

#include "app/application.h"
#include "platform/linux/disc/drive_slot.h"
#include "platform/linux/disc/optical_drive.h"
#include "platform/linux/late/device_libraries.h"
#include "platform/linux/mci/interpreter.h"
#include "platform/linux/mci/machine_devices.h"
#include "platform/linux/mp3/mpg123_control.h"
#include "platform/linux/paths/clock_random.h"
#include "platform/linux/paths/drive_table.h"
#include "platform/linux/paths/linux_directory_walk.h"
#include "platform/linux/paths/linux_file_system.h"
#include "platform/linux/paths/mount_info.h"
#include "platform/linux/paths/path_map.h"
#include "platform/linux/paths/program_folder.h"
#include "platform/linux/paths/single_instance.h"
#include "platform/linux/sound/alsa_output.h"
#include "platform/linux/sound/sound_card.h"
#include "platform/linux/sound/sound_card_thread.h"
#include "platform/qt/early_fonts.h"
#include "platform/qt/end_requests.h"
#include "platform/qt/ini_settings_store.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_file_dialog.h"
#include "platform/qt/qt_message_boxes.h"
#include "platform/qt/qt_mouse_pointer.h"
#include "platform/qt/qt_shell.h"
#include "settings/chosen_devices.h"
#include "ui/coming_window.h"
#include "ui/devices_window.h"
#include "ui/main_window_view.h"
#include "ui/program_style.h"

namespace {

using namespace sonarith;

void applyOutput(sound::SoundCard& card, const std::string& name) {
    card.setSpeakers(sound::makeOutput(name));
}

void applySource(sound::SoundCard& card, const std::string& name) {
    card.setRecordingSource(name == ChosenDevices::mixSource ? sound::RecordingSource::mix
                                                             : sound::RecordingSource::compactDisc);
}

std::vector<DeviceChoice> outputChoices() {
    std::vector<DeviceChoice> choices;
    for (const sound::DeviceEntry& entry : sound::listOutputs()) {
        choices.push_back({entry.name, entry.description});
    }
    return choices;
}

/// An action that has closed the commands opens the drive again for each of its tracks.
bool driveInUse(const Form1& form) {
    return !form.mnuPrefs.enabled();
}

DeviceChoices deviceChoices(ChosenDevices& chosen, disc::DriveSlot& slot, sound::SoundCard& card,
                            Form1& form) {
    DeviceChoices choices;
    choices.opticalDrives = disc::opticalDrives;
    choices.outputs = outputChoices;
    choices.sources = [] {
        return std::vector<DeviceChoice>{{"", "Compact disc"},
                                         {ChosenDevices::mixSource, "All that is played"}};
    };
    choices.drive = [&] {
        return chosen.drive();
    };
    choices.output = [&] {
        return chosen.output();
    };
    choices.source = [&] {
        return chosen.source();
    };
    choices.setDrive = [&](const std::string& drive) {
        chosen.setDrive(drive);
        slot.choiceMade();
    };
    choices.setOutput = [&](const std::string& name) {
        chosen.setOutput(name);
        applyOutput(card, name);
    };
    choices.setSource = [&](const std::string& name) {
        chosen.setSource(name);
        applySource(card, name);
    };
    choices.driveInUse = [&] {
        return driveInUse(form);
    };
    choices.refreshList = [&] {
        form.mnuRefreshlist.click();
    };
    choices.report = [&] {
        return slot.report();
    };
    return choices;
}

int runProgram() {
    const std::string home = programFolder(executableFolder(), userDataFolder());
    QtEventLoop loop;
    IniSettingsStore store;
    MountInfo mounts;
    DriveTable letters(store);
    PathMap paths(letters, mounts);
    LinuxFileSystem files(paths, home);
    const auto machinePath = [&](const std::string& path) {
        const Result<Located> located = files.locate(path);
        return located.ok() ? located.value().path : std::string();
    };

    ChosenDevices chosen(store);
    disc::DriveSlot slot([&] { return chosen.drive(); });
    sound::SoundCard card;
    applyOutput(card, chosen.output());
    applySource(card, chosen.source());
    auto cardThread = std::make_unique<sound::SoundCardThread>(card);

    ProcessState* process = nullptr;
    // In the destination folder first: a recording made there is saved without being copied.
    const auto recordingFolders = [&]() -> std::vector<std::filesystem::path> {
        return {machinePath(process->settings.decodePath), std::filesystem::path(userDataFolder()),
                "/var/tmp", "/tmp"};
    };
    mci::Interpreter media(mci::devicesOf({card, sound::monotonicNow,
                                           [&] { return slot.openDrive(); }, recordingFolders,
                                           [&](const std::string& path) {
                                               return std::filesystem::path(machinePath(path));
                                           }}));

    QtMessageBoxes boxes(applicationTitle);
    QtMousePointer pointer;
    ClockRandom random;
    QtShell shell(applicationTitle, machinePath);
    LinuxDirectories directories(paths, files);
    mp3::Mpg123Control mp3(card, sound::monotonicNow, [&](const std::string& path) {
        return std::filesystem::path(machinePath(path));
    });
    QtFileDialog fileDialog(machinePath,
                            [&](const std::string& path) { return paths.toLogic(path); });
    Application application(
        {loop, media, store, files, boxes, pointer, random, shell, directories, mp3, fileDialog});
    process = &application.process();
    Form1& form = application.form1();

    MainWindowView window(form);
    // Windows that a start does not show are built when they are first asked for.
    std::unique_ptr<DevicesWindow> devices;
    const auto devicesWindow = [&]() -> DevicesWindow& {
        if (!devices) {
            devices = std::make_unique<DevicesWindow>(deviceChoices(chosen, slot, card, form));
        }
        return *devices;
    };
    form.mnuDevices.onClick = [&] {
        devicesWindow().open();
    };
    window.acceptsImages = [&] {
        return !driveInUse(form);
    };
    window.onImageDropped = [&](const std::string& image) {
        devicesWindow().chooseDrive(image);
    };
    Windows& others = application.windows();
    std::map<Form*, std::unique_ptr<ComingWindow>> coming;
    std::vector<Connection> firstShown;
    for (Form* other : {&others.Form4, &others.FrmPrefs, &others.frmsearch, &others.frmPlayList}) {
        firstShown.push_back(other->showRequested.connect([&coming, other] {
            if (!coming[other]) {
                coming[other] = std::make_unique<ComingWindow>(*other);
            }
        }));
    }

    loop.setLastSteps([&] {
        mp3.Stop().passOver();
        cardThread.reset();
        card.setSpeakers(nullptr);
    });
    const EndRequests requests([&] { form.unload(); }, [&] { form.Command8.click(); });
    application.start();
    // The window stands.
    loadDeviceLibraries();
    loop.run();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const SingleInstance instance(instanceFolders(IniSettingsStore::defaultFolder().toStdString()));
    if (!instance.isFirst()) {
        return 0;
    }
    const EarlyFonts fonts;
    QApplication qt(argc, argv);
    QApplication::setApplicationName("sonarith");
    QApplication::setStyle(new ProgramStyle);
    return runProgram();
}
