// SPDX-License-Identifier: GPL-3.0-or-later
// Tests WavHeadReader on a real disk: with huge, read-only, unreadable and missing files, and with
// folders, pipes and devices instead of files.
#include "conversion/wav_head.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <sys/stat.h>

#include "platform/linux/paths/binary_file_fixture.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;

class WavHeadOnDiskTest : public testing::Test {
  protected:
    /// The first 36 bytes of a WAV file. `rateLow` is the low byte of the sampling rate, the only
    /// byte of the rate that the reader uses.
    static std::string start(char channels, char bits, char rateLow) {
        std::string bytes(36, '\0');
        bytes.replace(0, 4, "RIFF");
        bytes[22] = channels;
        bytes[24] = rateLow;
        bytes[34] = bits;
        return bytes;
    }
    bool read(const std::string& name) { return reader.wHeadInfo("d:\\" + name); }
    [[nodiscard]] const WavHead& head() const { return reader.head(); }

    test::MachineWorld world;
    WavHeadReader reader{world.files()};
};

TEST_F(WavHeadOnDiskTest, ReadsFilesOf2GiBAndMore) {
    struct Row {
        std::int64_t bytes;
        const char* duration;
    };
    for (const Row& row : {Row{2 * test::gibibyte, "202:54"}, Row{5 * test::gibibyte, "507:15"}}) {
        world.put("a.wav", start(2, 16, 0x44));
        fs::resize_file(world.disk() / "a.wav", static_cast<std::uintmax_t>(row.bytes));
        EXPECT_TRUE(read("a.wav"));
        EXPECT_EQ(head().wavFileLength, std::to_string(row.bytes));
        EXPECT_EQ(head().wavBitRate, 1'411'200);
        EXPECT_EQ(head().wavDuration, row.duration);
    }
}

// The duration in seconds does not fit in a signed 32-bit number, so no minutes can be computed.
TEST_F(WavHeadOnDiskTest, TheDurationOf3TerabytesAt1000BytesPerSecondHasOnlySeconds) {
    world.put("a.wav", start(1, 1, 0x40));
    fs::resize_file(world.disk() / "a.wav", 3'000'000'000'000);
    EXPECT_TRUE(read("a.wav"));
    EXPECT_EQ(head().wavDuration, "00:2999999999");
}

TEST_F(WavHeadOnDiskTest, PipesFoldersAndDevicesAreNotReadAndDoNotBlock) {
    world.put("a.wav", start(2, 16, 0x44));
    EXPECT_TRUE(read("a.wav"));
    ASSERT_EQ(::mkfifo((world.disk() / "pipe.wav").c_str(), 0666), 0);
    world.makeFolder("folder.wav");
    fs::create_symlink("/dev/zero", world.disk() / "device.wav");
    for (const char* name : {"pipe.wav", "folder.wav", "device.wav"}) {
        EXPECT_FALSE(read(name)) << name;
        EXPECT_EQ(head().wavFileLength, "36") << name;
        EXPECT_EQ(head().wavChannels, 2) << name;
    }
    EXPECT_TRUE(fs::is_fifo(world.disk() / "pipe.wav"));
    EXPECT_TRUE(fs::is_empty(world.disk() / "folder.wav"));
}

TEST_F(WavHeadOnDiskTest, AMissingFileIsCreatedEmptyIfItsFolderExists) {
    EXPECT_FALSE(read("new.wav"));
    EXPECT_EQ(world.content("new.wav"), "");
    EXPECT_FALSE(read("none\\new.wav"));
    EXPECT_FALSE(fs::exists(world.disk() / "none"));
    EXPECT_EQ(head().wavFileLength, "");
}

TEST_F(WavHeadOnDiskTest, ReadsAReadOnlyFileAndStoresOnlyTheLengthOfAnUnreadableFile) {
    const std::string content = start(2, 16, 0x44) + std::string(1000, 'x');
    for (const char* name : {"readable.wav", "hidden.wav"}) {
        world.put(name, content);
    }
    fs::permissions(world.disk() / "readable.wav", fs::perms::owner_read | fs::perms::others_read);
    fs::permissions(world.disk() / "hidden.wav", fs::perms::none);
    fs::permissions(world.parent(), fs::perms::all);
    fs::permissions(world.disk(), fs::perms::all);
    EXPECT_EQ(test::runUnprivileged([&] {
                  const bool hidden = read("hidden.wav");
                  const bool kept = head().wavFileLength == "1036" && head().wavChannels == 0;
                  const bool readable = read("readable.wav");
                  return !hidden && kept && readable && head().wavChannels == 2 ? 0 : 1;
              }),
              0);
    fs::permissions(world.disk() / "hidden.wav", fs::perms::owner_read);
    EXPECT_EQ(world.content("readable.wav"), content);
    EXPECT_EQ(world.content("hidden.wav"), content);
}

} // namespace
} // namespace sonarith
