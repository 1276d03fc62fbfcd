// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/decode_notice.h"

#include <gmock/gmock.h>

namespace sonarith::mp3 {
namespace {

const DecodeNames names{"song.mp3", "song.wav", "/music"};

DecodeResult failedResult(DecodeStep step, const Error& error, std::int64_t seconds) {
    DecodeResult result;
    result.outcome = DecodeOutcome::failed;
    result.samples = seconds * result.format.rate;
    result.failure = DecodeFailure{step, error};
    return result;
}

DecodeResult lossyResult(std::int64_t foreign, std::int64_t damaged) {
    DecodeResult result;
    result.outcome = DecodeOutcome::completed;
    result.count.loss.framesDropped = foreign;
    result.count.loss.damagedPlaces = damaged;
    result.count.loss.bytesSkipped = 400;
    return result;
}

TEST(DecodeNoticeTest, ReportsTheKeptPartAndWhereReadingFailed) {
    const Error error{ErrorNumber::deviceInputOutput, "Input/output error"};
    EXPECT_EQ(
        decodeNotice(names, failedResult(DecodeStep::reading, error, 192)),
        "song.mp3: read error at 3:12 (Input/output error); song.wav contains the first 3:12");
    EXPECT_EQ(decodeNotice(names, failedResult(DecodeStep::reading, error, 0)),
              "song.mp3: read error at 0:00 (Input/output error)");
}

TEST(DecodeNoticeTest, ReportsWhyAFileCannotBeRead) {
    EXPECT_EQ(decodeNotice(
                  names, failedResult(DecodeStep::opening,
                                      {ErrorNumber::pathNotFound, "No such file or directory"}, 0)),
              "song.mp3 cannot be read (No such file or directory)");
}

TEST(DecodeNoticeTest, ReportsTheKeptPartAndWhyAFileWasNotCompletelySaved) {
    const Error full{ErrorNumber::diskFull, "\"/music/song.wav\" is on a full disk"};
    EXPECT_EQ(decodeNotice(names, failedResult(DecodeStep::writing, full, 42)),
              "song.wav was saved partly: no space left in /music; it contains the first 0:42");
    EXPECT_EQ(decodeNotice(names, failedResult(DecodeStep::writing, full, 0)),
              "song.wav was not saved: no space left in /music");
    const Error refused{ErrorNumber::permissionDenied, "\"/music/song.wav\" is not writable"};
    EXPECT_EQ(decodeNotice(names, failedResult(DecodeStep::writing, refused, 0)),
              "song.wav was not saved: \"/music/song.wav\" is not writable");
}

TEST(DecodeNoticeTest, ReportsWhyAFileWasNotDecoded) {
    EXPECT_EQ(decodeNotice(names, failedResult(DecodeStep::decoding,
                                               {ErrorNumber::deviceUnavailable, "no decoder"}, 0)),
              "song.mp3 was not decoded: no decoder");
}

TEST(DecodeNoticeTest, ReportsThatThereWasNothingToDecode) {
    DecodeResult result;
    result.outcome = DecodeOutcome::noFrames;
    EXPECT_EQ(decodeNotice(names, result), "song.mp3: nothing to decode was found");
}

TEST(DecodeNoticeTest, ReportsOmittedParts) {
    EXPECT_EQ(decodeNotice(names, lossyResult(3, 0)),
              "song.mp3: 3 frames of another format were omitted");
    EXPECT_EQ(decodeNotice(names, lossyResult(1, 0)),
              "song.mp3: 1 frame of another format was omitted");
    EXPECT_EQ(decodeNotice(names, lossyResult(0, 1)), "song.mp3: 1 damaged place was skipped");
    EXPECT_EQ(decodeNotice(names, lossyResult(3, 2)),
              "song.mp3: 3 frames of another format were omitted, 2 damaged places were skipped");
}

TEST(DecodeNoticeTest, IsEmptyIfNoSoundWasOmittedOrIfTheUserStoppedTheDecoding) {
    EXPECT_EQ(decodeNotice(names, lossyResult(0, 0)), "")
        << "skipped bytes must not be reported: many intact files begin or end with junk";
    DecodeResult stopped = lossyResult(3, 2);
    stopped.outcome = DecodeOutcome::stopped;
    EXPECT_EQ(decodeNotice(names, stopped), "");
}

TEST(DecodeNoticeTest, RoundsTimesDownToWholeSeconds) {
    EXPECT_EQ(playingTime(0, 44100), "0:00");
    EXPECT_EQ(playingTime(44099, 44100), "0:00");
    EXPECT_EQ(playingTime(59 * 8000, 8000), "0:59");
    EXPECT_EQ(playingTime(60 * 8000, 8000), "1:00");
    EXPECT_EQ(playingTime(3599LL * 48000, 48000), "59:59");
    EXPECT_EQ(playingTime(3723LL * 48000, 48000), "1:02:03");
    EXPECT_EQ(playingTime(360'000LL * 48000, 48000), "100:00:00");
}

} // namespace
} // namespace sonarith::mp3
