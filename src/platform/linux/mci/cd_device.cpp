// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/cd_device.h"

#include <utility>

#include "platform/linux/mci/common_arguments.h"

namespace sonarith::mci {
namespace {

using disc::PlayerMode;

std::string truth(bool value) {
    return value ? "true" : "false";
}

} // namespace

CdDevice::CdDevice(std::shared_ptr<disc::Drive> drive, const Devices& devices)
    : medium_(std::move(drive), devices) {}

Reply CdDevice::run(const Command& command) {
    switch (command.verb) {
    case Verb::info:
        return info(command);
    case Verb::status:
        return status(command);
    case Verb::set:
        return set(command);
    case Verb::play:
        return play(command);
    case Verb::seek:
        return seek(command);
    case Verb::pause:
    case Verb::resume:
    case Verb::stop:
        break;
    default:
        return MciError::unsupportedFunction;
    }
    if (const MciError error = parseNothing(command.words); error != MciError::none) {
        return error;
    }
    if (command.verb == Verb::resume) {
        return resume();
    }
    // Pausing or stopping a disc that does not play is no failure: the disc is already silent.
    if (command.verb == Verb::stop) {
        medium_.stop();
    } else if (medium_.mode() == PlayerMode::playing) {
        medium_.pause();
    }
    return done();
}

Reply CdDevice::info(const Command& command) {
    static constexpr Keyword keywords[] = {{"identity"}};
    if (const auto arguments = parseSome(command.words, keywords); !arguments.ok()) {
        return arguments.error;
    }
    const disc::Disc* disc = medium_.disc();
    return disc ? Reply(disc::identityOf(disc->table())) : MciError::deviceNotReady;
}

Reply CdDevice::set(const Command& command) {
    static constexpr Keyword keywords[] = {{"time format", Takes::value}, {"door", Takes::value}};
    const auto arguments = parseSome(command.words, keywords);
    if (!arguments.ok()) {
        return arguments.error;
    }
    const std::string* format = arguments.value.value("time format");
    const std::string* door = arguments.value.value("door");
    if (format && !timeFormatNamed(*format)) {
        return MciError::badTimeFormat;
    }
    const std::string doorState = door ? asciiLowerCase(*door) : std::string();
    if (door && doorState != "open" && doorState != "closed") {
        return MciError::badConstant;
    }
    if (door && !(doorState == "open" ? medium_.openTray() : medium_.closeTray())) {
        return MciError::deviceNotReady;
    }
    if (format) {
        format_ = *timeFormatNamed(*format);
    }
    return done();
}

Reply CdDevice::status(const Command& command) {
    static constexpr Keyword keywords[] = {{"number of tracks"},   {"length"}, {"position"},
                                           {"current track"},      {"type"},   {"mode"},
                                           {"media present"},      {"ready"},  {"time format"},
                                           {"track", Takes::value}};
    const auto question = parseQuestion(command.words, keywords);
    if (!question.ok()) {
        return question.error;
    }
    const std::string_view item = question.value.item;
    if (const std::string* track = question.value.arguments.value("track")) {
        return trackStatus(item, *track);
    }
    return deviceStatus(item);
}

Reply CdDevice::deviceStatus(std::string_view item) {
    medium_.watch();
    if (item == "type") {
        return MciError::missingParameter; // "type" needs a track, and none is named
    }
    if (item == "time format") {
        return std::string(nameOf(format_));
    }
    if (item == "media present") {
        return truth(medium_.present());
    }
    const disc::Disc* disc = medium_.disc();
    if (item == "mode") {
        return std::string(mode());
    }
    if (item == "ready") {
        return truth(disc != nullptr);
    }
    return disc ? discStatus(item, disc->table()) : MciError::deviceNotReady;
}

Reply CdDevice::discStatus(std::string_view item, const disc::Table& table) {
    if (item == "number of tracks") {
        return std::to_string(table.tracks.size());
    }
    if (item == "length") {
        return lengthText(0, table.sectors(), format_);
    }
    if (item == "current track") {
        return std::to_string(table.trackAt(currentSector()));
    }
    return positionText(table, currentSector(), format_);
}

Reply CdDevice::trackStatus(std::string_view item, const std::string& number) {
    if (item != "length" && item != "position" && item != "type") {
        return MciError::flagsNotCompatible;
    }
    const Outcome<int> track = parseInteger(number);
    if (!track.ok()) {
        return track.error;
    }
    const disc::Disc* disc = medium_.disc();
    if (!disc) {
        return MciError::deviceNotReady;
    }
    const disc::Table& table = disc->table();
    if (track.value < 1 || static_cast<std::size_t>(track.value) > table.tracks.size()) {
        return MciError::outOfRange;
    }
    if (item == "length") {
        return lengthText(table.start(track.value), table.start(track.value + 1), format_);
    }
    if (item == "type") {
        const auto index = static_cast<std::size_t>(track.value - 1);
        return std::string(table.tracks[index].kind == disc::TrackKind::audio ? "audio" : "other");
    }
    // In tmsf, the position is made from the track's number and not from its first sector: a track
    // without sectors has the same first sector as the next track.
    if (format_ == TimeFormat::tmsf) {
        return (track.value < 10 ? "0" : "") + std::to_string(track.value) + ":00:00:00";
    }
    return positionText(table, table.start(track.value), format_);
}

Reply CdDevice::play(const Command& command) {
    static constexpr Keyword keywords[] = {{"from", Takes::value}, {"to", Takes::value}};
    const auto arguments = parseArguments(command.words, keywords);
    if (!arguments.ok()) {
        return arguments.error;
    }
    const disc::Disc* disc = medium_.disc();
    if (!disc) {
        return MciError::deviceNotReady;
    }
    const disc::Table& table = disc->table();
    const std::string* from = arguments.value.value("from");
    const std::string* to = arguments.value.value("to");
    const Outcome<std::int64_t> first =
        from ? parsePosition(table, *from, format_) : Outcome(currentSector());
    const Outcome<std::int64_t> end =
        to ? parsePosition(table, *to, format_) : Outcome(table.sectors());
    if (!first.ok() || !end.ok()) {
        return first.ok() ? end.error : first.error;
    }
    if (first.value > end.value) {
        return MciError::outOfRange;
    }
    // Unless the disc is stopped, "play" without "from" and with the same end as the most recent
    // "play" continues at the exact sample, not at the start of that sample's sector.
    if (!from && end.value == medium_.playEnd() && medium_.mode() != PlayerMode::stopped) {
        return resume();
    }
    const auto track = static_cast<std::size_t>(table.trackAt(first.value) - 1);
    if (table.tracks[track].kind == disc::TrackKind::data) {
        return MciError::dataTrack;
    }
    return medium_.play(first.value, end.value).ok() ? done() : MciError::deviceNotReady;
}

Reply CdDevice::resume() {
    const PlayerMode current = medium_.mode();
    if (current == PlayerMode::stopped) {
        return MciError::nonapplicableFunction;
    }
    if (current == PlayerMode::paused) {
        medium_.resume();
    }
    return done();
}

Reply CdDevice::seek(const Command& command) {
    static constexpr Keyword keywords[] = {{"to", Takes::value}};
    const auto arguments = parseSome(command.words, keywords);
    if (!arguments.ok()) {
        return arguments.error;
    }
    const disc::Disc* disc = medium_.disc();
    if (!disc) {
        return MciError::deviceNotReady;
    }
    const std::string* to = arguments.value.value("to");
    const std::string place = asciiLowerCase(*to);
    const Outcome<std::int64_t> sector = place == "start" ? Outcome<std::int64_t>(0)
                                         : place == "end"
                                             ? Outcome(disc->table().sectors())
                                             : parsePosition(disc->table(), place, format_);
    if (!sector.ok()) {
        return sector.error;
    }
    medium_.seek(sector.value);
    return done();
}

std::string_view CdDevice::mode() const {
    if (!medium_.loaded()) {
        return medium_.trayOpened() ? "open" : "not ready";
    }
    switch (medium_.mode()) {
    case PlayerMode::playing:
        return "playing";
    case PlayerMode::paused:
        return "paused";
    case PlayerMode::stopped:
        break;
    }
    return "stopped";
}

// Rounds the position down to a whole sector, so that the end is never reported before it has been
// reached.
std::int64_t CdDevice::currentSector() const {
    return medium_.positionInFrames() / disc::framesPerSector;
}

} // namespace sonarith::mci
