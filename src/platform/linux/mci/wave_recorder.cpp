// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/wave_recorder.h"

#include <optional>
#include <utility>

#include "platform/linux/mci/common_arguments.h"
#include "platform/linux/sound/sample_source.h"

namespace sonarith::mci {
namespace {

// The sound card has one sample rate and one sample size; see sound/sample_source.h.
constexpr int samplesPerSecond = sound::frameRate;
constexpr int bitsPerSample = 16;

constexpr int alignmentOf(int channels) {
    return channels * bitsPerSample / 8;
}

/// The value of the format's field that `keyword` names; empty if `keyword` names no field.
std::optional<int> formatField(std::string_view keyword, int channels) {
    if (keyword == "samplespersec") {
        return samplesPerSecond;
    }
    if (keyword == "channels") {
        return channels;
    }
    if (keyword == "bitspersample") {
        return bitsPerSample;
    }
    if (keyword == "alignment") {
        return alignmentOf(channels);
    }
    if (keyword == "bytespersec") {
        return samplesPerSecond * alignmentOf(channels);
    }
    return std::nullopt;
}

MciError recordingError(ErrorNumber number) {
    switch (number) {
    case ErrorNumber::deviceUnavailable:
        return MciError::waveInputsInUse;
    case ErrorNumber::invalidProcedureCall:
        return MciError::nonapplicableFunction;
    default:
        // The file could not be created. The text of fileNotSaved fits: it names disk space and
        // permission as the possible causes.
        return MciError::fileNotSaved;
    }
}

constexpr Keyword formatKeywords[] = {{"samplespersec", Takes::value},
                                      {"channels", Takes::value},
                                      {"bitspersample", Takes::value},
                                      {"alignment", Takes::value},
                                      {"bytespersec", Takes::value}};

} // namespace

WaveRecorder::WaveRecorder(const Devices& devices)
    : makeRecorder_(devices.recorder), machinePath_(devices.path) {}

Reply WaveRecorder::run(const Command& command) {
    switch (command.verb) {
    case Verb::set:
        return set(command);
    case Verb::record:
        return record(command);
    case Verb::stop:
        return stop(command);
    case Verb::status:
        return status(command);
    case Verb::save:
        return save(command);
    default:
        return MciError::unsupportedFunction;
    }
}

Reply WaveRecorder::set(const Command& command) {
    static constexpr Keyword keywords[] = {formatKeywords[0], formatKeywords[1],
                                           formatKeywords[2], formatKeywords[3],
                                           formatKeywords[4], {"time format", Takes::value}};
    const auto arguments = parseSome(command.words, keywords);
    if (!arguments.ok()) {
        return arguments.error;
    }
    LengthUnit unit = unit_;
    if (const std::string* name = arguments.value.value("time format")) {
        const std::string lower = asciiLowerCase(*name);
        if (lower == "bytes") {
            unit = LengthUnit::bytes;
        } else if (lower == "samples") {
            unit = LengthUnit::samples;
        } else if (lower == "milliseconds" || lower == "ms") {
            unit = LengthUnit::milliseconds;
        } else {
            return MciError::badTimeFormat;
        }
    }
    if (const MciError error = setFormat(arguments.value); error != MciError::none) {
        return error;
    }
    unit_ = unit;
    return done();
}

/// Applies the given fields if a Recorder can record the format.
MciError WaveRecorder::setFormat(const Arguments& arguments) {
    int channels = channels_;
    if (const std::string* text = arguments.value("channels")) {
        const Outcome<int> number = parseInteger(*text);
        if (!number.ok()) {
            return number.error;
        }
        channels = number.value;
    }
    if (channels != 1 && channels != 2) {
        return MciError::waveInputsUnsuitable;
    }
    for (const Keyword& keyword : formatKeywords) {
        const std::string* text = arguments.value(keyword.text);
        if (!text) {
            continue;
        }
        const Outcome<int> number = parseInteger(*text);
        if (!number.ok()) {
            return number.error;
        }
        if (number.value != formatField(keyword.text, channels)) {
            return MciError::waveInputsUnsuitable;
        }
    }
    // The number of channels of a recording never changes.
    if (recorder_ && channels != channels_) {
        return MciError::nonapplicableFunction;
    }
    channels_ = channels;
    return MciError::none;
}

Reply WaveRecorder::record(const Command& command) {
    static constexpr Keyword keywords[] = {{"overwrite"}, {"insert"}};
    const auto arguments = parseArguments(command.words, keywords);
    if (!arguments.ok()) {
        return arguments.error;
    }
    if (arguments.value.has("overwrite") && arguments.value.has("insert")) {
        return MciError::flagsNotCompatible;
    }
    if (recording()) {
        return done();
    }
    std::unique_ptr<Recorder> fresh = recorder_ ? nullptr : makeRecorder_();
    const Status started = (fresh ? fresh : recorder_)->start(channels_);
    if (!started.ok()) {
        return recordingError(started.error().number);
    }
    if (fresh) {
        recorder_ = std::move(fresh);
    }
    return done();
}

Reply WaveRecorder::stop(const Command& command) {
    if (const MciError error = parseNothing(command.words); error != MciError::none) {
        return error;
    }
    if (recorder_) {
        recorder_->stop();
    }
    return done();
}

Reply WaveRecorder::status(const Command& command) {
    static constexpr Keyword keywords[] = {{"length"},        {"position"},      {"mode"},
                                           {"ready"},         {"time format"},   {"media present"},
                                           {"channels"},      {"samplespersec"}, {"alignment"},
                                           {"bitspersample"}, {"bytespersec"}};
    const auto question = parseQuestion(command.words, keywords);
    if (!question.ok()) {
        return question.error;
    }
    const std::string_view item = question.value.item;
    if (const auto field = formatField(item, channels_)) {
        return std::to_string(*field);
    }
    if (item == "mode") {
        return std::string(recording() ? "recording" : "stopped");
    }
    if (item == "ready" || item == "media present") {
        return std::string("true"); // the software sound card always exists
    }
    if (item == "time format") {
        return std::string(unit_ == LengthUnit::bytes     ? "bytes"
                           : unit_ == LengthUnit::samples ? "samples"
                                                          : "milliseconds");
    }
    return lengthText();
}

Reply WaveRecorder::save(const Command& command) {
    if (command.path.empty()) {
        return MciError::unnamedResource;
    }
    if (!recorder_) {
        return MciError::nonapplicableFunction;
    }
    const std::filesystem::path path = machinePath_(command.path);
    if (path.empty()) {
        return MciError::fileNotSaved;
    }
    recorder_->stop();
    return recorder_->save(path).ok() ? done() : MciError::fileNotSaved;
}

std::string WaveRecorder::lengthText() const {
    const std::int64_t bytes = recorder_ ? recorder_->bytes() : 0;
    const std::int64_t samples = bytes / alignmentOf(channels_); // for each channel
    switch (unit_) {
    case LengthUnit::bytes:
        return std::to_string(bytes);
    case LengthUnit::samples:
        return std::to_string(samples);
    case LengthUnit::milliseconds:
        break;
    }
    return std::to_string(samples * 1000 / samplesPerSecond);
}

} // namespace sonarith::mci
