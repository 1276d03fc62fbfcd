// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/early_fonts.h"

#include <utility>

#include <fontconfig/fontconfig.h>

namespace sonarith {

EarlyFonts::EarlyFonts(const ThreadStarter& starter) {
    Result<std::thread> reader = starter([] {
        // A failure is ignored here: Qt reports it when it looks for fonts.
        static_cast<void>(FcInit());
    });
    if (reader.ok()) {
        reader_ = std::move(reader.value());
    }
}

EarlyFonts::~EarlyFonts() {
    if (reader_.joinable()) {
        reader_.join();
    }
}

} // namespace sonarith
