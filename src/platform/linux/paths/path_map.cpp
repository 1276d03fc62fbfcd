// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/path_map.h"

#include <memory>
#include <optional>
#include <vector>

#include <dirent.h>
#include <sys/stat.h>

#include "platform/linux/paths/folder_listing.h"
#include "platform/linux/paths/machine_names.h"
#include "platform/linux/paths/path_names.h"
#include "platform/text/unicode.h"

namespace sonarith {

namespace {

std::string joined(const std::string& folder, const std::string& name) {
    return folder.back() == '/' ? folder + name : folder + "/" + name;
}

bool exists(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

/// The machine's own spelling of a name in a folder; nothing if there is none in any case.
std::optional<std::string> spelling(const std::string& folder, const std::string& name) {
    std::string exact = machineName(name);
    if (exists(joined(folder, exact))) {
        return exact;
    }
    const OpenedFolder listing(::opendir(folder.c_str()));
    if (!listing) {
        return std::nullopt;
    }
    const std::string wanted = caseFolded(exact);
    const std::optional<std::string> former =
        mayBeFormer(name) ? std::optional(caseFolded(name)) : std::nullopt;
    std::optional<std::string> first;
    std::optional<std::string> firstFormer;
    while (const dirent* entry = ::readdir(listing.get())) {
        const std::string found = entry->d_name;
        if (caseFolded(found) == wanted && (!first || found < *first)) {
            first = found;
        }
        if (former && caseFolded(formerLogicName(found)) == *former &&
            (!firstFormer || found < *firstFormer)) {
            firstFormer = found;
        }
    }
    return first ? first : firstFormer;
}

} // namespace

const DriveTable& PathMap::drives() {
    if (const auto mounts = mounts_.changed()) {
        drives_.update(*mounts);
    }
    return drives_;
}

Result<Located> PathMap::locate(std::string_view logicPath) {
    const Error badName{ErrorNumber::badFileName, "Bad file name or number"};
    if (logicPath.size() < 2 || logicPath[1] != ':') {
        return badName;
    }
    const auto mountPoint = drives().mountPointOf(logicPath[0]);
    if (!mountPoint) {
        return {ErrorNumber::pathNotFound, "Path not found"};
    }
    Located located{*mountPoint, *mountPoint, {}, true};
    for (const std::string& name : namesOf(logicPath.substr(2), "\\/")) {
        if (name.find_first_of(std::string_view(":*?\0", 4)) != std::string::npos) {
            return badName;
        }
        const auto spelled = located.found ? spelling(located.path, name) : std::nullopt;
        located.found = spelled.has_value();
        located.givenName = machineName(name);
        located.folder = located.path;
        located.path = joined(located.folder, spelled.value_or(located.givenName));
    }
    return located;
}

std::string PathMap::toLogic(std::string_view machinePath) {
    std::string plain;
    for (const std::string& name : namesOf(machinePath, "/")) {
        plain += "/" + name;
    }
    const Drive& drive = drives().driveOf(plain.empty() ? "/" : plain);
    const std::size_t start = drive.mountPoint == "/" ? 0 : drive.mountPoint.size();
    std::string logic = std::string(1, drive.letter) + ":";
    for (const std::string& name : namesOf(std::string_view(plain).substr(start), "/")) {
        logic += "\\" + logicName(name);
    }
    return logic.size() == 2 ? logic + "\\" : logic;
}

} // namespace sonarith
