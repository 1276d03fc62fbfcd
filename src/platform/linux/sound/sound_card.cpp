// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/sound_card.h"

#include <algorithm>
#include <utility>

namespace sonarith::sound {

namespace {

/// The frames that are due in `span`, rounded down. Whole seconds and the rest are converted apart,
/// in whole numbers: nothing overflows within centuries, and nothing drifts.
std::int64_t framesIn(SoundCard::Time span) {
    constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
    const std::int64_t seconds = span.count() / nanosecondsPerSecond;
    const std::int64_t rest = span.count() % nanosecondsPerSecond;
    return seconds * frameRate + rest * frameRate / nanosecondsPerSecond;
}

/// The disc is pulled last: only then is it known how many frames the other lines can give, and it
/// is asked for no more. What it has counted has been heard, so a track ends where it says.
constexpr std::array<Line, lineCount> pullOrder{Line::externalInput, Line::waveOut,
                                                Line::compactDisc};

} // namespace

void SoundCard::attach(Line line, std::shared_ptr<SampleSource> source, Time now) {
    Released released;
    {
        const std::lock_guard lock(mutex_);
        produceDue(now, released);
        if (!hasWork()) {
            restartClock(now);
        }
        std::swap(channel(line).source, source);
        channel(line).lost = false;
    }
    wakeUp();
}

void SoundCard::detach(Line line) {
    std::shared_ptr<SampleSource> released;
    const std::lock_guard lock(mutex_);
    std::swap(channel(line).source, released);
    channel(line).lost = false;
}

bool SoundCard::detachSource(Line line, const SampleSource& source) {
    std::shared_ptr<SampleSource> released;
    const std::lock_guard lock(mutex_);
    if (channel(line).source.get() != &source) {
        return false;
    }
    std::swap(channel(line).source, released);
    channel(line).lost = false;
    return true;
}

void SoundCard::startRecording(std::shared_ptr<RecordingSink> sink, Time now) {
    Released released;
    {
        const std::lock_guard lock(mutex_);
        produceDue(now, released);
        if (!hasWork()) {
            restartClock(now);
        }
        std::swap(recorder_, sink);
    }
    wakeUp();
}

void SoundCard::stopRecording(Time now) {
    Released released;
    const std::lock_guard lock(mutex_);
    produceDue(now, released);
    released.push_back(std::exchange(recorder_, nullptr));
}

void SoundCard::setRecordingSource(RecordingSource source) {
    const std::lock_guard lock(mutex_);
    recordingSource_ = source;
}

void SoundCard::setSpeakers(std::shared_ptr<SpeakerSink> sink) {
    // `sink` outlives the lock: a parameter is destroyed after the locals.
    const std::lock_guard lock(mutex_);
    std::swap(speakers_, sink);
}

void SoundCard::setVolume(Line line, int level) {
    const std::lock_guard lock(mutex_);
    channel(line).volume = std::clamp(level, 0, fullVolume);
}

int SoundCard::volume(Line line) const {
    const std::lock_guard lock(mutex_);
    return channel(line).volume;
}

void SoundCard::setMuted(Line line, bool muted) {
    const std::lock_guard lock(mutex_);
    channel(line).muted = muted;
}

bool SoundCard::muted(Line line) const {
    const std::lock_guard lock(mutex_);
    return channel(line).muted;
}

void SoundCard::setMasterVolume(int level) {
    const std::lock_guard lock(mutex_);
    masterVolume_ = std::clamp(level, 0, fullVolume);
}

int SoundCard::masterVolume() const {
    const std::lock_guard lock(mutex_);
    return masterVolume_;
}

void SoundCard::setMasterMuted(bool muted) {
    const std::lock_guard lock(mutex_);
    masterMuted_ = muted;
}

bool SoundCard::masterMuted() const {
    const std::lock_guard lock(mutex_);
    return masterMuted_;
}

void SoundCard::advance(Time now) {
    Released released;
    const std::lock_guard lock(mutex_);
    produceDue(now, released);
}

bool SoundCard::active() const {
    const std::lock_guard lock(mutex_);
    return hasWork();
}

void SoundCard::setWakeUp(std::function<void()> hook) {
    const std::lock_guard lock(wakeUpMutex_);
    wakeUpHook_ = std::move(hook);
}

void SoundCard::wakeUp() {
    const std::lock_guard lock(wakeUpMutex_);
    if (wakeUpHook_) {
        wakeUpHook_();
    }
}

bool SoundCard::hasWork() const {
    return recorder_ || std::any_of(channels_.begin(), channels_.end(), [](const Channel& line) {
               return line.source || line.waitingFrames > 0;
           });
}

void SoundCard::restartClock(Time now) {
    origin_ = now;
    produced_ = 0;
}

void SoundCard::produceDue(Time now, Released& released) {
    while (hasWork()) {
        const std::int64_t due = framesIn(now - origin_) - produced_;
        if (due <= 0) {
            return;
        }
        const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(due, blockFrames));
        const std::size_t made = produceBlock(wanted, released);
        produced_ += static_cast<std::int64_t>(made);
        if (made < wanted) {
            // A line starves or the recording has no room, and holds the card: the time that it
            // costs is given up, not made up.
            restartClock(now);
            return;
        }
    }
}

