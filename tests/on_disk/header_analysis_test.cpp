// SPDX-License-Identifier: GPL-3.0-or-later
// Compares the header analysis of MP3 files with an independent decoder. Tests the values on which
// the analysis and the decoder agree, and the files for which the analysis deliberately differs.
#include "formats/mp3_analysis.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "on_disk/second_opinion.h"
#include "platform/linux/paths/binary_file_fixture.h"
#include "support/mp3_bytes.h"
#include "support/sound_files.h"

namespace sonarith {
namespace {

using test::SecondOpinion;

constexpr int samplesPerFrame = 1152; // of MPEG 1 Layer III
/// This length is not near a whole second, so that one frame more or less does not change the
/// duration in whole seconds.
constexpr double soundSeconds = 2.5;

/// Noise whose volume changes, so that an encoder with a variable bit rate uses several rates.
std::vector<std::int16_t> swellingNoise(int rate, int channels) {
    std::vector<std::int16_t> samples(static_cast<std::size_t>(rate * soundSeconds) *
                                      static_cast<std::size_t>(channels));
    std::uint32_t random = 7;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        random = random * 1664525 + 1013904223; // the generator from "Numerical Recipes"
        const double noise = random / 4294967296.0 - 0.5;
        samples[i] = static_cast<std::int16_t>(noise * static_cast<double>(i % 30'000));
    }
    return samples;
}

class HeaderAnalysisTest : public testing::Test {
  protected:
    /// Encodes a file with these options of LAME, then reads it with the analysis and with the
    /// decoder.
    void encode(int rate, int channels, const std::string& options) {
        encode(rate, channels, options, swellingNoise(rate, channels));
    }
    void encode(int rate, int channels, const std::string& options,
                const std::vector<std::int16_t>& samples) {
        ASSERT_TRUE(test::writeWav(world.parent() / "in.wav", {rate, channels}, samples));
        ASSERT_TRUE(test::encodeMp3(world.parent() / "in.wav", options, file()))
            << "lame is missing or failed: " << options;
        readFile();
        ASSERT_TRUE(opinion) << options;
    }
    /// Reads the file with the analysis and with the decoder.
    void readFile() {
        opinion = test::secondOpinionOf(file());
        info = {};
        analysed =
            GetMp3Info(world.files(), "d:\\a.mp3", TagReading::yes, HeaderReading::yes, info).ok();
    }
    [[nodiscard]] std::filesystem::path file() const { return world.disk() / "a.mp3"; }
    [[nodiscard]] std::int64_t bytes() const {
        return static_cast<std::int64_t>(std::filesystem::file_size(file()));
    }
    /// How the analysis reports a flag.
    static std::string yesIf(bool condition) { return condition ? "yes" : "no"; }

    /// Compares all fields of the header except bit rate and duration.
    void expectTheHeaderThatTheDecoderRead() const {
        const mpg123_frameinfo& first = opinion->first;
        EXPECT_TRUE(analysed);
        EXPECT_EQ(first.version, MPG123_1_0);
        EXPECT_EQ(info.MpegVersion, 1);
        EXPECT_EQ(info.MpegLayer, first.layer);
        EXPECT_EQ(info.Frequency, first.rate);
        EXPECT_EQ(info.CRC, yesIf((first.flags & MPG123_CRC) != 0));
        EXPECT_EQ(info.CopyRight, yesIf((first.flags & MPG123_COPYRIGHT) != 0));
        EXPECT_EQ(info.Private, yesIf((first.flags & MPG123_PRIVATE) != 0));
        EXPECT_EQ(info.Original, yesIf((first.flags & MPG123_ORIGINAL) != 0));
        // The size of a frame is computed from the rates and rounded down; with padding, the frame
        // is one byte longer.
        const std::int64_t plainBytes = 144'000LL * first.bitrate / first.rate;
        EXPECT_EQ(info.Padding, yesIf(first.framesize != plainBytes));
        const std::vector<std::string> modes{"stereo", "joint stereo", "dual channel",
                                             "single channel"};
        EXPECT_EQ(info.Mode, modes.at(static_cast<std::size_t>(first.mode)));
        const std::vector<std::string> emphases{"no", "50/15", "reserved", "CCITT J 17"};
        EXPECT_EQ(info.Emphasis, emphases.at(static_cast<std::size_t>(first.emphasis)));
    }
    [[nodiscard]] double seconds(std::int64_t frames) const {
        return static_cast<double>(frames * samplesPerFrame) /
               static_cast<double>(opinion->first.rate);
    }

    test::MachineWorld world;
    std::optional<SecondOpinion> opinion;
    Mp3Info info;
    bool analysed = false;
};

// Uses all bit rates and all sampling rates of MPEG 1 Layer III.
TEST_F(HeaderAnalysisTest, ReadsTheHeaderOfAFileWithAConstantRateAsADecoderDoes) {
    int files = 0;
    for (const int rate : {44100, 48000, 32000}) {
        for (const int kilobits : {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320}) {
            SCOPED_TRACE(std::to_string(rate) + " Hz, " + std::to_string(kilobits) + " kbit/s");
            encode(rate, 2,
                   "-b " + std::to_string(kilobits) + " --resample " + std::to_string(rate));
            expectTheHeaderThatTheDecoderRead();
            EXPECT_FALSE(info.IsVbr);
            EXPECT_EQ(info.Bitrate, opinion->first.bitrate);
            EXPECT_EQ(info.Bitrate, kilobits);
            EXPECT_EQ(info.Duration, std::floor(seconds(opinion->frames)));
            ++files;
        }
    }
    EXPECT_EQ(files, 42);
}

TEST_F(HeaderAnalysisTest, ReadsModesAndFlagsAsADecoderDoes) {
    const char* all[] = {"-m s",         "-m j",
                         "-m f",         "-m d",
                         "-p",           "-c",
                         "-o",           "-e 5",
                         "-e c",         "-p -c -o",
                         "-t",           "-t -p -m s",
                         "-m s -e c -c", "--id3v1-only --tt Title"};
    for (const char* options : all) {
        SCOPED_TRACE(options);
        encode(44100, 2, std::string("-b 128 ") + options);
        expectTheHeaderThatTheDecoderRead();
        EXPECT_EQ(info.Bitrate, opinion->first.bitrate);
    }
    SCOPED_TRACE("one channel");
    encode(44100, 1, "-b 64");
    expectTheHeaderThatTheDecoderRead();
    EXPECT_EQ(info.Mode, "single channel");
    EXPECT_EQ(info.Bitrate, 64);
}

TEST_F(HeaderAnalysisTest, ShowsTheAverageBitRateOfAStereoFileWithAVariableRate) {
    for (const char* options : {"-V 0", "-V 2", "-V 4", "-V 6", "--abr 112", "--abr 190"}) {
        SCOPED_TRACE(options);
        encode(44100, 2, std::string("--resample 44.1 ") + options);
        expectTheHeaderThatTheDecoderRead();
        EXPECT_TRUE(info.IsVbr);
        // The decoder counts the information frame, too; the count stored in that frame does not
        // include it.
        EXPECT_EQ(info.Frames, opinion->frames - 1);
        const double average = static_cast<double>(bytes()) * 8 / seconds(info.Frames) / 1000;
        EXPECT_NEAR(info.Bitrate, average, 0.5);
        EXPECT_EQ(info.Duration, std::floor(seconds(info.Frames)));
    }
}

TEST_F(HeaderAnalysisTest, FindsTheSameTagAsADecoder) {
    encode(44100, 2, "-b 128 --id3v1-only --tt Title --ta Artist --tl Album --ty 1999 --tg 17");
    EXPECT_TRUE(info.HasTag);
    EXPECT_EQ(opinion->title, "Title");
    EXPECT_EQ(info.Title.substr(0, info.Title.find('\0')), opinion->title);
    EXPECT_EQ(info.Artist.substr(0, info.Artist.find('\0')), "Artist");
    EXPECT_EQ(info.Album.substr(0, info.Album.find('\0')), "Album");
    EXPECT_EQ(info.Year, "1999");
    EXPECT_EQ(info.Genre, 17);
    encode(44100, 2, "-b 128");
    EXPECT_EQ(info.HasTag, opinion->title.has_value());
}

// --- deliberate differences from a decoder ------------------------------------

// The files with 11025 Hz are MPEG 2.5. The encoded sound is silence: in other sound, the analysis
// might take a pair of bytes for the start of a frame.
TEST_F(HeaderAnalysisTest, FindsNoFrameOfMpeg2OrMpeg25) {
    for (const int rate : {24000, 22050, 16000, 11025}) {
        SCOPED_TRACE(rate);
        encode(rate, 2, "-t -b 32 --resample " + std::to_string(rate),
               std::vector<std::int16_t>(static_cast<std::size_t>(rate) * 4));
        EXPECT_NE(opinion->first.version, MPG123_1_0);
        EXPECT_EQ(opinion->first.rate, rate);
        EXPECT_EQ(info.Frequency, 0);
        EXPECT_EQ(info.Bitrate, 0);
    }
}

TEST_F(HeaderAnalysisTest, TreatsAVariableRateOfAMonoFileAsConstant) {
    encode(44100, 1, "-V 4 --resample 44.1");
    expectTheHeaderThatTheDecoderRead();
    EXPECT_FALSE(info.IsVbr);
    EXPECT_EQ(info.Bitrate, opinion->first.bitrate);
    EXPECT_EQ(info.Duration, bytes() * 8 / info.Bitrate / 1000);
}

TEST_F(HeaderAnalysisTest, FindsNoFrameBehindALongLeadingTag) {
    encode(44100, 2, "-b 128 --id3v2-only --pad-id3v2-size 6000 --tt Title");
    EXPECT_EQ(opinion->first.bitrate, 128);
    EXPECT_EQ(info.Bitrate, 0);
    EXPECT_FALSE(info.HasTag);
}

// The bytes FF FB B0 are the title "ÿû°" in the leading tag's code page, and also the beginning of
// a frame header with 192 kbit/s.
TEST_F(HeaderAnalysisTest, MistakesATitleInALeadingTagForTheFirstFrame) {
    encode(44100, 2, "-b 128 --id3v2-only --id3v2-latin1 --tt abc");
    std::string content = world.content("a.mp3").value();
    const std::size_t title = content.find("abc");
    ASSERT_LT(title, 100U) << "the file must have a leading tag";
    world.put("a.mp3", content.replace(title, 3, "\xff\xfb\xb0"));
    readFile();
    ASSERT_TRUE(opinion);
    EXPECT_EQ(opinion->first.bitrate, 128);
    EXPECT_EQ(info.Bitrate, 192);
}

// The file repeats the sound of a shorter file and lasts for about 14 minutes.
TEST_F(HeaderAnalysisTest, FailsForAVariableRateFileWithMoreThan32767Frames) {
    encode(44100, 2, "-V 9 --resample 44.1 -f");
    const std::string content = world.content("a.mp3").value();
    const auto informationFrame = static_cast<std::size_t>(opinion->first.framesize);
    const std::int64_t times = 32'768 / (opinion->frames - 1) + 1;
    const std::int64_t frames = times * (opinion->frames - 1);
    std::string longer = content.substr(0, informationFrame);
    longer.replace(44, 4, test::Mp3Bytes::bigEndian(static_cast<std::uint32_t>(frames)));
    for (std::int64_t i = 0; i < times; ++i) {
        longer += content.substr(informationFrame);
    }
    world.put("a.mp3", longer + test::tagOf("Title"));
    readFile();
    ASSERT_TRUE(opinion);
    EXPECT_EQ(opinion->frames, frames + 1);
    EXPECT_EQ(opinion->title, "Title");
    EXPECT_FALSE(analysed);
    EXPECT_TRUE(info.IsVbr);
    EXPECT_EQ(info.Frames, 0);
    EXPECT_EQ(info.Bitrate, 0);
    EXPECT_FALSE(info.HasTag);
}

} // namespace
} // namespace sonarith
