// SPDX-License-Identifier: GPL-3.0-or-later
// The software sound card: lines with volume and mute, a mixer with bass and treble for the
// speakers, and a recorder that taps its source before them. It holds no thread
// (sound_card_thread.h drives it) and opens no device (alsa_output.h, external_input.h).
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

/// What the recorder listens to: one line, or the sum of all lines.
enum class RecordingSource { compactDisc, waveOut, externalInput, mix };

/// The one line that `source` is; none for the sum of all.
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

/// The most frames that pass through the card at once: 10 ms.
inline constexpr std::size_t blockFrames = frameRate / 100;

/// Takes the mix for the speakers. `play` is called under the card's lock and never blocks: what
/// does not fit is dropped, since a slow output must not delay the card.
class SpeakerSink {
  public:
    virtual ~SpeakerSink() = default;
    virtual void play(std::span<const StereoFrame> frames) = 0;
};

/// Takes what the recorder hears, untouched by volumes and mutes. Called under the card's lock; it
/// never blocks.
class RecordingSink {
  public:
    virtual ~RecordingSink() = default;
    /// At most `room()` frames, all of which it takes.
    virtual void record(std::span<const StereoFrame> frames) = 0;
    /// How many frames it can take now. Only `record` makes it less. The card produces no more than
    /// this: a sink without room holds the card as a starving line does, and no frame is lost.
    [[nodiscard]] virtual std::size_t room() const {
        return std::numeric_limits<std::size_t>::max();
    }
};

/// All members may be called from any thread, and return without waiting for sound to be played.
///
/// Sources and sinks are called under the card's lock, by whichever thread is inside the card at
/// that moment: its own thread, or one that calls `advance` so that what it asks next (a position,
/// a number of recorded bytes) is exact. They must not call the card back. The card lets go of
/// them outside its lock, so that a slow destructor holds nobody up.
class SoundCard {
  public:
    using Time = std::chrono::nanoseconds; ///< of a monotonic clock, from any origin

    SoundCard() = default;
    SoundCard(const SoundCard&) = delete;
    SoundCard& operator=(const SoundCard&) = delete;

    /// From here on the card pulls from `source`, in place of an earlier source of that line.
    /// `now` is the moment from which its frames are due; what was due before is produced first.
    void attach(Line line, std::shared_ptr<SampleSource> source, Time now);
    /// After this returns, the card calls the line's source no more. What was due and has not been
    /// produced yet is not pulled: call `advance` first where that matters. What was pulled is
    /// still played; of a disc, all of it has been by now.
    void detach(Line line);
    /// As `detach`, but only if `source` is still the line's: one that was attached in its place
    /// stays. Returns whether it was; a source that has ended is not.
    bool detachSource(Line line, const SampleSource& source);

    /// Every frame that is due after `now` goes to `sink`, in place of an earlier sink.
    void startRecording(std::shared_ptr<RecordingSink> sink, Time now);
    /// After this returns, the sink is called no more; all frames due up to `now` have reached it.
    void stopRecording(Time now);
    /// From now on `sink` hears the recorder's source, recording or not, in place of an earlier
    /// listener; null for nobody. Where the source is silent or lost, it hears silence. It never
    /// holds the card: its `room` is not asked.
    void setListener(std::shared_ptr<RecordingSink> sink, Time now);
    /// Holds from the next frame that is produced. While `source` is the external input, `input` is
    /// open for as long as there is a recording or a listener.
    void setRecordingSource(RecordingSource source, std::shared_ptr<ExternalInput> input = nullptr);
    /// The input that the recorder's source opens; null where that is another source.
    [[nodiscard]] std::shared_ptr<ExternalInput> externalInput() const;

    void setSpeakers(std::shared_ptr<SpeakerSink> sink);

    // The mixer. None of these members waits for the card. They hold from its next block on.

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
    /// The largest absolute sample, before volume and mute, that the recorder's source or a line
    /// has brought since the last reading; see PeakMeter::read.
    [[nodiscard]] int recorderPeak(Time now) { return recorderPeak_.read(now); }
    [[nodiscard]] int linePeak(Line line, Time now) { return channel(line).peak.read(now); }

    /// Produces every frame that is due at `now`, in blocks. A late call makes up what was missed;
    /// a starving line, or a recording sink without room, holds the whole card until it has frames
    /// or room again, and that time is not made up: nothing is skipped and no silence slips in. A
    /// source that has ended is let go, and its line falls silent; while one that was lost is not
    /// replaced or detached, the recorder that listens to it takes nothing. A `now` that lies
    /// before an earlier one changes nothing.
    void advance(Time now);
    /// Whether there is anything to do: a line with a source, a recording or a listener. While
    /// false, the card needs no calls of advance.
    [[nodiscard]] bool active() const;

    /// `hook` is called, outside the card's lock, whenever the card may have become active. After
    /// this returns, an earlier hook is called no more. The hook must not call this member.
    void setWakeUp(std::function<void()> hook);

  private:
    using Block = std::array<StereoFrame, blockFrames>;

    /// One line. `waiting` holds frames that were pulled while another line held the card; they are
    /// played first, whatever becomes of their source. The disc's line never holds any.
    struct Channel {
        std::shared_ptr<SampleSource> source;
        Block waiting;
        std::size_t waitingFrames = 0;
        std::atomic<int> volume = fullVolume;
        std::atomic<bool> muted = false;
        PeakMeter peak;
        bool lost = false; ///< its last source, before it was attached to or detached from again
    };
    /// What a member lets go of, kept until the lock has been given back.
    using Released = std::vector<std::shared_ptr<void>>;

    Channel& channel(Line line) { return channels_.at(static_cast<std::size_t>(line)); }
    const Channel& channel(Line line) const { return channels_.at(static_cast<std::size_t>(line)); }

    // All of these are called under mutex_.
    [[nodiscard]] bool hasWork() const;
    void beginAnewIfIdle(Time now);
    void restartClock(Time now);
    void produceDue(Time now, Released& released);
    std::size_t produceBlock(std::size_t wanted, Time now, Released& released);
    static std::size_t fill(Channel& channel, std::size_t wanted, Released& released);
    void feedSpeakers(std::size_t frames);
    [[nodiscard]] static std::size_t recordable(const Channel& line, std::size_t frames);
    void feedRecorder(std::size_t frames, Time now);
    void notePeaks(std::span<const StereoFrame> recorderSound, Time now);
    [[nodiscard]] bool wantsInput() const;

    /// Opens or closes the external input, as the recorder needs it. Takes mutex_.
    void followInput();

    void wakeUp();

    mutable std::mutex mutex_;
    std::array<Channel, lineCount> channels_;
    std::shared_ptr<SpeakerSink> speakers_;
    std::shared_ptr<RecordingSink> recorder_;
    RecordingSource recordingSource_ = RecordingSource::compactDisc;
    std::shared_ptr<RecordingSink> listener_;
    std::shared_ptr<ExternalInput> input_;
    std::shared_ptr<SampleSource> openedInput_; ///< what followInput attached
    std::atomic<int> masterVolume_ = fullVolume;
    std::atomic<bool> masterMuted_ = false;
    ToneControl tone_; ///< applied under mutex_
    PeakMeter recorderPeak_;
    Time origin_{};             ///< when the frames began to be due
    std::int64_t produced_ = 0; ///< frames since then

    std::mutex wakeUpMutex_; ///< never taken together with mutex_
    std::function<void()> wakeUpHook_;
};

} // namespace sonarith::sound
