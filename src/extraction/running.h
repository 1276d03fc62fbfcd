// SPDX-License-Identifier: GPL-3.0-or-later
// An object of the class Running counts a procedure as running until the object is destroyed. The
// destructor also runs when the fake EventLoop::endProgram of the tests ends the procedure by an
// exception. The count may exceed 1: a procedure that yields may be called again before it returns.
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
