// SPDX-License-Identifier: GPL-3.0-or-later
// The software sound card: lines with volume and mute, a mixer with bass and treble for the
// speakers, and a recorder whose sound is affected neither by volumes and mutes nor by bass and
// treble. The card has no thread and no code for devices: sound_card_thread.h advances it, and
// alsa_output.h and external_input.h use the devices.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "platform/linux/sound/mixing.h"
#include "platform/linux/sound/peak_meter.h"
#include "platform/linux/sound/sample_source.h"
#include "platform/linux/sound/tone_control.h"

namespace sonarith::sound {

class ExternalInput;

enum class Line { compactDisc, waveOut, externalInput };
inline constexpr int lineCount = 3;

/// The recorder's source: one line, or the sum of all lines.
enum class RecordingSource { compactDisc, waveOut, externalInput, mix };

/// The line of `source`; empty for the sum of all.
[[nodiscard]] constexpr std::optional<Line> lineOf(RecordingSource source) {
    switch (source) {
    case RecordingSource::compactDisc:
        return Line::compactDisc;
    case RecordingSource::waveOut:
        return Line::waveOut;
    case RecordingSource::externalInput:
        return Line::externalInput;
    case RecordingSource::mix:
        break;
    }
    return std::nullopt;
}

/// The largest block of frames: 10 ms.
inline constexpr std::size_t blockFrames = frameRate / 100;

/// Receives the mix for the output. `play` is called under the card's lock and never blocks: frames
/// that do not fit are dropped, since a slow output must not delay the card.
class SpeakerSink {
  public:
    virtual ~SpeakerSink() = default;
    virtual void play(std::span<const StereoFrame> frames) = 0;
};

/// Receives the recorder's sound, unaffected by volumes and mutes. The card calls `record` and
/// `room` under its lock; they never block.
class RecordingSink {
  public:
    virtual ~RecordingSink() = default;
    /// Precondition: at most `room()` frames. Accepts all of them.
    virtual void record(std::span<const StereoFrame> frames) = 0;
    /// How many frames the sink can accept now. Only record() reduces this number. While the
    /// recorder records to this sink, the card produces at most that many frames: a sink without
    /// space stops the card as a starving line does, and no frame is lost. Not called for a
    /// listener.
    [[nodiscard]] virtual std::size_t room() const {
        return std::numeric_limits<std::size_t>::max();
    }
};

/// Thread-safe; no member waits for sound to be played.
///
/// Sources and sinks are called under the card's lock, by the thread that is inside the card at
/// that moment: the thread of SoundCardThread, or another thread that calls the card. For example,
/// another thread calls `advance` before a query (a position, a number of recorded bytes), so that
/// the result is exact. Sources and sinks must not call the card. The card releases them outside
/// its lock, so that a slow destructor blocks no other thread.
class SoundCard {
  public:
    using Time = std::chrono::nanoseconds; ///< of a monotonic clock with any origin

    SoundCard() = default;
    SoundCard(const SoundCard&) = delete;
    SoundCard& operator=(const SoundCard&) = delete;

    /// From now on the card pulls from `source`, which replaces an earlier source of that line.
    /// `now` is the time from which the frames of `source` are due; the card first produces the
    /// frames that were due earlier.
    void attach(Line line, std::shared_ptr<SampleSource> source, Time now);
    /// After this returns, the card does not call the line's source any more. Frames that were due
    /// and have not been produced yet are not pulled: call `advance` first if that matters. Frames
    /// that were pulled are still played; for a disc, all of them have been played already.
    void detach(Line line);
    /// Like detach(), but only if `source` is still the line's source: a source that has replaced
    /// it stays. Returns whether `source` was still the line's source; a source that has ended is
    /// no line's source any more.
    bool detachSource(Line line, const SampleSource& source);

    /// From now on `sink` receives every frame of the recorder's source that is due after `now`,
    /// and replaces an earlier sink.
    void startRecording(std::shared_ptr<RecordingSink> sink, Time now);
    /// After this returns, the sink is not called any more; all frames due up to `now` have been
    /// delivered to it.
    void stopRecording(Time now);
    /// From now on `sink` receives the sound of the recorder's source, whether the recorder records
    /// or not, and replaces an earlier listener; null for none. While the source is silent or lost,
    /// the listener receives silence. A listener never stops the card: its room() is not called.
    void setListener(std::shared_ptr<RecordingSink> sink, Time now);
    /// The change takes effect with the next frame that is produced. While `source` is the external
    /// input, `input` is open as long as there is a recording or a listener.
    void setRecordingSource(RecordingSource source, std::shared_ptr<ExternalInput> input = nullptr);
    /// The external input that the recorder uses; null if its source is another line or the mix.
    [[nodiscard]] std::shared_ptr<ExternalInput> externalInput() const;

    void setSpeakers(std::shared_ptr<SpeakerSink> sink);

    // The mixer. Its members do not wait for the card. Changes take effect with the next block.

