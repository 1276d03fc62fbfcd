// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/optical_layout.h"

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

using enum TrackKind;

std::vector<std::int64_t> lengthsOf(const std::optional<OpticalLayout>& layout) {
    std::vector<std::int64_t> lengths;
    if (layout) {
        for (const Track& track : layout->table().tracks) {
            lengths.push_back(track.sectors);
        }
    }
    return lengths;
}

// The drive's table of an enhanced disc: two audio tracks and, after a session gap, a data track.
RawToc enhanced(std::optional<std::int64_t> lastSessionStart) {
    return {{{audio, 0}, {audio, 20000}, {data, 60000}}, 70000, lastSessionStart};
}

void expectStretch(const Stretch& stretch, TrackKind kind, std::int64_t first,
                   std::int64_t sectors) {
    EXPECT_EQ(stretch.kind, kind);
    EXPECT_EQ(stretch.first, first);
    EXPECT_EQ(stretch.sectors, sectors);
}

TEST(OpticalLayout, ATrackExtendsToTheNextTrack) {
    const auto layout = OpticalLayout::of({{{audio, 150}, {audio, 1150}}, 4150, 150});
    EXPECT_THAT(lengthsOf(layout), testing::ElementsAre(1000, 3000));
}

TEST(OpticalLayout, EndsTheSoundOfAnEnhancedDiscBeforeTheSessionGap) {
    EXPECT_EQ(firstSessionGapSectors, 11400);
    EXPECT_THAT(lengthsOf(OpticalLayout::of(enhanced(60000))),
                testing::ElementsAre(20000, 40000 - 11400, 10000));
}

TEST(OpticalLayout, DataAfterAudioCountsAsANewSessionIfTheDriveReportsNoLastSession) {
    EXPECT_THAT(lengthsOf(OpticalLayout::of(enhanced(std::nullopt))),
                testing::ElementsAre(20000, 28600, 10000));
}

TEST(OpticalLayout, ALastSessionThatStartsAtTheFirstTrackCountsAsNotReported) {
    EXPECT_THAT(lengthsOf(OpticalLayout::of(enhanced(0))),
                testing::ElementsAre(20000, 28600, 10000));
}

TEST(OpticalLayout, AssumesNoGapBeforeADataTrackInsideTheLastSession) {
    EXPECT_THAT(lengthsOf(OpticalLayout::of(enhanced(20000))),
                testing::ElementsAre(8600, 40000, 10000));
}

TEST(OpticalLayout, DetectsTheGapBeforeEachOfTwoDataSessions) {
    RawToc toc = enhanced(90000);
    toc.tracks.push_back({data, 90000});
    toc.leadOut = 95000;
    EXPECT_EQ(laterSessionGapSectors, 6900);
    EXPECT_THAT(lengthsOf(OpticalLayout::of(toc)),
                testing::ElementsAre(20000, 28600, 30000 - 6900, 5000));
}

TEST(OpticalLayout, AssumesTheLongerGapBeforeASessionThatMayBeTheSecond) {
    const RawToc toc{{{audio, 0}, {audio, 40000}, {audio, 80000}}, 90000, 80000};
    EXPECT_THAT(lengthsOf(OpticalLayout::of(toc)), testing::ElementsAre(40000, 28600, 10000));
}

TEST(OpticalLayout, DetectsTheGapBeforeASecondSessionOfSound) {
    const RawToc toc{{{audio, 0}, {audio, 40000}}, 60000, 40000};
    EXPECT_THAT(lengthsOf(OpticalLayout::of(toc)), testing::ElementsAre(28600, 20000));
}

TEST(OpticalLayout, AssumesNoGapAfterADataTrackThatIsTheFirstTrack) {
    const RawToc toc{{{data, 0}, {audio, 40000}}, 60000, std::nullopt};
    EXPECT_THAT(lengthsOf(OpticalLayout::of(toc)), testing::ElementsAre(40000, 20000));
}

TEST(OpticalLayout, SubtractsNoGapFromATrackThatIsNotLongerThanTheGap) {
    const RawToc toc{{{audio, 0}, {data, 11400}}, 20000, 11400};
    EXPECT_THAT(lengthsOf(OpticalLayout::of(toc)), testing::ElementsAre(11400, 8600));
}

TEST(OpticalLayout, RefusesTablesThatNoDiscCanHave) {
    EXPECT_FALSE(OpticalLayout::of({}));
    EXPECT_FALSE(OpticalLayout::of({{{audio, 0}, {audio, 0}}, 100, 0}));
    EXPECT_FALSE(OpticalLayout::of({{{audio, 50}, {audio, 20}}, 100, 0}));
    EXPECT_FALSE(OpticalLayout::of({{{audio, -5}}, 100, 0}));
    EXPECT_FALSE(OpticalLayout::of({{{audio, 100}}, 100, 0}));
    EXPECT_FALSE(OpticalLayout::of({{{audio, 0}}, 450001, 0}));
    EXPECT_TRUE(OpticalLayout::of({{{audio, 0}}, 450000, 0}));

    RawToc crowded{{}, 1000, 0};
    for (int i = 0; i < 99; ++i) {
        crowded.tracks.push_back({audio, i});
    }
    EXPECT_TRUE(OpticalLayout::of(crowded));
    crowded.tracks.push_back({audio, 99});
    EXPECT_FALSE(OpticalLayout::of(crowded));
}

TEST(OpticalLayout, MapsAPositionOnTheTimeLineToTheDrivesSectors) {
    const auto layout = OpticalLayout::of(
        {{{audio, 150}, {audio, 20150}, {data, 60150}, {audio, 70150}}, 80150, 60150});
    ASSERT_TRUE(layout);
    expectStretch(layout->stretchAt(0), audio, 150, 48600);
    expectStretch(layout->stretchAt(20500), audio, 20650, 28100);
    expectStretch(layout->stretchAt(48599), audio, 48749, 1);
    expectStretch(layout->stretchAt(48600), data, 60150, 10000);
    expectStretch(layout->stretchAt(58600), audio, 70150, 10000);
    EXPECT_EQ(layout->stretchAt(68600).sectors, 0);
}

TEST(OpticalLayout, AStretchEndsAtASessionGap) {
    const auto layout = OpticalLayout::of({{{audio, 0}, {audio, 40000}}, 60000, 40000});
    ASSERT_TRUE(layout);
    expectStretch(layout->stretchAt(28000), audio, 28000, 600);
    expectStretch(layout->stretchAt(28600), audio, 40000, 20000);
}

} // namespace
} // namespace sonarith::disc
