// SPDX-License-Identifier: GPL-3.0-or-later
// Creates an empty folder for a test. The destructor removes the folder with its contents.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace sonarith::fakes {

class TempFolder {
  public:
    TempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "sonarith-XXXXXX").string();
        if (const char* made = ::mkdtemp(name.data())) {
            path_ = made;
        }
    }
    ~TempFolder() {
        if (!path_.empty()) {
            std::error_code ignored;
            std::filesystem::remove_all(path_, ignored);
        }
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    /// Empty if no folder could be created: operator/ then returns paths relative to the current
    /// folder of the process.
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::filesystem::path operator/(const std::string& name) const {
        return path_ / name;
    }

  private:
    std::filesystem::path path_;
};

} // namespace sonarith::fakes
