// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/wave_recorder.h"

#include <gmock/gmock.h>

#include "support/mci_session.h"

namespace sonarith::mci {
namespace {

using fakes::fine;
using fakes::MciSession;
using fakes::refused;
using fakes::said;
using testing::ElementsAre;
using testing::IsEmpty;

/// A session in which a wave recorder is open with the alias "capture".
class Opened : public MciSession {
  public:
    Opened() { EXPECT_EQ(send("open new type waveaudio alias capture"), fine()); }
    [[nodiscard]] fakes::RecorderState& recorder() { return machine.recorder; }
};

TEST(CapturingATrack, SucceedsWithTheCommandsThatTheLogicSends) {
    Opened session;
    EXPECT_EQ(session.send("set capture samplespersec 44100 channels 2 bitspersample 16 "
                           "alignment 4 bytespersec 176400"),
              fine());
    EXPECT_EQ(session.send("record capture overwrite"), fine());
    EXPECT_TRUE(session.recorder().recording);
    EXPECT_EQ(session.recorder().channels, 2);
    session.recorder().bytes = 176400;
    EXPECT_EQ(session.send("set capture time format bytes"), fine());
    EXPECT_EQ(session.send("status capture length"), said("176400"));
    EXPECT_EQ(session.send("status capture mode"), said("recording"));
    EXPECT_EQ(session.send("stop capture"), fine());
    EXPECT_FALSE(session.recorder().recording);
    EXPECT_EQ(session.send("save capture c:\\My Music\\48213907-3.wav"), fine());
    EXPECT_EQ(session.send("close capture"), fine());
    EXPECT_THAT(session.recorder().saved, ElementsAre("/My Music/48213907-3.wav"));
    EXPECT_EQ(session.recorder().living, 0);
}

TEST(TheRecordersFormat, MayBeMono) {
    Opened session;
    EXPECT_EQ(session.send("set capture samplespersec 44100 channels 1 bitspersample 16 "
                           "alignment 2 bytespersec 88200"),
              fine());
    EXPECT_EQ(session.send("status capture channels"), said("1"));
    EXPECT_EQ(session.send("status capture samplespersec"), said("44100"));
    EXPECT_EQ(session.send("status capture bitspersample"), said("16"));
    EXPECT_EQ(session.send("status capture alignment"), said("2"));
    EXPECT_EQ(session.send("status capture bytespersec"), said("88200"));
    session.send("record capture");
    EXPECT_EQ(session.recorder().channels, 1);
}

TEST(TheRecordersFormat, IsUnchangedByACommandWithAnUnsupportedOrMalformedFormat) {
    Opened session;
    for (const char* format :
         {"samplespersec 0 channels 0 bitspersample 0 alignment 0 bytespersec 0",
          "samplespersec 48000 channels 2 bitspersample 16 alignment 4 bytespersec 192000",
          "samplespersec 44100 channels 2 bitspersample 8 alignment 2 bytespersec 88200",
          "samplespersec 44100 channels 3 bitspersample 16 alignment 6 bytespersec 264600",
          "samplespersec 44100 channels 2 bitspersample 16 alignment 2 bytespersec 176400",
          "samplespersec 44100 channels 2 bitspersample 16 alignment 4 bytespersec 88200",
          "channels 1 alignment 4", "channels 2147483647", "channels 0"}) {
        EXPECT_EQ(session.send(std::string("set capture ") + format),
                  refused(MciError::waveInputsUnsuitable))
            << format;
    }
    for (const char* format : {"channels two", "channels -1", "alignment 4x",
                               "samplespersec 99999999999", "bytespersec \"\""}) {
        EXPECT_EQ(session.send(std::string("set capture ") + format), refused(MciError::badInteger))
            << format;
    }
    EXPECT_EQ(session.send("status capture channels"), said("2"));
}

TEST(TheRecordersFormat, CannotChangeDuringARecording) {
    Opened session;
    session.send("record capture");
    EXPECT_EQ(session.send("set capture channels 1"), refused(MciError::nonapplicableFunction));
    EXPECT_EQ(session.send("set capture channels 2"), fine());
    EXPECT_EQ(session.send("status capture channels"), said("2"));
}

TEST(TheRecordersFormat, CannotChangeAfterARecordingHasStopped) {
    Opened session;
    session.send("record capture");
    session.send("stop capture");
    EXPECT_EQ(session.send("set capture channels 1 alignment 2 bytespersec 88200"),
              refused(MciError::nonapplicableFunction));
    EXPECT_EQ(session.send("status capture alignment"), said("4"));
    EXPECT_EQ(session.send("set capture channels 2"), fine());
    EXPECT_EQ(session.send("record capture"), fine());
    EXPECT_EQ(session.recorder().channels, 2);
}

TEST(TheRecordedLength, IsCountedInTheChosenUnit) {
    Opened session;
    EXPECT_EQ(session.send("status capture length"), said("0"));
    session.send("record capture");
    session.recorder().bytes = 4 * 66150; // 1.5 s of stereo
    EXPECT_EQ(session.send("status capture length"), said("1500"));
    EXPECT_EQ(session.send("status capture position"), said("1500"));
    session.send("set capture time format samples");
    EXPECT_EQ(session.send("status capture length wait"), said("66150"));
    session.send("set capture time format bytes");
    EXPECT_EQ(session.send("status capture length"), said("264600"));
    EXPECT_EQ(session.send("status capture position"), said("264600"));
    session.recorder().bytes = 6'000'000'000; // does not fit in 32 bits
    EXPECT_EQ(session.send("status capture length"), said("6000000000"));
}

TEST(TheUnitOfTheRecordedLength, IsOneOfThreeTimeFormats) {
    Opened session;
    EXPECT_EQ(session.send("status capture time format"), said("milliseconds"));
    for (const char* name : {"bytes", "samples", "milliseconds"}) {
        EXPECT_EQ(session.send(std::string("set capture time format ") + name), fine());
        EXPECT_EQ(session.send("status capture time format"), said(name));
    }
    EXPECT_EQ(session.send("set capture time format Bytes"), fine());
    EXPECT_EQ(session.send("set capture time format ms channels 3"),
              refused(MciError::waveInputsUnsuitable));
    EXPECT_EQ(session.send("set capture time format tmsf"), refused(MciError::badTimeFormat));
    EXPECT_EQ(session.send("status capture time format"), said("bytes"));
}

TEST(Recording, CanContinueAfterAStop) {
    Opened session;
    EXPECT_EQ(session.send("record capture overwrite"), fine());
    EXPECT_EQ(session.send("record capture insert"), fine()); // already recording
    session.send("stop capture");
    EXPECT_EQ(session.send("status capture mode"), said("stopped"));
    EXPECT_EQ(session.send("record capture insert wait"), fine());
    EXPECT_EQ(session.send("status capture mode"), said("recording"));
    EXPECT_EQ(session.recorder().living, 1);
    EXPECT_EQ(session.send("record capture overwrite insert"),
              refused(MciError::flagsNotCompatible));
    EXPECT_EQ(session.send("record capture sideways"), refused(MciError::unrecognizedKeyword));
}

TEST(Recording, FailsIfAnotherRecorderRecordsOrNoFileCanBeCreated) {
    Opened session;
    session.recorder().busy = true;
    EXPECT_EQ(session.send("record capture overwrite"), refused(MciError::waveInputsInUse));
    session.recorder().busy = false;
    session.recorder().unwritable = true;
    EXPECT_EQ(session.send("record capture overwrite"), refused(MciError::fileNotSaved));
    EXPECT_EQ(session.recorder().living, 0);
    EXPECT_EQ(session.send("save capture c:\\a.wav"), refused(MciError::nonapplicableFunction));
}

TEST(Saving, NeedsANameAndARecording) {
    Opened session;
    EXPECT_EQ(session.send("save capture"), refused(MciError::unnamedResource));
    EXPECT_EQ(session.send("save capture c:\\a.wav"), refused(MciError::nonapplicableFunction));
    session.send("record capture");
    EXPECT_EQ(session.send("save capture \"\""), refused(MciError::unnamedResource));
    EXPECT_EQ(session.send("save capture x:\\a.wav"), refused(MciError::fileNotSaved));
    EXPECT_THAT(session.recorder().saved, IsEmpty());
    EXPECT_TRUE(session.recorder().recording);
}

TEST(Saving, StopsARunningRecording) {
    Opened session;
    session.send("record capture");
    EXPECT_EQ(session.send("save capture \"c:\\My Music\\a.wav\""), fine());
    EXPECT_FALSE(session.recorder().recording);
    EXPECT_THAT(session.recorder().saved, ElementsAre("/My Music/a.wav"));
}

TEST(Saving, ThatFailsKeepsTheRecording) {
    Opened session;
    session.send("record capture");
    session.send("stop capture");
    session.recorder().unwritable = true;
    EXPECT_EQ(session.send("save capture c:\\full\\a.wav"), refused(MciError::fileNotSaved));
    session.recorder().unwritable = false;
    EXPECT_EQ(session.send("save capture c:\\a.wav"), fine());
}

TEST(ClosingARecorder, DropsUnsavedSound) {
    Opened session;
    session.send("record capture");
    EXPECT_EQ(session.send("close capture"), fine());
    EXPECT_EQ(session.recorder().living, 0);
    EXPECT_FALSE(session.recorder().recording);
    EXPECT_EQ(session.send("save capture c:\\a.wav"), refused(MciError::invalidDeviceName));
    EXPECT_THAT(session.recorder().saved, IsEmpty());
}

TEST(CommandsToARecorder, SucceedOrReturnTheErrorOfTheirMistake) {
    Opened session;
    EXPECT_EQ(session.send("stop capture"), fine()); // nothing has been recorded yet
    EXPECT_EQ(session.send("play capture"), refused(MciError::unsupportedFunction));
    EXPECT_EQ(session.send("seek capture to start"), refused(MciError::unsupportedFunction));
    EXPECT_EQ(session.send("info capture identity"), refused(MciError::unsupportedFunction));
    EXPECT_EQ(session.send("set capture"), refused(MciError::missingParameter));
    EXPECT_EQ(session.send("set capture door open"), refused(MciError::unrecognizedKeyword));
    EXPECT_EQ(session.send("set capture channels 1 channels 1"), refused(MciError::duplicateFlags));
    EXPECT_EQ(session.send("status capture"), refused(MciError::missingParameter));
    EXPECT_EQ(session.send("status capture number of tracks"),
              refused(MciError::unrecognizedKeyword));
    EXPECT_EQ(session.send("status capture length mode"), refused(MciError::flagsNotCompatible));
    EXPECT_EQ(session.send("stop capture now"), refused(MciError::unrecognizedKeyword));
    EXPECT_EQ(session.send("status capture ready"), said("true"));
    EXPECT_EQ(session.send("status capture media present"), said("true"));
}

} // namespace
} // namespace sonarith::mci
