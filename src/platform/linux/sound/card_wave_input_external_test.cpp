// SPDX-License-Identifier: GPL-3.0-or-later
// Tests a wave input while the card's recording source is an external input.
#include <memory>

#include "platform/linux/sound/capture_fixture.h"
#include "platform/linux/sound/card_wave_input_fixture.h"
#include "platform/linux/sound/external_input.h"
#include "support/fake_sound.h"
#include "support/sound_matchers.h"
#include "support/waiting.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::eventually;
using fakes::IsSound;
using fakes::MemorySink;
using fakes::pattern;
using fakes::silence;
using testing::HasSubstr;

class CardWaveInputExternal : public CardWaveInputTest {
  protected:
    CardWaveInputExternal() { choose(); }
    void choose() {
        card.setRecordingSource(
            RecordingSource::externalInput,
            std::make_shared<ExternalInput>("hw:CARD=Webcam", openerOf(device), nullptr,
                                            CaptureTiming{.retryAfter = 1ms, .patience = 30s}));
    }
    bool becomesOpen() {
        return eventually([&] { return device->opened == device->closed + 1; });
    }

    std::shared_ptr<CaptureDevice> device = std::make_shared<CaptureDevice>();
};

TEST_F(CardWaveInputExternal, TheDeviceIsOpenedByOpenOrStartAndClosedByStopResetOrClose) {
    EXPECT_EQ(device->opened, 0) << "the device must not be opened before open() is called";
    open(cardFormat);
    EXPECT_TRUE(becomesOpen());
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    EXPECT_EQ(device->opened, 1) << "start() must not open the device again";
    EXPECT_EQ(input.stop(handle), WaveResult::noError);
    EXPECT_EQ(device->closed, 1);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    EXPECT_TRUE(becomesOpen());
    EXPECT_EQ(input.reset(handle), WaveResult::noError);
    EXPECT_EQ(device->closed, 2);
    EXPECT_EQ(input.close(handle), WaveResult::noError);
    open(cardFormat);
    EXPECT_TRUE(becomesOpen());
    EXPECT_EQ(input.close(handle), WaveResult::noError)
        << "close() must succeed for an input that was never started";
    EXPECT_EQ(device->closed, 3);
    EXPECT_FALSE(card.active());
}

TEST_F(CardWaveInputExternal, TheDevicesSoundReachesTheBufferThePeakLevelsAndTheRecording) {
    const auto tape = std::make_shared<MemorySink>();
    device->provide(20 * 441);
    open(cardFormat);
    ASSERT_TRUE(eventually([&] { return device->isDrained(); }));
    Buffer buffer(4 * 882);
    add(buffer);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    card.startRecording(tape, now);
    advance(20ms);
    EXPECT_THAT(buffer.frames(), IsSound(pattern(0, 882)));
    EXPECT_EQ(card.recorderPeak(now), 882);
    EXPECT_EQ(card.linePeak(Line::externalInput, now), 882);
    EXPECT_EQ(input.reset(handle), WaveResult::noError);
    EXPECT_EQ(device->closed, 0) << "the device must not be closed while the recording uses it";
    advance(20ms);
    card.stopRecording(now);
    EXPECT_EQ(device->closed, 1);
    EXPECT_THAT(tape->frames(), IsSound(pattern(0, 4 * 441)));
}

TEST_F(CardWaveInputExternal, ReportsTheNameOfADeviceThatCannotBeOpened) {
    device->missing = true;
    WaveInHandle other = 5;
    // On a busy machine the device's failure may be late; then open() succeeds.
    ASSERT_TRUE(eventually([&] {
        const WaveResult result = input.open(other, 0, cardFormat);
        if (result == WaveResult::noError) {
            input.close(other);
            other = 5;
        }
        return result == WaveResult::notEnabled;
    }));
    EXPECT_EQ(other, 5U);
    EXPECT_THAT(input.errorText(WaveResult::notEnabled), HasSubstr("\"hw:CARD=Webcam\""));
    EXPECT_FALSE(card.active());
    device->missing = false;
    open(cardFormat);
}

TEST_F(CardWaveInputExternal, DeliversSilenceWhileTheOpeningOfTheDeviceHangs) {
    device->openHangs = true;
    card.setRecordingSource(RecordingSource::externalInput,
                            std::make_shared<ExternalInput>("hung", openerOf(device), nullptr,
                                                            CaptureTiming{.patience = 1ms}));
    open(cardFormat);
    Buffer buffer(4 * 441);
    add(buffer);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    advance(10ms);
    EXPECT_THAT(buffer.frames(), IsSound(silence(441)))
        << "the buffer must be filled with silence at the format's rate";
    EXPECT_EQ(input.reset(handle), WaveResult::noError);
    EXPECT_EQ(input.close(handle), WaveResult::noError);
    device->release();
    EXPECT_TRUE(eventually([&] { return device->opened == device->closed; }));
}

TEST_F(CardWaveInputExternal,
       ChoosingAnotherSourceClosesTheDeviceAndChoosingTheExternalInputOpensIt) {
    open(cardFormat);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    EXPECT_TRUE(becomesOpen());
    card.setRecordingSource(RecordingSource::compactDisc);
    EXPECT_EQ(device->closed, 1);
    EXPECT_EQ(card.externalInput(), nullptr);
    choose();
    EXPECT_TRUE(becomesOpen());
    const std::shared_ptr<CaptureDevice> former = device;
    device = std::make_shared<CaptureDevice>();
    choose(); // another device
    EXPECT_EQ(former->closed, 2);
    EXPECT_TRUE(becomesOpen());
}

} // namespace
} // namespace sonarith::sound
