// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/chosen_devices.h"

#include <gmock/gmock.h>

#include "support/fake_settings_store.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ChosenDevices, DefaultToTheFirstDriveTheDefaultOutputAndTheCompactDiscLine) {
    test::FakeSettingsStore store;
    const ChosenDevices chosen(store);
    EXPECT_EQ(chosen.drive(), "");
    EXPECT_EQ(chosen.output(), "default");
    EXPECT_EQ(chosen.source(), "");
    EXPECT_THAT(store.writes, IsEmpty());
}

TEST(ChosenDevices, AreStoredInTheirOwnSection) {
    test::FakeSettingsStore store;
    ChosenDevices chosen(store);
    chosen.setDrive("/discs/a.cue");
    chosen.setOutput("none");
    chosen.setSource(ChosenDevices::mixSource);
    EXPECT_THAT(store.writes, ElementsAre(test::StoreWrite{"Devices", "Drive", "/discs/a.cue"},
                                          test::StoreWrite{"Devices", "Output", "none"},
                                          test::StoreWrite{"Devices", "Source", "mix"}));
    EXPECT_EQ(chosen.drive(), "/discs/a.cue");
    EXPECT_EQ(chosen.output(), "none");
    EXPECT_EQ(chosen.source(), "mix");
}

TEST(ChosenDevices, StoreTheFirstDriveAsAnEmptyTextInPlaceOfAnEarlierChoice) {
    test::FakeSettingsStore store;
    store.put("Devices", "Drive", "/dev/sr1");
    ChosenDevices chosen(store);
    chosen.setDrive("");
    EXPECT_EQ(store.held("Devices", "Drive"), "");
}

} // namespace
} // namespace sonarith
