// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/capture_commands.h"

#include <gmock/gmock.h>

#include "support/scripted_media_control.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

TEST(CaptureFormat, IsMonoForNumber0AndStereoForNumber1) {
    EXPECT_EQ(setFormatCommand(captureFormat(0)),
              "set capture samplespersec 44100 channels 1 bitspersample 16 alignment 2 "
              "bytespersec 88200");
    EXPECT_EQ(setFormatCommand(captureFormat(1)),
              "set capture samplespersec 44100 channels 2 bitspersample 16 alignment 4 "
              "bytespersec 176400");
}

TEST(CaptureFormat, IsAllZeroForNumbersOtherThan0And1) {
    for (const std::int16_t other : {-1, 2, 32767, -32768}) {
        EXPECT_EQ(setFormatCommand(captureFormat(other)),
                  "set capture samplespersec 0 channels 0 bitspersample 0 alignment 0 "
                  "bytespersec 0");
    }
}

TEST(CaptureFormat, IsFoundByTheWholeTextOfItsListEntry) {
    EXPECT_EQ(captureFormatNamed("44.100Hz, 16bit Mono, 86k/sec"), captureFormat(0));
    EXPECT_EQ(captureFormatNamed("44.100Hz, 16bit Stereo, 172k/sec"), captureFormat(1));
    EXPECT_EQ(captureFormatNamed("44.100Hz, 16bit Stereo"), CaptureFormat{});
    EXPECT_EQ(captureFormatNamed("44.100hz, 16bit stereo, 172k/sec"), CaptureFormat{});
    EXPECT_EQ(captureFormatNamed(""), CaptureFormat{});
}

TEST(Ask, ReturnsTheReplyUpToTheFirstNul) {
    test::ScriptedMediaControl media;
    media.answer("status cd position", {.reply = "1234"});
    ReplyBuffer reply(64);
    EXPECT_EQ(ask(media, "status cd position", reply), "1234");
    // The previous content of the buffer is not part of the result.
    media.answer("status cd position", {.reply = "5"});
    EXPECT_EQ(ask(media, "status cd position", reply), "5");
}

TEST(Ask, ReturnsNothingForAFailedCommand) {
    test::ScriptedMediaControl media;
    media.answer("status cd position", {.status = 263, .reply = "1234"});
    ReplyBuffer reply(64);
    EXPECT_EQ(ask(media, "status cd position", reply), "");
}

TEST(Ask, ShortensAReplyThatDoesNotFitIntoItsBuffer) {
    test::ScriptedMediaControl media;
    media.answer("info cd identity", {.reply = std::string(100, '7')});
    ReplyBuffer reply(64);
    EXPECT_EQ(ask(media, "info cd identity", reply), std::string(63, '7'));
}

TEST(SaveAndClose, SendsItsFiveCommandsEvenIfAllFail) {
    test::ScriptedMediaControl media;
    media.answerPrefix("", {.status = 263});
    saveAndClose(media, "c:\\my music\\7-3.wav");
    EXPECT_THAT(media.log,
                ElementsAre("stop capture", "stop cd", "save capture c:\\my music\\7-3.wav",
                            "close capture", "close cd"));
}

} // namespace
} // namespace sonarith
