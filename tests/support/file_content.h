// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the whole content of a file.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace sonarith::test {

/// The bytes of the file; "(none)" if it does not exist or cannot be opened.
inline std::string contentOf(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return in ? std::string(std::istreambuf_iterator<char>(in), {}) : "(none)";
}

} // namespace sonarith::test
