// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the effects of the preferences' controls.
#include "settings/preferences/preferences_window.h"

#include <functional>
#include <string>
#include <vector>

#include "support/must_run.h"
#include "support/preferences_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct PreferencesControls : test::PreferencesWorld {
    void TestBody() override {}

    void tick(CheckBox& box) { box.setValue(1).passOver(); }
    void untick(CheckBox& box) { box.setValue(0).passOver(); }
    static void keyDown(TextBox& box) { run(box.onKeyDown); }
};

// --- switches ------------------------------------------------------------------------------------

TEST_F(PreferencesControls, SaveAndApplyASwitchWhenItIsClicked) {
    struct Row {
        CheckBox* box;
        const char* key;
        std::int16_t* field;
    };
    startWithAllOff();
    for (const Row& row :
         {Row{&form.Check6, "HDWarning", &settings.hdWarning},
          Row{&form.Check7, "HDstopdecoding", &settings.hdStopDecoding},
          Row{&form.Check3, "Delete WAV", &settings.deleteWav},
          Row{&form.Check5, "minimize onstart", &settings.minimizeOnStart},
          Row{&form.Check11, "show full path", &settings.showFullPath},
          Row{&form.Check10, "encode after extracting", &settings.encodeAfterExtracting}}) {
        SCOPED_TRACE(row.key);
        store.writes.clear();
        tick(*row.box);
        EXPECT_THAT(written(), ElementsAre(std::string(row.key) + "=1"));
        EXPECT_EQ(*row.field, 1);
        untick(*row.box);
        EXPECT_EQ(held(row.key), "0");
        EXPECT_EQ(*row.field, 0);
    }
}

TEST_F(PreferencesControls, ChangeTheCaptionOfTheEncodingBoxWhenItIsClicked) {
    startWithAllOff();
    tick(form.Check10);
    EXPECT_EQ(form.Check10.caption(), "Encode to MP3 after extracting");
    untick(form.Check10);
    EXPECT_EQ(form.Check10.caption(), "Do not Encode after extracting");
}

TEST_F(PreferencesControls, SetTheCaptionOfTheEncodingBoxBeforeSavingItsValue) {
    startWithAllOff();
    int changes = 0;
    const Connection caption = form.Check10.changed.connect([&](Property which) {
        if (which == Property::caption) {
            ++changes;
            EXPECT_EQ(held("encode after extracting"), changes == 1 ? "0" : "1");
            EXPECT_EQ(settings.encodeAfterExtracting, changes - 1);
        }
    });
    untick(form.Check10); // the value does not change, so no handler runs
    EXPECT_EQ(changes, 0);
    form.Check10.setCaption("x");
    changes = 0;
    tick(form.Check10);
    EXPECT_EQ(changes, 1);
    untick(form.Check10);
    EXPECT_EQ(changes, 2);
}

TEST_F(PreferencesControls, SetTheCaptionOfTheMuteBoxAfterMutingAndBeforeSavingItsValue) {
    startWithAllOff();
    form.Check1.setCaption("x");
    int changes = 0;
    const Connection caption = form.Check1.changed.connect([&](Property which) {
        if (which == Property::caption) {
            ++changes;
            EXPECT_THAT(muted, ElementsAre("Option13"));
            EXPECT_EQ(settings.muteButton, 0);
            EXPECT_THAT(store.writes, IsEmpty());
        }
    });
    tick(form.Check1);
    EXPECT_EQ(changes, 1);
}

TEST_F(PreferencesControls, MuteAndUnmuteTheDiscsLine) {
    startWithAllOff();
    tick(form.Check1);
    EXPECT_THAT(muted, ElementsAre("Option13"));
    EXPECT_TRUE(Form4.Option13.selected());
    EXPECT_EQ(form.Check1.caption(), "Mute");
    EXPECT_EQ(settings.muteButton, 1);
    EXPECT_EQ(held("mute button"), "1");
    untick(form.Check1);
    EXPECT_THAT(muted, ElementsAre("Option13", "Option14"));
    EXPECT_TRUE(Form4.Option14.selected());
    EXPECT_FALSE(Form4.Option13.selected());
    EXPECT_EQ(form.Check1.caption(), "Play");
    EXPECT_EQ(settings.muteButton, 0);
    EXPECT_EQ(held("mute button"), "0");
}

TEST_F(PreferencesControls, ApplyTheMuteBeforeSavingIt) {
    startWithAllOff();
    Form4.Option13.onClick = test::mustRun([&] {
        EXPECT_TRUE(Form4.Option13.selected());
        EXPECT_EQ(settings.muteButton, 0);
        EXPECT_THAT(store.writes, IsEmpty());
    });
    tick(form.Check1);
    EXPECT_EQ(held("mute button"), "1");
}

