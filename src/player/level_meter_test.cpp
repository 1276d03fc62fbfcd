// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/level_meter.h"

#include "support/player_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The panel with its meter prepared; the input is not running.
struct LevelMeterTest : test::PlayerWorld {
    PictureBox& trace = form.picPeakVol;

    LevelMeterTest() { player.meter.prepare(); }
    void setInput(int level) { mixer.put(mixer_line::waveIn, mixer_control::peakMeter, level); }
    void setWave(int level) { mixer.put(mixer_line::waveOut, mixer_control::peakMeter, level); }
    void tick(int level) {
        setInput(level);
        form.Timer3.fire();
    }
    [[nodiscard]] PictureLine lastLine() const { return trace.lines().back(); }
};

// --- finding the peak controls -------------------------------------------------------------

TEST_F(LevelMeterTest, PreparingFindsThePeakControlsOfTheInputAndTheWaveLine) {
    EXPECT_THAT(operationsOf([&] { player.meter.prepare(); }),
                ElementsAre("mixer line 7", "mixer control 7 10020001", "mixer line 4104",
                            "mixer control 4104 10020001"));
    EXPECT_NE(player.mixerState.InputMeterCtrl.dwControlID, 0U);
    EXPECT_EQ(player.mixerState.InputMeterCtrl.cMultipleItems, 1U);
    EXPECT_NE(player.mixerState.WaveMeterCtrl.dwControlID, 0U);
}

TEST_F(LevelMeterTest, UsesTheMicrophonesPeakControlIfThereIsNoInputLine) {
    mixer.removeLine(mixer_line::waveIn);
    EXPECT_THAT(operationsOf([&] { player.meter.prepare(); }),
                ElementsAre("mixer line 7", "mixer line 4099", "mixer control 4099 10020001",
                            "mixer line 4104", "mixer control 4104 10020001"));
    mixer.put(mixer_line::microphone, mixer_control::peakMeter, 9000);
    form.Timer3.fire();
    EXPECT_EQ(form.Label4.top(), 465_twips);
}

// --- one step ------------------------------------------------------------------------------

TEST_F(LevelMeterTest, AStepReadsTheInputsPeak) {
    EXPECT_THAT(operationsOf([&] { tick(100); }), ElementsAre("mixer get 7 10020001"));
}

TEST_F(LevelMeterTest, EachReadUsesTheControlsIdentifierAndItemCountAndTheSameBuffer) {
    // The fake card's meter has one item for all channels; the meters of other cards may have one
    // for each channel.
    MixerState& state = player.mixerState;
    state.InputMeterCtrl.cMultipleItems = 2;
    state.WaveMeterCtrl.cMultipleItems = 3;
    tick(100);
    const MixerControlDetails first = mixer.lastDetails;
    EXPECT_EQ(first.dwControlID, state.InputMeterCtrl.dwControlID);
    EXPECT_EQ(first.cMultipleItems, 2U);
    for (Timer* timer : {&form.Timer2, &form.Timer4}) {
        timer->fire();
        EXPECT_EQ(mixer.lastDetails.dwControlID, state.WaveMeterCtrl.dwControlID);
        EXPECT_EQ(mixer.lastDetails.cMultipleItems, 3U);
        EXPECT_EQ(mixer.lastDetails.paDetails, first.paDetails);
    }
    tick(100);
    EXPECT_EQ(mixer.lastDetails.cMultipleItems, 2U);
}

TEST_F(LevelMeterTest, TheBarRisesFromTheBottomOfItsPicture) {
    struct Row {
        int level;
        Twips top;
    };
    for (const Row& row :
         {Row{0, 915_twips}, Row{9000, 465_twips}, Row{18300, 0_twips}, Row{32768, Twips(-723)}}) {
        tick(row.level);
        EXPECT_EQ(form.Label4.top(), row.top) << row.level;
    }
}

TEST_F(LevelMeterTest, TheFirstLineStartsLeftOfThePicture) {
    tick(0);
    EXPECT_THAT(trace.lines(), ElementsAre(PictureLine{{-20, 0}, {0, 950}}));
    tick(16384);
    tick(32768);
    EXPECT_EQ(trace.lines()[1], (PictureLine{{0, 950}, {20, -50}}));
    EXPECT_EQ(trace.lines()[2], (PictureLine{{20, -50}, {40, -1050}}));
}

