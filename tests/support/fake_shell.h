// SPDX-License-Identifier: GPL-3.0-or-later
// A desktop shell for tests, with a screen of configurable size. Stores the paths of the requested
// help files and counts the requests for the about box.
#pragma once

#include <string>
#include <vector>

#include "platform/shell.h"

namespace sonarith::test {

class FakeShell final : public Shell {
  public:
    Twips width = 28800_twips;
    Twips height = 16200_twips;
    std::uint64_t handle = 4711;
    std::vector<std::string> helpShown;
    int aboutBoxes = 0;

    [[nodiscard]] Twips screenWidth() const override { return width; }
    [[nodiscard]] Twips screenHeight() const override { return height; }
    void showHelp(const std::string& path) override { helpShown.push_back(path); }
    void showAboutBox() override { ++aboutBoxes; }
    [[nodiscard]] std::uint64_t windowHandle(const Control& control) const override {
        return control.name() == "Picture6" ? handle : 0;
    }
};

} // namespace sonarith::test
