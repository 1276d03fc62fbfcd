// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a command of the system and returns its output. Tests compare this output with the values
// that the program reads from the machine.
#pragma once

#include <array>
#include <cstdio>
#include <string>

#include <gtest/gtest.h>

namespace sonarith::test {

/// The standard output of a shell command, without trailing line ends. The test fails if the
/// command fails.
inline std::string outputOf(const std::string& command) {
    std::string text;
    FILE* pipe = ::popen(command.c_str(), "r");
    std::array<char, 256> block{};
    while (pipe != nullptr && std::fgets(block.data(), block.size(), pipe) != nullptr) {
        text += block.data();
    }
    const bool worked = pipe != nullptr && ::pclose(pipe) == 0;
    EXPECT_TRUE(worked) << command;
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    return text;
}

} // namespace sonarith::test
