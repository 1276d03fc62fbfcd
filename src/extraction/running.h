// SPDX-License-Identifier: GPL-3.0-or-later
// Counts a procedure as running during the lifetime of this object. If the program ends
// during the procedure, the stack is unwound, and the procedure no longer counts. A counter is
// needed because procedures that yield may be nested.
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
