// SPDX-License-Identifier: GPL-3.0-or-later
// A disc and a drive for tests. The disc's audio differs from frame to frame; tests can read and
// change the state of disc and drive. These classes start no threads and read no files.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/disc/disc.h"

namespace sonarith::fakes {

/// A table of contents of audio tracks with these lengths in sectors.
inline disc::Table audioTable(const std::vector<std::int64_t>& sectors) {
    disc::Table table;
    for (const std::int64_t length : sectors) {
        table.tracks.push_back({disc::TrackKind::audio, length});
    }
    return table;
}

/// A disc with computed audio: no two neighbouring frames are equal, and no frame is silent.
class FakeDisc : public disc::Disc {
  public:
    explicit FakeDisc(disc::Table table, std::string remark = {})
        : table_(std::move(table)), remark_(std::move(remark)) {}

    /// The frame at `index` of the disc.
    [[nodiscard]] static sound::StereoFrame frameAt(std::int64_t index) {
        // 32749 and 32719 are primes below 2^15, so the pair of values repeats only after 10^9
        // frames.
        return {static_cast<std::int16_t>(1 + index % 32749),
                static_cast<std::int16_t>(-1 - index % 32719)};
    }

    [[nodiscard]] const disc::Table& table() const override { return table_; }
    [[nodiscard]] std::string remark() const override { return remark_; }
    [[nodiscard]] disc::Damage damageIn(std::int64_t first, std::int64_t end) const override {
        disc::Damage damage;
        for (const std::int64_t sector : silentSectors) {
            damage.silent += first <= sector && sector < end ? 1 : 0;
        }
        for (const std::int64_t sector : guessedSectors) {
            damage.guessed += first <= sector && sector < end ? 1 : 0;
        }
        return damage;
    }
    /// The sectors that damageIn() reports; the audio itself is undamaged.
    std::vector<std::int64_t> silentSectors;
    std::vector<std::int64_t> guessedSectors;

    /// From now on every read reports that the medium was removed.
    void vanish() { vanished_ = true; }
    /// Number of reads that extend beyond the disc or whose length is no whole number of sectors.
    [[nodiscard]] int wrongReads() const { return wrongReads_; }

  private:
    [[nodiscard]] disc::ReadOutcome readSectors(std::int64_t first,
                                                std::span<sound::StereoFrame> out,
                                                const std::stop_token& /*stop*/) override {
        const auto sectors = static_cast<std::int64_t>(out.size()) / disc::framesPerSector;
        if (first < 0 || first + sectors > table_.sectors() ||
            out.size() % disc::framesPerSector != 0) {
            wrongReads_ = wrongReads_ + 1;
        }
        if (vanished_) {
            return disc::ReadOutcome::gone;
        }
        for (std::size_t i = 0; i < out.size(); ++i) {
            out[i] = frameAt(first * disc::framesPerSector + static_cast<std::int64_t>(i));
        }
        return disc::ReadOutcome::ok;
    }

    disc::Table table_;
    std::string remark_;
    std::atomic<bool> vanished_ = false;
    std::atomic<int> wrongReads_ = 0;
};

/// A drive with a tray. While the tray is closed, the drive contains `disc` if that is not null.
class FakeDrive : public disc::Drive {
  public:
    explicit FakeDrive(std::shared_ptr<disc::Disc> inserted = nullptr)
        : disc(std::move(inserted)) {}

    [[nodiscard]] disc::DriveKind kind() const override { return driveKind; }
    [[nodiscard]] std::string name() const override { return "the drive /dev/fake"; }
    [[nodiscard]] disc::Loaded load() override {
        ++loads;
        if (trayOpen || unreadable) {
            return unreadable
                       ? disc::noDisc(disc::DeviceProblem::unreadable, "The disc cannot be read.")
                       : disc::noDisc(disc::DeviceProblem::trayOpen);
        }
        return disc ? disc::Loaded{disc, {}} : disc::noDisc(disc::DeviceProblem::noMedium);
    }
    [[nodiscard]] bool mediaPresent() override { return disc && !trayOpen; }
    void openTray() override { trayOpen = true; }
    void closeTray() override { trayOpen = false; }

    std::shared_ptr<disc::Disc> disc;
    disc::DriveKind driveKind = disc::DriveKind::optical;
    bool trayOpen = false;
    bool unreadable = false; ///< the disc's table of contents cannot be read
    int loads = 0;
};

} // namespace sonarith::fakes
