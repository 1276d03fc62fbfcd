// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/process_state.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace sonarith {
namespace {

TEST(ProcessState, StartsWithNothingGoingOn) {
    const ProcessState process;
    EXPECT_FALSE(process.stopRequested || process.cancelRequested || process.workerBusy);
    EXPECT_FALSE(process.PlayerOpen || process.CDPaused);
    EXPECT_TRUE(process.currentFile.empty() && process.currentWavFile.empty());
    EXPECT_EQ(process.currentTrack, 0);
    EXPECT_EQ(process.fileIndex, 0);
    EXPECT_EQ(process.settings.hdWarningNo, 0);
}

// Tracks and files are counted in 32 bits.
static_assert(std::is_same_v<decltype(ProcessState::currentTrack), std::int32_t>);
static_assert(std::is_same_v<decltype(ProcessState::fileIndex), std::int32_t>);

} // namespace
} // namespace sonarith
