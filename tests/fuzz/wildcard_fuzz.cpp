// SPDX-License-Identifier: GPL-3.0-or-later
// Feeds arbitrary bytes to the wildcard comparison. The bytes before the first NUL are the pattern;
// the bytes after it are the text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/text/wildcard.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto end = input.find('\0');
    const std::string_view pattern = input.substr(0, end);
    const std::string_view text =
        end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
    static_cast<void>(sonarith::matches(text, pattern));
    // A pattern without wildcard characters matches itself. Every text matches "*".
    if (text.find_first_of("*?#[") == std::string_view::npos && !sonarith::matches(text, text)) {
        std::abort();
    }
    if (!sonarith::matches(text, "*")) {
        std::abort();
    }
    return 0;
}
