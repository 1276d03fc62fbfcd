// SPDX-License-Identifier: GPL-3.0-or-later
// The media control string interface: the logic speaks to disc, recorder and clip devices by
// command texts. This is the interface alone; the Linux machine's interpreter implements it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace sonarith {

/// Status of a command that succeeded; every other value is an error number.
inline constexpr int mciSuccess = 0;

/// A caller's fixed reply buffer, as the command interface fills it: the reply, cut to size - 1
/// bytes, and a NUL behind it. What stands behind that NUL is what stood there before.
class ReplyBuffer {
  public:
    /// A buffer of `size` bytes, all blanks, without a NUL.
    explicit ReplyBuffer(std::size_t size) : bytes_(size, ' ') {}

    void write(std::string_view reply) {
        if (bytes_.empty()) {
            return;
        }
        const std::size_t length = std::min(reply.size(), bytes_.size() - 1);
        bytes_.replace(0, length, reply.substr(0, length));
        bytes_[length] = '\0';
    }
    /// All bytes of the buffer, the NUL among them.
    [[nodiscard]] const std::string& bytes() const { return bytes_; }

  private:
    std::string bytes_;
};

class MediaControl {
  public:
    virtual ~MediaControl() = default;
    /// Carries out one command. Returns mciSuccess or an error number. With `reply` given, it is
    /// written in every case: the answer, or an empty text for a failed or wordless command.
    virtual int sendString(std::string_view command, ReplyBuffer* reply) = 0;
    int sendString(std::string_view command) { return sendString(command, nullptr); }
    /// The text for an error number; empty for a number that means nothing.
    [[nodiscard]] virtual std::string errorString(int status) const = 0;
};

} // namespace sonarith
