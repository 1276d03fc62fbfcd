// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/mpg123_controls.h"

#include <gmock/gmock.h>

#include <memory>

#include "platform/linux/mp3/mp3_fixture.h"
#include "support/fake_notices.h"
#include "support/folder_entries.h"
#include "support/held_calls.h"
#include "support/waiting.h"

namespace sonarith::mp3 {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using test::HeldCalls;

class Mpg123ControlsTest : public testing::Test {
  protected:
    Mpg123ControlsTest() { fixture::writeFile(source, fixture::ordinary()); }
    ~Mpg123ControlsTest() override { EXPECT_TRUE(saves->awaitNone(30s)); }
    std::unique_ptr<ActiveMP3> decodingTo(const fs::path& wav) {
        std::unique_ptr<ActiveMP3> made = controls.create();
        EXPECT_TRUE(made->setSourceFile(source).ok());
        EXPECT_TRUE(made->DecodeToWav(wav).ok());
        return made;
    }

    fakes::TempFolder folder;
    const fs::path source = folder / "in.mp3";
    const fs::path target = folder / "out.wav";
    sound::SoundCard card;
    test::FakeNotices notices;
    const std::shared_ptr<sound::PendingSaves> saves = std::make_shared<sound::PendingSaves>();
    Mpg123Controls controls{card, [] { return 0ns; }, fixture::asItIs, notices, saves};
};

TEST_F(Mpg123ControlsTest, CreatesControlsThatDecodeAndReportConcurrently) {
    const auto first = decodingTo(target);
    const auto second = decodingTo(folder / "second.wav");
    const auto third = controls.create();
    EXPECT_TRUE(third->setSourceFile(folder / "none.mp3").ok());
    EXPECT_TRUE(third->DecodeToWav(folder / "third.wav").ok());
    EXPECT_TRUE(
        fakes::eventually([&] { return !first->Busy() && !second->Busy() && !third->Busy(); }));
    EXPECT_EQ(test::readBytes(target), test::readBytes(folder / "second.wav"));
    EXPECT_EQ(fixture::readWav(target).samples.size(), 4U * 44100 * 2);
    EXPECT_THAT(notices.texts(),
                testing::ElementsAre("none.mp3 cannot be read (No such file or directory)"));
}

TEST_F(Mpg123ControlsTest, StopAllStopsAllControls) {
    const auto first = decodingTo(target);
    const auto second = decodingTo(folder / "second.wav");
    EXPECT_TRUE(second->Play().ok());
    controls.create().reset(); // stopAll() must not call the destroyed control
    controls.stopAll();
    EXPECT_FALSE(first->Busy());
    EXPECT_FALSE(second->Busy());
    EXPECT_FALSE(card.active());
}

TEST_F(Mpg123ControlsTest, ADecodingThatIsBlockedByTheDiskRemainsAPendingSaveAfterStopAll) {
    HeldCalls disk({SYS_fsync});
    std::unique_ptr<ActiveMP3> control;
    ASSERT_TRUE(disk.run([&] { control = decodingTo(target); }));
    ASSERT_TRUE(disk.waitForCall());
    EXPECT_TRUE(disk.run([&] { controls.stopAll(); }));
    EXPECT_FALSE(saves->awaitNone(0ms));
    EXPECT_EQ(test::visibleEntriesIn(folder.path()), 1)
        << "no file except the source may be visible";
    disk.release();
    EXPECT_TRUE(saves->awaitNone(30s));
    EXPECT_EQ(fixture::readWav(target).samples.size(), 4U * 44100 * 2);
}

} // namespace
} // namespace sonarith::mp3
