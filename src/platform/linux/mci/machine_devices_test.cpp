// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the commands of a capture (a recording of a played track). Some tests follow the sound from
// the disc to the saved file. The classes that play the disc, mix the sound and store the recording
// are those of the program; the drive, the clock and the notices are fakes.
#include "platform/linux/mci/machine_devices.h"

#include <gmock/gmock.h>

#include "platform/linux/mci/machine_fixture.h"
#include "support/wav_samples.h"

namespace sonarith::mci {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using fakes::FakeDisc;
using fakes::fine;
using fakes::refused;
using fakes::said;

using disc::framesPerSector;

/// Three tracks: 2 s; 1 s and 7 sectors; 5 s.
disc::Table shortTracks() {
    return fakes::audioTable({150, 82, 375});
}

class ACapture : public testing::Test, protected MachineSession {
  protected:
    ACapture() : MachineSession([this] { return drive; }) {}

    std::shared_ptr<FakeDisc> disc = std::make_shared<FakeDisc>(shortTracks());
    std::shared_ptr<fakes::FakeDrive> drive = std::make_shared<fakes::FakeDrive>(disc);
};

/// The number of the frame in the stereo file at which the disc's frames [`first`, `end`) begin; -1
/// if the file does not contain them completely and contiguously.
std::int64_t runAt(const fakes::WavSamples& wav, std::int64_t first, std::int64_t end) {
    const auto frameOf = [&](std::int64_t i) {
        const auto place = static_cast<std::size_t>(2 * i);
        return sound::StereoFrame{wav.samples[place], wav.samples[place + 1]};
    };
    const auto count = static_cast<std::int64_t>(wav.samples.size() / 2);
    std::int64_t lead = 0;
    while (lead < count && frameOf(lead) != FakeDisc::frameAt(first)) {
        ++lead;
    }
    for (std::int64_t i = 0; i < end - first; ++i) {
        if (lead + i >= count || frameOf(lead + i) != FakeDisc::frameAt(first + i)) {
            return -1;
        }
    }
    return lead;
}

TEST_F(ACapture, ContainsTheTracksSamplesBitForBitWithoutGaps) {
    capture(" from 2000", 3093, "4711-2.wav");
    const auto wav = fakes::readWav(folder / "4711-2.wav");
    ASSERT_TRUE(wav);
    EXPECT_EQ(wav->channels, 2);
    const std::int64_t lead = runAt(*wav, 150 * framesPerSector, 232 * framesPerSector);
    ASSERT_GE(lead, 0);
    EXPECT_LE(lead, 44100 * 3 / 1000); // little more than the 2 ms between "record" and "play"
    const auto after =
        static_cast<std::int64_t>(wav->samples.size() / 2) - lead - 82 * framesPerSector;
    EXPECT_LE(after, 44100 * 103 / 1000 + 1); // capture() reads the position every 103 ms
    EXPECT_EQ(disc->wrongReads(), 0);
}

TEST_F(ACapture, IsCompleteForTheFirstAndTheLastTrack) {
    capture("", 2000, "my music 1.wav");
    capture(" from 3093", 8093, "3.wav");
    const auto first = fakes::readWav(folder / "my music 1.wav");
    const auto last = fakes::readWav(folder / "3.wav");
    ASSERT_TRUE(first && last);
    EXPECT_GE(runAt(*first, 0, 150 * framesPerSector), 0);
    EXPECT_GE(runAt(*last, 232 * framesPerSector, 607 * framesPerSector), 0);
    EXPECT_EQ(disc->wrongReads(), 0);
    EXPECT_FALSE(card.active());
}

TEST_F(ACapture, ItsPlayCommandStartsTheDiscAtTheRequestedPosition) {
    EXPECT_EQ(send("open cdaudio alias cd"), fine());
    EXPECT_EQ(send("set cd time format milliseconds"), fine());
    EXPECT_EQ(send("play cd from 2000"), fine());
    EXPECT_EQ(send("status cd position"), said("2000"));
    EXPECT_EQ(send("status cd mode"), said("playing"));
}

TEST_F(ACapture, CountsItsBytesUntilItIsStopped) {
    send("open new type waveaudio alias capture");
    send(stereo);
    send("record capture overwrite");
    send("set capture time format bytes");
    time += 1s;
    EXPECT_EQ(send("status capture length"), said("176400"));
    time += 1s;
    EXPECT_EQ(send("stop capture"), fine());
    time += 1s;
    EXPECT_EQ(send("status capture length"), said("352800"));
}

TEST_F(ACapture, KeepsItsSamplesAndRecordsNoSilenceAfterTheDiscIsRemoved) {
    EXPECT_EQ(send("open new type waveaudio alias capture"), fine());
    EXPECT_EQ(send(stereo), fine());
    EXPECT_EQ(send("open cdaudio alias cd"), fine());
    EXPECT_EQ(send("set cd time format milliseconds"), fine());
    EXPECT_EQ(send("record capture overwrite"), fine());
    EXPECT_EQ(send("play cd from 2000"), fine());
    tickUntil(2500);
    drive->disc = nullptr;
    disc->vanish();
    for (int tick = 0; tick < 1000; ++tick) {
        time += 100ms;
        EXPECT_NE(send("status cd position").reply, "");
    }
    EXPECT_EQ(send("stop capture"), fine());
    EXPECT_EQ(send("stop cd"), fine());
    EXPECT_EQ(send("save capture kept.wav"), fine());
    EXPECT_EQ(send("close capture"), fine());
    EXPECT_EQ(send("close cd"), fine());
    const auto wav = fakes::readWav(folder / "kept.wav");
    ASSERT_TRUE(wav);
    EXPECT_GE(runAt(*wav, 150 * framesPerSector, 187 * framesPerSector), 0);
    // The capture ended more than a minute after the disc had vanished, but this minute was not
    // recorded.
    EXPECT_LT(wav->samples.size(), 10U * 2 * 44100);
}

TEST_F(ACapture, LeavesNoFileIfItIsClosedWithoutASave) {
    send("open new type waveaudio alias capture");
    send("record capture overwrite");
    time += 1s;
    EXPECT_EQ(send("close all"), fine());
    EXPECT_EQ(send("save capture late.wav"), refused(MciError::invalidDeviceName));
    EXPECT_TRUE(fs::is_empty(folder.path()));
    EXPECT_FALSE(card.active());
}

TEST_F(ACapture, LeavesNoFileAfterAFailedSaveAndCanThenBeSavedElsewhere) {
    send("open new type waveaudio alias capture");
    send("record capture overwrite");
    EXPECT_EQ(send("save capture missing folder/a.wav"), refused(MciError::fileNotSaved));
    EXPECT_EQ(send("save capture " + std::string(300, 'x') + ".wav"),
              refused(MciError::fileNotSaved));
    EXPECT_TRUE(fs::is_empty(folder.path()));
    EXPECT_EQ(send("save capture a.wav"), fine());
    EXPECT_EQ(send("record capture overwrite"), refused(MciError::nonapplicableFunction));
}

TEST_F(ACapture, CannotBeginWhileAnotherRecorderRecords) {
    send("open new type waveaudio alias a");
    send("open new type waveaudio alias b");
    EXPECT_EQ(send("record a"), fine());
    EXPECT_EQ(send("record b"), refused(MciError::waveInputsInUse));
    EXPECT_EQ(send("stop a"), fine());
    EXPECT_EQ(send("record b"), fine());
}

} // namespace
} // namespace sonarith::mci
