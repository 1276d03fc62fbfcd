// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/kept_tone.h"

#include <gmock/gmock.h>

#include "support/fake_settings_store.h"
#include "support/virtual_event_loop.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using test::StoreWrite;
using testing::ElementsAre;
using testing::IsEmpty;

class KeptToneTest : public testing::Test {
  protected:
    test::VirtualEventLoop loop;
    test::FakeSettingsStore store;
    ToneControl tone;
};

TEST_F(KeptToneTest, IsNeutralAtTheFirstStart) {
    tone.setBass(1);
    tone.setTreble(2);
    const KeptTone kept(tone, store, loop);
    EXPECT_EQ(tone.bass(), 32768);
    EXPECT_EQ(tone.treble(), 32768);
    EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(KeptToneTest, AcceptsTheEndsOfTheRange) {
    store.put("Devices", "Bass", "0");
    store.put("Devices", "Treble", "65535");
    const KeptTone kept(tone, store, loop);
    EXPECT_EQ(tone.bass(), 0);
    EXPECT_EQ(tone.treble(), 65535);
}

TEST_F(KeptToneTest, TreatsInvalidPositionsAsTheMiddle) {
    for (const char* text :
         {"", "loud", "-1", "65536", "99999999999999999999", "100x", " 100", "1.5", "0x10", "+5"}) {
        store.put("Devices", "Bass", text);
        store.put("Devices", "Treble", text);
        tone.setBass(7);
        tone.setTreble(7);
        const KeptTone kept(tone, store, loop);
        EXPECT_EQ(tone.bass(), 32768) << text;
        EXPECT_EQ(tone.treble(), 32768) << text;
    }
}

TEST_F(KeptToneTest, IsWrittenHalfASecondAfterTheLastMoveOfADrag) {
    KeptTone kept(tone, store, loop);
    for (int step = 0; step < 300; ++step) { // three seconds
        tone.setBass(40'000 + step);
        kept.changed();
        loop.advance(10ms);
    }
    loop.advance(480ms);
    EXPECT_THAT(store.writes, IsEmpty());
    loop.advance(10ms);
    EXPECT_THAT(store.writes, ElementsAre(StoreWrite{"Devices", "Bass", "40299"}));
    loop.advance(10s);
    EXPECT_EQ(store.fileWrites, 1);
    EXPECT_EQ(loop.wakeupCount(), 0U) << "an idle program must have no running timer";
}

TEST_F(KeptToneTest, WritesBothSlidersInOneFileWrite) {
    KeptTone kept(tone, store, loop);
    tone.setBass(5);
    kept.changed();
    tone.setTreble(6);
    kept.changed();
    loop.advance(1s);
    EXPECT_THAT(store.writes, ElementsAre(StoreWrite{"Devices", "Bass", "5"},
                                          StoreWrite{"Devices", "Treble", "6"}));
    EXPECT_EQ(store.fileWrites, 1);
}

TEST_F(KeptToneTest, CallingKeepWritesAPendingChangeImmediatelyAndOnlyOnce) {
    KeptTone kept(tone, store, loop);
    tone.setTreble(6);
    kept.changed();
    kept.keep();
    EXPECT_THAT(store.writes, ElementsAre(StoreWrite{"Devices", "Treble", "6"}));
    kept.keep();
    loop.advance(1s);
    EXPECT_EQ(store.fileWrites, 1);
}

TEST_F(KeptToneTest, WritesNothingForASliderThatReturnedToItsStoredPosition) {
    store.put("Devices", "Bass", "100");
    KeptTone kept(tone, store, loop);
    tone.setBass(200);
    kept.changed();
    tone.setBass(100);
    kept.changed();
    loop.advance(1s);
    EXPECT_EQ(store.fileWrites, 0);
}

} // namespace
} // namespace sonarith::sound
