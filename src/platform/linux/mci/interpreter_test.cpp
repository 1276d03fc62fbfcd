// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/interpreter.h"

#include <gmock/gmock.h>

#include "support/mci_session.h"

namespace sonarith::mci {
namespace {

using fakes::audioTable;
using fakes::fine;
using fakes::MciSession;
using fakes::refused;
using fakes::said;

TEST(Opening, MakesTheDeviceAvailableUnderItsAlias) {
    MciSession session(audioTable({750, 750}));
    EXPECT_EQ(session.send("OPEN CDAudio ALIAS Cd"), fine());
    EXPECT_EQ(session.send("status cD number of tracks"), said("2"));
    EXPECT_EQ(session.send("Open New Type WaveAudio Alias Capture"), fine());
    EXPECT_EQ(session.send("status CAPTURE mode"), said("stopped"));
    EXPECT_EQ(session.send("open waveaudio alias other"), fine());
    EXPECT_EQ(session.send("status other mode"), said("stopped"));
}

TEST(Opening, WithoutAnAliasUsesTheDevicesName) {
    MciSession session(audioTable({750}));
    EXPECT_EQ(session.send("open cdaudio"), fine());
    EXPECT_EQ(session.send("status cdaudio number of tracks"), said("1"));
    EXPECT_EQ(session.send("open cdaudio"), refused(MciError::deviceOpen));
    EXPECT_EQ(session.send("close cdaudio"), fine());
}

TEST(Opening, RefusesAnAliasThatIsInUse) {
    MciSession session(audioTable({750}));
    EXPECT_EQ(session.send("open cdaudio alias cd"), fine());
    EXPECT_EQ(session.send("open cdaudio alias CD"), refused(MciError::duplicateAlias));
    EXPECT_EQ(session.send("open new type waveaudio alias cd"), refused(MciError::duplicateAlias));
    EXPECT_EQ(session.send("status cd number of tracks"), said("1"));
}

TEST(Opening, WithoutADriveFailsForCdAudioButNotForWaveAudio) {
    MciSession session;
    session.machine.drive = nullptr;
    EXPECT_EQ(session.send("open cdaudio alias cd"), refused(MciError::deviceNotInstalled));
    EXPECT_EQ(session.send("open cdaudio alias cd wait shareable"),
              refused(MciError::deviceNotInstalled));
    EXPECT_EQ(session.send("status cd media present"), refused(MciError::invalidDeviceName));
    EXPECT_EQ(session.send("open new type waveaudio alias capture"), fine());
}

TEST(Opening, RefusesFileNamesDriveLettersAndUnknownDeviceTypes) {
    MciSession session(audioTable({750}));
    EXPECT_EQ(session.send("open sequencer alias x"), refused(MciError::invalidDeviceName));
    EXPECT_EQ(session.send("open new type sequencer alias x"),
              refused(MciError::invalidDeviceName));
    EXPECT_EQ(session.send("open c:\\a.wav alias x"), refused(MciError::invalidDeviceName));
    EXPECT_EQ(session.send("open c:\\a.wav type waveaudio alias x"),
              refused(MciError::unsupportedFunction));
    EXPECT_EQ(session.send("open waveaudio!c:\\a.wav alias x"),
              refused(MciError::unsupportedFunction));
    EXPECT_EQ(session.send("open d: type cdaudio alias x"), refused(MciError::noElementAllowed));
    EXPECT_EQ(session.send("open cdaudio!d: alias x"), refused(MciError::noElementAllowed));
    EXPECT_EQ(session.send("close x"), refused(MciError::invalidDeviceName));
}

TEST(Opening, ReturnsTheMatchingErrorForAnInvalidCommand) {
    MciSession session(audioTable({750}));
    EXPECT_EQ(session.send("open new alias x"), refused(MciError::deviceTypeRequired));
    EXPECT_EQ(session.send("open new type waveaudio"), refused(MciError::newRequiresAlias));
    EXPECT_EQ(session.send("open new type"), refused(MciError::missingParameter));
    EXPECT_EQ(session.send("open cdaudio alias"), refused(MciError::missingParameter));
    EXPECT_EQ(session.send("open cdaudio alias \"\""), refused(MciError::missingStringArgument));
    EXPECT_EQ(session.send("open cdaudio alias all"), refused(MciError::cannotUseAll));
    EXPECT_EQ(session.send("open cdaudio alias a alias b"), refused(MciError::duplicateFlags));
    EXPECT_EQ(session.send("open cdaudio cd"), refused(MciError::unrecognizedKeyword));
    EXPECT_EQ(session.send("open"), refused(MciError::missingDeviceName));
    EXPECT_EQ(session.send("open cdaudio alias \"cd"), refused(MciError::noClosingQuote));
    EXPECT_EQ(session.send("open !"), refused(MciError::invalidDeviceName));
}

// The activity clip is a video for the tool bar. The test sends the commands by which
// app/activity_clip.cpp would play the clip. The test also sends another form of the command
// "open".
TEST(TheActivityClip, CannotBeOpenedBecauseItsDeviceIsNotInstalled) {
    MciSession session(audioTable({750}));
    EXPECT_EQ(session.send("stop movie"), refused(MciError::invalidDeviceName));
    EXPECT_EQ(session.send("close movie"), refused(MciError::invalidDeviceName));
    EXPECT_EQ(session.send("open AVIvideo!c:\\sonarith\\download.avi alias movie parent 4711 "
                           "style child"),
              refused(MciError::deviceNotInstalled));
    EXPECT_EQ(session.send("open AVIvideo!c:\\my own folder\\download.avi alias movie parent 4711 "
                           "style child"),
              refused(MciError::deviceNotInstalled));
    EXPECT_EQ(session.send("open c:\\download.avi type avivideo alias movie"),
              refused(MciError::deviceNotInstalled));
    EXPECT_EQ(session.send("put movie window client at 0 0 0 0"),
              refused(MciError::invalidDeviceName));
    EXPECT_EQ(session.send("play movie"), refused(MciError::invalidDeviceName));
}

TEST(ASharedDisc, IsOneDeviceUnderSeveralAliases) {
    MciSession session(audioTable({750, 750}));
    EXPECT_EQ(session.send("open cdaudio alias a wait shareable"), fine());
    EXPECT_EQ(session.send("open cdaudio alias b"), refused(MciError::mustUseShareable));
    EXPECT_EQ(session.send("open cdaudio alias b shareable"), fine());
    session.send("play a");
    EXPECT_EQ(session.send("status b mode"), said("playing"));
    EXPECT_EQ(session.send("close a"), fine());
    EXPECT_EQ(session.send("status b mode"), said("playing"));
    EXPECT_EQ(session.send("close b"), fine());
    EXPECT_EQ(session.machine.transport, nullptr);
}

TEST(ADiscOpenedWithoutTheFlagShareable, CanBeOpenedAgainOnlyAfterItIsClosed) {
    MciSession session(audioTable({750, 750}));
    EXPECT_EQ(session.send("open cdaudio alias a"), fine());
    EXPECT_EQ(session.send("open cdaudio alias b shareable"), refused(MciError::mustUseShareable));
    EXPECT_EQ(session.send("close a"), fine());
    EXPECT_EQ(session.send("open cdaudio alias b shareable"), fine());
}

TEST(Closing, StopsTheDeviceAndFreesItsAlias) {
    MciSession session(audioTable({750}));
    session.send("open cdaudio alias cd");
    session.send("play cd");
    EXPECT_NE(session.machine.transport, nullptr);
    EXPECT_EQ(session.send("close cd later"), refused(MciError::unrecognizedKeyword));
    EXPECT_EQ(session.send("close cd wait"), fine());
    EXPECT_EQ(session.machine.transport, nullptr);
    EXPECT_EQ(session.send("close cd"), refused(MciError::invalidDeviceName));
}

TEST(ClosingAll, ClosesEveryDevice) {
    MciSession session(audioTable({750}));
    session.send("open cdaudio alias cd");
    session.send("open new type waveaudio alias capture");
    session.send("record capture");
    session.send("play cd");
    EXPECT_EQ(session.send("close all"), fine());
    EXPECT_EQ(session.machine.transport, nullptr);
    EXPECT_EQ(session.machine.recorder.living, 0);
    EXPECT_EQ(session.send("stop cd"), refused(MciError::invalidDeviceName));
    EXPECT_EQ(session.send("stop capture"), refused(MciError::invalidDeviceName));
    EXPECT_EQ(session.send("close all"), fine());
    EXPECT_EQ(session.send("stop all"), refused(MciError::cannotUseAll));
}

TEST(CommandsWithoutAnOpenDevice, AreRejected) {
    MciSession session(audioTable({750}));
    for (const char* command :
         {"stop voice1", "close voice1", "stop capture", "set capture time format bytes",
          "status capture length", "save capture c:\\a b.wav", "status cd position",
          "record capture overwrite", "play cdaudio", "pause \"\xFF\xFE\""}) {
        EXPECT_EQ(session.send(command), refused(MciError::invalidDeviceName)) << command;
    }
    EXPECT_EQ(session.send("stop"), refused(MciError::missingDeviceName));
    EXPECT_EQ(session.send(""), refused(MciError::missingCommandString));
    EXPECT_EQ(session.send("\x01\x02"), refused(MciError::unrecognizedCommand));
}

TEST(AReply, IsTruncatedToTheBufferAndEmptyAfterAnError) {
    MciSession session(audioTable({750, 750}));
    session.send("open cdaudio alias cd");
    ReplyBuffer buffer(8);
    session.interpreter.sendString("status cd number of tracks", &buffer);
    EXPECT_EQ(buffer.bytes(), std::string("2\0      ", 8));
    session.interpreter.sendString("status cd nonsense", &buffer);
    EXPECT_EQ(buffer.bytes(), std::string("\0\0      ", 8));
    session.interpreter.sendString("info cd identity", &buffer);
    EXPECT_EQ(buffer.bytes(),
              disc::identityOf(audioTable({750, 750})).substr(0, 7) + std::string(1, '\0'));
    session.interpreter.sendString("stop cd", &buffer);
    EXPECT_EQ(buffer.bytes().front(), '\0');
    EXPECT_EQ(session.interpreter.sendString("stop cd"), mciSuccess);
    ReplyBuffer nothing(0); // without space even for the NUL
    EXPECT_EQ(session.interpreter.sendString("status cd length", &nothing), mciSuccess);
}

TEST(ErrorTexts, ExistForErrorNumbersButNotForOtherNumbers) {
    MciSession session;
    const int status = session.interpreter.sendString("stop voice1");
    EXPECT_EQ(status, 263);
    EXPECT_EQ(session.interpreter.errorString(status),
              "The specified device is not open or is not recognized.");
    EXPECT_EQ(session.interpreter.errorString(mciSuccess), "");
    EXPECT_EQ(session.interpreter.errorString(99999), "");
}

} // namespace
} // namespace sonarith::mci
