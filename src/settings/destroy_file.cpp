// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/destroy_file.h"

#include <chrono>

namespace sonarith {

namespace {

Status passedOn(const Status& failure) {
    Error error = failure.error();
    error.source = "p_DestroyFile";
    return error;
}

/// Yields until 0.2 seconds have passed on the clock of seconds since midnight.
void pause(EventLoop& loop) {
    constexpr double pauseSeconds = 0.2;
    constexpr double secondsOfADay = 86400.0;
    const double start = loop.secondsSinceMidnight();
    // waitWhile() tests its condition again only after an event, so a timer provides events. The
    // timer can prolong the pause by its interval, a tenth of the pause.
    const auto wakeup = loop.every(std::chrono::milliseconds(20), [] {});
    loop.waitWhile([&] {
        double passed = loop.secondsSinceMidnight() - start;
        if (passed < 0) {
            // Midnight has passed: adding a day gives the elapsed time. Or the clock was set back:
            // adding a day then gives a value that is large enough to end the pause.
            passed += secondsOfADay;
        }
        return passed < pauseSeconds;
    });
}

} // namespace

Status p_DestroyFile(const std::string& path, FileSystem& fileSystem, EventLoop& loop) {
    // Creates a missing file, so that the next step has something to delete.
    if (const Status opened = fileSystem.touchForWriting(path); !opened.ok()) {
        return passedOn(opened);
    }
    if (const Status removed = fileSystem.removeFile(path); !removed.ok()) {
        return passedOn(removed);
    }
    pause(loop);
    return {};
}

} // namespace sonarith
