// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/folder_rows.h"

#include <algorithm>
#include <utility>

#include "platform/text/unicode.h"

namespace sonarith {
namespace {

std::string below(const std::string& folder, const std::string& name) {
    return folder.ends_with('\\') ? folder + name : folder + '\\' + name;
}

std::vector<std::string> ordered(const std::vector<std::string>& names) {
    std::vector<std::pair<std::string, std::string>> keyed;
    keyed.reserve(names.size());
    for (const std::string& name : names) {
        keyed.emplace_back(lowerCase(name), name);
    }
    std::sort(keyed.begin(), keyed.end());
    std::vector<std::string> sorted;
    sorted.reserve(keyed.size());
    for (auto& [key, name] : keyed) {
        sorted.push_back(std::move(name));
    }
    return sorted;
}

} // namespace

FolderRows folderRows(const std::string& path, const std::vector<std::string>& subfolders) {
    FolderRows made;
    if (path.empty()) {
        return made;
    }
    const std::size_t driveEnd = std::min(path.find('\\'), path.size() - 1) + 1;
    made.rows.push_back({path.substr(0, driveEnd), path.substr(0, driveEnd), 0});
    std::size_t begin = driveEnd;
    while (begin < path.size()) {
        const std::size_t end = std::min(path.find('\\', begin), path.size());
        made.rows.push_back(
            {path.substr(begin, end - begin), path.substr(0, end), made.rows.back().depth + 1});
        begin = end + 1;
    }
    made.current = static_cast<int>(made.rows.size()) - 1;
    const int depth = made.rows.back().depth + 1;
    for (const std::string& name : ordered(subfolders)) {
        made.rows.push_back({name, below(path, name), depth});
    }
    return made;
}

} // namespace sonarith
