// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/early_fonts.h"

#include <chrono>
#include <utility>

#include <fontconfig/fontconfig.h>

namespace sonarith {
namespace {

/// Meanwhile the program loads the window system's libraries; reading beside that slows both down,
/// since both change the memory map that the threads share. Afterwards the program mostly waits for
/// replies of the window system. Of the values from 0 to 6 ms, 1.5 and 2 ms gave the shortest
/// start, 8 % shorter than 0 (measured); from 0.5 to 4 ms it was shorter, from 5 ms longer.
constexpr std::chrono::milliseconds whileLibrariesLoad{2};

} // namespace

EarlyFonts::EarlyFonts(const ThreadStarter& starter) {
    Result<std::thread> reader = starter([] {
        std::this_thread::sleep_for(whileLibrariesLoad);
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
