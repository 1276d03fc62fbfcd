// SPDX-License-Identifier: GPL-3.0-or-later
// The composition root: creates the machine, the desktop's services, the application and its
// windows, and runs the event loop.
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <QApplication>

#include "app/application.h"
#include "platform/linux/late/device_libraries.h"
#include "platform/linux/machine.h"
#include "platform/linux/paths/single_instance.h"
#include "platform/notice_board.h"
#include "platform/qt/desktop_notifications.h"
#include "platform/qt/early_steps.h"
#include "platform/qt/end_requests.h"
#include "platform/qt/ini_settings_store.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_file_dialog.h"
#include "platform/qt/qt_message_boxes.h"
#include "platform/qt/qt_mouse_pointer.h"
#include "platform/qt/qt_shell.h"
#include "platform/qt/qt_tray.h"
#include "platform/qt/qt_waiting.h"
#include "platform/qt/silent_bus.h"
#include "playlist/playlist_entries.h"
#include "ui/devices_window.h"
#include "ui/finder_layout.h"
#include "ui/help_pages.h"
#include "ui/icons.h"
#include "ui/lazy_window.h"
#include "ui/main_window_view.h"
#include "ui/notice_center.h"
#include "ui/player_layout.h"
#include "ui/playlist_layout.h"
#include "ui/preferences_layout.h"
#include "ui/program_help.h"
#include "ui/program_style.h"

namespace {

using namespace sonarith;

/// How long the start waits for the session bus: longer than a busy desktop needs at the login.
constexpr std::chrono::seconds busPatience{3};

std::vector<StoredPath> storedPaths(const SettingsStore& store) {
    std::vector<StoredPath> paths{{settingsSection, decodePathKey}};
    for (const std::string& key : playlistPathKeys(store)) {
        paths.push_back({playlistSection, key});
    }
    return paths;
}

int runProgram(bool busIsSilent) {
    QtEventLoop loop;
    QtWaiting waiting;
    // The board is never destroyed: threads that hang in a device may report to the board until
    // the process ends.
    static NoticeBoard& notices = *new NoticeBoard;
    IniSettingsStore store(IniSettingsStore::defaultFolder(), &notices);
    const ProcessState* process = nullptr;
    Machine machine(loop, store, waiting, notices, storedPaths(store),
                    [&] { return process->settings.decodePath; });
    const auto toMachine = [&](const std::string& path) {
        return machine.toMachine(path);
    };
    QtMessageBoxes boxes(applicationTitle);
    QtMousePointer pointer;
    ProgramHelp programHelp(helpFolder);
    QtShell shell(applicationTitle, {SONARITH_VERSION, SONARITH_LIBRARIES}, toMachine, notices,
                  [&] { return programHelp.show(); });
    QtTray tray([] { return makeIcon(Symbol::program); });
    QtFileDialog fileDialog(toMachine,
                            [&](const std::string& path) { return machine.toLogic(path); });

    Application application(Platform{.loop = loop,
                                     .media = machine.media(),
                                     .store = store,
                                     .files = machine.files(),
                                     .boxes = boxes,
                                     .pointer = pointer,
                                     .random = machine.random(),
                                     .shell = shell,
                                     .directories = machine.directories(),
                                     .mp3Controls = machine.mp3Controls(),
                                     .fileDialog = fileDialog,
                                     .mixer = machine.mixer(),
                                     .waveInput = machine.waveInput(),
                                     .tray = tray,
                                     .system = machine.system()});
    process = &application.process();
    Windows& windows = application.windows();
    Form1& form = windows.Form1;

    MainWindowView window(form);
    DesktopNotifications notifications(QString::fromUtf8(applicationTitle));
    const NoticeCenter noticeCenter(notices, window, window.noticeBar(),
                                    [&](const QString& text) { notifications.send(text); });
    DevicesWindowCalls calls;
    calls.driveInUse = [&] {
        return application.driveInUse();
    };
    calls.readChosenDisc = [&] {
        application.readChosenDisc();
    };
    calls.notices = [&] {
        return notices.texts();
    };
    const auto askForHelp = [&](const std::string& windowName) {
        programHelp.askFrom(windowName, [&] { form.Cmdhelp.click(); });
    };
    calls.help = [&] {
        askForHelp("Devices");
    };
    // Windows that the start does not show are created when they are first requested.
    std::unique_ptr<DevicesWindow> devices;
    const auto devicesWindow = [&]() -> DevicesWindow& {
        if (!devices) {
            devices = std::make_unique<DevicesWindow>(machine.devices(), calls);
        }
        return *devices;
    };
    form.mnuDevices.onClick = [&] {
        devicesWindow().open();
    };
    window.noticeBar().onDetails = [&] {
        devicesWindow().open();
    };
    window.acceptsImages = [&] {
        return !application.driveInUse();
    };
    window.onImageDropped = [&](const std::string& image) {
        devicesWindow().chooseDrive(image);
    };
    const HelpCall help = [&](const Form& asked) {
        askForHelp(asked.name());
    };
    const LazyWindow player(playerLayout(windows.Form4), help);
    const LazyWindow preferences(preferencesLayout(windows.FrmPrefs), help);
    const LazyWindow finder(finderLayout(windows.frmsearch), help);
    const LazyWindow playlist(playlistLayout(windows.frmPlayList), help);

    loop.setLastSteps([&] { machine.stop(); });
    loop.setSilence([&] { return machine.isSilent(); });
    const EndRequests requests([&] { form.unload(); }, [&] { form.Command8.click(); });
    application.start();
    if (busIsSilent) {
        notices.report({"The desktop's session bus does not respond. Until this program is started "
                        "again, most panels show no icon of it, it sends no notifications, and "
                        "assistive programs cannot operate it."});
    }
    // The main window is complete: the following steps do not delay it.
    tray.watchHosts();
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
    const bool busIsSilent = sessionBusIsSilent(busPatience);
    if (busIsSilent) {
        doWithoutSessionBus();
    }
    const BackgroundWork earlySteps = startEarlySteps();
    QApplication qt(argc, argv);
    QApplication::setApplicationName("sonarith");
    // Docks and the desktop's menu identify the windows by this name.
    QApplication::setDesktopFileName("org.sonarith.sonarith");
    QApplication::setStyle(new ProgramStyle);
    return runProgram(busIsSilent);
}