/// Produces up to `wanted` frames, and answers how many: as many as every line can give and the
/// recording can take.
std::size_t SoundCard::produceBlock(std::size_t wanted, Released& released) {
    // Before anything is pulled, so that no line counts a frame that is not recorded.
    std::size_t frames = recorder_ ? std::min(wanted, recorder_->room()) : wanted;
    for (const Line line : pullOrder) {
        frames = std::min(frames, fill(channel(line), frames, released));
    }
    if (frames == 0) {
        return 0;
    }
    for (Channel& line : channels_) {
        if (line.waitingFrames < frames) { // it has no source, or none any more
            std::fill(line.waiting.begin() + static_cast<std::ptrdiff_t>(line.waitingFrames),
                      line.waiting.begin() + static_cast<std::ptrdiff_t>(frames), StereoFrame{});
        }
    }
    feedRecorder(frames);
    feedSpeakers(frames);
    for (Channel& line : channels_) {
        const std::size_t used = std::min(frames, line.waitingFrames);
        std::copy(line.waiting.begin() + static_cast<std::ptrdiff_t>(used),
                  line.waiting.begin() + static_cast<std::ptrdiff_t>(line.waitingFrames),
                  line.waiting.begin());
        line.waitingFrames -= used;
    }
    return frames;
}

/// Pulls until `wanted` frames wait, and answers how many frames the line can take part in. That is
/// all of them for a line without a source: it is silent.
std::size_t SoundCard::fill(Channel& line, std::size_t wanted, Released& released) {
    if (line.source && line.waitingFrames < wanted) {
        const std::size_t room = wanted - line.waitingFrames;
        const Pulled pulled =
            line.source->pull(std::span(line.waiting).subspan(line.waitingFrames, room));
        line.waitingFrames += std::min(pulled.frames, room);
        if (pulled.supply == Supply::ended || pulled.supply == Supply::lost) {
            line.lost = pulled.supply == Supply::lost;
            released.push_back(std::exchange(line.source, nullptr));
        }
    }
    return line.source ? std::min(line.waitingFrames, wanted) : wanted;
}

/// How many frames of a block are recorded: after the last one of a line that lost its source no
/// more, since hours of silence behind it would fill the disk.
std::size_t SoundCard::recordable(const Channel& line, std::size_t frames) {
    return line.lost ? std::min(frames, line.waitingFrames) : frames;
}

void SoundCard::feedRecorder(std::size_t frames) {
    if (!recorder_) {
        return;
    }
    if (const std::optional<Line> source = lineOf(recordingSource_)) {
        const Channel& line = channel(*source);
        recorder_->record(std::span(line.waiting).first(recordable(line, frames)));
        return;
    }
    for (const Channel& line : channels_) {
        frames = recordable(line, frames);
    }
    Block sum;
    for (std::size_t i = 0; i < frames; ++i) {
        WideFrame wide;
        for (const Channel& line : channels_) {
            wide.left += line.waiting[i].left;
            wide.right += line.waiting[i].right;
        }
        sum[i] = saturated(wide);
    }
    recorder_->record(std::span(sum).first(frames));
}

void SoundCard::feedSpeakers(std::size_t frames) {
    if (!speakers_) {
        return;
    }
    std::array<WideFrame, blockFrames> mix{};
    for (const Channel& line : channels_) {
        const int level = line.muted || masterMuted_ ? 0 : line.volume;
        if (level == 0 || (!line.source && line.waitingFrames == 0)) {
            continue;
        }
        for (std::size_t i = 0; i < frames; ++i) {
            mix[i].left += atLevel(line.waiting[i].left, level);
            mix[i].right += atLevel(line.waiting[i].right, level);
        }
    }
    Block out;
    for (std::size_t i = 0; i < frames; ++i) {
        out[i] = saturated(
            WideFrame{atLevel(mix[i].left, masterVolume_), atLevel(mix[i].right, masterVolume_)});
    }
    speakers_->play(std::span(out).first(frames));
}

} // namespace sonarith::sound
