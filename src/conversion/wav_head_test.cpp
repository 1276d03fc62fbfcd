// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/wav_head.h"

#include <gmock/gmock.h>

#include <string>

#include "support/fake_file_system.h"

namespace sonarith {
namespace {

using test::FakeFileSystem;
using testing::ElementsAre;
using testing::IsEmpty;

class WavHeadTest : public testing::Test {
  protected:
    const std::string path = "c:\\a.wav";
    FakeFileSystem disk;
    WavHeadReader reader{disk};

    static void putWord(std::string& bytes, std::size_t offset, unsigned word) {
        bytes[offset] = static_cast<char>(word % 256);
        bytes[offset + 1] = static_cast<char>(word / 256);
    }
    static std::string wav(std::size_t length, unsigned channels, unsigned bits,
                           unsigned sampleRate) {
        std::string bytes(length, '\0');
        bytes.replace(0, 4, "RIFF");
        putWord(bytes, 22, channels);
        putWord(bytes, 24, sampleRate % 65536);
        putWord(bytes, 34, bits);
        return bytes;
    }
    bool read(const std::string& content) {
        disk.addFile(path, content);
        return reader.wHeadInfo(path);
    }
    [[nodiscard]] const WavHead& head() const { return reader.head(); }
};

TEST_F(WavHeadTest, ReadsTheFieldsOfAMonoFile) {
    EXPECT_TRUE(read(wav(2'646'044, 1, 16, 44100)));
    EXPECT_EQ(head().wavFileLength, "2646044");
    EXPECT_EQ(head().wavChannels, 1);
    EXPECT_EQ(head().wavBits, 16);
    EXPECT_EQ(head().wavSampleRate, "44100");
    EXPECT_EQ(head().wavBitRate, 705600);
    // 29.989 seconds, rounded.
    EXPECT_EQ(head().wavDuration, "00:30");
}

TEST_F(WavHeadTest, ReadsMarkChannelsBitsAndRateInThisOrder) {
    read(wav(100, 1, 16, 44100));
    EXPECT_THAT(disk.log, ElementsAre("openBinary c:\\a.wav readWrite", "readBinary c:\\a.wav 0 4",
                                      "readBinary c:\\a.wav 22 2", "readBinary c:\\a.wav 34 2",
                                      "readBinary c:\\a.wav 24 1"));
}

TEST_F(WavHeadTest, IdentifiesSixSampleRatesByTheirLowByte) {
    struct Row {
        unsigned hertz;
        const char* shown;
    };
    for (const Row& row : {Row{8000, "8000"}, Row{11025, "11025"}, Row{22050, "22050"},
                           Row{32000, "32000"}, Row{44100, "44100"}, Row{48000, "48000"}}) {
        EXPECT_TRUE(read(wav(1000, 2, 16, row.hertz)));
        EXPECT_EQ(head().wavSampleRate, row.shown);
        EXPECT_EQ(head().wavBitRate, 32 * static_cast<int>(row.hertz));
    }
}

TEST_F(WavHeadTest, KeepsThePreviousFilesRateForAnUnknownLowByte) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        EXPECT_TRUE(read(wav(1000, 1, 8, 11025)));
        EXPECT_TRUE(read(wav(1000, 1, 16, byte)));
        const std::string expected = byte == 0x40   ? "8000"
                                     : byte == 0x22 ? "22050"
                                     : byte == 0    ? "32000"
                                     : byte == 0x44 ? "44100"
                                     : byte == 0x80 ? "48000"
                                                    : "11025";
        EXPECT_EQ(head().wavSampleRate, expected) << "low byte " << byte;
        EXPECT_EQ(head().wavBitRate, std::stoi(expected) * 16) << "low byte " << byte;
    }
}

TEST_F(WavHeadTest, ReportsAKnownRateForOtherRatesWithTheSameLowByte) {
    EXPECT_TRUE(read(wav(1000, 1, 16, 16000)));
    EXPECT_EQ(head().wavSampleRate, "48000");
    EXPECT_TRUE(read(wav(1000, 1, 16, 0x1144)));
    EXPECT_EQ(head().wavSampleRate, "44100");
}

