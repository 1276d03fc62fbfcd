// SPDX-License-Identifier: GPL-3.0-or-later
// What the command devices ask of the machine: a drive, something that plays a disc, something
// that records, and where a file lies. The implementations of a real machine are in
// machine_devices.h; tests and the fuzzer have others.
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

/// Plays one disc so that it can be heard and recorded. Made stopped, at sector 0; its end stops
/// it. Used by the logic's thread alone.
class Transport {
  public:
    virtual ~Transport() = default;
    /// As DiscPlayer::play.
    virtual void play(std::int64_t sector, std::int64_t endSector) = 0;
    virtual void pause() = 0;
    virtual void resume() = 0;
    virtual void stop() = 0;
    virtual void seek(std::int64_t sector) = 0;
    [[nodiscard]] virtual disc::PlayerMode mode() = 0;
    /// As DiscPlayer::positionInFrames, at this very moment.
    [[nodiscard]] virtual std::int64_t positionInFrames() = 0;
    /// How long the disc has been read for what is to be played next; 0 if it is not being read.
    [[nodiscard]] virtual std::chrono::milliseconds readingFor() = 0;
    /// True from the moment on from which the disc cannot be read any more.
    [[nodiscard]] virtual bool gone() = 0;
};

/// One recording of 16 bit samples at 44100 Hz, kept out of sight until it is saved; what was not
/// saved ends with the object. Used by the logic's thread alone.
class Recorder {
  public:
    virtual ~Recorder() = default;
    /// Begins a recording of 1 or 2 channels, or goes on at its end. The channels of a recording
    /// never change. Errors: deviceUnavailable while another recorder is recording,
    /// invalidProcedureCall once a save has been tried, those of the file that is made. A disk that
    /// does not answer is no error: what is heard waits for it.
    virtual Status start(int channels) = 0;
    virtual void stop() = 0;
    [[nodiscard]] virtual bool recording() const = 0;
    /// Bytes of samples taken up to this very moment; those that are kept, once the disk has
    /// failed.
    [[nodiscard]] virtual std::int64_t bytes() = 0;
    /// Puts a stopped recording under its name, as a WAV file; after a failure of the disk, what is
    /// kept of it. A disk that does not answer in time is an error, and the save goes on by itself.
    virtual Status save(const std::filesystem::path& path) = 0;
};

struct Devices {
    /// The drive that is chosen now; a null pointer if the machine has none. It is the same for as
    /// long as the choice is.
    std::function<std::shared_ptr<disc::Drive>()> drive;
    std::function<std::unique_ptr<Transport>(std::shared_ptr<disc::Disc>)> transport;
    std::function<std::unique_ptr<Recorder>()> recorder;
    /// From a path of the logic ("c:\music\a.wav") to one of the machine; empty if it names none.
    std::function<std::filesystem::path(const std::string&)> path;
    /// Hears what the replies to commands do not say. Outlives the devices.
    Notices* notices = &silentNotices();
};

} // namespace sonarith::mci
