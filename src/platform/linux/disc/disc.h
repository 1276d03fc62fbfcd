// SPDX-License-Identifier: GPL-3.0-or-later
// What a drive and the disc in it offer to the devices above: a table of tracks on one time line,
// and sectors of sound. This is not the player (disc_player.h) and knows no file format.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::disc {

// IEC 60908 (compact disc digital audio): 75 sectors a second, 588 stereo frames in each.
inline constexpr int sectorsPerSecond = 75;
inline constexpr int framesPerSector = 588;
inline constexpr int bytesPerFrame = 4; ///< two channels of 16 bits
inline constexpr int bytesPerSector = 2352;
/// The most tracks that a disc's table can hold (two decimal digits).
inline constexpr int maxTracks = 99;

enum class TrackKind { audio, data };

/// One track. Its number is its place in the table, counted from 1.
struct Track {
    TrackKind kind = TrackKind::audio;
    /// From this track's INDEX 01 up to the next track's INDEX 01 (so the pause before the next
    /// track counts here), or to the end of its sound if nothing follows that can be played on.
    std::int64_t sectors = 0;
};

/// The disc's table. The time line of a disc begins with sector 0 at INDEX 01 of its first track
/// and has no gaps: a track starts where the one before it ends. What stands before the first
/// track, and the gap between two sessions, is not on the line.
struct Table {
    std::vector<Track> tracks;

    /// First sector of track `number` (1 to the count), or the line's end for count + 1.
    [[nodiscard]] std::int64_t start(int number) const;
    [[nodiscard]] std::int64_t sectors() const;
    /// The track that holds `sector`; the last track from the line's end on; 0 for an empty table.
    [[nodiscard]] int trackAt(std::int64_t sector) const;
};

/// The disc's identity: decimal digits of a number from 1 to 2147483646 that is computed from the
/// table alone, so equal discs have equal identities.
[[nodiscard]] std::string identityOf(const Table& table);

enum class ReadOutcome {
    ok,   ///< all sectors were delivered (a damaged one as the drive's best guess, or silence)
    gone, ///< the medium or the device is no longer there; nothing was delivered
    interrupted, ///< the caller asked to stop; nothing was delivered
};

/// How many sectors were not delivered as they stand on the disc.
struct Damage {
    std::int64_t silent = 0;  ///< nothing of them could be read: they are silent
    std::int64_t guessed = 0; ///< the drive's best guess stands for them
    friend bool operator==(const Damage&, const Damage&) = default;
};

/// A disc that has been read into a drive. The table does not change while the object lives.
class Disc {
  public:
    virtual ~Disc() = default;
    [[nodiscard]] virtual const Table& table() const = 0;
    /// What a person should know of this disc though it can be played ("… is shorter than …");
    /// shown by the Devices window. Empty if there is nothing to say.
    [[nodiscard]] virtual std::string remark() const = 0;
    /// Of the sectors of the time line from `first` up to `end`, how many were damaged when they
    /// were read last. May be called while another thread reads.
    [[nodiscard]] virtual Damage damageIn(std::int64_t first, std::int64_t end) const = 0;
    /// Reads whole sectors of the time line. `out` holds a multiple of framesPerSector frames, and
    /// `first` plus that many sectors never exceeds the line's end: the caller sees to both, since
    /// reading past the last sector hangs some drives. May block for as long as the device takes,
    /// with a bounded effort for each sector; a device that hangs may never return. Called by one
    /// thread at a time. `stop` is asked between sectors and between commands to the device.
    [[nodiscard]] ReadOutcome read(std::int64_t first, std::span<sound::StereoFrame> out,
                                   const std::stop_token& stop = {}) {
        return readSectors(first, out, stop);
    }

  private:
    [[nodiscard]] virtual ReadOutcome readSectors(std::int64_t first,
                                                  std::span<sound::StereoFrame> out,
                                                  const std::stop_token& stop) = 0;
};

/// Why a drive gives no disc.
enum class DeviceProblem {
    none,         ///< it gives one
    noMedium,     ///< no disc is in it
    trayOpen,     ///< no disc is in it, and its tray is open
    busy,         ///< it spins up, or another program uses it
    noPermission, ///< this user may not read it
    unreadable,   ///< what is in it cannot be read as a disc
    hung,         ///< it does not answer
    missing,      ///< there is no such drive or file, or it is no drive
};

/// What there is to say of a drive or its disc.
struct DriveReport {
    DeviceProblem kind = DeviceProblem::none;
    /// For the user, with file, line and cause. May be empty for an empty drive, and may be given
    /// without a problem, for a disc that can be played but not wholly.
    std::string text = {};
    friend bool operator==(const DriveReport&, const DriveReport&) = default;
};

/// What a drive says when it is asked for its disc.
struct Loaded {
    std::shared_ptr<Disc> disc; ///< empty: no disc can be read
    DriveReport problem;        ///< why not
};

/// The outcome of a load that found no disc.
[[nodiscard]] inline Loaded noDisc(DeviceProblem kind, std::string text = {}) {
    return {nullptr, {kind, std::move(text)}};
}

enum class DriveKind { optical, image };

/// A drive, real or standing for an image file. Called by one thread at a time, but for `kind` and
/// `name`, which never change.
class Drive {
  public:
    virtual ~Drive() = default;
    [[nodiscard]] virtual DriveKind kind() const = 0;
    /// For messages, in the middle of a sentence: "the drive /dev/sr0".
    [[nodiscard]] virtual std::string name() const = 0;
    /// Reads the table of what is in the drive now. May take as long as the device takes.
    [[nodiscard]] virtual Loaded load() = 0;
    /// The same for who asks again and again and must not be held up: empty while the table is
    /// being read. A drive that cannot do that reads it at once.
    [[nodiscard]] virtual std::optional<Loaded> loadSoon() { return load(); }
    /// Whether a disc is in the drive now. Cheap: asked once a second.
    [[nodiscard]] virtual bool mediaPresent() = 0;
    virtual void openTray() = 0;
    virtual void closeTray() = 0;
};

} // namespace sonarith::disc
