// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/meter_capture.h"

#include <algorithm>

#include "support/player_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct MeterCaptureTest : test::PlayerWorld {
    MeterCapture& capture = player.capture;
    const std::vector<std::string> started = {"wave open", "wave prepare", "wave prepare",
                                              "wave add",  "wave add",     "wave start"};
    const std::vector<std::string> stopped = {"wave reset", "wave stop", "wave unprepare",
                                              "wave unprepare", "wave close"};
};

TEST_F(MeterCaptureTest, StartOpensTheDeviceAndQueuesTwoBuffersAndStartsTheInput) {
    EXPECT_EQ(operationsOf([&] { EXPECT_TRUE(capture.StartMeter()); }), started);
    EXPECT_TRUE(capture.running());
    EXPECT_TRUE(waveInput.running);
    EXPECT_EQ(waveInput.format.wFormatTag, 1);
    EXPECT_EQ(waveInput.format.nChannels, 1);
    EXPECT_EQ(waveInput.format.nSamplesPerSec, 8000U);
    EXPECT_EQ(waveInput.format.nAvgBytesPerSec, 8000U);
    EXPECT_EQ(waveInput.format.nBlockAlign, 1);
    EXPECT_EQ(waveInput.format.wBitsPerSample, 8);
    EXPECT_EQ(waveInput.format.cbSize, 0);
    ASSERT_EQ(waveInput.queue.size(), 2U);
    EXPECT_NE(waveInput.queue[0]->lpData, waveInput.queue[1]->lpData);
    for (const WaveHeader* header : waveInput.queue) {
        EXPECT_EQ(header->dwBufferLength, 8192U);
        EXPECT_EQ(header->dwLoops, 0U);
        EXPECT_EQ(header->dwFlags & wave_header::done, 0U);
        EXPECT_TRUE(std::all_of(header->lpData, header->lpData + header->dwBufferLength,
                                [](std::byte byte) { return byte == std::byte{0}; }));
    }
}

TEST_F(MeterCaptureTest, CountsAsRunningFromJustBeforeTheInputStartsUntilJustBeforeItIsReset) {
    std::vector<std::string> moments;
    waveInput.onOperation = [&](const std::string& operation) {
        moments.push_back(operation + (capture.running() ? " running" : ""));
    };
    capture.StartMeter();
    capture.StopMeter();
    EXPECT_THAT(moments, ElementsAre("open", "prepare", "prepare", "add", "add", "start running",
                                     "reset", "stop", "unprepare", "unprepare", "close"));
}

TEST_F(MeterCaptureTest, ASecondStartDoesNotOpenTheDeviceAgain) {
    capture.StartMeter();
    EXPECT_THAT(operationsOf([&] { EXPECT_TRUE(capture.StartMeter()); }), IsEmpty());
    EXPECT_EQ(waveInput.opened, 1);
}

TEST_F(MeterCaptureTest, StopResetsStopsAndClosesTheInput) {
    capture.StartMeter();
    EXPECT_EQ(operationsOf([&] { capture.StopMeter(); }), stopped);
    EXPECT_FALSE(capture.running());
    EXPECT_FALSE(waveInput.isOpen);
}

TEST_F(MeterCaptureTest, RepeatedStopsWithoutAStartShowNoMessage) {
    for (int i = 0; i < 2; ++i) {
        EXPECT_THAT(operationsOf([&] { capture.StopMeter(); }),
                    ElementsAre("wave reset 5", "wave stop 5", "wave unprepare 5",
                                "wave unprepare 5", "wave close 5"));
    }
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_EQ(operationsOf([&] { capture.StartMeter(); }), started);
}

TEST_F(MeterCaptureTest, ARestartUsesEmptyBuffers) {
    capture.StartMeter();
    std::fill_n(waveInput.queue[0]->lpData, 100, std::byte{7});
    waveInput.fill(100);
    capture.StopMeter();
    capture.StartMeter();
    ASSERT_EQ(waveInput.queue.size(), 2U);
    EXPECT_EQ(waveInput.queue[0]->dwBytesRecorded, 0U);
    EXPECT_EQ(waveInput.queue[0]->lpData[0], std::byte{0});
}

