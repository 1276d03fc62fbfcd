// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/image_file.h"

#include <gmock/gmock.h>

#include "platform/linux/disc/image_fixture.h"

namespace sonarith::disc {
namespace {

using ::testing::HasSubstr;

void expectReads(ImageFile& file, std::int64_t firstFrame, std::int64_t count) {
    std::vector<sound::StereoFrame> frames(static_cast<std::size_t>(count));
    ASSERT_TRUE(file.read(firstFrame * 4, frames));
    expectFrames(frames, ramp(firstFrame, count));
}

TEST(ImageFile, ReadsRawSamplesInBothByteOrders) {
    const ImageFolder folder;
    folder.writeFrames("l.bin", ramp(0, 1000), std::endian::little);
    folder.writeFrames("b.bin", ramp(0, 1000), std::endian::big);
    const auto little = openImageFile(folder.path("l.bin"), ImageFormat::littleEndian);
    const auto big = openImageFile(folder.path("b.bin"), ImageFormat::bigEndian);
    EXPECT_EQ(little.value()->bytes(), 4000);
    expectReads(*little.value(), 17, 983);
    expectReads(*big.value(), 17, 983);
}

TEST(ImageFile, ReadsWaveFilesFromAnyOffset) {
    const ImageFolder folder;
    folder.writeWave("a.wav", ramp(0, 1000));
    const auto file = openImageFile(folder.path("a.wav"), ImageFormat::wave);
    ASSERT_TRUE(file.ok()) << file.error().text;
    EXPECT_EQ(file.value()->bytes(), 4000);
    expectReads(*file.value(), 500, 500);
    expectReads(*file.value(), 0, 1000);
    expectReads(*file.value(), 17, 5);
}

TEST(ImageFile, ReadsTheRemainingSamplesOfATruncatedWaveFile) {
    const ImageFolder folder;
    folder.writeWave("a.wav", ramp(0, 1000));
    std::filesystem::resize_file(folder.path("a.wav"),
                                 std::filesystem::file_size(folder.path("a.wav")) - 2000);
    const auto file = openImageFile(folder.path("a.wav"), ImageFormat::wave);
    ASSERT_TRUE(file.ok()) << file.error().text;
    EXPECT_EQ(file.value()->bytes(), 2000);
    expectReads(*file.value(), 0, 500);
}

TEST(ImageFile, RefusesSoundThatIsNotInTheFormatOfADisc) {
    const ImageFolder folder;
    const auto refusal = [&](int rate, int channels, int format) {
        folder.writeWave("a.wav", ramp(0, 1000), rate, channels, format);
        const auto file = openImageFile(folder.path("a.wav"), ImageFormat::wave);
        return file.ok() ? std::string("accepted") : file.error().text;
    };
    EXPECT_THAT(refusal(48000, 2, SF_FORMAT_WAV | SF_FORMAT_PCM_16), HasSubstr("48000 Hz"));
    EXPECT_THAT(refusal(44100, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16), HasSubstr("1 channel(s)"));
    EXPECT_THAT(refusal(44100, 2, SF_FORMAT_WAV | SF_FORMAT_PCM_24),
                HasSubstr("samples that are not 16 bit"));
    EXPECT_THAT(refusal(44100, 2, SF_FORMAT_WAV | SF_FORMAT_FLOAT),
                HasSubstr("samples that are not 16 bit"));
    EXPECT_THAT(refusal(44100, 2, SF_FORMAT_AIFF | SF_FORMAT_PCM_16),
                HasSubstr("it is not a WAVE file"));
    EXPECT_EQ(refusal(44100, 2, SF_FORMAT_WAVEX | SF_FORMAT_PCM_16), "accepted");
}

TEST(ImageFile, RefusesFilesThatAreNotWaveFiles) {
    const ImageFolder folder;
    folder.write("a.wav", "this is no sound at all, though it is long enough to hold a header");
    folder.write("empty.wav", "");
    EXPECT_THAT(openImageFile(folder.path("a.wav"), ImageFormat::wave).error().text,
                HasSubstr("it is not a valid WAVE file"));
    EXPECT_THAT(openImageFile(folder.path("empty.wav"), ImageFormat::wave).error().text,
                HasSubstr("it is not a valid WAVE file"));
}

TEST(ImageFile, AReadFailsIfItsFramesWereCutOffOrTheFileWasDeleted) {
    const ImageFolder folder;
    folder.writeFrames("a.bin", ramp(0, 1000));
    folder.writeWave("a.wav", ramp(0, 1000));
    std::vector<sound::StereoFrame> frames(100);
    const auto raw = openImageFile(folder.path("a.bin"), ImageFormat::littleEndian);
    const auto wave = openImageFile(folder.path("a.wav"), ImageFormat::wave);
    std::filesystem::resize_file(folder.path("a.bin"), 2000);
    std::filesystem::resize_file(folder.path("a.wav"), 2044);
    EXPECT_TRUE(raw.value()->read(0, frames));
    EXPECT_FALSE(raw.value()->read(450 * 4, frames));
    EXPECT_TRUE(wave.value()->read(0, frames));
    EXPECT_FALSE(wave.value()->read(450 * 4, frames));
    std::filesystem::remove(folder.path("a.bin"));
    std::filesystem::remove(folder.path("a.wav"));
    EXPECT_FALSE(raw.value()->read(0, frames));
    EXPECT_FALSE(wave.value()->read(0, frames));
}

} // namespace
} // namespace sonarith::disc
