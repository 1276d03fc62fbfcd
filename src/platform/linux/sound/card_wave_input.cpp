// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/card_wave_input.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/linux/sound/external_input.h"
#include "platform/linux/sound/wave_converter.h"

namespace sonarith::sound {

namespace {

bool hasFlag(const WaveHeader& header, std::uint32_t flag) {
    return (header.dwFlags & flag) != 0;
}

/// `done` is set last because the caller may change the header as soon as `done` is set.
void markDone(WaveHeader& header) {
    header.dwFlags &= ~wave_header::inQueue;
    header.dwFlags |= wave_header::done;
}

} // namespace

/// The queue of buffers: the caller's thread adds buffers, and the thread that advances the card
/// fills them.
class CardWaveInput::Tape final : public RecordingSink {
  public:
    explicit Tape(std::unique_ptr<WaveConverter> converter) : converter_(std::move(converter)) {
        // No caller has more than 16 buffers, so add() never allocates under the lock.
        queue_.reserve(16);
    }

    void record(std::span<const StereoFrame> frames) override {
        const std::lock_guard lock(mutex_);
        if (queue_.empty()) {
            return; // no buffer is in the queue: the sound is dropped
        }
        std::span<const std::byte> bytes = converter_->convert(frames);
        while (!bytes.empty() && !queue_.empty()) {
            WaveHeader& header = *queue_.front();
            const std::size_t length = usableLength(header);
            const std::size_t count =
                std::min<std::size_t>(bytes.size(), length - header.dwBytesRecorded);
            std::memcpy(header.lpData + header.dwBytesRecorded, bytes.data(), count);
            header.dwBytesRecorded += static_cast<std::uint32_t>(count);
            bytes = bytes.subspan(count);
            if (header.dwBytesRecorded == length) {
                finishFirst();
            }
        }
    }

    void add(WaveHeader& header) {
        const std::lock_guard lock(mutex_);
        header.dwBytesRecorded = 0;
        header.dwFlags &= ~wave_header::done;
        header.dwFlags |= wave_header::inQueue;
        queue_.push_back(&header);
    }
    void finishPartial() {
        const std::lock_guard lock(mutex_);
        if (!queue_.empty() && queue_.front()->dwBytesRecorded > 0) {
            finishFirst();
        }
    }
    void finishAll() {
        const std::lock_guard lock(mutex_);
        while (!queue_.empty()) {
            finishFirst();
        }
    }
    [[nodiscard]] bool isEmpty() const {
        const std::lock_guard lock(mutex_);
        return queue_.empty();
    }
    /// How many bytes of a buffer can be filled: only whole frames are written.
    [[nodiscard]] std::size_t usableLength(const WaveHeader& header) const {
        return header.dwBufferLength - header.dwBufferLength % converter_->frameBytes();
    }

  private:
    void finishFirst() {
        WaveHeader& header = *queue_.front();
        queue_.erase(queue_.begin());
        markDone(header);
    }

