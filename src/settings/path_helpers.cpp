// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/path_helpers.h"

#include <cstddef>

#include "platform/text/unicode.h"

namespace sonarith {

namespace {

/// Start of the file name: after the last backslash; 0 if there is no backslash or if nothing
/// follows the last one.
std::size_t nameStart(const std::string& path) {
    const std::size_t last = path.rfind('\\');
    return last == std::string::npos || last + 1 == path.size() ? 0 : last + 1;
}

} // namespace

Result<std::string> FileBaseName(const std::string& path) {
    const std::string name = path.substr(nameStart(path));
    // Four characters are removed, whatever they are: "name.mpeg" keeps its dot.
    constexpr std::size_t extensionLength = 4;
    const std::size_t length = characterCount(name);
    if (length < extensionLength) {
        return {ErrorNumber::invalidProcedureCall, "Invalid procedure call or argument"};
    }
    return leftCharacters(name, length - extensionLength);
}

std::string SplitPath(const std::string& path, ProcessState& process) {
    const std::size_t start = nameStart(path);
    // Copied first: `path` may be SplitDir itself.
    std::string name = path.substr(start);
    process.SplitDir = path.substr(0, start);
    return name;
}

} // namespace sonarith
