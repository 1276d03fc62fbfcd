// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/wav_writer.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <fstream>
#include <iterator>

#include "support/temp_folder.h"
#include "support/wav_samples.h"

namespace sonarith::sound {
namespace {

using testing::ElementsAre;

class WavWriterTest : public testing::Test {
  protected:
    files::FileDescriptor create() {
        return files::FileDescriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    }
    std::string content() const {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    fakes::TempFolder folder;
    const std::filesystem::path path = folder / "written.wav";
    const std::vector<std::int16_t> samples{1, -2, INT16_MAX, INT16_MIN};
};

TEST_F(WavWriterTest, WritesThePlainHeaderThatEverythingReads) {
    const files::FileDescriptor file = create();
    const auto writer = WavWriter::open(file, Channels::stereo, WavForm::plain);
    ASSERT_TRUE(writer);
    EXPECT_EQ(writer->write(samples), 4U);
    EXPECT_TRUE(writer->finish());
    const std::string bytes = content();
    ASSERT_EQ(static_cast<std::int64_t>(bytes.size()), wavHeaderBytes + 8);
    EXPECT_EQ(bytes.substr(0, 4), "RIFF");
    EXPECT_EQ(bytes.substr(8, 8), "WAVEfmt ");
    // Chunk of 16 bytes, format 1 (PCM), 2 channels.
    EXPECT_EQ(bytes.substr(16, 8), std::string("\x10\0\0\0\x01\0\x02\0", 8));
    EXPECT_EQ(bytes.substr(36, 8), std::string("data\x08\0\0\0", 8));
    const auto wav = fakes::readWav(path);
    ASSERT_TRUE(wav);
    EXPECT_EQ(wav->rate, 44100);
    EXPECT_THAT(wav->samples, ElementsAre(1, -2, INT16_MAX, INT16_MIN));
}

TEST_F(WavWriterTest, WritesMonoAndTheLargeForm) {
    {
        const files::FileDescriptor file = create();
        const auto writer = WavWriter::open(file, Channels::mono, WavForm::rf64);
        ASSERT_TRUE(writer);
        EXPECT_EQ(writer->write(samples), 4U);
        EXPECT_TRUE(writer->finish());
    }
    EXPECT_EQ(content().substr(0, 4), "RF64");
    const auto wav = fakes::readWav(path);
    ASSERT_TRUE(wav);
    EXPECT_EQ(wav->channels, 1);
    EXPECT_THAT(wav->samples, ElementsAre(1, -2, INT16_MAX, INT16_MIN));
}

TEST_F(WavWriterTest, SaysWhyNothingCanBeWritten) {
    const files::FileDescriptor full(::open("/dev/full", O_RDWR | O_CLOEXEC));
    ASSERT_TRUE(full.valid());
    if (const auto writer = WavWriter::open(full, Channels::stereo, WavForm::plain)) {
        EXPECT_EQ(writer->write(samples), 0U);
        EXPECT_EQ(writer->errorNumber(), ENOSPC);
    }
    EXPECT_FALSE(WavWriter::open(files::FileDescriptor(), Channels::stereo, WavForm::plain));
}

} // namespace
} // namespace sonarith::sound
