// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/machine_device_choice.h"

#include <gmock/gmock.h>

#include "platform/linux/sound/external_input.h"
#include "platform/linux/sound/sound_card_thread.h"
#include "support/fake_notices.h"
#include "support/fake_settings_store.h"
#include "support/fake_sound.h"
#include "support/pulse_server.h"
#include "support/waiting.h"

namespace sonarith {
namespace {

using fakes::eventually;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class MachineDeviceChoiceTest : public testing::Test {
  protected:
    const fakes::PulseServer server; // not started: only its ALSA configuration is used
    test::FakeSettingsStore store;
    test::FakeNotices notices;
    // A slot without a drive, so that the test accesses no real drive.
    disc::DriveSlot slot{[] { return std::string(); },
                         {[] { return std::vector<std::string>(); }, {}, {}}};
    sound::SoundCard card;
};

TEST_F(MachineDeviceChoiceTest, ItsSourcesAreTheDiscThenTheMixThenTheMachinesInputs) {
    const MachineDeviceChoice devices(store, slot, card, notices);
    const std::vector<DeviceEntry> sources = devices.sources();
    ASSERT_GE(sources.size(), 4U);
    EXPECT_EQ(sources[0], (DeviceEntry{"", "Compact disc"}));
    EXPECT_EQ(sources[1], (DeviceEntry{"mix", "All that is played"}));
    EXPECT_EQ(sources[2], (DeviceEntry{"default", "Default sound input"}));
    EXPECT_THAT(sources, Contains(DeviceEntry{"monitor", "Monitor"}));
    EXPECT_THAT(devices.outputs(), Contains(DeviceEntry{"monitor", "Monitor"}));
}

TEST_F(MachineDeviceChoiceTest, ChoosingAnInputSetsItOnTheCardAndChoosingAnotherSourceRemovesIt) {
    MachineDeviceChoice devices(store, slot, card, notices);
    EXPECT_EQ(card.externalInput(), nullptr);
    devices.setSource("monitor");
    EXPECT_EQ(store.held("Devices", "Source"), "monitor");
    ASSERT_NE(card.externalInput(), nullptr);
    EXPECT_EQ(card.externalInput()->name(), "monitor");
    devices.setSource("mix");
    EXPECT_EQ(card.externalInput(), nullptr);
    devices.setSource("monitor");
    devices.setSource("");
    EXPECT_EQ(card.externalInput(), nullptr);
}

TEST_F(MachineDeviceChoiceTest, UsesAStoredInputFromTheStartAndDoesNotPlayIt) {
    store.put("Devices", "Source", "hw:7");
    const MachineDeviceChoice devices(store, slot, card, notices);
    ASSERT_NE(card.externalInput(), nullptr);
    EXPECT_EQ(card.externalInput()->name(), "hw:7");
    EXPECT_TRUE(card.muted(sound::Line::externalInput));
}

TEST_F(MachineDeviceChoiceTest, SettlesTheReportOfAnUnusableOutputWhenAnotherIsChosen) {
    store.put("Devices", "Output", "no-such-device");
    MachineDeviceChoice devices(store, slot, card, notices);
    const sound::SoundCardThread thread(card);
    EXPECT_THAT(notices.texts(), IsEmpty())
        << "a problem must not be reported before the output is used";
    const auto disc = std::make_shared<fakes::PatternSource>();
    card.attach(sound::Line::compactDisc, disc, sound::monotonicNow());
    ASSERT_TRUE(eventually([&] { return !notices.texts().empty(); }));
    const std::int64_t played = disc->position();
    EXPECT_TRUE(eventually([&] { return disc->position() > played + 4410; }))
        << "playing must continue although the output cannot be used";
    EXPECT_THAT(notices.texts(),
                ElementsAre(StartsWith("The sound output \"no-such-device\" cannot be used")));
    devices.setOutput("none");
    EXPECT_THAT(notices.texts(), ElementsAre(testing::_, "settled [output no-such-device]"));
}

TEST_F(MachineDeviceChoiceTest, ReportsNothingAfterTheDevicesWereReleased) {
    store.put("Devices", "Output", "no-such-device");
    MachineDeviceChoice devices(store, slot, card, notices);
    devices.setSource("no-such-input");
    card.startRecording(std::make_shared<fakes::MemorySink>(), sound::monotonicNow());
    devices.release();
    EXPECT_EQ(card.externalInput(), nullptr);
    card.attach(sound::Line::compactDisc, std::make_shared<fakes::PatternSource>(),
                sound::monotonicNow());
    card.advance(sound::monotonicNow() + std::chrono::milliseconds(50));
    EXPECT_THAT(notices.texts(), IsEmpty());
}

TEST_F(MachineDeviceChoiceTest, DoesNotSettleTheReportOfALostDeviceWhenTheDevicesAreReleased) {
    store.put("Devices", "Output", "no-such-device");
    MachineDeviceChoice devices(store, slot, card, notices);
    const sound::SoundCardThread thread(card);
    card.attach(sound::Line::compactDisc, std::make_shared<fakes::PatternSource>(),
                sound::monotonicNow());
    ASSERT_TRUE(eventually([&] { return !notices.texts().empty(); }));
    devices.release();
    EXPECT_THAT(notices.texts(),
                ElementsAre(StartsWith("The sound output \"no-such-device\" cannot be used")));
}

} // namespace
} // namespace sonarith
