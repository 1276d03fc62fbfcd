// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the notice about parts of a played disc that could not be read. The notice is reported when
// the recording is saved, and states the lost time of each track with a loss.
#include <gmock/gmock.h>

#include "support/cd_session.h"

namespace sonarith::mci {
namespace {

using disc::framesPerSector;
using fakes::CdSession;
using fakes::fine;
using fakes::refused;
using fakes::threeTracks;
using testing::ElementsAre;
using testing::IsEmpty;

/// Records a disc whose tracks begin at the sectors 0, 13875 and 18385.
class LossNotice : public testing::Test {
  protected:
    LossNotice() {
        session.machine.drive->disc = disc;
        EXPECT_EQ(session.send("close cd"), fine());
        EXPECT_EQ(session.send("open cdaudio alias cd"), fine());
        EXPECT_EQ(session.send("set cd time format tmsf"), fine());
        EXPECT_EQ(session.send("open new type waveaudio alias capture"), fine());
    }
    void play(const std::string& from, std::int64_t sectors) {
        EXPECT_EQ(session.send("record capture"), fine());
        EXPECT_EQ(session.send("play cd from " + from), fine());
        session.machine.transport->advance(sectors * framesPerSector);
        EXPECT_EQ(session.send("stop capture"), fine());
        EXPECT_EQ(session.send("stop cd"), fine());
    }
    std::vector<std::string> notices() const { return session.machine.notices.texts(); }

    CdSession session{threeTracks()};
    std::shared_ptr<fakes::FakeDisc> disc = std::make_shared<fakes::FakeDisc>(threeTracks());
};

TEST_F(LossNotice, ContainsOnlyLossesOfThePlayedRange) {
    disc->silentSectors = {13874, 13875, 13876, 13975};
    disc->guessedSectors = {13900};
    play("2", 100);
    EXPECT_EQ(session.send("save capture c:\\music\\1234-2.wav"), fine());
    EXPECT_THAT(notices(), ElementsAre("Track 2: 0.1 s could not be read and are silent, and 0.1 s "
                                       "could not be read without error and were replaced by the "
                                       "drive's best guess in 1234-2.wav."));
}

TEST_F(LossNotice, IncludesAPartlyPlayedSector) {
    disc->silentSectors = {13875};
    EXPECT_EQ(session.send("record capture"), fine());
    EXPECT_EQ(session.send("play cd from 2"), fine());
    session.machine.transport->advance(1);
    EXPECT_EQ(session.send("save capture c:\\a.wav"), fine());
    EXPECT_EQ(notices().size(), 1u);
}

TEST_F(LossNotice, NamesEachPlayedTrackWithALoss) {
    disc->silentSectors = {13874, 13875};
    play("1:03:04:74", 3);
    EXPECT_EQ(session.send("save capture c:\\a.wav"), fine());
    EXPECT_THAT(notices(),
                ElementsAre("Track 1: 0.1 s could not be read and are silent; Track 2: 0.1 "
                            "s could not be read and are silent in a.wav."));
}

TEST_F(LossNotice, IsNotReportedForATrackWithoutALoss) {
    disc->silentSectors = {13000};
    play("2", 4510);
    EXPECT_EQ(session.send("save capture c:\\a.wav"), fine());
    EXPECT_THAT(notices(), IsEmpty());
}

TEST_F(LossNotice, IsReportedOnceAndOnlyAfterASuccessfulSave) {
    disc->silentSectors = {13880};
    play("2", 100);
    session.machine.recorder.unwritable = true;
    EXPECT_EQ(session.send("save capture c:\\a.wav"), refused(MciError::fileNotSaved));
    EXPECT_THAT(notices(), IsEmpty());
    session.machine.recorder.unwritable = false;
    EXPECT_EQ(session.send("save capture c:\\a.wav"), fine());
    EXPECT_EQ(session.send("save capture c:\\b.wav"), fine());
    EXPECT_EQ(notices().size(), 1u);
}

TEST_F(LossNotice, IsNotReportedIfTheDiscWasRemoved) {
    disc->silentSectors = {13880};
    play("2", 100);
    session.machine.drive->disc = nullptr;
    session.send("status cd media present");
    EXPECT_EQ(session.send("save capture c:\\a.wav"), fine());
    EXPECT_EQ(session.send("close cd"), fine());
    EXPECT_EQ(session.send("save capture c:\\a.wav"), fine());
    EXPECT_THAT(notices(), IsEmpty());
}

TEST_F(LossNotice, DoesNotIncludeSectorsThatASeekSkipped) {
    disc->silentSectors = {14000};
    EXPECT_EQ(session.send("seek cd to 2"), fine());
    EXPECT_EQ(session.send("seek cd to 3"), fine());
    EXPECT_EQ(session.send("record capture"), fine());
    EXPECT_EQ(session.send("save capture c:\\a.wav"), fine());
    EXPECT_THAT(notices(), IsEmpty());
}

} // namespace
} // namespace sonarith::mci
