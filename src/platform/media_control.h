// SPDX-License-Identifier: GPL-3.0-or-later
// The interface through which the logic controls the disc and the recorder by command strings.
// linux/mci/ implements it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace sonarith {

/// Status of a command that succeeded; every other value is an error number.
inline constexpr int mciSuccess = 0;

/// A reply buffer of fixed size, owned by the caller. It receives the reply, truncated to size - 1
/// bytes, and a NUL. Deliberately, the bytes after that NUL keep their old values.
class ReplyBuffer {
  public:
    /// A buffer of `size` blanks without a NUL.
    explicit ReplyBuffer(std::size_t size) : bytes_(size, ' ') {}

    void write(std::string_view reply) {
        if (bytes_.empty()) {
            return;
        }
        const std::size_t length = std::min(reply.size(), bytes_.size() - 1);
        bytes_.replace(0, length, reply.substr(0, length));
        bytes_[length] = '\0';
    }
    /// All bytes of the buffer, including the NUL.
    [[nodiscard]] const std::string& bytes() const { return bytes_; }

  private:
    std::string bytes_;
};

class MediaControl {
  public:
    virtual ~MediaControl() = default;
    /// Executes one command. Returns mciSuccess or an error number. `reply`, if given, is always
    /// written: it receives the reply, or an empty text if the command failed or has no reply.
    virtual int sendString(std::string_view command, ReplyBuffer* reply) = 0;
    int sendString(std::string_view command) { return sendString(command, nullptr); }
    /// The text for an error number; empty for an unknown number.
    [[nodiscard]] virtual std::string errorString(int status) const = 0;
};

} // namespace sonarith
