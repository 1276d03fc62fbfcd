// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/paranoia_sectors.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>
#include <vector>

namespace sonarith::disc {

namespace {

// How often a sector is read again before the best guess is delivered. After this number of failed
// reads, a sector counts as unreadable. The library's default of 20 is known to cost hours for one
// scratch. The value must be a multiple of 5, because the library never stops at another limit
// (measured with version 10.2+2.0.1).
constexpr int maxRetries = 10;

// How many sectors the library reads before it delivers the first one, and how many sectors it
// assumes in a drive's cache. The library's default of 1200 would delay the first sector until 16 s
// of sound had been read twice.
constexpr int cacheSectors = 300;

// The library passes no user pointer to its callbacks. So these variables store the reader that is
// active on this thread, and whether the library has given up repairing a position.
thread_local ParanoiaSectors* atWork = nullptr;
thread_local bool gaveUp = false;

void noteEvent(long /*position*/, paranoia_cb_mode_t event) {
    if (event == PARANOIA_CB_SKIP) {
        gaveUp = true;
    }
}

/// The drive delivers samples with the low byte first (MMC, READ CD).
std::int16_t sampleAt(const std::byte* bytes) {
    return static_cast<std::int16_t>(std::to_integer<unsigned>(bytes[0]) |
                                     std::to_integer<unsigned>(bytes[1]) << 8U);
}

} // namespace

ParanoiaSectors::ParanoiaSectors(CdioHandle cdio, SectorCommands::Command command,
                                 std::function<bool()> gone)
    : cdio_(std::move(cdio)),
      command_(std::move(command)),
      isGone_(std::move(gone)),
      commands_([this](std::int64_t first, std::int64_t count, std::byte* out) {
          return this->command(first, count, out);
      }) {
    // The time limit applies only after a failure: a drive that spins up is slow, but works.
    commands_.setMayGoOn([this] { return !isOver() && !(failed_ && Clock::now() >= deadline_); });
}

ParanoiaSectors::~ParanoiaSectors() {
    if (paranoia_) {
        cdio_paranoia_free(paranoia_);
    }
    if (drive_) {
        cdio_cddap_close_no_free_cdio(drive_);
    }
}

// Called at the first read and not earlier, because the library probes the drive, which takes time.
void ParanoiaSectors::openReader() {
    triedToOpen_ = true;
    char* messages = nullptr;
    drive_ = cdio_cddap_identify_cdio(cdio_.get(), CDDA_MESSAGE_FORGETIT, &messages);
    if (messages) {
        cdio_cddap_free_messages(messages);
    }
    if (!drive_) {
        return;
    }
    // cdio_cddap_open() probes the drive with a read; retries of this read are of no use.
    drive_->error_retry = 0;
    if (cdio_cddap_open(drive_) == 0) {
        drive_->nsectors = SectorCommands::mostSectors;
        drive_->read_audio = readAudio;
        // All drives with current interfaces deliver the low byte first. Without this setting the
        // library would read some sound and guess the byte order from it.
        drive_->bigendianp = 0;
        makeParanoia();
    }
    if (!paranoia_) {
        cdio_cddap_close_no_free_cdio(drive_);
        drive_ = nullptr;
    }
}

void ParanoiaSectors::makeParanoia() {
    paranoia_ = cdio_paranoia_init(drive_);
    if (!paranoia_) {
        return;
    }
    cdio_paranoia_modeset(paranoia_, PARANOIA_MODE_FULL ^ PARANOIA_MODE_NEVERSKIP);
    cdio_paranoia_cachemodel_size(paranoia_, cacheSectors);
}

bool ParanoiaSectors::command(std::int64_t first, std::int64_t count, std::byte* out) {
    if (command_(first, count, out)) {
        return true;
    }
    failed_ = true;
    if (!isOver()) {
        gone_ = isGone_();
    }
    return false;
}

void ParanoiaSectors::seek(std::int64_t first, std::int64_t end) {
    next_ = first;
    end_ = end;
    seekPending_ = true;
    // After a seek, sectors that could not be read before are tried again.
    failures_.clear();
    bad_.clear();
}

SectorOutcome ParanoiaSectors::next(ReadEffort::Plan plan, std::span<sound::StereoFrame> out,
                                    const std::stop_token& stop) {
    stop_ = stop;
    deadline_ = Clock::now() + plan.limit;
    failed_ = false;
    if (!triedToOpen_) {
        openReader();
    }
    const SectorOutcome outcome =
        paranoia_ && plan.effort == Effort::repair ? repair(out) : readOnce(out);
    ++next_;
    if (gone_) {
        return SectorOutcome::gone;
    }
    return outcome == SectorOutcome::ok && failed_ ? SectorOutcome::repaired : outcome;
}

SectorOutcome ParanoiaSectors::readOnce(std::span<sound::StereoFrame> out) {
    seekPending_ = true;
    std::array<std::byte, bytesPerSector> bytes{};
    commands_.setBounds(next_, end_);
    const bool wasRead = commands_.read(next_, 1, bytes.data()) == 1;
    if (!wasRead) {
        bytes.fill({});
    }
    for (std::size_t i = 0; i < out.size(); ++i) {
        out[i] = {sampleAt(&bytes[4 * i]), sampleAt(&bytes[4 * i + 2])};
    }
    return wasRead ? SectorOutcome::ok : SectorOutcome::silent;
}

// If a sector cannot be read at all, the library reads it again forever, or treats the silence that
// replaces it as sound. So the library's range never contains such a sector: the range ends before
// the sector or begins after it.
SectorOutcome ParanoiaSectors::repair(std::span<sound::StereoFrame> out) {
    for (;;) {
        if (bad_.contains(next_)) {
            return attemptOnce(out);
        }
        if (seekPending_) {
            position();
        }
        atWork = this;
        gaveUp = false;
        const std::size_t badBefore = bad_.size();
        const std::int16_t* const samples =
            cdio_paranoia_read_limited(paranoia_, noteEvent, maxRetries);
        atWork = nullptr;
        if (samples) {
            for (std::size_t i = 0; i < out.size(); ++i) {
                out[i] = {samples[2 * i], samples[2 * i + 1]};
            }
            return gaveUp ? SectorOutcome::guessed : SectorOutcome::ok;
        }
        seekPending_ = true;
        // If no sector was added to bad_ and the read is not over, the library returned nothing
        // because it has no memory left.
        if (isOver() || bad_.size() == badBefore) {
            return attemptOnce(out);
        }
    }
}

SectorOutcome ParanoiaSectors::attemptOnce(std::span<sound::StereoFrame> out) {
    failed_ = false; // permits this attempt even after the time limit
    const SectorOutcome outcome = readOnce(out);
    failed_ = true;
    return outcome;
}

void ParanoiaSectors::position() {
    const auto bad = bad_.lower_bound(next_);
    limit_ = bad == bad_.end() ? end_ : std::min(*bad, end_);
    // Seeking drops the data of the old position and sets the range to the library's own boundaries
    // of the track, so the range is set afterwards.
    cdio_paranoia_seek(paranoia_, static_cast<std::int32_t>(next_), SEEK_SET);
    cdio_paranoia_set_range(paranoia_, next_, limit_ - 1);
    commands_.setBounds(next_, limit_);
    seekPending_ = false;
}

long ParanoiaSectors::readAudio(cdrom_drive_t* /*drive*/, void* out, lsn_t first, long count) {
    if (!atWork) {
        return 0;
    }
    if (!out) {
        atWork->readToForget(first, count);
        return count;
    }
    return static_cast<long>(atWork->readForRepair(first, count, static_cast<std::byte*>(out)));
}

std::int64_t ParanoiaSectors::readForRepair(std::int64_t first, std::int64_t count,
                                            std::byte* out) {
    const std::int64_t done = commands_.read(first, count, out);
    const bool whole = done >= std::min(count, limit_ - first);
    if (!whole && !isOver() &&
        (++failures_[first + done] >= maxRetries || Clock::now() >= deadline_)) {
        bad_.insert(first + done);
    }
    if (isOver() || (!whole && bad_.contains(first + done))) {
        errno = ENOMEDIUM; // makes the library return at once
        return -1;
    }
    errno = EIO; // the error for the missing sectors
    return done;
}

void ParanoiaSectors::readToForget(std::int64_t first, std::int64_t count) {
    std::vector<std::byte> bin(std::size_t{SectorCommands::mostSectors} * bytesPerSector);
    for (std::int64_t done = 0; done < count; done += SectorCommands::mostSectors) {
        if (commands_.read(first + done, std::min(count - done, SectorCommands::mostSectors),
                           bin.data()) == 0) {
            return;
        }
    }
}

} // namespace sonarith::disc
