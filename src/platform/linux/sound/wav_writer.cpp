// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/wav_writer.h"

#include <bit>
#include <cerrno>
#include <vector>

#include <unistd.h>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

// Samples are written as they are in memory, and a WAV requires little-endian samples.
static_assert(std::endian::native == std::endian::little);

namespace {

std::vector<std::uint8_t> headerOf(WavForm form, Channels channels, std::int64_t sampleBytes) {
    return wavHeader(form, {frameRate, static_cast<int>(channels)}, sampleBytes);
}

} // namespace

WavWriter::WavWriter(const files::FileDescriptor& file, Channels channels, WavForm form)
    : file_(file.get()),
      channels_(channels),
      form_(form),
      end_(static_cast<std::int64_t>(headerOf(form, channels, 0).size())) {}

bool WavWriter::writeHeader(std::int64_t sampleBytes) {
    const std::vector<std::uint8_t> header = headerOf(form_, channels_, sampleBytes);
    return write(std::as_bytes(std::span(header)), 0) == header.size();
}

std::size_t WavWriter::append(std::span<const std::int16_t> samples) {
    const std::size_t written = write(std::as_bytes(samples), end_);
    end_ += static_cast<std::int64_t>(written);
    return written / sizeof(std::int16_t);
}

/// Returns how many bytes were written. If that is less than all, errorNumber_ contains the reason.
std::size_t WavWriter::write(std::span<const std::byte> bytes, std::int64_t offset) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::pwrite(file_, bytes.data() + done, bytes.size() - done,
                                       offset + static_cast<std::int64_t>(done));
        if (count > 0) {
            done += static_cast<std::size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            errorNumber_ = count == 0 ? EIO : errno;
            break;
        }
    }
    return done;
}

} // namespace sonarith::sound