TEST_F(LevelMeterTest, DuringSilenceTheTraceIsAStraightLineAndTheBarIsHidden) {
    tick(0);
    for (int i = 0; i < 50; ++i) {
        tick(0);
        EXPECT_EQ(lastLine().from.y, 950);
        EXPECT_EQ(lastLine().to.y, 950);
        EXPECT_EQ(form.Label4.top(), form.Picture8.height());
    }
}

TEST_F(LevelMeterTest, ALevelAndItsNegativeDrawTheSamePoint) {
    tick(-32768);
    const double y = lastLine().to.y;
    const Twips top = form.Label4.top();
    tick(0);
    tick(32768);
    EXPECT_EQ(lastLine().to.y, y);
    EXPECT_EQ(form.Label4.top(), top);
    EXPECT_EQ(player.mixerState.Volume, -32768);
}

TEST_F(LevelMeterTest, AnInvalidLevelIsDrawnWithoutFailure) {
    tick(INT32_MIN);
    tick(INT32_MAX);
    EXPECT_EQ(trace.lines().size(), 2U);
}

TEST_F(LevelMeterTest, AtTheRightEdgeTheTraceIsClearedAndRestartsAtItsLastHeight) {
    int cleared = 0;
    const Connection connection = trace.cleared.connect([&] { ++cleared; });
    for (int x = 0; x < 2440; x += 20) {
        tick(0);
    }
    EXPECT_EQ(cleared, 0);
    EXPECT_EQ(lastLine().to.x, 2420);
    EXPECT_EQ(trace.lines().size(), 122U);
    tick(8192);
    // The line of this tick ended at 2440, left of the edge at 2445; the next line would end beyond
    // the edge.
    EXPECT_EQ(cleared, 1);
    EXPECT_THAT(trace.lines(), IsEmpty());
    tick(0);
    EXPECT_THAT(trace.lines(), ElementsAre(PictureLine{{-20, 450}, {0, 950}}));
    EXPECT_EQ(cleared, 1);
}

