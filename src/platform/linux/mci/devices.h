// SPDX-License-Identifier: GPL-3.0-or-later
// Declares what the two devices of the command interpreter (CD audio and wave recorder) need from
// the machine: a drive, a player of discs, a recorder, and the translation of paths. The
// implementations for a real machine are in machine_devices.h; tests and the fuzzer have their own.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/linux/disc/disc.h"
#include "platform/linux/disc/disc_player.h"
#include "platform/notices.h"
#include "platform/result.h"
#include "platform/silent_notices.h"

namespace sonarith::mci {

/// Plays one disc to the output and to the recorder. The disc is initially stopped at sector 0; the
/// destructor stops it. For the logic thread only.
class Transport {
  public:
    virtual ~Transport() = default;
    /// As DiscPlayer::play.
    virtual Status play(std::int64_t sector, std::int64_t endSector) = 0;
    virtual void pause() = 0;
    virtual void resume() = 0;
    virtual void stop() = 0;
    virtual void seek(std::int64_t sector) = 0;
    [[nodiscard]] virtual disc::PlayerMode mode() = 0;
    /// As DiscPlayer::positionInFrames, at the present moment.
    [[nodiscard]] virtual std::int64_t positionInFrames() = 0;
    /// How long the current read of the next sound has taken; 0 if no read is running.
    [[nodiscard]] virtual std::chrono::milliseconds readingFor() = 0;
    /// Whether the disc can no longer be read. Never changes back to false.
    [[nodiscard]] virtual bool gone() = 0;
};

/// One recording of 16 bit samples at 44100 Hz. Its file is hidden until the recording is saved;
/// unsaved sound is deleted with the object. For the logic thread only.
class Recorder {
  public:
    virtual ~Recorder() = default;
    /// Begins a recording of 1 or 2 channels. After a stop, appends to the recording; its number of
    /// channels never changes. Errors: deviceUnavailable while another recorder is recording, or if
    /// no thread can be started; invalidProcedureCall after a save has been tried; those of
    /// creating the file. A disk that does not respond is no error: the sound is buffered.
    virtual Status start(int channels) = 0;
    virtual void stop() = 0;
    [[nodiscard]] virtual bool recording() const = 0;
    /// The number of bytes of samples recorded up to the present moment; after a disk failure, only
    /// of those that are kept.
    [[nodiscard]] virtual std::int64_t bytes() = 0;
    /// Saves a stopped recording as the WAV file `path`; after a disk failure, the part that is
    /// kept. If the disk does not respond in time, returns an error, and the save continues in the
    /// background.
    virtual Status save(const std::filesystem::path& path) = 0;
};

struct Devices {
    /// The drive that is chosen at the time of the call; a null pointer if the machine has no
    /// drive. Returns the same object as long as the chosen drive is the same.
    std::function<std::shared_ptr<disc::Drive>()> drive;
    std::function<std::unique_ptr<Transport>(std::shared_ptr<disc::Disc>)> transport;
    std::function<std::unique_ptr<Recorder>()> recorder;
    /// Translates a path of the logic ("c:\music\a.wav") to one of the machine. Returns an empty
    /// path if the path of the logic is invalid or its disk does not respond.
    std::function<std::filesystem::path(const std::string&)> path;
    /// Receives messages that the replies to commands do not contain. Must outlive the devices.
    Notices* notices = &silentNotices();
};

} // namespace sonarith::mci
