// SPDX-License-Identifier: GPL-3.0-or-later
// Splits the reading of many sectors into commands that a drive accepts, and keeps every command
// within the bounds of the sound. It repairs nothing, and the caller supplies the command itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace sonarith::disc {

class SectorCommands {
  public:
    /// Reads `count` sectors from the drive's sector `first` to `out` (bytesPerSector each); true
    /// only if all of them were read.
    using Command = std::function<bool(std::int64_t first, std::int64_t count, std::byte* out)>;

    explicit SectorCommands(Command command);

    /// Sets the range of all commands: from `first` up to, not including, `end`.
    void setBounds(std::int64_t first, std::int64_t end);
    /// `mayGoOn` is called before each command. Once it returns false, that read issues no more
    /// commands.
    void setMayGoOn(std::function<bool()> mayGoOn);

    /// Reads up to `count` sectors; returns how many are valid at the beginning of `out`: it stops
    /// at the first one that cannot be read. The rest of `out` is undefined.
    [[nodiscard]] std::int64_t read(std::int64_t first, std::int64_t count, std::byte* out);

    /// The most sectors in one command: what fits into the 64 KiB that drives and kernels accept.
    static constexpr std::int64_t mostSectors = 25;
    /// After a failure: accepted even by restrictive drives and adapters.
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
