// SPDX-License-Identifier: GPL-3.0-or-later
// What stands in a file, for tests that compare it.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace sonarith::test {

/// Its bytes; "(none)" where there is no file that can be read.
inline std::string contentOf(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return in ? std::string(std::istreambuf_iterator<char>(in), {}) : "(none)";
}

} // namespace sonarith::test
