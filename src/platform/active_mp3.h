// SPDX-License-Identifier: GPL-3.0-or-later
// The interface of the MP3 control for the logic: decodes one file to WAV or plays it, on its own
// threads. It raises no events.
//
// Life cycle: a form owns one control at all times; each unload of the form replaces the control
// with a new one (ActiveMp3Host). All members are called on the logic thread and wait at most 50 ms
// for a disk. The destructor stops the control.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/result.h"

namespace sonarith {

class ActiveMP3 {
  public:
    virtual ~ActiveMP3() = default;
    /// Sets the MP3 file to work on; `path` is a path of the logic.
    virtual Status setSourceFile(const std::string& path) = 0;
    /// True from the start of a decoding until its end.
    [[nodiscard]] virtual bool Busy() const = 0;
    /// Progress of the current work, from 0 to Length().
    [[nodiscard]] virtual std::int32_t Position() const = 0;
    /// Amount of the current work, in an unspecified unit; above 0 while Busy().
    [[nodiscard]] virtual std::int32_t Length() const = 0;
    /// Plays the source file through the sound card's wave line.
    virtual Status Play() = 0;
    /// Ends playing or decoding; does nothing when idle.
    virtual Status Stop() = 0;
    /// Starts to decode the source file to a 16-bit WAV file at `path`, on another thread. First
    /// stops a decoding of another source or to another target. Does nothing if the same decoding
    /// is running. Also does nothing if the same decoding was the last one and was completed, and
    /// neither file has changed since.
    virtual Status DecodeToWav(const std::string& path) = 0;
};

/// Creates MP3 controls.
class Mp3Controls {
  public:
    virtual ~Mp3Controls() = default;
    [[nodiscard]] virtual std::unique_ptr<ActiveMP3> create() = 0;
};

} // namespace sonarith
