// SPDX-License-Identifier: GPL-3.0-or-later
// A device interpreter for tests: logs every command and answers by script.
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
    /// Room for the reply to each of them, in characters; 0 where none was wanted.
    std::vector<std::size_t> replySizes;
    /// The statuses whose text was asked for, oldest first.
    mutable std::vector<int> errorsAsked;
    /// Runs after a command was logged and before it is answered.
    std::function<void(std::string_view)> onCommand;
    /// Answers what no script answers; without it such a command succeeds with no words.
    std::function<MciAnswer(std::string_view)> device;

    /// From now on this very command is answered so.
    void answer(const std::string& command, MciAnswer answer) {
        exact_[command] = std::move(answer);
    }
    /// From now on every command that begins so and has no answer of its own; the longest counts.
    void answerPrefix(const std::string& prefix, MciAnswer answer) {
        prefixes_[prefix] = std::move(answer);
    }
    /// Takes all scripted answers back.
    void forgetAnswers() {
        exact_.clear();
        prefixes_.clear();
    }

    /// The log without the questions that each tick asks.
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
        // In the order of the map a longer prefix stands behind the shorter one that it extends.
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
