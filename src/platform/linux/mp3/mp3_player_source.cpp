// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/mp3_player_source.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <utility>

#include "platform/linux/mp3/byte_source.h"
#include "platform/linux/mp3/card_rate.h"
#include "platform/linux/mp3/pcm_reader.h"
#include "platform/linux/sound/frame_queue.h"

namespace sonarith::mp3 {

/// Holds everything that the decoding thread accesses, since that thread may outlive the
/// Mp3PlayerSource. The mutex is never held while the file is read or decoded.
class Mp3PlayerSource::Decoder {
  public:
    explicit Decoder(std::filesystem::path path) : path_(std::move(path)) {}

    /// The body of the decoding thread.
    void run() {
        decodeAll();
        end();
    }

    void end() {
        const std::lock_guard lock(mutex_);
        ended_ = true;
    }

    void stop() {
        const std::lock_guard lock(mutex_);
        stop_ = true;
        room_.notify_all();
    }

    /// `starving` if the queue has fewer frames than the block needs, and more frames may follow.
    sound::Pulled pull(std::span<sound::StereoFrame> block) {
        const std::lock_guard lock(mutex_);
        const std::size_t frames = queue_.pop(block);
        if (queue_.space() >= refillFrames) {
            room_.notify_one();
        }
        if (frames == block.size()) {
            return {frames, sound::Supply::flowing};
        }
        return {frames, ended_ ? sound::Supply::ended : sound::Supply::starving};
    }

  private:
    /// pull() wakes the decoding thread only when the queue has this much space: a wake-up for each
    /// block of the card would cost more than the decoding.
    static constexpr std::size_t refillFrames = sound::frameRate / 4;

    void decodeAll() {
        const Result<std::unique_ptr<FileSource>> file = FileSource::open(path_, stop_);
        if (!file.ok()) {
            return;
        }
        // Only this many bytes are surveyed (26 seconds of sound at 320 kbit/s): playing must start
        // at once, even from a slow disk.
        constexpr std::int64_t surveyedBytes = 1024 * 1024;
        const Result<std::unique_ptr<PcmReader>> reader =
            openPcmReader(*file.value(), surveyStream(*file.value(), surveyedBytes));
        if (!reader.ok() || !reader.value()) {
            return;
        }
        Result<CardRate> rate = CardRate::create(reader.value()->format());
        for (bool more = rate.ok(); more;) {
            const std::span<const std::int16_t> samples = reader.value()->next();
            more = put(rate.value().convert(samples)) && !samples.empty();
        }
    }

    /// Adds `frames` to the queue; waits for space. Returns false if playing was stopped.
    bool put(std::span<const sound::StereoFrame> frames) {
        std::unique_lock lock(mutex_);
        while (!stop_ && !frames.empty()) {
            frames = frames.subspan(queue_.push(frames));
            if (!frames.empty()) {
                room_.wait(lock);
            }
        }
        return !stop_;
    }

    const std::filesystem::path path_;
    std::atomic<bool> stop_ = false;
    std::mutex mutex_; ///< protects the members below
    std::condition_variable room_;
    /// When the decoding thread is woken, the queue still has about half a second of sound.
    /// Decoding another half second of sound takes a hundredth of that time, so only a slow disk
    /// can empty the queue.
    sound::FrameQueue queue_{sound::frameRate / 2 + refillFrames};
    bool ended_ = false; ///< no more frames are added to the queue
};

Mp3PlayerSource::Mp3PlayerSource(std::filesystem::path path, Clock clock,
                                 const ThreadStarter& starter)
    : clock_(std::move(clock)), decoder_(std::make_shared<Decoder>(std::move(path))) {
    if (!thread_.start([decoder = decoder_] { decoder->run(); }, starter).ok()) {
        decoder_->end();
    }
}

Mp3PlayerSource::~Mp3PlayerSource() {
    // A thread that is not in the middle of a read ends within this time. The time is short,
    // because the destructor may run on the card's thread.
    constexpr std::chrono::milliseconds moment{10};
    decoder_->stop();
    thread_.leave(moment);
}

sound::Pulled Mp3PlayerSource::pull(std::span<sound::StereoFrame> block) {
    const sound::Pulled pulled = decoder_->pull(block);
    if (pulled.supply != sound::Supply::starving) {
        starvingSince_.reset();
        return pulled;
    }
    const std::chrono::nanoseconds now = clock_();
    starvingSince_ = starvingSince_.value_or(now);
    if (now - *starvingSince_ < patience) {
        return pulled;
    }
    std::fill(block.begin() + static_cast<std::ptrdiff_t>(pulled.frames), block.end(),
              sound::StereoFrame{});
    return {block.size(), sound::Supply::flowing};
}

} // namespace sonarith::mp3