    mutable std::mutex mutex_;
    std::unique_ptr<WaveConverter> converter_;
    std::vector<WaveHeader*> queue_; ///< oldest first
};

CardWaveInput::CardWaveInput(SoundCard& card, SoundCardThread::Clock now)
    : card_(card), now_(std::move(now)) {}

CardWaveInput::~CardWaveInput() {
    stopListening();
}

WaveResult CardWaveInput::open(WaveInHandle& handle, std::uint32_t device,
                               const WaveFormat& format) {
    if (device != 0) {
        return WaveResult::badDevice;
    }
    if (tape_) {
        return WaveResult::allocated;
    }
    std::unique_ptr<WaveConverter> converter = WaveConverter::create(format);
    if (!converter) {
        return WaveResult::badFormat;
    }
    if (!openInput()) {
        return WaveResult::notEnabled;
    }
    tape_ = std::make_shared<Tape>(std::move(converter));
    handle = ++handle_;
    return WaveResult::noError;
}

bool CardWaveInput::openInput() {
    const std::shared_ptr<ExternalInput> input = card_.externalInput();
    if (!input) {
        return true; // the recorder's source is not an external input, so no device is opened
    }
    std::shared_ptr<CapturePump> pump = input->acquire();
    if (pump->opening(inputPatience) == CapturePump::Opening::failed) {
        failedInput_ = input->name();
        return false;
    }
    held_ = std::move(pump);
    return true;
}

WaveResult CardWaveInput::prepareHeader(WaveInHandle handle, WaveHeader& header) {
    if (!isOpen(handle)) {
        return WaveResult::invalidHandle;
    }
    if (header.lpData == nullptr || tape_->usableLength(header) == 0) {
        return WaveResult::invalidParameter;
    }
    header.dwFlags |= wave_header::prepared;
    return WaveResult::noError;
}

WaveResult CardWaveInput::unprepareHeader(WaveInHandle handle, WaveHeader& header) {
    if (!isOpen(handle)) {
        return WaveResult::invalidHandle;
    }
    if (hasFlag(header, wave_header::inQueue)) {
        return WaveResult::stillPlaying;
    }
    header.dwFlags &= ~wave_header::prepared;
    return WaveResult::noError;
}

WaveResult CardWaveInput::addBuffer(WaveInHandle handle, WaveHeader& header) {
    if (!isOpen(handle)) {
        return WaveResult::invalidHandle;
    }
    if (!hasFlag(header, wave_header::prepared)) {
        return WaveResult::unprepared;
    }
    if (hasFlag(header, wave_header::inQueue)) {
        return WaveResult::stillPlaying;
    }
    tape_->add(header);
    return WaveResult::noError;
}

WaveResult CardWaveInput::start(WaveInHandle handle) {
    if (!isOpen(handle)) {
        return WaveResult::invalidHandle;
    }
    if (!std::exchange(running_, true)) {
        card_.setListener(tape_, now_());
        held_ = nullptr; // the card keeps the input open now
    }
    return WaveResult::noError;
}

void CardWaveInput::stopListening() {
    if (std::exchange(running_, false)) {
        card_.setListener(nullptr, now_());
    }
}

WaveResult CardWaveInput::stop(WaveInHandle handle) {
    if (!isOpen(handle)) {
        return WaveResult::invalidHandle;
    }
    stopListening();
    tape_->finishPartial();
    return WaveResult::noError;
}

WaveResult CardWaveInput::reset(WaveInHandle handle) {
    if (!isOpen(handle)) {
        return WaveResult::invalidHandle;
    }
    stopListening();
    tape_->finishAll();
    return WaveResult::noError;
}

WaveResult CardWaveInput::close(WaveInHandle handle) {
    if (!isOpen(handle)) {
        return WaveResult::invalidHandle;
    }
    if (!tape_->isEmpty()) {
        return WaveResult::stillPlaying;
    }
    stopListening();
    held_ = nullptr;
    tape_ = nullptr;
    return WaveResult::noError;
}

std::string CardWaveInput::errorText(WaveResult result) const {
    switch (result) {
    case WaveResult::noError:
        return "";
    case WaveResult::badDevice:
        return "The sound input does not exist.";
    case WaveResult::notEnabled:
        return "The sound input \"" + failedInput_ +
               "\" cannot be opened. It is missing or in use by another program.";
    case WaveResult::allocated:
        return "The sound input is already open.";
    case WaveResult::invalidHandle:
        return "The sound input is not open.";
    case WaveResult::invalidParameter:
        return "The buffer for the sound input is missing or too small.";
    case WaveResult::badFormat:
        return "The sound input does not support this format.";
    case WaveResult::stillPlaying:
        return "The sound input still uses its buffers.";
    case WaveResult::unprepared:
        return "The buffer for the sound input was not prepared.";
    }
    return "The sound input failed.";
}

} // namespace sonarith::sound
