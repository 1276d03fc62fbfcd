// SPDX-License-Identifier: GPL-3.0-or-later
// Counts a procedure as running as long as this object exists. If the program ends inside the
// procedure, the stack is unwound, so the destructor runs in that case, too. A counter is needed
// because procedures that yield may be nested.
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
