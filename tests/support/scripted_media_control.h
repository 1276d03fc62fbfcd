// SPDX-License-Identifier: GPL-3.0-or-later
// A device interpreter for tests: logs every command and replies by script.
//
//     ScriptedMediaControl media;
//     media.answer("status cd number of tracks", {.reply = "12"});
//     media.answerPrefix("play cd", {.status = 275});          // "play cd from 5000" too
//     media.device = [&](std::string_view c) { return disc(c); };   // for all that has no script
//     EXPECT_THAT(media.log, ElementsAre("open cdaudio alias cd", ...));
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/media_control.h"

namespace sonarith::test {

struct MciAnswer {
    int status = mciSuccess;
    std::string reply = {};
};

class ScriptedMediaControl final : public MediaControl {
  public:
    /// Every command, oldest first.
    std::vector<std::string> log;
    /// Buffer size for the reply to each of them, in characters; 0 if no reply was requested.
    std::vector<std::size_t> replySizes;
    /// The status numbers whose texts were queried, oldest first.
    mutable std::vector<int> errorsAsked;
    /// Runs after a command was logged and before the reply.
    std::function<void(std::string_view)> onCommand;
    /// Handles commands without a script; if it is not set, such a command succeeds without a
    /// reply.
    std::function<MciAnswer(std::string_view)> device;

    /// From now on exactly this command gets this reply.
    void answer(const std::string& command, MciAnswer answer) {
        exact_[command] = std::move(answer);
    }
    /// From now on every command with this prefix and without a reply of its own gets this reply;
    /// the longest prefix counts.
    void answerPrefix(const std::string& prefix, MciAnswer answer) {
        prefixes_[prefix] = std::move(answer);
    }
    /// Removes all scripted replies.
    void forgetAnswers() {
        exact_.clear();
        prefixes_.clear();
    }

    /// The log without the queries of each tick.
    [[nodiscard]] std::vector<std::string> logWithoutTicks() const {
        std::vector<std::string> rest;
        for (const std::string& command : log) {
            if (command != "set capture time format bytes" && command != "status capture length" &&
                command != "status cd position" && command != "status cd current track") {
                rest.push_back(command);
            }
        }
        return rest;
    }

    using MediaControl::sendString;
    int sendString(std::string_view command, ReplyBuffer* reply) override {
        log.emplace_back(command);
        replySizes.push_back(reply != nullptr ? reply->bytes().size() : 0);
        if (onCommand) {
            onCommand(command);
        }
        const MciAnswer answer = answerTo(command);
        if (reply != nullptr) {
            reply->write(answer.status == mciSuccess ? answer.reply : std::string());
        }
        return answer.status;
    }
    [[nodiscard]] std::string errorString(int status) const override {
        errorsAsked.push_back(status);
        return status == mciSuccess ? std::string() : "Error " + std::to_string(status);
    }

  private:
    [[nodiscard]] MciAnswer answerTo(std::string_view command) const {
        if (const auto found = exact_.find(command); found != exact_.end()) {
            return found->second;
        }
        std::optional<MciAnswer> longest;
        // In the order of the map a longer prefix follows the shorter one that it extends.
        for (const auto& [prefix, answer] : prefixes_) {
            if (command.starts_with(prefix)) {
                longest = answer;
            }
        }
        if (longest) {
            return *longest;
        }
        return device ? device(command) : MciAnswer{};
    }

    std::map<std::string, MciAnswer, std::less<>> exact_;
    std::map<std::string, MciAnswer, std::less<>> prefixes_;
};

} // namespace sonarith::test
