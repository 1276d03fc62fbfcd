// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/track_preview.h"

#include <gmock/gmock.h>

#include "support/extraction_bench.h"

namespace sonarith {
namespace {

using test::ExtractionBench;
using testing::ElementsAre;

TEST(TrackPreview, PlaysFromTheStartOfTheCurrentTrack) {
    ExtractionBench bench({60000, 30000, 10000});
    bench.insertDisc();
    bench.state.currentTrack = 3;
    bench.form.Command11.click();
    EXPECT_THAT(bench.media.log,
                ElementsAre("open cdaudio alias cd", "set cd time format milliseconds",
                            "play cd from 90000"));
    // No command closes the device, so the disc continues to play.
    EXPECT_TRUE(bench.disc.playing());
}

TEST(TrackPreview, SendsThePositionEvenIfItIsZero) {
    ExtractionBench bench({60000, 30000});
    bench.insertDisc();
    bench.state.currentTrack = 1;
    bench.form.Command11.click();
    EXPECT_EQ(bench.media.log.back(), "play cd from 0");
}

TEST(TrackPreview, PlaysFromZeroIfTheTrackCountIsNoSixteenBitNumber) {
    for (const char* count : {"", "2 tracks", "70000"}) {
        ExtractionBench bench({60000, 30000});
        bench.insertDisc();
        bench.state.currentTrack = 2;
        bench.form.lblNumTracks.setCaption(count);
        bench.form.Command11.click();
        EXPECT_EQ(bench.media.log.back(), "play cd from 0") << count;
    }
}

TEST(TrackPreview, IgnoresFailedCommands) {
    ExtractionBench bench({60000, 30000});
    bench.insertDisc();
    bench.media.answerPrefix("", {.status = 263});
    bench.form.Command11.click();
    EXPECT_EQ(bench.media.log.size(), 3U);
    EXPECT_TRUE(bench.boxes.shown.empty());
}

TEST(TrackPreview, DoesNotChangeTheStartAndTheEndOfATrackThatIsBeingCaptured) {
    ExtractionBench bench({60000, 30000});
    bench.insertDisc();
    bench.captureState.trackStartMs = 7;
    bench.captureState.trackEndMs = 8;
    bench.state.currentTrack = 2;
    bench.form.Command11.click();
    EXPECT_EQ(bench.captureState.trackStartMs, 7);
    EXPECT_EQ(bench.captureState.trackEndMs, 8);
}

TEST(TrackPreview, StoppingSavesNoCaptureAndChangesNoTimer) {
    ExtractionBench bench({60000, 30000});
    bench.form.tmrRecord.setEnabled(true);
    bench.form.tmrWarning.setEnabled(true);
    bench.form.Command12.click();
    EXPECT_THAT(bench.media.log,
                ElementsAre("stop capture", "stop cd", "close capture", "close cd"));
    EXPECT_TRUE(bench.form.tmrRecord.enabled());
    EXPECT_TRUE(bench.form.tmrWarning.enabled());
    EXPECT_FALSE(bench.form.Timer1.enabled());
}

} // namespace
} // namespace sonarith
