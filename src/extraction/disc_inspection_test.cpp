// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/disc_inspection.h"

#include <string>

#include <gmock/gmock.h>

#include "support/extraction_bench.h"

namespace sonarith {
namespace {

using test::ExtractionBench;
using test::linesOf;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* notMusic =
    "The current CD is not a music CD. If you wish to use your CD as a source, please insert a "
    "music CD into the CD drive.";
constexpr const char* emptyDrive =
    "The CD drive is empty. If you wish to use your CD as a source, please insert a music CD into "
    "the CD drive.";

TEST(InspectCD, SendsItsCommandsInThisOrderAndRequestsEachLengthTwice) {
    ExtractionBench bench({185000, 61000});
    bench.inspection.InspectCD();
    EXPECT_THAT(bench.media.log,
                ElementsAre("stop cd", "close cd", "open cdaudio alias cd", "info cd identity",
                            "status cd number of tracks", "set cd time format hms",
                            "status cd length track 1", "status cd length track 2",
                            "set cd time format milliseconds", "status cd length track 1",
                            "status cd length track 2", "close cd"));
    EXPECT_THAT(bench.boxes.shown, IsEmpty());
    EXPECT_FALSE(bench.disc.discOpen());
}

TEST(InspectCD, FillsLabelsTrackLinesAndLengthsAndClearsTheListOfSelectedTracks) {
    ExtractionBench bench({185000, 61000});
    bench.form.lstRecord.addItem("Track  9 - 00:00:01");
    bench.form.lstTracks.addItem("Track  8 - 00:00:01");
    bench.inspection.InspectCD();
    EXPECT_EQ(bench.form.lblCDID.caption(), "48213906");
    EXPECT_EQ(bench.form.lblNumTracks.caption(), "2");
    EXPECT_THAT(linesOf(bench.form.lstTracks),
                ElementsAre("Track  1 - 00:03:05", "Track  2 - 00:01:01"));
    EXPECT_THAT(linesOf(bench.form.lstRecord), IsEmpty());
    EXPECT_EQ(bench.captureState.trackLengthMs.count(), 2);
    EXPECT_EQ(bench.captureState.trackLengthMs(1).value(), 185000);
    EXPECT_EQ(bench.captureState.trackLengthMs(2).value(), 61000);
}

TEST(InspectCD, SeedsTheRandomNumbersAndDrawsOneNumber) {
    ExtractionBench bench({1000, 1000});
    bench.inspection.InspectCD();
    EXPECT_EQ(bench.random.reseeds, 1);
    EXPECT_EQ(bench.random.draws, 1);
}

TEST(InspectCD, EndsWithoutAMessageIfTheDiscCannotBeOpened) {
    ExtractionBench bench({185000, 61000});
    bench.inspection.InspectCD();
    bench.media.log.clear();
    bench.media.answer("open cdaudio alias cd", {.status = 266});
    bench.inspection.InspectCD();
    EXPECT_THAT(bench.media.log, ElementsAre("stop cd", "close cd", "open cdaudio alias cd"));
    EXPECT_EQ(bench.form.lblCDID.caption(), "");
    EXPECT_EQ(bench.form.lblNumTracks.caption(), "");
    EXPECT_THAT(linesOf(bench.form.lstTracks), IsEmpty());
    EXPECT_THAT(bench.boxes.shown, IsEmpty());
    // The previous lengths are unchanged.
    EXPECT_EQ(bench.captureState.trackLengthMs(1).value(), 185000);
}

struct Unusable {
    std::string reply;
    std::vector<std::string> messages;
};

TEST(InspectCD, ADiscWithFewerThanTwoTracksStaysOpenAndOnlyZeroTracksOrOneTrackCauseAMessage) {
    const Unusable cases[] = {
        {"1", {notMusic}}, {"0", {emptyDrive}}, {"", {emptyDrive}}, {"no disc", {emptyDrive}},
        {"0.5", {}},       {"-3", {}},          {"1.5", {}},        {"1 track", {notMusic}},
    };
    for (const Unusable& c : cases) {
        SCOPED_TRACE("reply '" + c.reply + "'");
        ExtractionBench bench({185000, 61000});
        bench.inspection.InspectCD();
        bench.media.log.clear();
        const int yields = bench.loop.yieldCount();
        bench.media.answer("status cd number of tracks", {.reply = c.reply});
        bench.inspection.InspectCD();
        EXPECT_THAT(bench.media.log, ElementsAre("stop cd", "close cd", "open cdaudio alias cd",
                                                 "info cd identity", "status cd number of tracks"));
        EXPECT_EQ(bench.boxes.texts(), c.messages);
        EXPECT_TRUE(bench.disc.discOpen());
        EXPECT_EQ(bench.form.lblCDID.caption(), "48213906");
        EXPECT_EQ(bench.form.lblNumTracks.caption(), c.reply);
        EXPECT_THAT(linesOf(bench.form.lstTracks), IsEmpty());
        EXPECT_EQ(bench.captureState.trackLengthMs(2).value(), 61000);
        EXPECT_EQ(bench.loop.yieldCount() - yields, 2);
    }
}

TEST(InspectCD, ShowsItsMessageInABoxWithoutAnIcon) {
    ExtractionBench bench({1000});
    bench.inspection.InspectCD();
    EXPECT_THAT(bench.boxes.shown, ElementsAre(test::ShownBox{notMusic}));
}

TEST(InspectCD, ReadsADiscThatAnEarlierInspectionLeftOpen) {
    ExtractionBench bench({185000, 61000});
    bench.media.answer("status cd number of tracks", {.reply = "1"});
    bench.inspection.InspectCD();
    ASSERT_TRUE(bench.disc.discOpen());
    bench.media.forgetAnswers();
    bench.inspection.InspectCD();
    EXPECT_EQ(bench.form.lstTracks.listCount(), 2);
    EXPECT_FALSE(bench.disc.discOpen());
}

TEST(InspectCD, AcceptsAnIdentityThatIsNotANumber) {
    ExtractionBench bench({1000, 1000});
    bench.disc.identity = "1A2B-C";
    bench.inspection.InspectCD();
    EXPECT_EQ(bench.form.lblCDID.caption(), "1A2B-C");
}

TEST(InspectCD, ShortensRepliesTo63Characters) {
    ExtractionBench bench({1000, 1000});
    bench.disc.identity = std::string(80, '4');
    bench.inspection.InspectCD();
    EXPECT_EQ(bench.form.lblCDID.caption(), std::string(63, '4'));
}

TEST(InspectCD, ShowsTheTextOfALengthUnchanged) {
    ExtractionBench bench({1000, 1000});
    bench.media.answer("status cd length track 1", {.reply = "three minutes"});
    bench.inspection.InspectCD();
    EXPECT_EQ(bench.form.lstTracks.list(0), "Track  1 - three minutes");
    // The later request for the length in milliseconds gets the same text. This text is not a
    // number, so the stored length stays 0.
    EXPECT_EQ(bench.captureState.trackLengthMs(1).value(), 0);
    EXPECT_EQ(bench.captureState.trackLengthMs(2).value(), 1000);
}

TEST(InspectCD, RoundsANumberOfMillisecondsAndIgnoresATooLargeNumber) {
    ExtractionBench bench({1000, 1000});
    bench.media.answer("status cd length track 1", {.reply = " 2500.6 "});
    bench.media.answer("status cd length track 2", {.reply = "3000000000"});
    bench.inspection.InspectCD();
    EXPECT_EQ(bench.captureState.trackLengthMs(1).value(), 2501);
    EXPECT_EQ(bench.captureState.trackLengthMs(2).value(), 0);
}

TEST(InspectCD, LimitsATooLargeTrackCountTo9999) {
    ExtractionBench bench({1000, 1000});
    bench.media.answer("status cd number of tracks", {.reply = "1e15"});
    bench.inspection.InspectCD();
    EXPECT_EQ(bench.form.lstTracks.listCount(), 9999);
    // A line shows only the first two digits of a track number.
    EXPECT_EQ(bench.form.lstTracks.list(9998), "Track 99 - ");
}

TEST(InspectCD, ReadsTheTrackCountFromItsLabelAfterTheYield) {
    ExtractionBench bench({1000, 2000, 3000});
    bench.loop.atYield(1, [&] { bench.form.lblNumTracks.setCaption("2"); });
    bench.inspection.InspectCD();
    EXPECT_EQ(bench.form.lstTracks.listCount(), 2);
}

TEST(InspectCD, CanRunWithinItsOwnYield) {
    // The inner inspection closes the disc, so the outer inspection cannot read the lengths. The
    // next inspection reads all lengths.
    ExtractionBench bench({1000, 2000});
    bench.loop.atYield(1, [&] { bench.inspection.InspectCD(); });
    bench.inspection.InspectCD();
    EXPECT_EQ(bench.captureState.trackLengthMs.count(), 2);
    EXPECT_EQ(bench.captureState.trackLengthMs(1).value(), 0);
    bench.inspection.InspectCD();
    EXPECT_EQ(bench.form.lstTracks.listCount(), 2);
    EXPECT_EQ(bench.captureState.trackLengthMs(1).value(), 1000);
}

} // namespace
} // namespace sonarith
