// SPDX-License-Identifier: GPL-3.0-or-later
// Creates a temporary folder for a test, and small disc images in it. Their usual sound is a ramp,
// in which each frame contains its own number. For tests only.
#pragma once

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>

#include "platform/linux/disc/disc.h"
#include "platform/linux/late/sndfile.h"

namespace sonarith::disc {

/// Frame `number` of the ramp, the test sound that tools/make_disc_image.py also creates. No frame
/// is silent.
inline sound::StereoFrame rampFrame(std::int64_t number) {
    return {static_cast<std::int16_t>(static_cast<std::uint16_t>(number & 0xffff)),
            static_cast<std::int16_t>(static_cast<std::uint16_t>((number >> 16) ^ 0x5a5a))};
}

inline std::vector<sound::StereoFrame> ramp(std::int64_t first, std::int64_t count) {
    std::vector<sound::StereoFrame> frames;
    for (std::int64_t i = 0; i < count; ++i) {
        frames.push_back(rampFrame(first + i));
    }
    return frames;
}

inline std::vector<sound::StereoFrame> rampSectors(std::int64_t first, std::int64_t count) {
    return ramp(first * framesPerSector, count * framesPerSector);
}

inline std::vector<sound::StereoFrame> silentSectors(std::int64_t count) {
    return std::vector<sound::StereoFrame>(static_cast<std::size_t>(count * framesPerSector));
}

/// Concatenates the runs.
inline std::vector<sound::StereoFrame>
joined(std::initializer_list<std::vector<sound::StereoFrame>> runs) {
    std::vector<sound::StereoFrame> all;
    for (const auto& run : runs) {
        all.insert(all.end(), run.begin(), run.end());
    }
    return all;
}

/// The whole time line of `disc`, read in blocks of `sectorsAtOnce` sectors.
inline std::vector<sound::StereoFrame> wholeLine(Disc& disc, std::int64_t sectorsAtOnce = 7) {
    std::vector<sound::StereoFrame> all;
    const std::int64_t end = disc.table().sectors();
    for (std::int64_t sector = 0; sector < end; sector += sectorsAtOnce) {
        const auto count = std::min(sectorsAtOnce, end - sector);
        // The block is not silent initially, so that a frame that read() does not write is
        // detected.
        std::vector<sound::StereoFrame> block(static_cast<std::size_t>(count * framesPerSector),
                                              {0x1111, 0x1111});
        EXPECT_EQ(disc.read(sector, block), ReadOutcome::ok) << "at sector " << sector;
        all.insert(all.end(), block.begin(), block.end());
    }
    return all;
}

/// Reports the first difference. EXPECT_EQ would print only the beginnings of both sequences.
inline void expectFrames(const std::vector<sound::StereoFrame>& actual,
                         const std::vector<sound::StereoFrame>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    const auto [at, other] = std::mismatch(actual.begin(), actual.end(), expected.begin());
    EXPECT_TRUE(at == actual.end())
        << "first difference at frame " << at - actual.begin() << ": " << at->left << ","
        << at->right << " instead of " << other->left << "," << other->right;
}

class ImageFolder {
  public:
    ImageFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "disc-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~ImageFolder() { std::filesystem::remove_all(path_); }
    ImageFolder(const ImageFolder&) = delete;
    ImageFolder& operator=(const ImageFolder&) = delete;

    [[nodiscard]] std::filesystem::path path(std::string_view name) const { return path_ / name; }

    std::filesystem::path write(std::string_view name, std::string_view content) const {
        std::filesystem::create_directories(path(name).parent_path());
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }

    void writeFrames(std::string_view name, const std::vector<sound::StereoFrame>& frames,
                     std::endian order = std::endian::little) const {
        std::string bytes;
        for (const auto& frame : frames) {
            for (const std::int16_t sample : {frame.left, frame.right}) {
                const auto bits = static_cast<std::uint16_t>(sample);
                const auto low = static_cast<char>(bits & 0xffU);
                const auto high = static_cast<char>(bits >> 8U);
                bytes +=
                    order == std::endian::little ? std::string{low, high} : std::string{high, low};
            }
        }
        write(name, bytes);
    }

    void writeWave(std::string_view name, const std::vector<sound::StereoFrame>& frames,
                   int rate = 44100, int channels = 2,
                   int format = SF_FORMAT_WAV | SF_FORMAT_PCM_16) const {
        SF_INFO info = {};
        info.samplerate = rate;
        info.channels = channels;
        info.format = format;
        SNDFILE* file = sf_open(path(name).c_str(), SFM_WRITE, &info);
        ASSERT_NE(file, nullptr);
        const auto items = static_cast<sf_count_t>(frames.size()) * 2 / channels * channels;
        ASSERT_EQ(sf_write_short(file, reinterpret_cast<const short*>(frames.data()), items),
                  items);
        sf_close(file);
    }

  private:
    std::filesystem::path path_;
};

} // namespace sonarith::disc