TEST_F(LevelMeterTest, TheTraceRestartsIfItsNextLineWouldEndExactlyAtTheRightEdge) {
    trace.setWidth(40_twips);
    tick(0);
    EXPECT_EQ(trace.lines().size(), 1U);
    tick(0);
    EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(LevelMeterTest, AFailedReadKeepsTheLastLevel) {
    tick(16384);
    mixer.detailsFail = true;
    // A slider stores its level in mixerState.Volume, which the meter also uses; the meter must not
    // draw the slider's level.
    form.Slider1.moveTo(1);
    tick(0);
    tick(0);
    EXPECT_EQ(lastLine().to.y, -50);
    EXPECT_EQ(form.Label4.top(), Twips(915 - 819));
    EXPECT_THAT(boxes.shown, IsEmpty());
    mixer.detailsFail = false;
    tick(0);
    EXPECT_EQ(lastLine().to.y, 950);
}

TEST_F(LevelMeterTest, WithoutAPeakControlTheTraceShowsSilence) {
    mixer.removeLine(mixer_line::waveIn);
    mixer.removeLine(mixer_line::microphone);
    mixer.removeLine(mixer_line::waveOut);
    player.mixerState.InputMeterCtrl = {};
    player.mixerState.WaveMeterCtrl = {};
    player.meter.prepare();
    EXPECT_EQ(player.mixerState.InputMeterCtrl.dwControlID, 0U);
    EXPECT_THAT(operationsOf([&] { form.Timer3.fire(); }), ElementsAre("mixer get none"));
    EXPECT_EQ(lastLine().to.y, 950);
    EXPECT_EQ(trace.lines().size(), 1U);
}

TEST_F(LevelMeterTest, PreparingAgainResetsTheLastLevel) {
    tick(16384);
    player.meter.prepare();
    mixer.detailsFail = true;
    form.Timer3.fire();
    EXPECT_EQ(lastLine().to.y, 950);
}

TEST(LevelMeterWithoutMixer, DrawsSilence) {
    test::PlayerBench bench;
    bench.form.unload();
    bench.player.mixerState = {};
    bench.mixer.present = false;
    bench.form.load();
    bench.boxes.shown.clear();
    bench.form.Timer3.fire();
    EXPECT_EQ(bench.form.Label4.top(), bench.form.Picture8.height());
    EXPECT_EQ(bench.form.picPeakVol.lines().back().to.y, 950);
    EXPECT_THAT(bench.boxes.shown, IsEmpty());
}

// --- the input's buffers -------------------------------------------------------------------

TEST_F(LevelMeterTest, EachStepQueuesFilledBuffersAgainBeforeItReadsTheLevel) {
    player.capture.StartMeter();
    waveInput.fill(8192);
    EXPECT_THAT(operationsOf([&] { form.Timer3.fire(); }),
                ElementsAre("wave add", "mixer get 7 10020001"));
    EXPECT_THAT(operationsOf([&] { form.Timer3.fire(); }), ElementsAre("mixer get 7 10020001"));
}

TEST_F(LevelMeterTest, BuffersAreNotQueuedWhileTheInputIsStopped) {
    player.capture.StartMeter();
    player.capture.StopMeter();
    EXPECT_THAT(operationsOf([&] { form.Timer3.fire(); }), ElementsAre("mixer get 7 10020001"));
}

TEST_F(LevelMeterTest, QueueingABufferIsRetriedAfterAFailure) {
    player.capture.StartMeter();
    waveInput.fill(8192);
    waveInput.failures["add"] = WaveResult::invalidParameter;
    EXPECT_THAT(operationsOf([&] { form.Timer3.fire(); }),
                ElementsAre("wave add 11", "mixer get 7 10020001"));
    waveInput.failures.clear();
    EXPECT_THAT(operationsOf([&] { form.Timer3.fire(); }),
                ElementsAre("wave add", "mixer get 7 10020001"));
    EXPECT_THAT(boxes.shown, IsEmpty());
}

// --- the other two meters: Timer2 and Timer4 -----------------------------------------------

TEST_F(LevelMeterTest, Timer2ReadsTheWaveLineAndDrawsOnlyTheBar) {
    player.capture.StartMeter();
    waveInput.fill(8192);
    setWave(16384);
    EXPECT_THAT(operationsOf([&] { form.Timer2.fire(); }), ElementsAre("mixer get 4104 10020001"));
    EXPECT_THAT(trace.lines(), IsEmpty());
    EXPECT_EQ(form.Label4.top(), Twips(915 - 819));
    // Timer2 has not moved the trace to the right, but has changed the height at which the trace's
    // next line starts.
    tick(0);
    EXPECT_EQ(lastLine(), (PictureLine{{-20, -50}, {0, 950}}));
}

TEST_F(LevelMeterTest, TheLinesOfTimer4Advance50TwipsAndAllStartAtOneHeight) {
    player.capture.StartMeter();
    waveInput.fill(8192);
    setWave(16384);
    EXPECT_THAT(operationsOf([&] { form.Timer4.fire(); }), ElementsAre("mixer get 4104 10020001"));
    setWave(0);
    form.Timer4.fire();
    EXPECT_THAT(trace.lines(),
                ElementsAre(PictureLine{{-50, 0}, {0, -850}}, PictureLine{{0, 0}, {50, 150}}));
    tick(0);
    EXPECT_EQ(lastLine(), (PictureLine{{80, 0}, {100, 950}}));
}

TEST_F(LevelMeterTest, Timer4ClearsTheTraceAtTheRightEdge) {
    for (int x = 0; x < 2400; x += 50) {
        form.Timer4.fire();
    }
    EXPECT_EQ(trace.lines().size(), 48U);
    form.Timer4.fire();
    EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(LevelMeterTest, TheTimersHaveIntervalsOf10MillisecondsAndAreOff) {
    for (const Timer* timer : {&form.Timer2, &form.Timer3, &form.Timer4}) {
        EXPECT_EQ(timer->interval(), std::chrono::milliseconds(10)) << timer->name();
        EXPECT_FALSE(timer->enabled()) << timer->name();
    }
}

} // namespace
} // namespace sonarith
