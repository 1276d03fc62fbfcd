// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/thread_start.h"

#include <system_error>
#include <utility>

namespace sonarith {

Result<std::thread> startThread(std::function<void()> body) {
    try {
        return std::thread(std::move(body));
    } catch (const std::system_error& error) {
        // The system's limit of threads or memory is reached. This is the only library call whose
        // exceptions the program handles.
        return Error{ErrorNumber::deviceUnavailable,
                     std::string("no thread can be started: ") + error.what()};
    }
}

} // namespace sonarith
