// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/decoding.h"

#include <utility>
#include <vector>

#include "platform/linux/files/save_place.h"
#include "platform/linux/mp3/frame_sequence.h"
#include "platform/linux/mp3/stream_survey.h"
#include "platform/linux/mp3/target_turn.h"
#include "platform/linux/mp3/wav_target.h"

namespace sonarith::mp3 {

namespace {

DecodeResult endedWith(DecodeOutcome outcome) {
    DecodeResult result;
    result.outcome = outcome;
    return result;
}

DecodeResult failedAt(DecodeStep step, const Error& error) {
    DecodeResult result = endedWith(DecodeOutcome::failed);
    result.failure = DecodeFailure{step, error};
    return result;
}

} // namespace

DecodeResult Decoding::run() {
    const Result<files::SavePlace> place = files::locate(order_.target);
    if (!place.ok()) { // reported now rather than after the decoding
        return failedAt(DecodeStep::writing, place.error());
    }
    const std::optional<TargetTurn> turn = TargetTurn::take(place.value(), stop_);
    return turn ? runInTurn() : endedWith(DecodeOutcome::stopped);
}

DecodeResult Decoding::runInTurn() {
    const Result<std::unique_ptr<FileSource>> opened = FileSource::open(order_.source, stop_);
    if (!opened.ok()) {
        return failedAt(DecodeStep::opening, opened.error());
    }
    const FileSource& source = *opened.value();
    sourceIdentity_ = source.identity();
    progress_.setTotal(source.size());
    const StreamSurvey survey = surveyStream(source);
    if (stop_) {
        return endedWith(DecodeOutcome::stopped);
    }
    if (!survey.format && !survey.freeFormatOffset) {
        return survey.failure ? failedAt(DecodeStep::reading, *survey.failure)
                              : endedWith(DecodeOutcome::noFrames);
    }
    // The readable part is decoded even if the survey failed; the decoding then fails at the same
    // offset.
    return decode(source, survey);
}

DecodeResult Decoding::decode(const FileSource& source, const StreamSurvey& survey) {
    const bool divisible =
        order_.division.threads > 1 && survey.format && survey.format->layer == 3;
    DecodeResult result;
    std::unique_ptr<PcmReader> reader;
    if (divisible) {
        result.format = {survey.format->rate, survey.format->channels};
    } else {
        Result<std::unique_ptr<PcmReader>> opened = openPcmReader(source, survey);
        if (!opened.ok()) {
            return failedAt(DecodeStep::decoding, opened.error());
        }
        if (!opened.value()) {
            return endedWith(DecodeOutcome::noFrames);
        }
        reader = std::move(opened.value());
        result.format = reader->format();
    }
    const Result<std::unique_ptr<WavTarget>> made = WavTarget::create(order_.target, result.format);
    if (!made.ok()) {
        return failedAt(DecodeStep::writing, made.error());
    }
    WavTarget& target = *made.value();
    Decoded decoded;
    if (divisible) {
        decoded = SegmentWorkers(source, FrameSequence(source, *survey.format), target,
                                 order_.division, stop_, progress_)
                      .run();
        result.method = decoded.sequentialFrom ? DecodeMethod::mixed : DecodeMethod::segments;
    } else {
        decoded = decodeInOnePass(*reader, target);
        result.method = DecodeMethod::sequential;
    }
    finish(decoded, target, result);
    return result;
}

Decoded Decoding::decodeInOnePass(PcmReader& reader, WavTarget& target) const {
    constexpr std::size_t samplesPerBatch =
        64 * 1024; // so that the cost of system calls does not matter
    Decoded decoded;
    std::vector<std::int16_t> batch;
    const int channels = reader.format().channels;
    bool ended = false;
    while (!stop_ && !ended && !decoded.failure) {
        const std::span<const std::int16_t> samples = reader.next();
        ended = samples.empty();
        batch.insert(batch.end(), samples.begin(), samples.end());
        if (ended || stop_ || batch.size() >= samplesPerBatch) {
            const Status placed = target.place(decoded.samples, batch);
            if (!placed.ok()) {
                decoded.failure = DecodeFailure{DecodeStep::writing, placed.error()};
            } else {
                decoded.samples += static_cast<std::int64_t>(batch.size()) / channels;
            }
            batch.clear();
            progress_.raiseTo(reader.sourcePosition());
        }
    }
    if (ended && !decoded.failure) {
        const std::optional<Error> failure = reader.failure();
        decoded.complete = !failure;
        if (failure && !stop_) { // a read that failed because of the stop is no failure
            decoded.failure = DecodeFailure{DecodeStep::reading, *failure};
        }
    }
    decoded.count = reader.count();
    return decoded;
}

/// Gives the WAV its name, also after a failure. Without samples the WAV gets no name, so it is
/// deleted when `target` is destroyed.
void Decoding::finish(const Decoded& decoded, WavTarget& target, DecodeResult& result) {
    result.count = decoded.count;
    result.failure = decoded.failure;
    result.outcome = decoded.failure     ? DecodeOutcome::failed
                     : !decoded.complete ? DecodeOutcome::stopped
                                         : DecodeOutcome::completed;
    if (decoded.samples == 0) {
        // An existing file at order_.target is kept. A complete decoding has no sample if the
        // stream consists of an information frame alone.
        if (result.outcome == DecodeOutcome::completed) {
            result.outcome = DecodeOutcome::noFrames;
        }
        return;
    }
    const Result<std::int64_t> finished = target.finish(decoded.samples);
    result.samples = finished.valueOr(0);
    if (result.samples < decoded.samples) {
        const Error noRoom{ErrorNumber::diskFull, "there is no space for the header"};
        result.outcome = DecodeOutcome::failed;
        result.failure =
            DecodeFailure{DecodeStep::writing, finished.ok() ? noRoom : finished.error()};
    }
}

} // namespace sonarith::mp3
