// SPDX-License-Identifier: GPL-3.0-or-later
// Libraries that are loaded when they are first called and not when the program starts. They stand
// for the functions of a library and know none of them; those are listed in a header for each.
#pragma once

#include <atomic>

namespace sonarith {

/// A shared library by the name that the dynamic linker knows it by ("libsndfile.so.1"). What is
/// missing ends the process with the linker's own words and its status 127, as it would at the
/// start of a program that is linked to it.
class LateLibrary {
  public:
    explicit constexpr LateLibrary(const char* name) : name_(name) {}

    /// Once; later calls do nothing. From any thread.
    void load() const;
    /// The address of a function or variable; loads the library.
    [[nodiscard]] void* symbol(const char* name) const;

  private:
    const char* name_;
    mutable std::atomic<void*> handle_ = nullptr;
};

/// One function of a library, called as if the program were linked to it. It bears the function's
/// own name within our namespace, so that callers find it in the library's place.
template <typename Function>
class LateFunction {
  public:
    constexpr LateFunction(const LateLibrary& library, const char* name)
        : library_(library), name_(name) {}

    /// Not explicit: this is what makes `name(arguments)` a call.
    operator Function*() const { // NOLINT(google-explicit-constructor)
        Function* function = function_.load(std::memory_order_acquire);
        if (function == nullptr) {
            // Two threads may both look it up; they find the same.
            function = reinterpret_cast<Function*>(library_.symbol(name_));
            function_.store(function, std::memory_order_release);
        }
        return function;
    }

  private:
    const LateLibrary& library_;
    const char* name_;
    mutable std::atomic<Function*> function_ = nullptr;
};

/// One variable of a library.
template <typename Variable>
class LateVariable {
  public:
    constexpr LateVariable(const LateLibrary& library, const char* name)
        : library_(library), name_(name) {}

    [[nodiscard]] Variable& value() const {
        return *static_cast<Variable*>(library_.symbol(name_));
    }

  private:
    const LateLibrary& library_;
    const char* name_;
};

} // namespace sonarith

/// Lists a function of a library that a header of the library declares: its name is wanted as a
/// name, as a type and as a text.
#define SONARITH_LATE_FUNCTION(library, name)                                                      \
    inline constinit const LateFunction<decltype(::name)> name {                                   \
        library, #name                                                                             \
    }

/// As above, for a variable.
#define SONARITH_LATE_VARIABLE(library, name)                                                      \
    inline constinit const LateVariable<decltype(::name)> name {                                   \
        library, #name                                                                             \
    }
