// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/disc_player.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <utility>
#include <vector>

#include "platform/linux/sound/frame_queue.h"

namespace sonarith::disc {

namespace {

using Clock = std::chrono::steady_clock;

// How far the reader reads ahead: 4 s, enough for a drive that spins up again or reads a scratch
// several times.
constexpr int readAheadSectors = 4 * sectorsPerSecond;
// The size of one read: a third of a second. One command to a drive can read as much
// (SectorCommands::mostSectors).
constexpr int sectorsPerRead = 25;
// How long the destructor waits for the current read; a read of an image takes less time. This
// wait is short, because the check of the medium may destroy a player. The check runs once a second
// and must not delay the window noticeably (see PatientDrive::mediumMoment).
constexpr std::chrono::milliseconds patience{5};

/// Where playing from `sector` must stop: at `endSector`, at the end of the disc or at the start of
/// the first data track after `sector`, whichever is first. Returns `sector` itself if it is in a
/// data track.
std::int64_t playableEnd(const Table& table, std::int64_t sector, std::int64_t endSector) {
    std::int64_t start = 0;
    for (const Track& track : table.tracks) {
        const std::int64_t end = start + track.sectors;
        if (track.kind == TrackKind::data && end > sector && start < endSector) {
            return std::max(start, sector);
        }
        start = end;
    }
    return std::min(endSector, start);
}

} // namespace

// Contains everything that the reader's thread accesses, because that thread may outlive the
// player. One mutex protects all state. The mutex is not locked while the disc is read. So the
// sound card's thread waits at most while the result of one read (59 KB) is copied.
class DiscPlayer::Reader {
  public:
    explicit Reader(std::shared_ptr<Disc> disc)
        : disc_(std::move(disc)), ready_(readAheadSectors * framesPerSector) {}

    /// The body of the thread.
    void run() {
        std::vector<sound::StereoFrame> buffer(sectorsPerRead * framesPerSector);
        std::unique_lock lock(mutex_);
        for (;;) {
            work_.wait(lock, [this] { return quit_.stop_requested() || mayRead(); });
            if (quit_.stop_requested()) {
                return;
            }
            readOnce(lock, buffer);
        }
    }

    void quit() {
        const std::lock_guard lock(mutex_);
        quit_.request_stop();
        work_.notify_one();
    }

    void play(std::int64_t sector, std::int64_t endSector) {
        const std::int64_t end = playableEnd(disc_->table(), sector, endSector);
        const std::lock_guard lock(mutex_);
        moveTo(sector);
        endSector_ = std::max(sector, end);
        mode_ = PlayerMode::playing;
        stopAtEnd();
        work_.notify_one();
    }

    void pause() {
        const std::lock_guard lock(mutex_);
        if (mode_ == PlayerMode::playing) {
            mode_ = PlayerMode::paused;
        }
    }

    void resume() {
        const std::lock_guard lock(mutex_);
        if (mode_ == PlayerMode::paused) {
            mode_ = PlayerMode::playing;
        }
        work_.notify_one();
    }

    void stop() {
        const std::lock_guard lock(mutex_);
        mode_ = PlayerMode::stopped;
        discardReadAhead();
    }

    void seek(std::int64_t sector) {
        const std::lock_guard lock(mutex_);
        mode_ = PlayerMode::stopped;
        moveTo(sector);
    }

    PlayerMode mode() const {
        const std::lock_guard lock(mutex_);
        return mode_;
    }

    std::int64_t position() const {
        const std::lock_guard lock(mutex_);
        return position_;
    }

    std::chrono::milliseconds readingFor() const {
        const std::lock_guard lock(mutex_);
        return reading_ ? std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() -
                                                                                readBegan_)
                        : std::chrono::milliseconds{0};
    }

    bool gone() const {
        const std::lock_guard lock(mutex_);
        return gone_;
    }

    sound::Pulled pull(std::span<sound::StereoFrame> block) {
        const std::lock_guard lock(mutex_);
        if (mode_ == PlayerMode::stopped) {
            return {0, sound::Supply::ended};
        }
        if (mode_ == PlayerMode::paused) {
            return {0, sound::Supply::starving};
        }
        const std::size_t frames = ready_.pop(block);
        position_ += static_cast<std::int64_t>(frames);
        stopAtEnd();
        if (mayRead()) {
            work_.notify_one();
        }
        return {frames, supplyAfter(frames, block.size())};
    }

