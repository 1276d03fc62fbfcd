// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/recording_notices.h"

#include <gmock/gmock.h>

#include <cerrno>

#include "support/fake_notices.h"

namespace sonarith::sound {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RecordingNoticesTest : public testing::Test {
  protected:
    std::vector<std::string> texts() const { return shown.texts(); }

    test::FakeNotices shown;
    RecordingNotices notices{shown};
    const RecordingNumber first = notices.newRecording();
    const std::int64_t kept = std::int64_t{42} * 44100;
};

TEST_F(RecordingNoticesTest, ReportsAnEarlyEndWithTheKeptLengthAndLaterTheSave) {
    notices.endedEarly(first, "/music", ENOSPC, kept);
    notices.saved(first, "/music/1234-3.wav", ENOSPC, kept);
    notices.closed(first, "/music", "/music/1234-3.wav");
    EXPECT_THAT(texts(),
                ElementsAre("The recording in \"/music\" has ended: no space is left; "
                            "its first 0:42 can still be saved",
                            "settled [end of recording 1]: \"1234-3.wav\" in \"/music\" "
                            "was saved partly: no space is left; it contains the first 0:42"));
}

TEST_F(RecordingNoticesTest, ReportsALossThatTheSaveDetects) {
    notices.saved(first, "/music/1234-3.wav", EIO, kept);
    EXPECT_THAT(texts(), ElementsAre("\"1234-3.wav\" in \"/music\" was saved partly: "
                                     "Input/output error; it contains the first 0:42"));
}

TEST_F(RecordingNoticesTest, ReportsThatNothingIsKeptIfNoFrameWasWritten) {
    notices.endedEarly(first, "/music", EDQUOT, 0);
    EXPECT_THAT(texts(), ElementsAre("The recording in \"/music\" has ended: the quota of the disk "
                                     "is used up; nothing is kept"));
}

TEST_F(RecordingNoticesTest, DoesNotReportACompleteRecording) {
    notices.begun("/music");
    notices.saved(first, "/music/1234-3.wav", 0, kept);
    notices.closed(first, "/music", "/music/1234-3.wav");
    EXPECT_THAT(texts(), IsEmpty());
}

TEST_F(RecordingNoticesTest, ReportsAFailedSaveOnceUntilTheFileIsSaved) {
    const Error error{ErrorNumber::pathNotFound, "\"/gone\" does not exist"};
    notices.notSaved("/gone/1234-3.wav", error);
    notices.notSaved("/gone/1234-3.wav", error);
    notices.notSaved("/gone/1234-4.wav", error);
    notices.saved(first, "/gone/1234-3.wav", 0, kept);
    notices.notSaved("/gone/1234-3.wav", error);
    const std::string text = "\"1234-3.wav\" in \"/gone\" was not saved: \"/gone\" does not exist";
    EXPECT_THAT(texts(),
                ElementsAre(text,
                            "\"1234-4.wav\" in \"/gone\" was not saved: \"/gone\" does not exist",
                            "settled [save of /gone/1234-3.wav]", text));
}

TEST_F(RecordingNoticesTest, ReportsOnceThatADiskDoesNotRespondAndOnceThatItRespondsAgain) {
    notices.stalled("/music");
    notices.folderSkipped("/music");
    notices.responds("/music");
    notices.responds("/music");
    notices.folderSkipped("/music");
    notices.begun("/music");
    EXPECT_THAT(
        texts(),
        ElementsAre("\"/music\" does not respond; the recording waits for it and loses no sample",
                    "settled [no response from /music]: \"/music\" responds again",
                    "\"/music\" does not respond; the recording is kept in another folder until it "
                    "is saved",
                    "settled [no response from /music]: \"/music\" responds again"));
}

TEST_F(RecordingNoticesTest, ReportsALateSaveAndItsResult) {
    const std::string late =
        "\"1234-3.wav\" in \"/music\" is not saved yet: the disk does not respond. It will be "
        "saved if the disk responds before the program ends";
    notices.saveIsLate("/music/1234-3.wav");
    notices.saveIsLate("/music/1234-3.wav");
    notices.saved(first, "/music/1234-3.wav", 0, kept);
    notices.saveIsLate("/music/1234-3.wav");
    notices.notSaved("/music/1234-3.wav", {ErrorNumber::diskFull, "it is full"});
    EXPECT_THAT(
        texts(),
        ElementsAre(late,
                    "settled [late save of /music/1234-3.wav]: \"1234-3.wav\" in \"/music\" "
                    "has now been saved",
                    late, "settled [late save of /music/1234-3.wav]",
                    "\"1234-3.wav\" in \"/music\" was not saved: it is full"));
}

TEST_F(RecordingNoticesTest, ReportsUnusableFoldersOnceUntilAFileCanBeCreated) {
    const Error error{ErrorNumber::diskFull, "\"/music\" is on a full disk"};
    notices.cannotBegin(error);
    notices.cannotBegin(error);
    notices.begun("/music");
    notices.cannotBegin(error);
    const std::string text = "Nothing is recorded: \"/music\" is on a full disk";
    EXPECT_THAT(texts(), ElementsAre(text, "settled [no folder for recordings]", text));
}

TEST_F(RecordingNoticesTest, SettlesAllCausesOfARecordingThatIsClosed) {
    notices.endedEarly(first, "/music", EIO, 0);
    notices.stalled("/music");
    notices.notSaved("/music/a.wav", {ErrorNumber::diskFull, "it is full"});
    notices.saveIsLate("/music/a.wav");
    notices.closed(first, "/music", "/music/a.wav");
    EXPECT_THAT(texts(),
                ElementsAre(testing::_, testing::_, testing::_, testing::_,
                            "settled [end of recording 1]", "settled [no response from /music]",
                            "settled [save of /music/a.wav]",
                            "settled [late save of /music/a.wav]"));
}

TEST_F(RecordingNoticesTest, ReportsTheEarlyEndOfEachOfTwoRecordings) {
    const RecordingNumber second = notices.newRecording();
    notices.endedEarly(first, "/music", EIO, 0);
    notices.endedEarly(second, "/music", EIO, 0);
    EXPECT_EQ(texts().size(), 2U);
}

TEST_F(RecordingNoticesTest, ReportsNothingAfterMute) {
    notices.stalled("/music");
    notices.mute();
    notices.responds("/music");
    notices.folderSkipped("/music");
    EXPECT_EQ(texts().size(), 1U);
}

TEST(LengthText, IsInWholeMinutesAndSeconds) {
    EXPECT_EQ(lengthText(0), "0:00");
    EXPECT_EQ(lengthText(44'099), "0:00");
    EXPECT_EQ(lengthText(std::int64_t{65} * 44'100), "1:05");
    EXPECT_EQ(lengthText(std::int64_t{405 * 60 + 43} * 44'100), "405:43");
}

} // namespace
} // namespace sonarith::sound
