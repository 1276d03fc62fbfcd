// SPDX-License-Identifier: GPL-3.0-or-later
// Opens arbitrary bytes as a WAVE file of a disc image. If the file is accepted, reads all samples
// and some single frames, and tries to read beyond the end.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include "platform/linux/disc/image_file.h"
#include "require.h"

namespace {

using namespace sonarith;
using fuzz::require;

/// A file in memory that has a path.
class MemoryFile {
  public:
    MemoryFile(const std::uint8_t* data, std::size_t size)
        : descriptor_(memfd_create("fuzz.wav", MFD_CLOEXEC)) {
        require(descriptor_ >= 0);
        require(write(descriptor_, data, size) == static_cast<ssize_t>(size));
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(descriptor_); }
    [[nodiscard]] std::string path() const {
        return "/proc/self/fd/" + std::to_string(descriptor_);
    }

  private:
    int descriptor_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryFile memory(data, size);
    const auto opened = disc::openImageFile(memory.path(), disc::ImageFormat::wave);
    if (!opened.ok()) {
        require(!opened.error().text.empty());
        return 0;
    }
    disc::ImageFile& file = *opened.value();
    // Whatever the header states, the samples are not longer than the file.
    const std::int64_t bytes = file.bytes();
    require(bytes >= 0 && bytes % 4 == 0 && bytes <= static_cast<std::int64_t>(size));
    const std::int64_t frames = bytes / 4;
    std::vector<sound::StereoFrame> whole(static_cast<std::size_t>(frames));
    require(file.read(0, whole));
    for (const std::int64_t first : {frames - 1, frames / 2, std::int64_t{0}}) {
        std::vector<sound::StereoFrame> one(1);
        if (first >= 0 && first < frames) {
            require(file.read(first * 4, one) && one[0] == whole[static_cast<std::size_t>(first)]);
        }
    }
    std::vector<sound::StereoFrame> beyond(1);
    require(!file.read(bytes, beyond));
    return 0;
}