  private:
    /// Discards all sound that was read ahead, including the result of a read that is still
    /// running.
    void discardReadAhead() {
        ++generation_;
        ready_.clear();
    }

    void moveTo(std::int64_t sector) {
        discardReadAhead();
        position_ = sector * framesPerSector;
        nextSector_ = sector;
    }

    void stopAtEnd() {
        if (position_ >= endSector_ * framesPerSector) {
            mode_ = PlayerMode::stopped;
        }
    }

    sound::Supply supplyAfter(std::size_t frames, std::size_t wanted) const {
        if (frames == wanted) {
            return sound::Supply::flowing;
        }
        // gone_ is checked in addition to the mode, because the mode stays `playing` when the
        // medium is removed.
        if (mode_ == PlayerMode::stopped) {
            return sound::Supply::ended;
        }
        return gone_ ? sound::Supply::lost : sound::Supply::starving;
    }

    std::int64_t sectorsToRead() const {
        return std::min<std::int64_t>(sectorsPerRead, endSector_ - nextSector_);
    }

    bool mayRead() const {
        return mode_ == PlayerMode::playing && !gone_ && !reading_ && sectorsToRead() > 0 &&
               ready_.space() >= static_cast<std::size_t>(sectorsToRead()) * framesPerSector;
    }

    void readOnce(std::unique_lock<std::mutex>& lock, std::span<sound::StereoFrame> buffer) {
        const std::uint64_t generation = generation_;
        const std::int64_t first = nextSector_;
        const std::int64_t sectors = sectorsToRead();
        const auto frames = buffer.first(static_cast<std::size_t>(sectors) * framesPerSector);
        reading_ = true;
        readBegan_ = Clock::now();
        lock.unlock();
        const ReadOutcome outcome = disc_->read(first, frames, quit_.get_token());
        lock.lock();
        reading_ = false;
        if (outcome == ReadOutcome::gone) {
            gone_ = true;
        } else if (outcome == ReadOutcome::ok && generation == generation_) {
            ready_.push(frames);
            nextSector_ = first + sectors;
        }
    }

    const std::shared_ptr<Disc> disc_;
    mutable std::mutex mutex_;
    std::condition_variable work_; ///< notified when mayRead() may have become true, and by quit()
    sound::FrameQueue ready_;      ///< frames that were read and not yet pulled
    PlayerMode mode_ = PlayerMode::stopped;
    std::int64_t position_ = 0;    ///< in frames
    std::int64_t nextSector_ = 0;  ///< the first sector not read yet
    std::int64_t endSector_ = 0;   ///< the first sector not to be played
    std::uint64_t generation_ = 0; ///< incremented when the data being read is no longer wanted
    bool reading_ = false;        ///< the thread is inside disc_->read, so it needs no notification
    Clock::time_point readBegan_; ///< valid while reading_
    bool gone_ = false;
    std::stop_source quit_; ///< stops the current read and the thread
};

DiscPlayer::DiscPlayer(std::shared_ptr<Disc> disc, ThreadStarter starter)
    : reader_(std::make_shared<Reader>(std::move(disc))), starter_(std::move(starter)) {}

DiscPlayer::~DiscPlayer() {
    reader_->quit();
    thread_.leave(patience);
}

Status DiscPlayer::play(std::int64_t sector, std::int64_t endSector) {
    if (!thread_.started()) {
        Status started = thread_.start([reader = reader_] { reader->run(); }, starter_);
        if (!started.ok()) {
            return started;
        }
    }
    reader_->play(sector, endSector);
    return {};
}

void DiscPlayer::pause() {
    reader_->pause();
}

void DiscPlayer::resume() {
    reader_->resume();
}

void DiscPlayer::stop() {
    reader_->stop();
}

void DiscPlayer::seek(std::int64_t sector) {
    reader_->seek(sector);
}

PlayerMode DiscPlayer::mode() const {
    return reader_->mode();
}

std::int64_t DiscPlayer::positionInFrames() const {
    return reader_->position();
}

std::chrono::milliseconds DiscPlayer::readingFor() const {
    return reader_->readingFor();
}

bool DiscPlayer::gone() const {
    return reader_->gone();
}

sound::Pulled DiscPlayer::pull(std::span<sound::StereoFrame> block) {
    return reader_->pull(block);
}

} // namespace sonarith::disc
