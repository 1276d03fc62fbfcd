// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/sound_card.h"

#include <algorithm>
#include <utility>

#include "platform/linux/sound/external_input.h"

namespace sonarith::sound {

namespace {

/// The number of frames due in `span`, rounded down. Whole seconds and the rest are converted
/// separately, in integers: nothing overflows within centuries, and nothing drifts.
std::int64_t framesIn(SoundCard::Time span) {
    constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
    const std::int64_t seconds = span.count() / nanosecondsPerSecond;
    const std::int64_t rest = span.count() % nanosecondsPerSecond;
    return seconds * frameRate + rest * frameRate / nanosecondsPerSecond;
}

/// The disc is pulled last, so that no more frames are requested from it than the other lines can
/// deliver. The disc player counts each pulled frame as played. The frame is played in the same
/// block, so the player's position agrees with the sound.
constexpr std::array<Line, lineCount> pullOrder{Line::externalInput, Line::waveOut,
                                                Line::compactDisc};

} // namespace

void SoundCard::attach(Line line, std::shared_ptr<SampleSource> source, Time now) {
    Released released;
    {
        const std::lock_guard lock(mutex_);
        produceDue(now, released);
        beginAnewIfIdle(now);
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
        beginAnewIfIdle(now);
        std::swap(recorder_, sink);
    }
    followInput();
    wakeUp();
}

void SoundCard::stopRecording(Time now) {
    Released released;
    {
        const std::lock_guard lock(mutex_);
        produceDue(now, released);
        released.push_back(std::exchange(recorder_, nullptr));
    }
    followInput();
}

void SoundCard::setListener(std::shared_ptr<RecordingSink> sink, Time now) {
    Released released;
    {
        const std::lock_guard lock(mutex_);
        produceDue(now, released);
        if (sink) {
            beginAnewIfIdle(now);
        }
        std::swap(listener_, sink);
    }
    followInput();
    wakeUp();
}

void SoundCard::setRecordingSource(RecordingSource source, std::shared_ptr<ExternalInput> input) {
    {
        const std::lock_guard lock(mutex_);
        recordingSource_ = source;
        std::swap(input_, input);
    }
    followInput();
}

std::shared_ptr<ExternalInput> SoundCard::externalInput() const {
    const std::lock_guard lock(mutex_);
    return recordingSource_ == RecordingSource::externalInput ? input_ : nullptr;
}

bool SoundCard::wantsInput() const {
    return recordingSource_ == RecordingSource::externalInput && input_ && (recorder_ || listener_);
}

void SoundCard::followInput() {
    std::shared_ptr<SampleSource> closed;
    std::shared_ptr<ExternalInput> wanted;
    {
        const std::lock_guard lock(mutex_);
        if (wantsInput()) {
            wanted = input_;
        }
        if (openedInput_ && channel(Line::externalInput).source == openedInput_ &&
            !(wanted && wanted->isRunning(*openedInput_))) {
            channel(Line::externalInput).source = nullptr;
        }
        if (!channel(Line::externalInput).source) {
            std::swap(openedInput_, closed);
        }
    }
    closed.reset(); // first, because the input opened below may use the same device
    if (!wanted) {
        return;
    }
    // acquire() is called outside the lock, since it starts a thread.
    const std::shared_ptr<SampleSource> opened = wanted->acquire();
    const std::lock_guard lock(mutex_);
    if (wantsInput() && input_ == wanted && !channel(Line::externalInput).source) {
        channel(Line::externalInput).source = opened;
        openedInput_ = opened;
    }
}

void SoundCard::setSpeakers(std::shared_ptr<SpeakerSink> sink) {
    // The parameter receives the previous sink and releases it after the unlock, because a
    // parameter outlives the locals.
    const std::lock_guard lock(mutex_);
    std::swap(speakers_, sink);
}

void SoundCard::setVolume(Line line, int level) {
    channel(line).volume = std::clamp(level, 0, fullVolume);
}

int SoundCard::volume(Line line) const {
    return channel(line).volume;
}

void SoundCard::setMuted(Line line, bool muted) {
    channel(line).muted = muted;
}

bool SoundCard::muted(Line line) const {
    return channel(line).muted;
}

void SoundCard::setMasterVolume(int level) {
    masterVolume_ = std::clamp(level, 0, fullVolume);
}

int SoundCard::masterVolume() const {
    return masterVolume_;
}

void SoundCard::setMasterMuted(bool muted) {
    masterMuted_ = muted;
}

bool SoundCard::masterMuted() const {
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

SoundCard::Work SoundCard::work() const {
    const std::lock_guard lock(mutex_);
    if (!hasWork()) {
        return Work::none;
    }
    if (!maySound()) {
        return Work::silence;
    }
    if (recorder_ || channel(Line::externalInput).source) {
        return Work::all;
    }
    return listener_ || channel(Line::compactDisc).source ? Work::playing : Work::files;
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
    return listener_ || maySound();
}

bool SoundCard::maySound() const {
    return recorder_ || std::any_of(channels_.begin(), channels_.end(), [](const Channel& line) {
               return line.source || line.waitingFrames > 0;
           });
}

/// If the card was idle, restarts its clock and clears the filters of its tone control.
void SoundCard::beginAnewIfIdle(Time now) {
    if (!hasWork()) {
        restartClock(now);
        tone_.restart();
    }
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
        const std::size_t made = produceBlock(wanted, now, released);
        produced_ += static_cast<std::int64_t>(made);
        if (made < wanted) {
            // The card stops while a line starves or the recording has no space. The time until the
            // card continues is not caught up.
            restartClock(now);
            return;
        }
    }
}

/// Produces a block and returns its number of frames. This number is at most `wanted`. It is
/// limited by what the recording can accept and by what each line can deliver.
std::size_t SoundCard::produceBlock(std::size_t wanted, Time now, Released& released) {
    // room() is called before anything is pulled, so that each frame that a source counts as
    // played is also recorded.
    std::size_t frames = recorder_ ? std::min(wanted, recorder_->room()) : wanted;
    for (const Line line : pullOrder) {
        frames = std::min(frames, fill(channel(line), frames, released));
    }
    if (frames == 0) {
        return 0;
    }
    for (Channel& line : channels_) {
        if (line.waitingFrames < frames) { // only a line without a source
            std::fill(line.waiting.begin() + static_cast<std::ptrdiff_t>(line.waitingFrames),
                      line.waiting.begin() + static_cast<std::ptrdiff_t>(frames), StereoFrame{});
        }
    }
    feedRecorder(frames, now);
    feedOutput(frames);
    for (Channel& line : channels_) {
        const std::size_t used = std::min(frames, line.waitingFrames);
        std::copy(line.waiting.begin() + static_cast<std::ptrdiff_t>(used),
                  line.waiting.begin() + static_cast<std::ptrdiff_t>(line.waitingFrames),
                  line.waiting.begin());
        line.waitingFrames -= used;
    }
    return frames;
}

/// Pulls once if line.waiting holds fewer than `wanted` frames. Returns how many frames, at most
/// `wanted`, the line can then deliver. A line without a source is silent after the frames in
/// line.waiting, so it can deliver all `wanted` frames.
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

/// How many frames of a block are recorded. If a line has lost its source, nothing is recorded
/// after the line's last frame, since hours of silence would fill the disk.
std::size_t SoundCard::recordable(const Channel& line, std::size_t frames) {
    return line.lost ? std::min(frames, line.waitingFrames) : frames;
}

void SoundCard::feedRecorder(std::size_t frames, Time now) {
    const std::optional<Line> source = lineOf(recordingSource_);
    std::size_t kept = frames;
    Block sum;
    std::span<const StereoFrame> sound;
    if (source) {
        kept = recordable(channel(*source), frames);
        sound = std::span(channel(*source).waiting).first(frames);
    } else {
        for (const Channel& line : channels_) {
            kept = recordable(line, kept);
        }
        for (std::size_t i = 0; i < frames; ++i) {
            WideFrame wide;
            for (const Channel& line : channels_) {
                wide.left += line.waiting[i].left;
                wide.right += line.waiting[i].right;
            }
            sum[i] = saturated(wide);
        }
        sound = std::span(sum).first(frames);
    }
    if (recorder_) {
        recorder_->record(sound.first(kept));
    }
    if (listener_) {
        listener_->record(sound);
    }
    notePeaks(sound, now);
}

/// Notes no peak for a line that has no waiting frames: its meter falls to 0 by itself.
void SoundCard::notePeaks(std::span<const StereoFrame> recorderSound, Time now) {
    const auto brings = [](const Channel& line) {
        return line.waitingFrames > 0;
    };
    for (Channel& line : channels_) {
        if (brings(line)) {
            line.peak.note(peakOf(std::span(line.waiting).first(recorderSound.size())), now);
        }
    }
    const std::optional<Line> source = lineOf(recordingSource_);
    if (source ? brings(channel(*source))
               : std::any_of(channels_.begin(), channels_.end(), brings)) {
        recorderPeak_.note(peakOf(recorderSound), now);
    }
}

void SoundCard::feedOutput(std::size_t frames) {
    if (!speakers_) {
        return;
    }
    std::array<WideFrame, blockFrames> mix{};
    for (const Channel& line : channels_) {
        const int level = line.muted || masterMuted_ ? 0 : line.volume.load();
        if (level == 0 || (!line.source && line.waitingFrames == 0)) {
            continue;
        }
        // Full volume changes no sample and is the usual level, so it is handled without scaling.
        for (std::size_t i = 0; i < frames && level == fullVolume; ++i) {
            mix[i].left += line.waiting[i].left;
            mix[i].right += line.waiting[i].right;
        }
        for (std::size_t i = 0; i < frames && level != fullVolume; ++i) {
            mix[i].left += atLevel(line.waiting[i].left, level);
            mix[i].right += atLevel(line.waiting[i].right, level);
        }
    }
    if (const int master = masterVolume_; master != fullVolume) {
        for (WideFrame& frame : std::span(mix).first(frames)) {
            frame = {atLevel(frame.left, master), atLevel(frame.right, master)};
        }
    }
    // The tone is applied after the volumes, because a reduced volume leaves headroom for a boost.
    tone_.apply(std::span(mix).first(frames));
    Block out;
    std::transform(mix.begin(), mix.begin() + static_cast<std::ptrdiff_t>(frames), out.begin(),
                   [](const WideFrame& frame) { return saturated(frame); });
    speakers_->play(std::span(out).first(frames));
}

} // namespace sonarith::sound
