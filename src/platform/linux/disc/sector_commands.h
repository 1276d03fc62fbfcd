// SPDX-License-Identifier: GPL-3.0-or-later
// Splits the reading of many sectors into commands that a drive can take, and keeps every command
// inside the bounds of the sound. It repairs nothing, and the command itself is handed in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace sonarith::disc {

class SectorCommands {
  public:
    /// Reads `count` sectors from the drive's sector `first` to `out` (bytesPerSector each); true
    /// only if all of them came.
    using Command = std::function<bool(std::int64_t first, std::int64_t count, std::byte* out)>;

    explicit SectorCommands(Command command);

    /// No command reaches before `first`, or to `end` and further.
    void setBounds(std::int64_t first, std::int64_t end);
    /// Asked before each command: once it says false, no more are given in that read.
    void setMayGoOn(std::function<bool()> mayGoOn);

    /// Reads up to `count` sectors; returns how many came at the head of `out`: it stops at the
    /// first one that cannot be read. What stands behind them is undefined.
    [[nodiscard]] std::int64_t read(std::int64_t first, std::int64_t count, std::byte* out);

    /// The most sectors in one command: what fits into the 64 KiB that drives and kernels take.
    static constexpr std::int64_t mostSectors = 25;
    /// After a failure: what even picky drives and adapters take.
    static constexpr std::int64_t fewSectors = 8;

  private:
    [[nodiscard]] bool mayGoOn() const;
    [[nodiscard]] std::int64_t readSingly(std::int64_t first, std::int64_t count, std::byte* out);

    Command command_;
    std::function<bool()> mayGoOn_;
    std::int64_t first_ = 0;
    std::int64_t end_ = 0;
    std::int64_t perCommand_ = mostSectors;
};

} // namespace sonarith::disc
