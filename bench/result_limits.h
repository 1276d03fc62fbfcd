// SPDX-License-Identifier: GPL-3.0-or-later
// Compares the results of a benchmark with their limits.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace sonarith::bench {

class Limits {
  public:
    /// The limit is the largest permitted value, in the unit of the value. A larger value, or one
    /// that is not a number, is reported on the standard error output.
    void check(const char* what, double value, double limit) {
        if (!(value <= limit)) {
            std::fprintf(stderr, "over the limit: %s: %.4g, limit %.4g\n", what, value, limit);
            exceeded_ = true;
        }
    }
    /// For a result that is no number, such as a decoding that must be complete.
    void require(const char* what, bool fulfilled) {
        if (!fulfilled) {
            std::fprintf(stderr, "not fulfilled: %s\n", what);
            exceeded_ = true;
        }
    }
    /// The exit code of the benchmark.
    [[nodiscard]] int exitCode() const { return exceeded_ ? EXIT_FAILURE : EXIT_SUCCESS; }

  private:
    bool exceeded_ = false;
};

} // namespace sonarith::bench
