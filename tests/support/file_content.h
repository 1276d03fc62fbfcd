// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the content of a file, for tests that compare it.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace sonarith::test {

/// Its bytes; "(none)" if there is no readable file.
inline std::string contentOf(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return in ? std::string(std::istreambuf_iterator<char>(in), {}) : "(none)";
}

} // namespace sonarith::test
