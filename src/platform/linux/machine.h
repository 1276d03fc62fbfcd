// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the objects through which the logic uses this machine, in the order of their
// dependencies: paths and files, the drive, the sound card with its thread, the device commands and
// the MP3 controls. Windows and the services of the desktop are created elsewhere.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/event_loop.h"
#include "platform/linux/disc/drive_slot.h"
#include "platform/linux/machine_device_choice.h"
#include "platform/linux/mci/interpreter.h"
#include "platform/linux/mp3/mpg123_controls.h"
#include "platform/linux/paths/clock_random.h"
#include "platform/linux/paths/drive_table.h"
#include "platform/linux/paths/home_letter.h"
#include "platform/linux/paths/machine_files.h"
#include "platform/linux/paths/mount_info.h"
#include "platform/linux/paths/path_map.h"
#include "platform/linux/paths/patient_directories.h"
#include "platform/linux/paths/patient_file_system.h"
#include "platform/linux/paths/recording_paths.h"
#include "platform/linux/sound/card_mixer.h"
#include "platform/linux/sound/card_wave_input.h"
#include "platform/linux/sound/kept_tone.h"
#include "platform/linux/sound/pending_saves.h"
#include "platform/linux/sound/sound_card.h"
#include "platform/linux/sound/sound_card_thread.h"
#include "platform/linux/system/linux_system_information.h"
#include "platform/linux/waiting/worker_threads.h"
#include "platform/notices.h"
#include "platform/settings_store.h"
#include "platform/waiting.h"

namespace sonarith {

class Machine {
  public:
    /// `loop`, `store` and `waiting` must outlive this object. `storedPaths` are those keys of
    /// `store` whose values are paths of the logic. `destination` returns the destination folder,
    /// also as a path of the logic: recordings are created in this folder, so that saving a
    /// recording needs no copy. `waiting` waits for disks and drives that may hang. Failures are
    /// reported to `notices`, which must exist until the process ends, because threads that a
    /// hanging device blocks keep a reference to `notices`.
    Machine(EventLoop& loop, SettingsStore& store, Waiting& waiting, Notices& notices,
            const std::vector<StoredPath>& storedPaths, std::function<std::string()> destination);
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    /// Called at the end of the program: stores bass and treble, stops sound, ends the threads of
    /// the sound card and its devices, and waits briefly for requested saves to be written to the
    /// disk. The machine must not be used afterwards.
    void stop();

    /// toMachine() translates a path of the logic to a machine path; toLogic() translates a machine
    /// path to a path of the logic. The file need not exist. The result is empty if the path of the
    /// logic is invalid or the disk does not respond.
    [[nodiscard]] std::string toMachine(const std::string& path) const {
        return files_.machinePath(path);
    }
    [[nodiscard]] std::string toLogic(const std::string& path) const {
        return files_.toLogic(path);
    }

    /// Whether nothing is played or recorded. Waits at most until the sound card has processed the
    /// blocks that are due.
    [[nodiscard]] bool isSilent() const;

    FileSystem& files() { return files_; }
    Directories& directories() { return directories_; }
    ClockRandom& random() { return random_; }
    MediaControl& media() { return media_; }
    Mp3Controls& mp3Controls() { return mp3Controls_; }
    Mixer& mixer() { return mixer_; }
    WaveInput& waveInput() { return waveInput_; }
    SystemInformation& system() { return system_; }
    DeviceChoice& devices() { return devices_; }

  private:
    [[nodiscard]] std::vector<std::filesystem::path> recordingFolders();

    waiting::WorkerThreads threads_;
    SharedPaths shared_;
    PatientPaths paths_;
    PatientFileSystem files_;
    PatientDirectories directories_;
    ClockRandom random_;

    std::function<std::string()> destination_;
    RecordingPaths recordingPaths_;
    disc::DriveSlot slot_;
    sound::SoundCard card_;
    std::shared_ptr<sound::PendingSaves> saves_ = std::make_shared<sound::PendingSaves>();
    MachineDeviceChoice devices_;
    std::unique_ptr<sound::SoundCardThread> cardThread_;
    mci::Interpreter media_;
    mp3::Mpg123Controls mp3Controls_;
    sound::KeptTone keptTone_;
    sound::CardMixer mixer_;
    sound::CardWaveInput waveInput_;
    // The mounts and drive letters for system_. The mounts are read from the kernel's list of
    // mounts, without access to a disk.
    MountInfo mounts_;
    DriveTable drives_;
    PathMap drivePaths_;
    LinuxSystemInformation system_;
};

} // namespace sonarith
