// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/activity_clip.h"

#include <gmock/gmock.h>

#include "support/application_bench.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::ApplicationBench;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::string> clipCommands = {
    "stop movie", "close movie",
    "open AVIvideo!c:\\sonarith\\download.avi alias movie parent 4711 style child",
    "put movie window client at 0 0 0 0", "play movie"};

TEST(ActivityClip, OpensTheClipOfTheProgramFolderAndPlaysIt) {
    ApplicationBench bench({1000, 1000});
    bench.media.answerPrefix("", {});
    bench.form.Timeravi.fire();
    EXPECT_EQ(bench.media.log, clipCommands);
    EXPECT_THAT(bench.media.replySizes, Each(128U));
    EXPECT_THAT(bench.boxes.shown, IsEmpty());
}

TEST(ActivityClip, ShowsAMessageButStillSendsPlayIfTheClipCannotBePlaced) {
    ApplicationBench bench({1000, 1000});
    bench.media.answer("put movie window client at 0 0 0 0", {.status = 263});
    bench.form.Timeravi.fire();
    EXPECT_EQ(bench.media.log, clipCommands);
    EXPECT_THAT(bench.boxes.shown,
                ElementsAre(test::ShownBox{"Error! Probably file not found. Modify the code to "
                                           "point to an .AVI file on your system."}));
}

TEST(ActivityClip, IsNotPlayedAtTheProgramsStartOrDuringAnAction) {
    ApplicationBench bench({1000, 1000});
    bench.application.start();
    bench.select("Available Tracks");
    bench.form.CmdSelectAction.click();
    bench.loop.advance(10s);
    EXPECT_FALSE(bench.form.Timeravi.enabled());
    EXPECT_EQ(std::count(bench.media.log.begin(), bench.media.log.end(), "play movie"), 0);
}

} // namespace
} // namespace sonarith
