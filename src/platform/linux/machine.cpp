// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/machine.h"

#include <chrono>
#include <utility>

#include "platform/linux/mci/machine_devices.h"
#include "platform/linux/paths/program_folder.h"
#include "platform/linux/paths/user_folders.h"

namespace sonarith {

namespace {

/// The longest wait for pending saves at the end of the program. If a sound output and a sound
/// input hang, closing them takes another 650 ms. So the end of the program takes less than a
/// second.
constexpr std::chrono::milliseconds patienceWithSaves{300};

/// Replaces each stored path below the user's home folder by the path of the same file on H:
/// (home_letter.h). Returns the home folder.
std::string homeAfterMigration(SettingsStore& store, const std::vector<StoredPath>& storedPaths) {
    std::string home = homeFolder();
    moveToHomeLetter(store, home, storedPaths);
    return home;
}

SharedPaths sharedPaths(const SettingsStore& store, const std::string& home) {
    return {.letters = std::make_shared<LetterStore>(store),
            .home = home,
            .programFolder = programFolder(executableFolder(), musicFolder)};
}

/// `store` may be used only on the logic thread. So only the member `afterCall` of the result uses
/// `store`: PathAccess::afterCall is called on the logic thread, but PathAccess::make on any
/// thread.
PathAccess pathAccess(SettingsStore& store, const SharedPaths& shared) {
    return {[shared] { return std::make_shared<LinuxMachineFiles>(shared); },
            [&store, letters = shared.letters] { letters->writeTo(store); }, placesOfThisMachine()};
}

} // namespace

Machine::Machine(EventLoop& loop, SettingsStore& store, Waiting& waiting, Notices& notices,
                 const std::vector<StoredPath>& storedPaths,
                 std::function<std::string()> destination)
    : shared_(sharedPaths(store, homeAfterMigration(store, storedPaths))),
      paths_(pathAccess(store, shared_), {threads_, waiting, notices}),
      files_(paths_),
      directories_(paths_, files_),
      destination_(std::move(destination)),
      recordingPaths_(files_),
      slot_([this] { return devices_.drive(); },
            disc::realDriveMakers({threads_, waiting, notices})),
      devices_(store, slot_, card_, notices),
      cardThread_(std::make_unique<sound::SoundCardThread>(card_)),
      media_(
          mci::devicesOf({card_, sound::monotonicNow, [this] { return slot_.openDrive(); },
                          [this] { return recordingFolders(); },
                          [this](const std::string& path) { return recordingPaths_.saveAs(path); },
                          notices, saves_})),
      mp3Controls_(
          card_, sound::monotonicNow,
          [this](const std::string& path) { return std::filesystem::path(toMachine(path)); },
          notices, saves_),
      keptTone_(card_.tone(), store, loop),
      mixer_(&card_, [this] { keptTone_.changed(); }),
      waveInput_(card_),
      drives_(*shared_.letters, shared_.home),
      drivePaths_(drives_, mounts_),
      system_(
          threads_, waiting, [this] { return drivePaths_.drives().drives(); },
          [this](const std::string& path) { return drivePaths_.logicPathOf(path); }) {}

bool Machine::isSilent() const {
    const sound::SoundCard::Work work = card_.work();
    return work == sound::SoundCard::Work::none || work == sound::SoundCard::Work::silence;
}

void Machine::stop() {
    keptTone_.keep();
    mp3Controls_.stopAll();
    cardThread_.reset();
    devices_.release();
    saves_->awaitNone(patienceWithSaves);
}

std::vector<std::filesystem::path> Machine::recordingFolders() {
    return {recordingPaths_.beginIn(destination_()), userDataFolder(), "/var/tmp", "/tmp"};
}

} // namespace sonarith
