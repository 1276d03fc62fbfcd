// SPDX-License-Identifier: GPL-3.0-or-later
// Loads shared libraries after the start of the program: by LateLibrary::load(), or at the first
// use of a function or variable. The headers that are named after libraries (alsa.h, cdio.h and so
// on) declare the functions and variables.
#pragma once

#include <atomic>

namespace sonarith {

/// A shared library. `name` is its name for the dynamic linker ("libsndfile.so.1"). A missing
/// library or symbol ends the process with the linker's message and the exit status 127, as if the
/// program were linked to the library and failed at its start.
class LateLibrary {
  public:
    explicit constexpr LateLibrary(const char* name) : name_(name) {}

    /// Loads the library on the first call; later calls do nothing. Thread-safe.
    void load() const;
    /// Returns the address of a function or variable. Loads the library if necessary.
    [[nodiscard]] void* symbol(const char* name) const;

  private:
    const char* name_;
    mutable std::atomic<void*> handle_ = nullptr;
};

/// One function of a library, called as if the program were linked to the library. The object has
/// the function's name within our namespace, so that a call by this name uses the object. A call of
/// the library's own declaration would require linking the program to the library.
template <typename Function>
class LateFunction {
  public:
    constexpr LateFunction(const LateLibrary& library, const char* name)
        : library_(library), name_(name) {}

    /// The conversion is implicit, so that `name(arguments)` calls the function.
    operator Function*() const { // NOLINT(google-explicit-constructor)
        Function* function = function_.load(std::memory_order_acquire);
        if (function == nullptr) {
            // Two threads may both look up the function; both get the same address.
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

/// Declares a function of a library. The library's header must be included. A macro is needed,
/// because `name` serves as an identifier, as the operand of decltype and as a string.
#define SONARITH_LATE_FUNCTION(library, name)                                                      \
    inline constinit const LateFunction<decltype(::name)> name {                                   \
        library, #name                                                                             \
    }

/// Like SONARITH_LATE_FUNCTION, for a variable.
#define SONARITH_LATE_VARIABLE(library, name)                                                      \
    inline constinit const LateVariable<decltype(::name)> name {                                   \
        library, #name                                                                             \
    }