TEST_F(PreferencesControls, LoadAClosedPlayerWindowWithoutShowingItWhenMuteIsTicked) {
    startWithAllOff();
    Form4.unload();
    tick(form.Check1);
    EXPECT_TRUE(Form4.loaded());
    EXPECT_FALSE(Form4.visible());
    EXPECT_TRUE(Form4.Option13.selected());
}

TEST_F(PreferencesControls, HideAndShowOnlyTheirOwnWindowWhenTheTrayBoxIsClicked) {
    startWithAllOff();
    Form1.show();
    form.show();
    tick(form.Check4);
    EXPECT_TRUE(windows.frmpopup.loaded());
    EXPECT_FALSE(form.visible());
    EXPECT_TRUE(form.loaded());
    EXPECT_TRUE(Form1.visible()); // the main window
    EXPECT_EQ(settings.desktopIcon, 1);
    EXPECT_EQ(held("desktop icon"), "1");
    untick(form.Check4);
    EXPECT_FALSE(windows.frmpopup.loaded());
    EXPECT_TRUE(form.visible());
    EXPECT_EQ(settings.desktopIcon, 0);
    EXPECT_EQ(held("desktop icon"), "0");
}

TEST_F(PreferencesControls, SaveTheTraySwitchBeforeTheTrayFormLoadsOrUnloads) {
    startWithAllOff();
    windows.frmpopup.onLoad = test::mustRun([&] {
        EXPECT_EQ(held("desktop icon"), "1");
        EXPECT_EQ(settings.desktopIcon, 1);
        EXPECT_TRUE(form.visible()); // hidden after this load
    });
    windows.frmpopup.onUnload = test::mustRun([&] {
        EXPECT_EQ(held("desktop icon"), "0");
        EXPECT_FALSE(form.visible()); // shown after this unload
    });
    form.show();
    tick(form.Check4);
    EXPECT_TRUE(windows.frmpopup.loaded());
    EXPECT_FALSE(form.visible());
    untick(form.Check4);
    EXPECT_TRUE(form.visible());
}

// --- lists ---------------------------------------------------------------------------------------

