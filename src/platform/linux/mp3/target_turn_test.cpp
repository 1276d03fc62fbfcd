// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/target_turn.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "support/temp_folder.h"
#include "support/waiting.h"

namespace sonarith::mp3 {
namespace {

namespace fs = std::filesystem;

class TargetTurnTest : public testing::Test {
  protected:
    std::optional<TargetTurn> take(const fs::path& file) {
        return TargetTurn::take(files::locate(file).value(), stop);
    }
    fakes::TempFolder folder;
    const fs::path path = folder / "a.wav";
    std::atomic<bool> stop = false;
};

TEST_F(TargetTurnTest, TurnsForDifferentFilesDoNotWaitForEachOther) {
    fs::create_directory(folder / "other");
    const auto a = take(path);
    const auto b = take(folder / "b.wav");
    const auto c = take(folder / "other" / "a.wav");
    EXPECT_TRUE(a && b && c);
}

TEST_F(TargetTurnTest, WaitsForAnEarlierTurnForTheSameFileEvenIfThePathsDiffer) {
    std::ofstream(path) << "old";
    fs::create_symlink(path, folder / "link.wav");
    std::optional<TargetTurn> first = take(path);
    std::atomic<bool> taken = false;
    std::thread second([&] {
        const auto turn = take(folder.path() / "." / "link.wav");
        taken = true;
        EXPECT_TRUE(turn);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(taken);
    first.reset();
    second.join();
    EXPECT_TRUE(take(path)) << "the target must be free after both turns";
}

TEST_F(TargetTurnTest, IsNotGrantedAfterTheDecodingIsStopped) {
    const auto first = take(path);
    std::thread second([&] { EXPECT_FALSE(take(path)); });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    stop = true;
    TargetTurn::wakeWaiting();
    second.join(); // would hang if the thread still waited
    EXPECT_FALSE(take(folder / "b.wav")) << "a stopped decoding must not be granted a free target";
}

} // namespace
} // namespace sonarith::mp3
