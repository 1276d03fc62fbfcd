// SPDX-License-Identifier: GPL-3.0-or-later
// Runs tools/make_disc_image.py for tests that read or play disc images. For tests only.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>

#include "platform/linux/disc/image_fixture.h"

namespace sonarith::disc {

/// All layouts that the script supports.
inline constexpr const char* imageLayouts[] = {"cue", "cue-multi", "motorola", "wave", "toc"};

/// A layout's name as part of a test's name.
inline std::string layoutName(const ::testing::TestParamInfo<const char*>& instance) {
    std::string name = instance.param;
    std::erase(name, '-');
    return name;
}

/// Creates an image in `folder`; returns the path of its sheet.
inline std::filesystem::path makeImage(const ImageFolder& folder, const std::string& layout,
                                       const std::string& options) {
    const std::filesystem::path script =
        std::filesystem::path(SONARITH_SOURCES) / "tools" / "make_disc_image.py";
    const std::string command = "python3 '" + script.string() + "' '" + folder.path("").string() +
                                "' --name a --layout " + layout + " " + options + " >/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return folder.path(layout == "toc" ? "a.toc" : "a.cue");
}

} // namespace sonarith::disc
