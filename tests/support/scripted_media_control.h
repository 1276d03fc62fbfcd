// SPDX-License-Identifier: GPL-3.0-or-later
// A command interpreter for tests. It logs every command and returns the reply that the test has
// set for it.
//
//     ScriptedMediaControl media;
//     media.answer("status cd number of tracks", {.reply = "12"});
//     media.answerPrefix("play cd", {.status = 275});          // also for "play cd from 5000"
//     media.device = [&](std::string_view c) { return disc(c); };   // for all other commands
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
    /// The size in bytes of the reply buffer of each command; 0 if the command had no buffer.
    std::vector<std::size_t> replySizes;
    /// The status numbers passed to errorString(), oldest first.
    mutable std::vector<int> errorsAsked;
    /// Called for each command, after it was logged and before the reply is chosen.
    std::function<void(std::string_view)> onCommand;
    /// Called to get the reply to a command for which neither answer() nor answerPrefix() has set
    /// one. If `device` is empty, such a command succeeds with an empty reply.
    std::function<MciAnswer(std::string_view)> device;

    /// Sets the reply to exactly this command.
    void answer(const std::string& command, MciAnswer answer) {
        exact_[command] = std::move(answer);
    }
    /// Sets the reply to all commands with this prefix, except those for which answer() has set a
    /// reply. If several prefixes match, the longest is used.
    void answerPrefix(const std::string& prefix, MciAnswer answer) {
        prefixes_[prefix] = std::move(answer);
    }
    /// Removes the replies set by answer() and answerPrefix().
    void forgetAnswers() {
        exact_.clear();
        prefixes_.clear();
    }

    /// The log without the commands that a running capture sends at each tick of its timer.
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
        // All matching keys are beginnings of `command`. The map sorts a shorter one before a
        // longer one, so the last match is the longest.
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
