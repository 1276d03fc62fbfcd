// SPDX-License-Identifier: GPL-3.0-or-later
// Declares the interfaces of a drive and of the disc in it. A disc consists of a table of tracks on
// one time line, and of sectors of sound. disc_player.h plays a disc. This header depends on no
// file format.
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
/// The most tracks in a disc's table (two decimal digits).
inline constexpr int maxTracks = 99;

enum class TrackKind { audio, data };

/// One track. Its number is its position in the table, counted from 1.
struct Track {
    TrackKind kind = TrackKind::audio;
    /// The length from this track's INDEX 01 to the next track's INDEX 01, so it includes the pause
    /// before the next track. If playing cannot continue into the next track, or there is no next
    /// track: the length to the end of this track's own content.
    std::int64_t sectors = 0;
};

/// The disc's table. The time line of a disc begins with sector 0 at INDEX 01 of its first track
/// and has no gaps: each track starts where the previous one ends. Content before the first track
/// and the gap between two sessions are not on the time line.
struct Table {
    std::vector<Track> tracks;

    /// First sector of track `number` (1 to the count), or the end of the time line for count + 1.
    [[nodiscard]] std::int64_t start(int number) const;
    [[nodiscard]] std::int64_t sectors() const;
    /// The number of the track that contains `sector`; the last track for a sector at or after the
    /// end of the time line; 0 for an empty table.
    [[nodiscard]] int trackAt(std::int64_t sector) const;
};

/// The disc's identity: decimal digits of a number from 1 to 2147483646, computed from the table
/// alone, so equal tables have equal identities.
[[nodiscard]] std::string identityOf(const Table& table);

enum class ReadOutcome {
    ok,   ///< all sectors were delivered (damaged ones as the drive's best guess or as silence)
    gone, ///< the medium or the device has been removed; nothing was delivered
    interrupted, ///< the caller asked to stop; nothing was delivered
};

/// How many sectors were not delivered exactly as on the disc.
struct Damage {
    /// Sectors delivered as silence: nothing could be read, or no read was attempted.
    std::int64_t silent = 0;
    std::int64_t guessed = 0; ///< sectors delivered as the drive's best guess
    friend bool operator==(const Damage&, const Damage&) = default;
};

/// A disc that has been loaded in a drive. The table does not change during the object's lifetime.
class Disc {
  public:
    virtual ~Disc() = default;
    [[nodiscard]] virtual const Table& table() const = 0;
    /// A message for the user about a disc that can be played, for example that a file of a disc
    /// image is shorter than the image's sheet (CUE or TOC) states. The Devices window shows the
    /// message. Empty if there is nothing to report.
    [[nodiscard]] virtual std::string remark() const = 0;
    /// How many sectors of the time line in [`first`, `end`) were damaged when they were last read.
    /// May be called while another thread reads.
    [[nodiscard]] virtual Damage damageIn(std::int64_t first, std::int64_t end) const = 0;
    /// Reads whole sectors of the time line. Preconditions: the size of `out` is a multiple of
    /// framesPerSector frames, and the read does not extend past the end of the time line, since
    /// reading past the last sector hangs some drives. May block for as long as the device takes,
    /// with a bounded effort for each sector; if the device hangs, the call may never return.
    /// Called by one thread at a time. `stop` is checked between parts of the read: for an optical
    /// disc between sectors and between commands to the drive.
    [[nodiscard]] ReadOutcome read(std::int64_t first, std::span<sound::StereoFrame> out,
                                   const std::stop_token& stop = {}) {
        return readSectors(first, out, stop);
    }

  private:
    [[nodiscard]] virtual ReadOutcome readSectors(std::int64_t first,
                                                  std::span<sound::StereoFrame> out,
                                                  const std::stop_token& stop) = 0;
};

/// Why a drive has no readable disc.
enum class DeviceProblem {
    none,         ///< the drive has a readable disc
    noMedium,     ///< the drive is empty
    trayOpen,     ///< the drive is empty and its tray is open
    busy,         ///< the drive spins up, or another program uses it
    noPermission, ///< the user has no permission to read the drive or the image
    unreadable,   ///< the medium cannot be read as a disc, or the drive cannot be used
    hung,         ///< the drive does not respond
    missing,      ///< the drive or the image does not exist, or the device is not a drive
};

/// The state of a drive or its disc, for the user.
struct DriveReport {
    DeviceProblem kind = DeviceProblem::none;
    /// The message; for a disc image it contains the file, the cause and, if the cause is in a line
    /// of the sheet, that line's number. May be empty if the drive is empty. If `kind` is `none`,
    /// the remark of a disc that can be played (Disc::remark).
    std::string text = {};
    friend bool operator==(const DriveReport&, const DriveReport&) = default;
};

/// The result of loading a disc.
struct Loaded {
    std::shared_ptr<Disc> disc; ///< null if no disc could be read
    DriveReport problem;        ///< why no disc could be read
};

/// The result of a load that found no disc.
[[nodiscard]] inline Loaded noDisc(DeviceProblem kind, std::string text = {}) {
    return {nullptr, {kind, std::move(text)}};
}

enum class DriveKind { optical, image };

/// A drive, real or emulated with an image file. Its functions are called by one thread at a time,
/// except kind() and name(): their results never change, and any thread may call them at any time.
class Drive {
  public:
    virtual ~Drive() = default;
    [[nodiscard]] virtual DriveKind kind() const = 0;
    /// For messages, in the middle of a sentence: "the drive /dev/sr0".
    [[nodiscard]] virtual std::string name() const = 0;
    /// Reads the table of the medium that is now in the drive. May block as long as the device
    /// takes.
    [[nodiscard]] virtual Loaded load() = 0;
    /// Like load(), but for callers that poll and must not be blocked: returns empty while the
    /// table is still being read. This default implementation blocks like load().
    [[nodiscard]] virtual std::optional<Loaded> loadSoon() { return load(); }
    /// Whether a disc is in the drive now. Must be cheap, because it is called once a second.
    [[nodiscard]] virtual bool mediaPresent() = 0;
    virtual void openTray() = 0;
    virtual void closeTray() = 0;
};

} // namespace sonarith::disc