TEST_F(PreferencesControls, ApplyAListsChoiceWithoutSavingIt) {
    startWithAllOff();
    form.Combo1.choose(7);
    form.Combo2.choose(13);
    form.cbxFormat.choose(0);
    EXPECT_EQ(settings.encodingQuality, 7);
    EXPECT_EQ(settings.encodingBitrate, 13);
    EXPECT_EQ(settings.audioFormat, 0);
    EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(PreferencesControls, SaveTheThreeListsWhenTheWindowCloses) {
    startWithAllOff();
    form.Combo1.choose(7);
    form.Combo2.choose(13);
    form.cbxFormat.choose(0);
    form.unload();
    EXPECT_THAT(written(),
                ElementsAre("Encoding quality=7", "Encoding bitrate=13", "Audio format=0"));
    EXPECT_EQ(store.fileWrites, 1);
    EXPECT_FALSE(form.loaded());
}

TEST_F(PreferencesControls, SaveNoListWhenTheWindowIsOnlyHidden) {
    startWithAllOff();
    form.show();
    form.Combo1.choose(7);
    form.hide();
    EXPECT_EQ(held("Encoding quality"), std::nullopt);
}

TEST_F(PreferencesControls, RejectAnIndexBeyondTheListOfFormats) {
    startWithAllOff();
    EXPECT_FALSE(form.cbxFormat.setListIndex(2).ok());
    EXPECT_EQ(settings.audioFormat, 1);
    EXPECT_EQ(form.cbxFormat.listIndex(), 1);
}

// --- limits --------------------------------------------------------------------------------------

TEST_F(PreferencesControls, SaveALimitsTextAsItWasBeforeTheKeyPress) {
    startWithAllOff();
    keyDown(form.Text7);
    form.Text7.setText("1005"); // the effect of the key
    EXPECT_EQ(held("HDWarningNo"), "100");
    EXPECT_EQ(settings.hdWarningNo, 100);
    keyDown(form.Text7);
    form.Text7.setText("10052");
    EXPECT_EQ(held("HDWarningNo"), "1005");
    EXPECT_EQ(settings.hdWarningNo, 1005);
    keyDown(form.Text8);
    form.Text8.setText("5");
    EXPECT_EQ(held("HDStopNo"), "50");
    EXPECT_EQ(settings.hdStopNo, 50);
    form.Command1.click();
    EXPECT_EQ(held("HDWarningNo"), "10052");
    EXPECT_EQ(held("HDStopNo"), "5");
    EXPECT_EQ(settings.hdStopNo, 5);
}

TEST_F(PreferencesControls, SaveALimitThatIsNoSixteenBitNumberButKeepApplyingTheOldLimit) {
    startWithAllOff();
    for (const char* bad : {"", "letters", "12x", "32768", "-32769", "70000", "caf\xe9"}) {
        SCOPED_TRACE(bad);
        form.Text7.setText(bad);
        form.Text8.setText(bad);
        keyDown(form.Text7);
        keyDown(form.Text8);
        EXPECT_EQ(held("HDWarningNo"), bad);
        EXPECT_EQ(held("HDStopNo"), bad);
        EXPECT_EQ(settings.hdWarningNo, 100);
        EXPECT_EQ(settings.hdStopNo, 50);
    }
}

TEST_F(PreferencesControls, AcceptAnyLimitThatFitsSixteenBits) {
    startWithAllOff();
    for (const int limit : {0, -1, 32767, -32768}) {
        form.Text7.setText(std::to_string(limit));
        keyDown(form.Text7);
        EXPECT_EQ(settings.hdWarningNo, limit);
    }
}

TEST_F(PreferencesControls, ReadALimitThatIsNoNumberAsZeroAtTheNextStart) {
    startWithAllOff();
    form.Text7.setText("letters");
    form.Command1.click();
    PreferencesControls next;
    next.store.put("Settings", "HDWarningNo", *held("HDWarningNo"));
    next.start();
    EXPECT_EQ(next.settings.hdWarningNo, 0);
    EXPECT_EQ(next.form.Text7.text(), "0");
    EXPECT_EQ(next.held("HDWarningNo"), "letters");
}

TEST_F(PreferencesControls, SaveTheDiskGuardsSwitchesThenItsLimitsWhenTheSetButtonIsClicked) {
    startWithAllOff();
    form.Text7.setText("300");
    form.Text8.setText("200");
    form.Command1.click();
    EXPECT_THAT(written(),
                ElementsAre("HDWarning=0", "HDstopdecoding=0", "HDWarningNo=300", "HDStopNo=200"));
    EXPECT_EQ(settings.hdWarningNo, 300);
    EXPECT_EQ(settings.hdStopNo, 200);
    EXPECT_EQ(store.fileWrites, 1);
}

TEST_F(PreferencesControls, DoNotSaveTheStopLimitWithTheSetButtonIfTheWarningLimitIsNoNumber) {
    startWithAllOff();
    form.Text7.setText("x");
    form.Text8.setText("200");
    form.Command1.click();
    EXPECT_THAT(written(), ElementsAre("HDWarning=0", "HDstopdecoding=0", "HDWarningNo=x"));
    EXPECT_EQ(settings.hdStopNo, 50);
    EXPECT_EQ(store.fileWrites, 1);
    form.Text7.setText("100");
    form.Text8.setText("");
    form.Command1.click();
    EXPECT_EQ(held("HDStopNo"), "");
    EXPECT_EQ(settings.hdStopNo, 50);
}

TEST_F(PreferencesControls, MeasureTheDrivesAgainWhenRefreshDataIsClicked) {
    startWithAllOff();
    system.drives["C:\\"].space = DiskSpace{9'000'000'000, 1'000'000};
    form.Command3.click();
    EXPECT_EQ(form.Text6.text(), "C:\\ - 1 MB available\r\n");
    EXPECT_EQ(form.Label4.caption(), "1");
    EXPECT_THAT(store.writes, IsEmpty());
}

// --- after a restart -----------------------------------------------------------------------------

TEST_F(PreferencesControls, HaveTheSameStateAfterARestart) {
    startWithAllOff();
    tick(form.Check6);
    tick(form.Check4);
    form.Text7.setText("300");
    form.Command1.click();
    form.cbxFormat.choose(0);
    form.unload();
    PreferencesControls next;
    for (const char* key : {hdWarningKey, hdWarningNoKey, hdStopDecodingKey, hdStopNoKey,
                            desktopIconKey, deleteWavKey, showFullPathKey, encodeAfterExtractingKey,
                            muteButtonKey, audioFormatKey, decodePathKey}) {
        next.store.put("Settings", key, held(key).value());
    }
    next.start();
    EXPECT_EQ(next.form.Check6.value(), 1);
    EXPECT_EQ(next.form.Check4.value(), 1);
    EXPECT_EQ(next.form.Text7.text(), "300");
    EXPECT_EQ(next.form.cbxFormat.listIndex(), 0);
    EXPECT_EQ(next.form.Check1.value(), 0);
    EXPECT_EQ(next.form.Text9.text(), form.Text9.text());
}

} // namespace
} // namespace sonarith
