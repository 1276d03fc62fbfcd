// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/broken_frame_check.h"

#include <algorithm>
#include <utility>

#include "platform/linux/mp3/bit_reservoir.h"

namespace sonarith::mp3 {

namespace {

/// Whether the frame's last granule is silent. This is true for each frame that the decoder library
/// gives up (stops decoding half-way): the library fills the rest of such a frame with zeros.
template <typename Sample>
bool endsInSilence(const StreamFormat& format, std::span<const Sample> samples) {
    constexpr std::size_t samplesPerGranule = 576;
    const auto granule = samples.last(
        std::min(samples.size(), samplesPerGranule * static_cast<std::size_t>(format.channels)));
    return std::all_of(granule.begin(), granule.end(), [](Sample sample) { return sample == 0; });
}

Bytes mainData(const FrameHeader& header, Bytes bytes) {
    return bytes.last(
        std::min(bytes.size(), static_cast<std::size_t>(std::max(header.mainDataBytes(), 0))));
}

} // namespace

bool BrokenFrameCheck::isBroken(const Frame& frame, Bytes bytes,
                                std::span<const std::int16_t> samples) {
    if (!endsInSilence(frame.header.format, samples) || isEmptySideInfo(frame.header, bytes)) {
        return false;
    }
    // `frame` is broken or silent. It is decoded again, this time after a frame with sound. If the
    // library does not give `frame` up, the end of that sound overlaps into the samples of `frame`.
    // Whether the library gives `frame` up depends only on the data of `frame`, so the library does
    // the same in both decodings.
    if (!decoder_) {
        Result<FrameDecoder<float>> made = FrameDecoder<float>::create();
        if (!made.ok()) {
            return true;
        }
        decoder_.emplace(std::move(made.value()));
    }
    const std::vector<std::uint8_t> before = soundingFrame(bytes, reservoir_);
    const Frame sounding{0, *parseHeader(before), true};
    static_cast<void>(decoder_->decode(sounding, before));
    const Frame again{0, frame.header, false};
    return endsInSilence(frame.header.format, decoder_->decode(again, bytes));
}

void BrokenFrameCheck::pass(const Frame& frame, Bytes bytes) {
    const Bytes data = mainData(frame.header, bytes);
    reservoir_.insert(reservoir_.end(), data.begin(), data.end());
    const auto most = static_cast<std::size_t>(frame.header.format.maxReservoirBytes());
    if (reservoir_.size() > most) {
        reservoir_.erase(reservoir_.begin(), reservoir_.end() - static_cast<std::ptrdiff_t>(most));
    }
}

std::vector<std::uint8_t> soundingFrame(Bytes like, Bytes reservoir) {
    // The header of `like`, but without a checksum, with the highest bit rate (so that the
    // reservoir fits), without padding, and with independently coded channels.
    std::vector<std::uint8_t> frame(like.begin(), like.begin() + headerBytes);
    frame[1] |= 0x01;
    frame[2] = static_cast<std::uint8_t>(0xE0 | (frame[2] & 0x0C));
    frame[3] &= 0xCF;
    const FrameHeader header = *parseHeader(frame);
    frame.resize(static_cast<std::size_t>(header.bytes));
    // In every granule and channel two spectral lines have the value 1. Their code in Huffman table
    // 1 is five zero bits; all other main data before `reservoir` are zeros, too.
    setTone(header, frame);
    std::copy(reservoir.begin(), reservoir.end(),
              frame.end() - static_cast<std::ptrdiff_t>(reservoir.size()));
    return frame;
}

} // namespace sonarith::mp3
