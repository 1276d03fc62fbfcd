// SPDX-License-Identifier: GPL-3.0-or-later
// Provides a wave input on a sound card whose time the test advances, and buffers for the input.
// For tests only.
#pragma once

#include <cstring>
#include <vector>

#include <gmock/gmock.h>

#include "platform/linux/sound/card_wave_input.h"
#include "support/wave_formats.h"

namespace sonarith::sound {

using Frames = std::vector<StereoFrame>;

/// A buffer and its header.
struct Buffer {
    explicit Buffer(std::size_t size) : data(size, std::byte{0x55}) {
        header.lpData = data.data();
        header.dwBufferLength = static_cast<std::uint32_t>(size);
    }
    [[nodiscard]] bool isDone() const { return (header.dwFlags & wave_header::done) != 0; }
    [[nodiscard]] bool isQueued() const { return (header.dwFlags & wave_header::inQueue) != 0; }
    /// The content as frames of the card's own format.
    [[nodiscard]] Frames frames() const {
        Frames result(header.dwBytesRecorded / sizeof(StereoFrame));
        std::memcpy(result.data(), data.data(), result.size() * sizeof(StereoFrame));
        return result;
    }

    std::vector<std::byte> data;
    WaveHeader header;
};

class CardWaveInputTest : public testing::Test {
  protected:
    void open(const WaveFormat& format) {
        ASSERT_EQ(input.open(handle, 0, format), WaveResult::noError);
    }
    void add(Buffer& buffer) {
        ASSERT_EQ(input.prepareHeader(handle, buffer.header), WaveResult::noError);
        ASSERT_EQ(input.addBuffer(handle, buffer.header), WaveResult::noError);
    }
    void advance(SoundCard::Time time) {
        now += time;
        card.advance(now);
    }

    SoundCard card;
    SoundCard::Time now{};
    CardWaveInput input{card, [this] {
                            return now;
                        }};
    WaveInHandle handle = 0;
    const WaveFormat cardFormat = fakes::pcmFormat(2, 44100, 16);
    const WaveFormat meterFormat = fakes::pcmFormat(1, 8000, 8);
};

} // namespace sonarith::sound
