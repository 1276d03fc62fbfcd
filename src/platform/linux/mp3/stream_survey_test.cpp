// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/stream_survey.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using fixture::encoded;
using fixture::operator+;
using fixture::ordinary;

StreamSurvey survey(const Data& data) {
    return surveyStream(MemorySource(data));
}

/// The first `count` frames of `data`. Precondition: `data` does not begin with an information
/// frame (a frame that contains no sound).
Data frames(const Data& data, std::size_t count) {
    return fixture::part(data, 0, static_cast<std::size_t>(fixture::framesOf(data)[count].offset));
}

const Data& slow() { // 32000 Hz, 432 bytes in each frame
    return encoded(32000, 2, "-t -b 96 --resample 32", 1.5);
}
const Data& fast() { // 48000 Hz, 288 bytes in each frame
    return encoded(48000, 2, "-t -b 96 --resample 48", 1.5);
}

int rateOf(const Data& data) {
    const StreamSurvey found = survey(data);
    return found.format ? found.format->rate : 0;
}

TEST(StreamSurveyTest, ChoosesTheFormatOfMostFramesWhereverTheyAre) {
    EXPECT_EQ(rateOf(frames(slow(), 4) + ordinary()), 44100);
    EXPECT_EQ(rateOf(ordinary() + frames(slow(), 4)), 44100);
    EXPECT_EQ(rateOf(frames(slow(), 20) + frames(fast(), 30)), 48000);
    EXPECT_EQ(rateOf(frames(slow(), 30) + frames(fast(), 20)), 32000);
    EXPECT_EQ(rateOf(frames(slow(), 20) + frames(fast(), 30) + frames(slow(), 20)), 32000)
        << "frames of one format must be counted together even if they are not consecutive";
}

TEST(StreamSurveyTest, CountsFramesAndNotBytes) {
    const Data highBitRate = encoded(48000, 2, "-t -b 320", 1.5);
    EXPECT_EQ(rateOf(frames(highBitRate, 20) + frames(slow(), 21)), 32000);
}

TEST(StreamSurveyTest, TheFirstFormatIsChosenIfAllHaveEquallyManyFrames) {
    EXPECT_EQ(rateOf(frames(slow(), 20) + frames(fast(), 20)), 32000);
    EXPECT_EQ(rateOf(frames(fast(), 20) + frames(slow(), 20)), 48000);
    EXPECT_EQ(rateOf(frames(fast(), 10) + frames(slow(), 20) + frames(fast(), 10)), 48000);
}

TEST(StreamSurveyTest, InformationFramesDoNotCount) {
    const Data& headed = encoded(32000, 2, "-b 96 --resample 32", 1.5);
    const Data five = fixture::part(headed, 0, 5 * 432); // the first is an information frame
    EXPECT_EQ(rateOf(five + frames(fast(), 4)), 32000);
    EXPECT_EQ(rateOf(five + frames(fast(), 5)), 48000);
}

TEST(StreamSurveyTest, FormatsThatDifferInLayerOrChannelsAreCountedSeparately) {
    const Data mono = encoded(44100, 1, "-t -b 64", 1.5);
    EXPECT_EQ(
        survey(frames(encoded(44100, 2, "-t -b 128", 1.5), 10) + frames(mono, 11)).format->channels,
        1);
    EXPECT_EQ(survey(fixture::layer1(4) + fixture::layer2(5)).format->layer, 2);
    EXPECT_EQ(survey(fixture::layer1(5) + fixture::layer2(4)).format->layer, 1);
}

TEST(StreamSurveyTest, DetectsFreeFormat) {
    const StreamSurvey found =
        survey(fixture::junk(300) + encoded(44100, 2, "-t --freeformat -b 400", 1.5));
    EXPECT_EQ(found.freeFormatOffset, 300);
    EXPECT_FALSE(found.format);
    EXPECT_FALSE(survey(ordinary()).freeFormatOffset);
}

TEST(StreamSurveyTest, HasNoFormatWithoutAnyFrame) {
    for (const Data& data : {Data{}, fixture::junk(5000), Data(70'000, 0)}) {
        EXPECT_FALSE(survey(data).format);
        EXPECT_FALSE(survey(data).failure);
    }
}

TEST(StreamSurveyTest, EndsAtTheGivenOffset) {
    const Data data = frames(slow(), 10) + frames(fast(), 50);
    EXPECT_EQ(surveyStream(MemorySource(data), 10 * 432).format->rate, 32000);
    EXPECT_EQ(surveyStream(MemorySource(data), 30 * 432).format->rate, 48000);
}

TEST(StreamSurveyTest, SurveysThePartBeforeAnUnreadableOffset) {
    const Data data = frames(slow(), 10) + frames(fast(), 50);
    const StreamSurvey found = surveyStream(fixture::BadPlaceSource(data, 15 * 432, SIZE_MAX));
    EXPECT_TRUE(found.failure);
    EXPECT_EQ(found.format->rate, 32000);
    EXPECT_FALSE(surveyStream(fixture::BadPlaceSource(data, 0, SIZE_MAX)).format);
}

} // namespace
} // namespace sonarith::mp3
