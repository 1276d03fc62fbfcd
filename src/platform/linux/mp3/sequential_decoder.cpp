// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/sequential_decoder.h"

#include <algorithm>
#include <utility>

#include "platform/linux/mp3/free_format_decoder.h"

namespace sonarith::mp3 {

Result<std::unique_ptr<PcmReader>> SequentialDecoder::create(FrameSequence frames) {
    Result<RenewedDecoder> decoder = RenewedDecoder::create(RenewedDecoder::usualPeriod);
    if (!decoder.ok()) {
        return decoder.error();
    }
    return std::unique_ptr<PcmReader>(
        new SequentialDecoder(std::move(frames), std::move(decoder.value())));
}

PcmFormat SequentialDecoder::format() const {
    return {frames_.format().rate, frames_.format().channels};
}

std::span<const std::int16_t> SequentialDecoder::next() {
    while (const std::optional<NumberedFrame> frame = frames_.next()) {
        const Bytes bytes = frames_.bytesOf(*frame);
        if (bytes.size() < static_cast<std::size_t>(frame->header.bytes)) {
            break; // the frame, which the scanner could read, can no longer be read
        }
        const auto kept = keptPart(frames_.trim(), frames_.format(), frame->number,
                                   decoder_.decode(*frame, bytes));
        if (!kept.empty()) {
            return kept;
        }
    }
    return {};
}

std::optional<Error> SequentialDecoder::failure() const {
    return frames_.scanner().failure();
}

DecodeCount SequentialDecoder::count() const {
    return {frames_.number(), decoder_.silencedFrames(), frames_.scanner().loss()};
}

std::int64_t SequentialDecoder::sourcePosition() const {
    return frames_.scanner().position();
}

std::span<const std::int16_t> keptPart(const GaplessTrim& trim, const StreamFormat& format,
                                       std::int64_t number, std::span<const std::int16_t> samples) {
    const std::int64_t first = number * format.samplesPerFrame();
    const std::int64_t kept =
        trim.keptBefore(first + format.samplesPerFrame()) - trim.keptBefore(first);
    // The number of samples removed at the frame's start; those at its end follow from `kept`.
    const std::int64_t cut = kept == 0 ? 0 : std::max<std::int64_t>(trim.begin() - first, 0);
    const auto channels = static_cast<std::size_t>(format.channels);
    return samples.subspan(static_cast<std::size_t>(cut) * channels,
                           static_cast<std::size_t>(kept) * channels);
}

Result<std::unique_ptr<PcmReader>> openPcmReader(const ByteSource& source,
                                                 const StreamSurvey& survey) {
    if (survey.freeFormatOffset) {
        Result<std::unique_ptr<FreeFormatDecoder>> made =
            FreeFormatDecoder::create(source, *survey.freeFormatOffset);
        if (!made.ok()) {
            return made.error();
        }
        return std::unique_ptr<PcmReader>(std::move(made.value()));
    }
    if (survey.format) {
        return SequentialDecoder::create(FrameSequence(source, *survey.format));
    }
    return survey.failure ? Result<std::unique_ptr<PcmReader>>(*survey.failure)
                          : std::unique_ptr<PcmReader>();
}

} // namespace sonarith::mp3
