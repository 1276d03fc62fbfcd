// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/user_folders.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <span>
#include <sstream>

#include <pwd.h>
#include <unistd.h>

#include "platform/linux/paths/linux_binary_file.h"
#include "platform/linux/paths/path_names.h"

namespace sonarith {

namespace {

std::optional<std::string> absoluteIn(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && value[0] == '/' ? std::optional<std::string>(value) : std::nullopt;
}

/// The content of a text in double quotes. A backslash is removed, and the character after it is
/// kept. `home` replaces $HOME at the beginning. Spaces and tabs may follow the closing quote.
/// Returns nothing for any other text, and for a text that contains another unescaped $ or an
/// unescaped backquote.
std::optional<std::string> unquoted(std::string_view text, const std::string& home) {
    if (!text.starts_with('"')) {
        return std::nullopt;
    }
    text.remove_prefix(1);
    std::string value;
    constexpr std::string_view homeVariable = "$HOME";
    if (text.starts_with(homeVariable)) {
        value = home;
        text.remove_prefix(homeVariable.size());
        if (!text.starts_with('/') && !text.starts_with('"')) {
            return std::nullopt; // only a slash or the closing quote may follow $HOME
        }
    }
    for (; !text.empty() && text.front() != '"'; text.remove_prefix(1)) {
        if (text.front() == '\\') {
            text.remove_prefix(1);
        } else if (text.front() == '$' || text.front() == '`') {
            return std::nullopt;
        }
        if (text.empty()) {
            return std::nullopt;
        }
        value += text.front();
    }
    const bool closed = !text.empty() && text.find_first_not_of(" \t", 1) == std::string_view::npos;
    return closed ? std::optional(value) : std::nullopt;
}

/// The file's content; empty if the file cannot be read, is too large or is not a regular file.
std::string textOfFile(const std::string& path) {
    // A user-dirs.dirs file contains eight paths, so it is far smaller than this limit.
    constexpr std::size_t mostBytes = 64 * 1024;
    const auto file = LinuxBinaryFile::open(path, FileAccess::read);
    std::string text(mostBytes, '\0');
    const Result<std::size_t> count =
        file.ok() ? file.value()->read(0, std::as_writable_bytes(std::span(text)))
                  : Result<std::size_t>(std::size_t{0});
    text.resize(count.valueOr(0));
    return text.size() < mostBytes ? text : std::string();
}

bool holdsDot(const std::string& folder, const std::string& home) {
    return folder.find('.', isWithin(folder, home) ? home.size() : 0) != std::string::npos;
}

} // namespace

std::string homeFolder() {
    if (const auto home = absoluteIn("HOME")) {
        return plainMachinePath(*home);
    }
    const passwd* user = ::getpwuid(::getuid());
    return plainMachinePath(user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "");
}

std::string userDataFolder() {
    return absoluteIn("XDG_DATA_HOME").value_or(homeFolder() + "/.local/share");
}

std::optional<std::string> musicFolderIn(std::string_view userDirs, const std::string& home) {
    constexpr std::string_view key = "XDG_MUSIC_DIR=";
    std::optional<std::string> folder;
    std::istringstream lines{std::string(userDirs)};
    for (std::string line; std::getline(lines, line);) {
        std::string_view text = line;
        text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
        if (!text.starts_with(key)) {
            continue;
        }
        const auto value = unquoted(text.substr(key.size()), home);
        if (!value || !value->starts_with('/')) {
            continue;
        }
        folder = plainMachinePath(*value);
    }
    return folder;
}

std::string musicFolder() {
    const std::string home = homeFolder();
    const std::string settings = absoluteIn("XDG_CONFIG_HOME").value_or(home + "/.config");
    const auto named = musicFolderIn(textOfFile(settings + "/user-dirs.dirs"), home);
    return named && !holdsDot(*named, home) ? *named : home + "/Music";
}

} // namespace sonarith
