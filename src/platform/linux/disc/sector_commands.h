// SPDX-License-Identifier: GPL-3.0-or-later
// Splits the reading of many sectors into commands that a drive accepts, and keeps every command
// within a range of sectors that the caller sets. The caller also supplies the function that sends
// a command. Damaged sectors are not repaired here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace sonarith::disc {

class SectorCommands {
  public:
    /// Reads `count` sectors, beginning with the drive's sector `first`, to `out` (bytesPerSector
    /// bytes for each sector). Returns true only if all of them were read.
    using Command = std::function<bool(std::int64_t first, std::int64_t count, std::byte* out)>;

    explicit SectorCommands(Command command);

    /// Sets the range of all commands: from `first` up to, not including, `end`.
    void setBounds(std::int64_t first, std::int64_t end);
    /// `mayGoOn` is called before each command. Once it returns false, the current read() sends no
    /// more commands.
    void setMayGoOn(std::function<bool()> mayGoOn);

    /// Reads up to `count` sectors and stops at the first one that cannot be read. Returns how many
    /// sectors at the beginning of `out` are valid; the rest of `out` is undefined.
    [[nodiscard]] std::int64_t read(std::int64_t first, std::int64_t count, std::byte* out);

    /// The most sectors in one command: they fit into the 64 KiB that drives and kernels accept.
    static constexpr std::int64_t mostSectors = 25;
    /// The most sectors in one command after a failure: even restrictive drives and adapters accept
    /// this number.
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
