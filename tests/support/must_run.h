// SPDX-License-Identifier: GPL-3.0-or-later
// Wraps a callback that a test sets, so that the test fails if the callback never runs. Otherwise
// the assertions in such a callback could not fail.
//
//     loop.after(5s, test::mustRun([&] { EXPECT_TRUE(form.visible()); }));
#pragma once

#include <memory>
#include <source_location>
#include <utility>

#include <gtest/gtest.h>

namespace sonarith::test {

/// Returns a callback that calls `body`. Adds a failure if `body` was never called when the last
/// copy of that callback is destroyed. The callback must be destroyed before the test ends, for
/// example with the bench of the test.
template <typename Body>
[[nodiscard]] auto mustRun(Body body,
                           std::source_location where = std::source_location::current()) {
    struct Calls {
        explicit Calls(std::source_location place) : where(place) {}
        ~Calls() {
            if (!ran) {
                ADD_FAILURE_AT(where.file_name(), static_cast<int>(where.line()))
                    << "this callback never ran";
            }
        }
        Calls(const Calls&) = delete;
        Calls& operator=(const Calls&) = delete;

        std::source_location where;
        bool ran = false;
    };
    return [body = std::move(body), calls = std::make_shared<Calls>(where)](auto&&... arguments) {
        calls->ran = true;
        return body(std::forward<decltype(arguments)>(arguments)...);
    };
}

} // namespace sonarith::test