    /// Levels are clamped to 0..fullVolume and are linear in amplitude.
    void setVolume(Line line, int level);
    [[nodiscard]] int volume(Line line) const;
    void setMuted(Line line, bool muted);
    [[nodiscard]] bool muted(Line line) const;
    void setMasterVolume(int level);
    [[nodiscard]] int masterVolume() const;
    void setMasterMuted(bool muted);
    [[nodiscard]] bool masterMuted() const;
    /// Bass and treble of the speakers.
    [[nodiscard]] ToneControl& tone() { return tone_; }
    /// The largest absolute sample of the recorder's source (recorderPeak) or of `line` (linePeak)
    /// since the last call, before volume and mute; see PeakMeter::read.
    [[nodiscard]] int recorderPeak(Time now) { return recorderPeak_.read(now); }
    [[nodiscard]] int linePeak(Line line, Time now) { return channel(line).peak.read(now); }

    /// Produces every frame that is due at `now`, in blocks; a late call catches up. A starving
    /// line, or a recording sink without space, stops the whole card: no frame is skipped and no
    /// silence is inserted. The time of the stop is not caught up. A source that has ended is
    /// released, and its line becomes silent. After a source was lost, a recorder that uses its
    /// line records nothing until attach() or detach() is called for the line. A `now` before that
    /// of an earlier call has no effect.
    void advance(Time now);
    /// Whether there is any work: a recording, a listener, or a line with a source or with frames
    /// that were pulled and are not played yet. While false, the card needs no calls of advance.
    [[nodiscard]] bool active() const;
    /// What the card has to do; decides how far the calls of advance may be apart.
    enum class Work {
        none,    ///< no calls are needed
        silence, ///< serves only a listener (a level meter), without sound: calls may be late
        files,   ///< plays only Line::waveOut: calls may be late, as its position is never queried
        playing, ///< plays a disc, or plays to a listener; records nothing
        all,     ///< anything else: a call for each block, when the block is due
    };
    [[nodiscard]] Work work() const;

    /// `hook` is called, outside the card's lock, whenever the card may have become active. After
    /// this returns, an earlier hook is not called any more. The hook must not call this member.
    void setWakeUp(std::function<void()> hook);

  private:
    using Block = std::array<StereoFrame, blockFrames>;

    /// One line. Frames are pulled into `waiting`, and stay there if another line stops the card.
    /// They are played first, even if their source is removed. The disc's line is pulled last, so
    /// its frames never stay.
    struct Channel {
        std::shared_ptr<SampleSource> source;
        Block waiting;
        std::size_t waitingFrames = 0;
        std::atomic<int> volume = fullVolume;
        std::atomic<bool> muted = false;
        PeakMeter peak;
        bool lost = false; ///< true from the loss of its source until the next attach or detach
    };
    /// Objects that a member function releases. They are kept until mutex_ is unlocked.
    using Released = std::vector<std::shared_ptr<void>>;

    Channel& channel(Line line) { return channels_.at(static_cast<std::size_t>(line)); }
    const Channel& channel(Line line) const { return channels_.at(static_cast<std::size_t>(line)); }

    // Precondition of all of these: mutex_ is locked.
    [[nodiscard]] bool hasWork() const;
    [[nodiscard]] bool maySound() const;
    void beginAnewIfIdle(Time now);
    void restartClock(Time now);
    void produceDue(Time now, Released& released);
    std::size_t produceBlock(std::size_t wanted, Time now, Released& released);
    static std::size_t fill(Channel& channel, std::size_t wanted, Released& released);
    void feedOutput(std::size_t frames);
    [[nodiscard]] static std::size_t recordable(const Channel& line, std::size_t frames);
    void feedRecorder(std::size_t frames, Time now);
    void notePeaks(std::span<const StereoFrame> recorderSound, Time now);
    [[nodiscard]] bool wantsInput() const;

    /// Opens the external input if the recorder or the listener needs it, and closes it otherwise.
    /// Locks mutex_.
    void followInput();

    void wakeUp();

    mutable std::mutex mutex_;
    std::array<Channel, lineCount> channels_;
    std::shared_ptr<SpeakerSink> speakers_;
    std::shared_ptr<RecordingSink> recorder_;
    RecordingSource recordingSource_ = RecordingSource::compactDisc;
    std::shared_ptr<RecordingSink> listener_;
    std::shared_ptr<ExternalInput> input_;
    std::shared_ptr<SampleSource> openedInput_; ///< the source that followInput attached
    std::atomic<int> masterVolume_ = fullVolume;
    std::atomic<bool> masterMuted_ = false;
    ToneControl tone_; ///< applied under mutex_
    PeakMeter recorderPeak_;
    Time origin_{};             ///< the time from which frames are due
    std::int64_t produced_ = 0; ///< frames produced since origin_

    std::mutex wakeUpMutex_; ///< never locked together with mutex_
    std::function<void()> wakeUpHook_;
};

} // namespace sonarith::sound
