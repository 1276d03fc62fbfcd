// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/path_map.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <vector>

#include <dirent.h>
#include <sys/stat.h>

#include "platform/linux/paths/folder_listing.h"
#include "platform/linux/paths/path_names.h"
#include "platform/text/unicode.h"

namespace sonarith {

namespace {

/// A character that no name of the logic holds, and what shows it there.
struct Sign {
    char character;
    std::string_view shown;
};
constexpr std::array<Sign, 4> signs{{{'\\', "\xef\x81\x9c"},  // U+F05C
                                     {':', "\xef\x80\xba"},   // U+F03A
                                     {'*', "\xef\x80\xaa"},   // U+F02A
                                     {'?', "\xef\x80\xbf"}}}; // U+F03F

std::string replaced(std::string_view text, std::string_view what, std::string_view by) {
    std::string result;
    for (std::size_t end = text.find(what); end != std::string_view::npos; end = text.find(what)) {
        result.append(text.substr(0, end)).append(by);
        text.remove_prefix(end + what.size());
    }
    return result.append(text);
}

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
    const std::string wanted = caseFolded(name);
    std::optional<std::string> first;
    // Compared in the logic's form, so that a name that truly holds a private-use character is
    // found as well.
    while (const dirent* entry = ::readdir(listing.get())) {
        const std::string found = entry->d_name;
        if (caseFolded(logicName(found)) == wanted && (!first || found < *first)) {
            first = found;
        }
    }
    return first;
}

} // namespace

std::string machineName(std::string_view logicName) {
    std::string name(logicName);
    for (const Sign& sign : signs) {
        name = replaced(name, sign.shown, std::string_view(&sign.character, 1));
    }
    return name;
}

std::string logicName(std::string_view machineName) {
    std::string name;
    name.reserve(machineName.size());
    for (const char character : machineName) {
        const auto* const sign = std::find_if(
            signs.begin(), signs.end(), [&](const Sign& s) { return s.character == character; });
        sign != signs.end() ? name.append(sign->shown) : name.append(1, character);
    }
    return name;
}

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
