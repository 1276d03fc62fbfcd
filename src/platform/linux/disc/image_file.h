// SPDX-License-Identifier: GPL-3.0-or-later
// Reads stereo frames from one file of a disc image, whatever the file's format. An offset is in
// bytes: from the first sample of a WAVE file, or from the beginning of any other file.
// image_timeline.h computes where those frames are on the disc.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

#include "platform/linux/disc/image_layout.h"
#include "platform/linux/sound/sample_source.h"
#include "platform/result.h"

namespace sonarith::disc {

class ImageFile {
  public:
    virtual ~ImageFile() = default;
    /// Length in bytes when the file was opened; for a WAVE file, the length of its samples.
    [[nodiscard]] virtual std::int64_t bytes() const = 0;
    /// Whether the file is still at its path and has not been written to since it was opened. May
    /// be called while another thread reads.
    [[nodiscard]] virtual bool unchanged() const = 0;
    /// Fills `out` from byte `offset` on. False if the file is no longer at its path, or if it does
    /// not fill `out`, for example because it was truncated. `out` is then unspecified.
    [[nodiscard]] virtual bool read(std::int64_t offset, std::span<sound::StereoFrame> out) = 0;
};

/// Opens `path` for reading. Fails if the file is missing, is not a regular file or may not be read
/// by this user. For ImageFormat::wave also fails if the file is not a WAVE file of 16 bit stereo
/// at 44100 Hz. The error's message is a clause that completes the text "cannot be read: ".
[[nodiscard]] Result<std::unique_ptr<ImageFile>> openImageFile(const std::filesystem::path& path,
                                                               ImageFormat format);

} // namespace sonarith::disc
