// SPDX-License-Identifier: GPL-3.0-or-later
// Marks a procedure as running while this object exists, also when the end of the program unwinds
// the stack. It is a counter, since procedures that yield may be nested.
#pragma once

namespace sonarith {

class Running {
  public:
    /// `count` must outlive this object.
    explicit Running(int& count) : count_(count) { ++count_; }
    ~Running() { --count_; }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

  private:
    int& count_;
};

} // namespace sonarith
