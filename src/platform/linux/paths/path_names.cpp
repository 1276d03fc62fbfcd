// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/path_names.h"

#include <algorithm>

namespace sonarith {

std::vector<std::string> namesOf(std::string_view path, std::string_view separators) {
    std::vector<std::string> names;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find_first_of(separators), path.size());
        const std::string_view name = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (name == "..") {
            if (!names.empty()) {
                names.pop_back();
            }
        } else if (!name.empty() && name != ".") {
            names.emplace_back(name);
        }
    }
    return names;
}

std::string plainMachinePath(std::string_view path) {
    std::string plain;
    for (const std::string& name : namesOf(path, "/")) {
        plain.append("/").append(name);
    }
    return plain.empty() ? "/" : plain;
}

bool isWithin(std::string_view path, std::string_view folder) {
    return folder == "/" || path == folder ||
           (path.size() > folder.size() && path[folder.size()] == '/' && path.starts_with(folder));
}

std::string absolutePath(const std::string& path, const std::string& currentFolder) {
    if (path.size() >= 2 && path[1] == ':') {
        return path;
    }
    const bool fromRoot = path.starts_with('\\') || path.starts_with('/');
    return fromRoot ? currentFolder.substr(0, 2) + path : currentFolder + "\\" + path;
}

} // namespace sonarith
