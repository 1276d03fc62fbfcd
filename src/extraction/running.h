// SPDX-License-Identifier: GPL-3.0-or-later
// Marks a procedure as running for as long as it lives, also when the end of the program unwinds
// through it. Procedures that yield may run within each other, so it counts.
#pragma once

namespace sonarith {

class Running {
  public:
    /// `count` outlives this.
    explicit Running(int& count) : count_(count) { ++count_; }
    ~Running() { --count_; }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

  private:
    int& count_;
};

} // namespace sonarith
