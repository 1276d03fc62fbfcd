// SPDX-License-Identifier: GPL-3.0-or-later
// One opened file of a disc image: stereo frames at byte offsets, whatever its format. Where those
// frames stand on a disc is not known here.
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
    /// Length of the samples in bytes (4 to a frame), as it was when the file was opened.
    [[nodiscard]] virtual std::int64_t bytes() const = 0;
    /// Whether it is still at its path and nobody has written to it since it was opened. May be
    /// called while another thread reads.
    [[nodiscard]] virtual bool unchanged() const = 0;
    /// Fills `out` from byte `offset` on. False if the file is no longer at its path or does not
    /// give what it held when it was opened; `out` is then of no use.
    [[nodiscard]] virtual bool read(std::int64_t offset, std::span<sound::StereoFrame> out) = 0;
};

/// Opens `path` for reading. Errors, in words that follow "cannot be read: ": not there, no
/// ordinary file, not allowed, no WAVE, not 16 bit stereo at 44100 Hz.
[[nodiscard]] Result<std::unique_ptr<ImageFile>> openImageFile(const std::filesystem::path& path,
                                                               ImageFormat format);

} // namespace sonarith::disc