TEST_F(WavHeadTest, WithoutTheRiffMarkOnlyLengthChannelsAndBitsChange) {
    EXPECT_TRUE(read(wav(705'600, 2, 16, 44100)));
    const WavHead before = head();
    for (const char* mark : {"RIFX", "riff", "RF64", "\0\0\0\0"}) {
        std::string other = wav(500, 1, 8, 8000);
        other.replace(0, 4, std::string(mark, 4));
        EXPECT_FALSE(read(other));
        EXPECT_EQ(head().wavFileLength, "500");
        EXPECT_EQ(head().wavChannels, 1);
        EXPECT_EQ(head().wavBits, 8);
        EXPECT_EQ(head().wavSampleRate, before.wavSampleRate);
        EXPECT_EQ(head().wavBitRate, before.wavBitRate);
        EXPECT_EQ(head().wavDuration, before.wavDuration);
    }
}

TEST_F(WavHeadTest, AcceptsAFileWithoutTheMarksWaveFmtAndData) {
    EXPECT_TRUE(read(wav(88'200 + 1000, 1, 16, 44100)));
    EXPECT_EQ(head().wavDuration, "00:01");
}

TEST_F(WavHeadTest, Subtracts1000BytesForTheHeader) {
    EXPECT_TRUE(read(wav(2000 * 10 + 1000, 1, 16, 8000)));
    EXPECT_EQ(head().wavDuration, "00:01");
    EXPECT_TRUE(read(wav(8000 + 1000, 1, 8, 8000)));
    EXPECT_EQ(head().wavDuration, "00:01");
    EXPECT_TRUE(read(wav(44, 1, 8, 8000)));
    EXPECT_EQ(head().wavDuration, "00:-00");
}

TEST_F(WavHeadTest, TheDurationHasMinutesAndSecondsOfAtLeastTwoDigitsEach) {
    const auto duration = [&](int seconds) {
        read(wav(static_cast<std::size_t>(seconds) * 1000 + 1000, 1, 1, 8000));
        return head().wavDuration;
    };
    EXPECT_EQ(duration(0), "00:00");
    EXPECT_EQ(duration(9), "00:09");
    EXPECT_EQ(duration(59), "00:59");
    EXPECT_EQ(duration(60), "01:00");
    EXPECT_EQ(duration(754), "12:34");
    EXPECT_EQ(duration(7199), "119:59");
}

TEST_F(WavHeadTest, RoundsTheLastHalfSecondOfAMinuteIntoTheNextMinute) {
    const auto duration = [&](int milliseconds) {
        read(wav(static_cast<std::size_t>(milliseconds) + 1000, 1, 1, 8000));
        return head().wavDuration;
    };
    EXPECT_EQ(duration(59'400), "00:59");
    // Deliberate: in the last half second of a minute, the minutes are one too high, and the
    // seconds are negative.
    EXPECT_EQ(duration(59'700), "01:-00");
    EXPECT_EQ(duration(59'500), "01:-01");
    EXPECT_EQ(duration(60'400), "01:00");
    EXPECT_EQ(duration(28'500), "00:29");
    EXPECT_EQ(duration(29'500), "00:30");
}

TEST_F(WavHeadTest, ABitRateOfZeroKeepsThePreviousFilesDuration) {
    // 0x34 is not the low byte of a known rate, and there is no previous file with a rate.
    EXPECT_TRUE(read(wav(1000, 2, 16, 0x1234)));
    EXPECT_EQ(head().wavBitRate, 0);
    EXPECT_EQ(head().wavDuration, "");
    EXPECT_TRUE(read(wav(8000 + 1000, 1, 8, 8000)));
    for (const auto& [channels, bits] : {std::pair{0U, 16U}, std::pair{2U, 0U}}) {
        EXPECT_TRUE(read(wav(5000, channels, bits, 8000)));
        EXPECT_EQ(head().wavBitRate, 0);
        EXPECT_EQ(head().wavDuration, "00:01");
    }
}

TEST_F(WavHeadTest, ABitRateBeyond32BitsIsNotStored) {
    EXPECT_TRUE(read(wav(8000 + 1000, 1, 8, 8000)));
    EXPECT_TRUE(read(wav(16'000 + 1000, 32767, 32767, 8000)));
    EXPECT_EQ(head().wavChannels, 32767);
    EXPECT_EQ(head().wavBitRate, 64'000);
    EXPECT_EQ(head().wavDuration, "00:02");
    // The fields of two bytes are read as signed numbers.
    EXPECT_TRUE(read(wav(16'000 + 1000, 0xFFFE, 32767, 48000)));
    EXPECT_EQ(head().wavChannels, -2);
    EXPECT_EQ(head().wavBitRate, 64'000);
    EXPECT_TRUE(read(wav(8000 + 1000, 0xFFFF, 8, 8000)));
    EXPECT_EQ(head().wavChannels, -1);
    EXPECT_EQ(head().wavBitRate, -64'000);
    EXPECT_EQ(head().wavDuration, "00:-01");
}

TEST_F(WavHeadTest, KeepsThePreviousValuesOfMissingFieldsExceptTheRate) {
    EXPECT_TRUE(read(wav(8000 + 1000, 2, 16, 8000)));
    for (const std::size_t length : {0U, 1U, 3U}) {
        EXPECT_FALSE(read(wav(100, 1, 8, 44100).substr(0, length)));
        EXPECT_EQ(head().wavFileLength, std::to_string(length));
        EXPECT_EQ(head().wavChannels, 2);
        EXPECT_EQ(head().wavBits, 16);
    }
    EXPECT_TRUE(read(wav(100, 1, 8, 44100).substr(0, 24)));
    EXPECT_EQ(head().wavChannels, 1);
    EXPECT_EQ(head().wavBits, 16);
    // A missing rate byte counts as 0, the low byte of 32000 Hz.
    EXPECT_EQ(head().wavSampleRate, "32000");
    EXPECT_TRUE(read(wav(100, 9, 8, 44100).substr(0, 35)));
    EXPECT_EQ(head().wavChannels, 9);
    EXPECT_EQ(head().wavBits, 16);
    EXPECT_EQ(head().wavSampleRate, "44100");
}

TEST_F(WavHeadTest, CreatesAMissingFileAndChangesNoField) {
    EXPECT_TRUE(read(wav(8000 + 1000, 2, 16, 8000)));
    const WavHead before = head();
    EXPECT_FALSE(reader.wHeadInfo("c:\\new.wav"));
    EXPECT_EQ(disk.content("c:\\new.wav"), "");
    EXPECT_EQ(head().wavFileLength, before.wavFileLength);
    EXPECT_EQ(head().wavChannels, 2);
    EXPECT_EQ(head().wavBits, 16);
    EXPECT_EQ(head().wavDuration, before.wavDuration);
}

TEST_F(WavHeadTest, ReadsAFileThatCannotBeWrittenTo) {
    struct ReadOnly final : FileSystem {
        explicit ReadOnly(FakeFileSystem& all) : all_(all) {}
        Result<std::int64_t> fileLength(const std::string& path) const override {
            return all_.fileLength(path);
        }
        bool fileExists(const std::string& path) const override { return all_.fileExists(path); }
        Result<FileTime> fileDate(const std::string& path) const override {
            return all_.fileDate(path);
        }
        Result<std::unique_ptr<BinaryFile>> openBinary(const std::string& path,
                                                       FileAccess access) override {
            if (access != FileAccess::read) {
                return {ErrorNumber::permissionDenied, "Permission denied"};
            }
            return all_.openBinary(path, access);
        }
        Status rename(const std::string&, const std::string&) override { return {}; }
        Status touchForWriting(const std::string&) override { return {}; }
        Status removeFile(const std::string&) override { return {}; }
        Status changeDrive(const std::string&) override { return {}; }
        Status changeFolder(const std::string&) override { return {}; }
        std::string currentFolder() const override { return all_.currentFolder(); }
        Status makeFolder(const std::string&) override { return {}; }
        std::string programFolder() const override { return all_.programFolder(); }
        FakeFileSystem& all_;
    };
    disk.addFile(path, wav(8000 + 1000, 1, 8, 8000));
    ReadOnly readOnly(disk);
    WavHeadReader other(readOnly);
    EXPECT_TRUE(other.wHeadInfo(path));
    EXPECT_EQ(other.head().wavDuration, "00:01");
}

TEST_F(WavHeadTest, StoresOnlyTheLengthOfAFileThatCannotBeOpenedOrRead) {
    for (const auto operation :
         {FakeFileSystem::Operation::openBinary, FakeFileSystem::Operation::readBinary}) {
        disk.failWith(operation, path, ErrorNumber::permissionDenied);
        EXPECT_FALSE(read(wav(500, 1, 8, 8000)));
        EXPECT_EQ(head().wavFileLength, "500");
        EXPECT_EQ(head().wavChannels, 0);
        disk.stopFailing();
    }
    // A folder has no length, so the previous file's length is kept.
    EXPECT_FALSE(reader.wHeadInfo("c:\\"));
    EXPECT_EQ(head().wavFileLength, "500");
}

TEST_F(WavHeadTest, DoesNotChangeTheFile) {
    const std::string before = wav(500, 1, 8, 8000);
    read(before);
    EXPECT_EQ(disk.content(path), before);
}

TEST_F(WavHeadTest, ANegativeBitRateMakesMinutesAndSecondsNegative) {
    const auto duration = [&](std::size_t tenths) {
        read(wav(tenths * 800 + 1000, 0xFFFF, 8, 8000)); // -8000 bytes per second
        return head().wavDuration;
    };
    EXPECT_EQ(duration(594), "00:-59");
    EXPECT_EQ(duration(597), "-01:00");
    EXPECT_EQ(duration(610), "-01:-01");
}

TEST_F(WavHeadTest, AFileWhoseLengthCannotBeReadGetsThePreviousFilesLength) {
    EXPECT_TRUE(read(wav(8000 + 1000, 1, 8, 8000)));
    disk.failWith(FakeFileSystem::Operation::fileLength, path, ErrorNumber::permissionDenied);
    EXPECT_TRUE(read(wav(500, 1, 4, 8000)));
    EXPECT_EQ(head().wavFileLength, "9000");
    EXPECT_EQ(head().wavDuration, "00:02");
    WavHeadReader first(disk);
    EXPECT_TRUE(first.wHeadInfo(path));
    EXPECT_EQ(first.head().wavFileLength, "");
    EXPECT_EQ(first.head().wavBitRate, 32'000);
    EXPECT_EQ(first.head().wavDuration, "");
}

} // namespace
} // namespace sonarith
