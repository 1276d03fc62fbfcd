// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/decode_notice.h"

#include <string_view>

namespace sonarith::mp3 {

namespace {

std::string twoDigits(std::int64_t number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string writingCause(const DecodeNames& names, const Error& error) {
    return error.number == ErrorNumber::diskFull ? "no space left in " + names.folder.string()
                                                 : error.text;
}

std::string failureNotice(const DecodeNames& names, const DecodeResult& result) {
    const Error& error = result.failure->error;
    const std::string time = playingTime(result.samples, result.format.rate);
    const bool kept = result.samples > 0;
    const std::string keptWhere =
        kept ? "; " + names.target + " contains the first " + time : std::string();
    switch (result.failure->step) {
    case DecodeStep::opening:
        return names.source + " cannot be read (" + error.text + ")";
    case DecodeStep::reading:
        return names.source + ": read error at " + time + " (" + error.text + ")" + keptWhere;
    case DecodeStep::writing:
        return names.target + (kept ? " was saved partly: " : " was not saved: ") +
               writingCause(names, error) + (kept ? "; it contains the first " + time : "");
    case DecodeStep::decoding:
        break;
    }
    return names.source + " was not decoded: " + error.text + keptWhere;
}

std::string counted(std::int64_t count, std::string_view one, std::string_view more) {
    return std::to_string(count) + " " + std::string(count == 1 ? one : more);
}

std::string lossNotice(const DecodeNames& names, const ScanLoss& loss) {
    std::string words;
    if (loss.framesDropped > 0) {
        words = counted(loss.framesDropped, "frame of another format was omitted",
                        "frames of another format were omitted");
    }
    if (loss.damagedPlaces > 0) {
        words += words.empty() ? "" : ", ";
        words +=
            counted(loss.damagedPlaces, "damaged place was skipped", "damaged places were skipped");
    }
    return words.empty() ? "" : names.source + ": " + words;
}

} // namespace

std::string decodeNotice(const DecodeNames& names, const DecodeResult& result) {
    switch (result.outcome) {
    case DecodeOutcome::completed:
        return lossNotice(names, result.count.loss);
    case DecodeOutcome::noFrames:
        return names.source + ": nothing to decode was found";
    case DecodeOutcome::failed:
        return failureNotice(names, result);
    case DecodeOutcome::none:
    case DecodeOutcome::stopped:
        break;
    }
    return "";
}

std::string playingTime(std::int64_t samples, int rate) {
    const std::int64_t seconds = samples / rate;
    const std::int64_t minutes = seconds / 60;
    const std::string ending = ":" + twoDigits(seconds % 60);
    return minutes < 60 ? std::to_string(minutes) + ending
                        : std::to_string(minutes / 60) + ":" + twoDigits(minutes % 60) + ending;
}

} // namespace sonarith::mp3
