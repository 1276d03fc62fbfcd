// SPDX-License-Identifier: GPL-3.0-or-later
// Feeds arbitrary bytes to the function that checks whether a settings file is complete.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/text/store_file_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using sonarith::checkStoreFile;
    using sonarith::StoreFileState;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (checkStoreFile(bytes) == StoreFileState::whole) {
        // A complete file is empty, contains only a byte order mark, or ends with a line feed. With
        // one more key, it is still complete.
        if (!bytes.empty() && bytes.back() != '\n' && bytes != "\xef\xbb\xbf") {
            std::abort();
        }
        if (checkStoreFile(std::string(bytes) + "key=1\n") != StoreFileState::whole) {
            std::abort();
        }
    }
    return 0;
}
