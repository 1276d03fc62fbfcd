// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/interpreter.h"

#include <utility>

#include "platform/linux/mci/wave_recorder.h"

namespace sonarith::mci {
namespace {

constexpr std::string_view everyDevice = "all";
constexpr std::string_view newElement = "new";

} // namespace

int Interpreter::sendString(std::string_view command, ReplyBuffer* reply) {
    const Reply answer = run(command);
    if (reply) {
        reply->write(answer.value);
    }
    return static_cast<int>(answer.error);
}

std::string Interpreter::errorString(int status) const {
    return std::string(errorText(status));
}

Reply Interpreter::run(std::string_view text) {
    const Outcome<Command> parsed = parseCommand(text);
    if (!parsed.ok()) {
        return parsed.error;
    }
    const Command& command = parsed.value;
    if (command.verb == Verb::open) {
        return open(command);
    }
    if (command.verb == Verb::close) {
        return close(command);
    }
    if (command.device == everyDevice) {
        return MciError::cannotUseAll;
    }
    const auto device = open_.find(command.device);
    if (device == open_.end()) {
        return MciError::invalidDeviceName;
    }
    const Reply reply = device->second->run(command);
    if (command.verb == Verb::save && reply.ok()) {
        reportLosses(command.path);
    }
    return reply;
}

void Interpreter::reportLosses(const std::string& path) {
    const std::shared_ptr<CdDevice> cd = cd_.lock();
    const std::vector<TrackLoss> losses = cd ? cd->takeLosses() : std::vector<TrackLoss>();
    if (!losses.empty()) {
        devices_.notices->report(lostSound(losses, path));
    }
}

Reply Interpreter::open(const Command& command) {
    static constexpr Keyword keywords[] = {
        {"alias", Takes::value}, {"type", Takes::value}, {"shareable"}};
    // command.device is the word after "open": a type ("cdaudio"), or a type and a file with "!"
    // between them ("avivideo!c:\a.avi"). An unquoted path is cut at its first blank, and its rest
    // is in command.words. parseArguments() would report this rest as an unrecognized keyword. So
    // if the type in command.device is "avivideo", the command is refused before the words are
    // parsed.
    //
    // If the command has the keyword "type", that keyword's value is the type, and command.device
    // is only "new" or a file. makeDevice() refuses "avivideo" as the value of that keyword.
    const std::size_t mark = command.device.find('!');
    std::string type = command.device.substr(0, mark);
    std::string element = mark == std::string::npos ? "" : command.device.substr(mark + 1);
    if (type == "avivideo") {
        return MciError::deviceNotInstalled;
    }
    const auto arguments = parseArguments(command.words, keywords);
    if (!arguments.ok()) {
        return arguments.error;
    }
    if (const std::string* named = arguments.value.value("type")) {
        element = command.device;
        type = asciiLowerCase(*named);
    }
    const std::string* given = arguments.value.value("alias");
    const std::string alias = asciiLowerCase(given ? *given : command.device);
    if (type == newElement) {
        return MciError::deviceTypeRequired;
    }
    if (element == newElement && !given) {
        return MciError::newRequiresAlias;
    }
    if (alias.empty()) {
        return MciError::missingStringArgument;
    }
    if (alias == everyDevice) {
        return MciError::cannotUseAll;
    }
    if (open_.find(alias) != open_.end()) {
        return given ? MciError::duplicateAlias : MciError::deviceOpen;
    }
    auto device = makeDevice(type, element, arguments.value.has("shareable"));
    if (!device.ok()) {
        return device.error;
    }
    open_.emplace(alias, std::move(device.value));
    return done();
}

Outcome<std::shared_ptr<Device>>
Interpreter::makeDevice(const std::string& type, const std::string& element, bool shareable) {
    if (type == "cdaudio") {
        return element.empty() ? makeCdDevice(shareable) : MciError::noElementAllowed;
    }
    if (type == "waveaudio") {
        if (!element.empty() && element != newElement) {
            return MciError::unsupportedFunction; // existing files are not opened by this device
        }
        return std::shared_ptr<Device>(std::make_shared<WaveRecorder>(devices_));
    }
    return type == "avivideo" ? MciError::deviceNotInstalled : MciError::invalidDeviceName;
}

Outcome<std::shared_ptr<Device>> Interpreter::makeCdDevice(bool shareable) {
    if (auto open = cd_.lock()) {
        if (!shareable || !cdShareable_) {
            return MciError::mustUseShareable;
        }
        return std::shared_ptr<Device>(std::move(open));
    }
    auto drive = devices_.drive();
    if (!drive) {
        return MciError::deviceNotInstalled;
    }
    auto cd = std::make_shared<CdDevice>(std::move(drive), devices_);
    cd_ = cd;
    cdShareable_ = shareable;
    return std::shared_ptr<Device>(std::move(cd));
}

Reply Interpreter::close(const Command& command) {
    if (const auto arguments = parseArguments(command.words, {}); !arguments.ok()) {
        return arguments.error;
    }
    if (command.device == everyDevice) {
        open_.clear();
        return done();
    }
    return open_.erase(command.device) == 0 ? MciError::invalidDeviceName : done();
}

} // namespace sonarith::mci