TEST_F(MeterCaptureTest, ADeviceThatCannotBeOpenedIsReportedWithThePlatformsMessage) {
    waveInput.failures["open"] = WaveResult::notEnabled;
    EXPECT_THAT(operationsOf([&] { EXPECT_FALSE(capture.StartMeter()); }),
                ElementsAre("wave open 3"));
    EXPECT_THAT(boxes.shown, ElementsAre(test::ShownBox{.text = "input error 3"}));
    EXPECT_FALSE(capture.running());
}

TEST_F(MeterCaptureTest, AFailureToPrepareABufferIsReportedAndTheNextStepRuns) {
    waveInput.failures["prepare"] = WaveResult::invalidParameter;
    EXPECT_THAT(operationsOf([&] { EXPECT_TRUE(capture.StartMeter()); }),
                ElementsAre("wave open", "wave prepare 11", "wave prepare 11", "wave add 34",
                            "wave add 34", "wave start"));
    EXPECT_THAT(boxes.texts(), ElementsAre("input error 11", "input error 11", "input error 34",
                                           "input error 34"));
    EXPECT_TRUE(capture.running());
}

TEST_F(MeterCaptureTest, AFailureOfTheInputsStartIsNotReported) {
    waveInput.failures["start"] = WaveResult::notEnabled;
    EXPECT_TRUE(capture.StartMeter());
    EXPECT_TRUE(capture.running());
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(MeterCaptureTest, FailuresOfAStopAreIgnored) {
    capture.StartMeter();
    for (const char* operation : {"reset", "stop", "unprepare", "close"}) {
        waveInput.failures[operation] = WaveResult::stillPlaying;
    }
    capture.StopMeter();
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_FALSE(capture.running());
    // The input has kept the buffers and may still write to them, so they must still exist.
    ASSERT_EQ(waveInput.queue.size(), 2U);
    std::fill_n(waveInput.queue[0]->lpData, waveInput.queue[0]->dwBufferLength, std::byte{1});
    waveInput.failures.clear();
    capture.StopMeter();
}

TEST_F(MeterCaptureTest, AStopWhileAMessageIsOpenCancelsTheStart) {
    for (const char* operation : {"prepare", "add"}) {
        SCOPED_TRACE(operation);
        waveInput.failures[operation] = WaveResult::invalidParameter;
        boxes.shown.clear();
        boxes.whileUp = [&](const test::ShownBox&) {
            capture.StopMeter();
        };
        capture.StartMeter();
        EXPECT_EQ(boxes.shown.size(), 1U);
        EXPECT_TRUE(off());
        waveInput.failures.clear();
        boxes.whileUp = nullptr;
        EXPECT_EQ(operationsOf([&] { capture.StartMeter(); }), started);
        capture.StopMeter();
    }
}

TEST_F(MeterCaptureTest, TheCheckBoxStartsAndStopsTheInput) {
    EXPECT_EQ(operationsOf([&] { form.Check3.setValue(1).passOver(); }), started);
    EXPECT_EQ(operationsOf([&] { form.Check3.setValue(0).passOver(); }), stopped);
}

TEST_F(MeterCaptureTest, RequeuesOnlyBuffersThatAreDone) {
    capture.StartMeter();
    EXPECT_THAT(operationsOf([&] { capture.requeueDoneBuffers(); }), IsEmpty());
    waveInput.fill(8192);
    EXPECT_THAT(operationsOf([&] { capture.requeueDoneBuffers(); }), ElementsAre("wave add"));
    EXPECT_EQ(waveInput.queue.size(), 2U);
    waveInput.fill(8192);
    waveInput.fill(10);
    EXPECT_THAT(operationsOf([&] { capture.requeueDoneBuffers(); }),
                ElementsAre("wave add", "wave add"));
    EXPECT_THAT(operationsOf([&] { capture.requeueDoneBuffers(); }), IsEmpty());
}

TEST(MeterCaptureDestructor, StopsARunningInputAndRemovesItsBuffers) {
    test::FakeMachine machine;
    Form4 form(machine.loop);
    {
        MeterCapture capture(machine.platform, form);
        capture.StartMeter();
    }
    EXPECT_TRUE(machine.waveInput.queue.empty());
    EXPECT_FALSE(machine.waveInput.isOpen);
}

} // namespace
} // namespace sonarith
