// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/path_map.h"

#include <algorithm>

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

bool isLowerCase(std::string_view text) {
    return text == lowerCase(text);
}

bool isNameOfTheLogic(std::string_view name) {
    return name.find_first_of(std::string_view(":*?\0", 4)) == std::string_view::npos;
}

Error badName() {
    return {ErrorNumber::badFileName, "Bad file name or number"};
}

/// The name of the entry of `folder` that matches `name` if case is ignored. If no entry matches,
/// `name` may be in the notation that older versions of the program stored: it is compared with
/// each entry's name in that notation (formerLogicName()). If several entries match, returns the
/// first in byte order; empty if none matches or if the folder cannot be listed.
std::optional<std::string> listedSpelling(const std::string& folder, const std::string& name) {
    const OpenedFolder listing(::opendir(folder.c_str()));
    if (!listing) {
        return std::nullopt;
    }
    const std::string wanted = caseFolded(machineName(name));
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

/// The remembered spelling of the entry `machineName` of `folder`; empty if none is remembered, if
/// the remembered path spells the folder differently, or if the entry does not exist.
std::optional<std::string> rememberedName(SpellingMemory& memory, const std::string& folder,
                                          const std::string& machineName) {
    const auto spelled = memory.find(joined(folder, machineName));
    if (!spelled) {
        return std::nullopt;
    }
    const std::string name = spelled->substr(spelled->rfind('/') + 1);
    return *spelled == joined(folder, name) && exists(*spelled) ? std::optional(name)
                                                                : std::nullopt;
}

/// Whether `asked` may be the path `spelled` with some names converted to lower case.
/// Precondition: the two paths differ at most in case.
bool mayBeLoweredOf(std::string_view spelled, std::string_view asked) {
    const std::vector<std::string> spelledNames = namesOf(spelled, "/");
    const std::vector<std::string> askedNames = namesOf(asked, "/");
    return std::equal(
        askedNames.begin(), askedNames.end(), spelledNames.begin(), spelledNames.end(),
        [](const std::string& a, const std::string& b) { return a == b || isLowerCase(a); });
}

} // namespace

std::string PathMap::Asked::machinePath(std::size_t count) const {
    std::string path = mountPoint;
    for (std::size_t i = 0; i < count; ++i) {
        path = joined(path, machineName(names[i]));
    }
    return path;
}

const DriveTable& PathMap::drives() {
    if (const auto mounts = mounts_.changed()) {
        drives_.update(*mounts);
    }
    return drives_;
}

Result<PathMap::Asked> PathMap::asked(std::string_view logicPath) {
    if (logicPath.size() < 2 || logicPath[1] != ':') {
        return badName();
    }
    const auto mountPoint = drives().mountPointOf(logicPath[0]);
    if (!mountPoint) {
        return {ErrorNumber::pathNotFound, "Path not found"};
    }
    Asked path{*mountPoint, namesOf(logicPath.substr(2), "\\/")};
    if (!std::all_of(path.names.begin(), path.names.end(), isNameOfTheLogic)) {
        return badName();
    }
    return path;
}

std::optional<std::string> PathMap::chosenFor(const Asked& path, std::size_t count) {
    const std::string machinePath = path.machinePath(count);
    const auto spelled = spellings_->chosen.find(machinePath);
    // find() ignores case, so `spelled` may be on another disk if the mount points of the two disks
    // differ only in case. isWithin() excludes this.
    const bool fits = spelled && isWithin(*spelled, path.mountPoint) &&
                      mayBeLoweredOf(*spelled, machinePath) && exists(*spelled);
    return fits ? std::optional(*spelled) : std::nullopt;
}

std::optional<std::string> PathMap::chosenFor(std::string_view logicPath) {
    const Result<Asked> path = asked(logicPath);
    return path.ok() ? chosenFor(path.value(), path.value().names.size()) : std::nullopt;
}

std::optional<std::string> PathMap::spelling(const std::string& folder, const std::string& name,
                                             PathCase pathCase) {
    std::string exact = machineName(name);
    const bool lowered = pathCase == PathCase::maybeLowered && isLowerCase(exact);
    if (lowered) {
        if (auto chosen = rememberedName(spellings_->chosen, folder, exact)) {
            return chosen;
        }
    }
    if (exists(joined(folder, exact))) {
        return exact;
    }
    for (SpellingMemory* memory : {&spellings_->chosen, &spellings_->walked}) {
        if (auto remembered = rememberedName(*memory, folder, exact)) {
            return remembered;
        }
    }
    return listedSpelling(folder, name);
}

void PathMap::descend(Located& located, const std::string& name, PathCase pathCase) {
    const auto spelled = located.found ? spelling(located.path, name, pathCase) : std::nullopt;
    located.found = spelled.has_value();
    located.givenName = machineName(name);
    located.folder = located.path;
    located.path = joined(located.folder, spelled.value_or(located.givenName));
}

Result<Located> PathMap::locate(std::string_view logicPath, PathCase pathCase) {
    const Result<Asked> found = asked(logicPath);
    if (!found.ok()) {
        return found.error();
    }
    const Asked& path = found.value();
    Located located{path.mountPoint, path.mountPoint, {}, true};
    std::size_t known = pathCase == PathCase::maybeLowered ? path.names.size() : 0;
    for (; known > 0; --known) {
        if (const auto chosen = chosenFor(path, known)) {
            const std::size_t nameStart = chosen->rfind('/') + 1;
            located.path = *chosen;
            located.folder = chosen->substr(0, std::max<std::size_t>(nameStart - 1, 1));
            located.givenName = machineName(path.names[known - 1]);
            break;
        }
    }
    for (std::size_t i = known; i < path.names.size(); ++i) {
        descend(located, path.names[i], pathCase);
    }
    return located;
}

Result<Located> PathMap::locateIn(const std::string& folder, const std::string& name) {
    if (!isNameOfTheLogic(name)) {
        return badName();
    }
    Located located{folder, folder, {}, true};
    descend(located, name, PathCase::maybeLowered);
    return located;
}

std::string PathMap::logicPathOf(std::string_view machinePath) {
    const std::string plain = plainMachinePath(machinePath);
    const Drive& drive = drives().driveOf(plain);
    const std::size_t start = drive.mountPoint == "/" ? 0 : drive.mountPoint.size();
    std::string logic = std::string(1, drive.letter) + ":";
    for (const std::string& name : namesOf(std::string_view(plain).substr(start), "/")) {
        logic += "\\" + logicName(name);
    }
    return logic.size() == 2 ? logic + "\\" : logic;
}

std::string PathMap::toLogic(std::string_view machinePath) {
    const std::string plain = plainMachinePath(machinePath);
    for (std::size_t end = plain.find('/', 1); end != std::string::npos;
         end = plain.find('/', end + 1)) {
        const std::string folder = plain.substr(0, end);
        const auto chosen = spellings_->chosen.find(folder);
        if (!chosen || !exists(*chosen)) {
            spellings_->chosen.remember(folder);
        }
    }
    spellings_->chosen.remember(plain);
    return logicPathOf(plain);
}

} // namespace sonarith
