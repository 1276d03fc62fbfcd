// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/wav_writer.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>

#include "support/file_content.h"
#include "support/forked_child.h"
#include "support/temp_folder.h"
#include "support/wav_samples.h"

namespace sonarith::sound {
namespace {

using testing::ElementsAre;

class WavWriterTest : public testing::Test {
  protected:
    std::string content() const { return test::contentOf(path); }

    fakes::TempFolder folder;
    const std::filesystem::path path = folder / "written.wav";
    const files::FileDescriptor file{::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)};
    const std::vector<std::int16_t> samples{1, -2, INT16_MAX, INT16_MIN};
};

TEST_F(WavWriterTest, WritesThePlainHeader) {
    WavWriter writer(file, Channels::stereo, WavForm::plain);
    EXPECT_TRUE(writer.writeHeader(0));
    EXPECT_EQ(writer.append(samples), 4U);
    EXPECT_TRUE(writer.writeHeader(8));
    const std::string bytes = content();
    ASSERT_EQ(static_cast<std::int64_t>(bytes.size()), wavHeaderBytes + 8);
    EXPECT_EQ(bytes.substr(0, 8), std::string("RIFF\x2C\0\0\0", 8));
    EXPECT_EQ(bytes.substr(8, 8), "WAVEfmt ");
    // A chunk of 16 bytes: format 1 (PCM), 2 channels.
    EXPECT_EQ(bytes.substr(16, 8), std::string("\x10\0\0\0\x01\0\x02\0", 8));
    EXPECT_EQ(bytes.substr(36), std::string("data\x08\0\0\0\x01\0\xFE\xFF\xFF\x7F\0\x80", 16));
    const auto wav = fakes::readWav(path);
    ASSERT_TRUE(wav);
    EXPECT_EQ(wav->rate, 44100);
    EXPECT_THAT(wav->samples, ElementsAre(1, -2, INT16_MAX, INT16_MIN));
}

TEST_F(WavWriterTest, WritesMonoSamplesAsRf64) {
    WavWriter writer(file, Channels::mono, WavForm::rf64);
    EXPECT_TRUE(writer.writeHeader(8));
    EXPECT_EQ(writer.append(std::span(samples).first(1)), 1U);
    EXPECT_EQ(writer.append(std::span(samples).subspan(1)), 3U);
    EXPECT_EQ(content().substr(0, 4), "RF64");
    const auto wav = fakes::readWav(path);
    ASSERT_TRUE(wav);
    EXPECT_EQ(wav->channels, 1);
    EXPECT_EQ(wav->rate, 44100);
    EXPECT_THAT(wav->samples, ElementsAre(1, -2, INT16_MAX, INT16_MIN));
}

TEST_F(WavWriterTest, ReportsWhyNothingCanBeWritten) {
    const files::FileDescriptor full(::open("/dev/full", O_RDWR | O_CLOEXEC));
    ASSERT_TRUE(full.valid());
    WavWriter writer(full, Channels::stereo, WavForm::plain);
    EXPECT_EQ(writer.append(samples), 0U);
    EXPECT_EQ(writer.errorNumber(), ENOSPC);
    WavWriter nowhere(files::FileDescriptor(), Channels::stereo, WavForm::plain);
    EXPECT_FALSE(nowhere.writeHeader(0));
    EXPECT_EQ(nowhere.errorNumber(), EBADF);
}

TEST_F(WavWriterTest, ReturnsTheNumberOfWholeSamplesThatFit) {
    EXPECT_EQ(test::runInChild([this] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{49, 49}; // the header and two and a half samples
                  ::setrlimit(RLIMIT_FSIZE, &limit);
                  WavWriter writer(file, Channels::mono, WavForm::plain);
                  const bool counted = writer.append(samples) == 2 && writer.errorNumber() == EFBIG;
                  return counted ? 0 : 1;
              }),
              0);
}

} // namespace
} // namespace sonarith::sound
