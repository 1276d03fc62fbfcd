// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/image_file.h"

#include <array>
#include <bit>
#include <string>
#include <utility>

#include <unistd.h>

#include "platform/linux/disc/file_handle.h"
#include "platform/linux/late/sndfile.h"

namespace sonarith::disc {

namespace {

static_assert(sizeof(sound::StereoFrame) == bytesPerFrame,
              "the bytes of a file are read directly into StereoFrame objects");

std::int16_t swapped(std::int16_t sample) {
    const auto bits = static_cast<std::uint16_t>(sample);
    return static_cast<std::int16_t>(static_cast<std::uint16_t>((bits << 8U) | (bits >> 8U)));
}

/// Raw samples without a header.
class RawFile final : public ImageFile {
  public:
    RawFile(FileHandle handle, std::endian order) : handle_(std::move(handle)), order_(order) {}

    [[nodiscard]] std::int64_t bytes() const override { return handle_.bytes(); }
    [[nodiscard]] bool unchanged() const override { return handle_.unchanged(); }

    [[nodiscard]] bool read(std::int64_t offset, std::span<sound::StereoFrame> out) override {
        const auto target = std::as_writable_bytes(out);
        if (!handle_.stillThere() || handle_.readAt(offset, target) != target.size()) {
            return false;
        }
        if (order_ != std::endian::native) {
            for (sound::StereoFrame& frame : out) {
                frame = {swapped(frame.left), swapped(frame.right)};
            }
        }
        return true;
    }

  private:
    FileHandle handle_;
    std::endian order_;
};

/// A RIFF WAVE file or one of the variants that isWave() lists, read with libsndfile.
class WaveFile final : public ImageFile {
  public:
    [[nodiscard]] static Result<std::unique_ptr<ImageFile>> open(FileHandle handle);
    WaveFile(FileHandle handle, SNDFILE* file, std::int64_t frames)
        : handle_(std::move(handle)), file_(file), frames_(frames) {}
    WaveFile(const WaveFile&) = delete;
    WaveFile& operator=(const WaveFile&) = delete;
    ~WaveFile() override { sf_close(file_); }

    [[nodiscard]] std::int64_t bytes() const override { return frames_ * bytesPerFrame; }
    [[nodiscard]] bool unchanged() const override { return handle_.unchanged(); }

    [[nodiscard]] bool read(std::int64_t offset, std::span<sound::StereoFrame> out) override {
        const auto first = static_cast<sf_count_t>(offset / bytesPerFrame);
        const auto count = static_cast<sf_count_t>(out.size());
        // sf_readf_short() writes each frame as a pair of samples: the layout of StereoFrame.
        auto* samples = reinterpret_cast<short*>(out.data());
        return handle_.stillThere() && sf_seek(file_, first, SEEK_SET) == first &&
               sf_readf_short(file_, samples, count) == count;
    }

  private:
    FileHandle handle_;
    SNDFILE* file_;
    std::int64_t frames_;
};

bool isWave(int format) {
    constexpr std::array kinds = {SF_FORMAT_WAV, SF_FORMAT_WAVEX, SF_FORMAT_W64, SF_FORMAT_RF64};
    for (const int kind : kinds) {
        if ((format & SF_FORMAT_TYPEMASK) == kind) {
            return true;
        }
    }
    return false;
}

Result<std::unique_ptr<ImageFile>> WaveFile::open(FileHandle handle) {
    SF_INFO info = {};
    SNDFILE* file = sf_open_fd(handle.descriptor(), SFM_READ, &info, SF_FALSE);
    if (file == nullptr) {
        return {ErrorNumber::deviceInputOutput,
                "it is not a valid WAVE file (" + std::string(sf_strerror(nullptr)) + ")"};
    }
    auto opened = std::make_unique<WaveFile>(std::move(handle), file, info.frames);
    const bool fits = (info.format & SF_FORMAT_SUBMASK) == SF_FORMAT_PCM_16 && info.channels == 2 &&
                      info.samplerate == sound::frameRate;
    if (!isWave(info.format) || !fits) {
        const std::string bits = (info.format & SF_FORMAT_SUBMASK) == SF_FORMAT_PCM_16
                                     ? "of 16 bit"
                                     : "that are not 16 bit";
        return {ErrorNumber::deviceInputOutput,
                "a disc needs a WAVE file with 2 channels, 44100 Hz, and samples of 16 bit; this "
                "file has " +
                    std::to_string(info.channels) + " channel(s), " +
                    std::to_string(info.samplerate) + " Hz, and samples " + bits +
                    (isWave(info.format) ? "" : "; it is not a WAVE file")};
    }
    if (info.frames < 0 || info.seekable == 0) {
        return {ErrorNumber::deviceInputOutput, "its length cannot be determined"};
    }
    return std::unique_ptr<ImageFile>(std::move(opened));
}

} // namespace

Result<std::unique_ptr<ImageFile>> openImageFile(const std::filesystem::path& path,
                                                 ImageFormat format) {
    auto handle = FileHandle::open(path);
    if (!handle.ok()) {
        return handle.error();
    }
    if (format == ImageFormat::wave) {
        return WaveFile::open(std::move(handle.value()));
    }
    const auto order = format == ImageFormat::bigEndian ? std::endian::big : std::endian::little;
    return std::unique_ptr<ImageFile>(std::make_unique<RawFile>(std::move(handle.value()), order));
}

} // namespace sonarith::disc
