// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/image_path.h"

#include <algorithm>
#include <string>
#include <system_error>

#include "platform/text/unicode.h"

namespace sonarith::disc {

namespace fs = std::filesystem;

namespace {

bool isThere(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error);
}

std::optional<fs::path> entryNamed(const fs::path& folder, std::string_view name) {
    if (fs::path exact = folder / name; isThere(exact)) {
        return exact;
    }
    const std::string wanted = caseFolded(name);
    std::optional<std::string> best;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string entryName = entry->path().filename().string();
        if (caseFolded(entryName) == wanted && (!best || entryName < *best)) {
            best = entryName;
        }
    }
    return best ? std::optional(folder / *best) : std::nullopt;
}

} // namespace

std::optional<fs::path> findImageFile(const fs::path& folder, std::string_view name) {
    if (fs::path exact = folder / name; isThere(exact)) {
        return exact;
    }
    fs::path place = folder;
    while (!name.empty()) {
        const auto end = std::min(name.find_first_of("/\\"), name.size());
        const auto part = name.substr(0, end);
        name.remove_prefix(std::min(end + 1, name.size()));
        if (part.empty() || part == ".") {
            continue;
        }
        const auto found = entryNamed(place, part);
        if (!found) {
            return std::nullopt;
        }
        place = *found;
    }
    return place;
}

} // namespace sonarith::disc
