// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/device_node.h"

#include <filesystem>
#include <system_error>

#include <gtest/gtest.h>

namespace sonarith {
namespace {

TEST(NamesADevice, DistinguishesADriveFromAnImage) {
    const struct {
        const char* chosen;
        bool device;
    } rows[] = {
        {"", false},
        {"disc.toc", false},
        {"/home/me/disc.cue", false},
        {"/dev/no-such-drive", true}, // unplugged
        {"/dev/shm/disc.cue", false}, // not directly in /dev
        {"/dev/null", false},         // exists, but is not a block device
        {"/devices/disc.cue", false},
        {"/dev/no-such-folder/drive", false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(namesADevice(row.chosen), row.device) << row.chosen;
    }
}

TEST(NamesADevice, IsTrueForEachBlockDevice) {
    std::error_code ignored;
    int found = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/dev", ignored)) {
        if (entry.is_block_file(ignored)) {
            ++found;
            EXPECT_TRUE(namesADevice(entry.path().string())) << entry.path();
        }
    }
    if (found == 0) {
        GTEST_SKIP() << "there is no block device directly in /dev";
    }
}

} // namespace
} // namespace sonarith
