// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the load step of the preferences: what it shows and saves, its side effects, and which
// stored values end it early.
#include <string>
#include <vector>

#include "support/preferences_world.h"

namespace sonarith {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

struct PreferencesLoad : test::PreferencesWorld {
    void TestBody() override {}

    [[nodiscard]] static std::vector<std::string> entries(const ComboBox& box) {
        std::vector<std::string> all;
        for (int i = 0; i < box.listCount(); ++i) {
            all.push_back(box.list(i));
        }
        return all;
    }
};

TEST_F(PreferencesLoad, CentresTheWindowAndDoesNotShowIt) {
    form.setDesignedSize(8000_twips, 6000_twips);
    start();
    EXPECT_EQ(form.left(), Twips((28800 - 8000) / 2));
    EXPECT_EQ(form.top(), Twips((16200 - 6000) / 2));
    EXPECT_FALSE(form.visible());
}

TEST_F(PreferencesLoad, FillsTheThreeListsAndSelectsTheStoredEntries) {
    store.put("Settings", "Encoding quality", "8");
    store.put("Settings", "Encoding bitrate", "13");
    store.put("Settings", "Audio format", "0");
    start();
    EXPECT_THAT(entries(form.Combo1), ElementsAre("Low", "Normal", "High", "Voice", "Radio", "Tape",
                                                  "HIFI", "CD", "Studio"));
    EXPECT_THAT(entries(form.Combo2), ElementsAre("32", "40", "48", "56", "64", "80", "96", "112",
                                                  "128", "160", "192", "224", "256", "320"));
    EXPECT_THAT(entries(form.cbxFormat),
                ElementsAre("44.100Hz, 16bit Mono, 86k/sec", "44.100Hz, 16bit Stereo, 172k/sec"));
    EXPECT_EQ(form.Combo1.text(), "Studio");
    EXPECT_EQ(form.Combo2.text(), "320");
    EXPECT_EQ(form.cbxFormat.listIndex(), 0);
    form.unload();
    form.load();
    EXPECT_EQ(form.Combo1.listCount(), 9); // the lists were cleared first
    EXPECT_EQ(form.Combo2.listCount(), 14);
    EXPECT_EQ(form.cbxFormat.listCount(), 2);
    EXPECT_EQ(form.Combo1.text(), "Studio"); // the stored entry is selected again
    EXPECT_EQ(form.Combo2.text(), "320");
    EXPECT_EQ(form.cbxFormat.listIndex(), 0);
}

TEST_F(PreferencesLoad, ListsTheCaptureFormatsInTheOrderOfTheirNumbers) {
    start();
    for (const std::int16_t format : {std::int16_t{0}, std::int16_t{1}}) {
        EXPECT_EQ(captureFormatNamed(form.cbxFormat.list(format)), captureFormat(format));
    }
}

TEST_F(PreferencesLoad, ShowsEachSettingInItsControl) {
    store.put("Settings", "HDWarning", "1");
    store.put("Settings", "HDWarningNo", "123");
    store.put("Settings", "HDstopdecoding", "0");
    store.put("Settings", "HDStopNo", "-5");
    store.put("Settings", "desktop icon", "0");
    store.put("Settings", "minimize onstart", "1");
    store.put("Settings", "Delete WAV", "0");
    store.put("Settings", "show full path", "1");
    store.put("Settings", "encode after extracting", "0");
    store.put("Settings", "mute button", "1");
    start();
    EXPECT_EQ(form.Check6.value(), 1);
    EXPECT_EQ(form.Text7.text(), "123");
    EXPECT_EQ(form.Check7.value(), 0);
    EXPECT_EQ(form.Text8.text(), "-5");
    EXPECT_EQ(form.Check4.value(), 0);
    EXPECT_EQ(form.Check5.value(), 1);
    EXPECT_EQ(form.Check3.value(), 0);
    EXPECT_EQ(form.Check11.value(), 1);
    EXPECT_EQ(form.Check10.value(), 0);
    EXPECT_EQ(form.Check1.value(), 1);
    EXPECT_EQ(form.Check2.value(), 0);
}

// --- the store -----------------------------------------------------------------------------------

TEST_F(PreferencesLoad, WithAnEmptyStoreSavesTheDestinationAndEachSwitchThatIsOn) {
    start();
    EXPECT_THAT(written(), ElementsAre("HDWarning=1", "HDstopdecoding=1", "Delete WAV=1",
                                       "show full path=1", "encode after extracting=1",
                                       "mute button=1", "DecodePath=c:\\sonarith\\WAVFiles"));
    EXPECT_EQ(store.size(), 7U);
    EXPECT_TRUE(files.folderExists("c:\\sonarith\\wavfiles"));
}

TEST_F(PreferencesLoad, SavesNoSwitchThatIsOff) {
    startWithAllOff();
    form.unload();
    store.writes.clear();
    form.load();
    EXPECT_THAT(written(), ElementsAre("DecodePath=c:\\sonarith\\WAVFiles"));
    EXPECT_THAT(muted, IsEmpty());
}

TEST_F(PreferencesLoad, WithAllSettingsStoredSavesTheSwitchesInTheOrderInWhichTheyAreSet) {
    for (const char* key : {hdWarningKey, hdStopDecodingKey, desktopIconKey, minimizeOnStartKey,
                            deleteWavKey, showFullPathKey, encodeAfterExtractingKey}) {
        store.put("Settings", key, "1");
    }
    store.put("Settings", "mute button", "1");
    store.put("Settings", "HDWarningNo", "300");
    store.put("Settings", "HDStopNo", "200");
    store.put("Settings", "Encoding quality", "0");
    store.put("Settings", "Encoding bitrate", "0");
    store.put("Settings", "Audio format", "0");
    store.put("Settings", "DecodePath", "C:\\Music\\Wav");
    start();
    EXPECT_THAT(written(), ElementsAre("HDWarning=1", "HDstopdecoding=1", "desktop icon=1",
                                       "minimize onstart=1", "Delete WAV=1", "show full path=1",
                                       "encode after extracting=1", "mute button=1",
                                       "DecodePath=C:\\Music\\Wav"));
    EXPECT_EQ(store.fileWrites, 1);
    // Limits and lists are only shown, not saved.
    EXPECT_EQ(store.size(), 14U);
    EXPECT_EQ(form.Text7.text(), "300");
    EXPECT_EQ(form.Text8.text(), "200");
    EXPECT_EQ(form.Combo1.listIndex(), 0);
    EXPECT_EQ(form.Combo2.listIndex(), 0);
    EXPECT_EQ(form.cbxFormat.listIndex(), 0);
}

TEST_F(PreferencesLoad, SavesEachMissingSwitchThatIsOnByDefault) {
    const std::vector<std::string> switches = {hdWarningKey,  hdStopDecodingKey,
                                               deleteWavKey,  showFullPathKey,
                                               muteButtonKey, encodeAfterExtractingKey};
    for (const std::string& missing : switches) {
        SCOPED_TRACE(missing);
        PreferencesLoad run;
        for (const std::string& key : switches) {
            if (key != missing) {
                run.store.put("Settings", key, "0");
            }
        }
        run.start();
        EXPECT_THAT(run.written(),
                    ElementsAre(missing + "=1", "DecodePath=c:\\sonarith\\WAVFiles"));
    }
}

TEST_F(PreferencesLoad, WritesTheStoreOnceAndBeforeTheLoadStepYields) {
    loop.atYield(1, [&] {
        EXPECT_EQ(store.fileWrites, 1); // the write precedes the yield
        EXPECT_EQ(store.writes.size(), 7U);
    });
    start();
    EXPECT_EQ(loop.yieldCount(), 1);
    EXPECT_EQ(store.fileWrites, 1);
    form.Check6.setValue(0).passOver();
    EXPECT_EQ(store.fileWrites, 2); // the load step has ended its transaction
}

TEST_F(PreferencesLoad, WritesTheStoreBeforeItShowsAMessage) {
    store.put("Settings", "DecodePath", "X:\\Gone\\Wav");
    int boxesUp = 0;
    boxes.whileUp = [&](const test::ShownBox&) {
        ++boxesUp;
        EXPECT_EQ(store.fileWrites, 1);
    };
    start();
    EXPECT_EQ(boxesUp, 2);
    EXPECT_EQ(store.fileWrites, 1);
}

TEST_F(PreferencesLoad, WritesTheStoreBeforeThePlayersLoadStepCanYield) {
    Form4.unload();
    Form4.onLoad = [&] {
        EXPECT_EQ(store.fileWrites, 1);
        loop.yield();
    };
    start();
    EXPECT_TRUE(Form4.loaded());
    EXPECT_FALSE(Form4.visible());
}

TEST_F(PreferencesLoad, LeavesNoWritePendingAfterAnEarlyEnd) {
    store.put("Settings", "show full path", "7");
    start();
    EXPECT_EQ(store.fileWrites, 1);
    form.Check6.setValue(0).passOver();
    EXPECT_EQ(store.fileWrites, 2);
}

// --- side effects of switches that are on ----------------------------------------------------

TEST_F(PreferencesLoad, MutesTheDiscsLineIfTheMuteSwitchIsOn) {
    start();
    EXPECT_THAT(muted, ElementsAre("Option13"));
    EXPECT_TRUE(Form4.Option13.selected());
    EXPECT_EQ(form.Check1.caption(), "Mute");
}

TEST_F(PreferencesLoad, LoadsTheTrayFormAndHidesOnlyThePreferencesIfTheTraySwitchIsOn) {
    store.put("Settings", "desktop icon", "1");
    Form1.show();
    start();
    EXPECT_TRUE(windows.frmpopup.loaded());
    EXPECT_FALSE(form.visible());
    EXPECT_TRUE(Form1.visible());
    EXPECT_THAT(written(), Contains("desktop icon=1"));
}

TEST_F(PreferencesLoad, AnExplicitShowOpensTheWindowEvenIfTheTraySwitchIsOn) {
    store.put("Settings", "desktop icon", "1");
    LoadSettings(store, files.programFolder(), settings);
    form.show();
    EXPECT_TRUE(form.visible());
}

TEST_F(PreferencesLoad, KeepsTheCaptionsOfSwitchesThatAreOff) {
    // No click handler has run; the handlers would set "Do not Encode after extracting" and "Play".
    startWithAllOff();
    EXPECT_EQ(form.Check10.caption(), "Encode to MP3 after extracting");
    EXPECT_EQ(form.Check1.caption(), "Mute");
    EXPECT_THAT(muted, IsEmpty());
    EXPECT_FALSE(windows.frmpopup.loaded());
}

TEST_F(PreferencesLoad, ShowsTheFreeSpaceOfTheStoredDestinationsDrive) {
    store.put("Settings", "DecodePath", "d:\\music\\wav");
    files.addDrive('d');
    system.drives["D:\\"].space = DiskSpace{9'000'000'000, 7'000'000'000};
    start();
    EXPECT_EQ(form.Label3.caption(), "D:\\");
    EXPECT_EQ(form.Label4.caption(), "7000");
    EXPECT_EQ(form.Text6.text(), "C:\\ - 200000 MB available\r\nD:\\ - 7000 MB available\r\n");
}

TEST_F(PreferencesLoad, MeasuresTheDriveOfTheProgramFolderAtTheFirstStart) {
    // At the first start, the destination is the program folder until Co111_Click() changes it. The
    // drives are measured before that change.
    std::string first;
    loop.atYield(1, [&] { first = form.Label4.caption(); });
    start();
    EXPECT_EQ(first, "200000");
}

// --- stored values of any kind -------------------------------------------------------------------

TEST_F(PreferencesLoad, EndsAtAQualityOutsideItsList) {
    for (const char* bad : {"9", "-2", "32767"}) {
        SCOPED_TRACE(bad);
        PreferencesLoad run;
        run.store.put("Settings", "Encoding quality", bad);
        run.store.put("Settings", "HDWarningNo", "7");
        run.start();
        EXPECT_TRUE(run.form.loaded());
        EXPECT_EQ(run.form.Combo1.listCount(), 9);
        EXPECT_EQ(run.form.Combo1.listIndex(), -1);
        EXPECT_EQ(run.form.Combo2.listCount(), 14);
        EXPECT_EQ(run.form.Combo2.listIndex(), -1);
        EXPECT_EQ(run.form.Text7.text(), "100"); // the initial text of the box
        EXPECT_EQ(run.form.Text9.text(), "");
        EXPECT_THAT(run.store.writes, IsEmpty());
        EXPECT_THAT(run.files.log, IsEmpty());
        run.form.show();
        EXPECT_TRUE(run.form.visible());
    }
}

TEST_F(PreferencesLoad, EndsAtABitRateOutsideItsList) {
    store.put("Settings", "Encoding bitrate", "14");
    start();
    EXPECT_EQ(form.Combo1.listIndex(), 5);
    EXPECT_EQ(form.Combo2.listIndex(), -1);
    EXPECT_EQ(form.Check6.value(), 0);
    EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(PreferencesLoad, EndsAtACaptureFormatOutsideItsList) {
    store.put("Settings", "Audio format", "2");
    start();
    EXPECT_EQ(form.Check1.value(), 1); // the check boxes are set before the formats are listed
    EXPECT_EQ(form.cbxFormat.listCount(), 2);
    EXPECT_EQ(form.cbxFormat.listIndex(), -1);
    EXPECT_EQ(settings.audioFormat, 2);
    EXPECT_EQ(form.Text6.text(), ""); // the drives are not listed
    EXPECT_THAT(written(), Not(Contains(testing::StartsWith("DecodePath"))));
    EXPECT_EQ(settings.decodePath, "c:\\sonarith");
}

TEST_F(PreferencesLoad, EndsAtASwitchThatIsNeitherOnNorOff) {
    // All switches except those of the disk guard, in the order in which they are set.
    const std::vector<std::string> switches = {
        desktopIconKey,  minimizeOnStartKey,       deleteWavKey,
        showFullPathKey, encodeAfterExtractingKey, muteButtonKey};
    std::vector<std::string> before = {"HDWarning=1", "HDstopdecoding=1"};
    for (const std::string& bad : switches) {
        SCOPED_TRACE(bad);
        PreferencesLoad run;
        for (const std::string& key : switches) {
            run.store.put("Settings", key, key == bad ? "2" : "1");
        }
        run.start();
        EXPECT_EQ(run.written(), before);
        EXPECT_EQ(run.form.Text9.text(), "c:\\sonarith"); // set before these switches
        EXPECT_EQ(run.form.cbxFormat.listCount(), 0);
        EXPECT_THAT(run.muted, IsEmpty());
        run.form.show();
        EXPECT_TRUE(run.form.visible());
        before.push_back(bad + "=1");
    }
}

TEST_F(PreferencesLoad, EndsAtEachInvalidSwitchOfTheDiskGuardAndKeepsTheValuesSetBefore) {
    store.put("Settings", "HDWarning", "-1");
    store.put("Settings", "HDWarningNo", "7");
    start();
    EXPECT_EQ(form.Text7.text(), "100"); // the initial text of the box
    PreferencesLoad second;
    second.store.put("Settings", "HDWarningNo", "7");
    second.store.put("Settings", "HDstopdecoding", "70");
    second.start();
    EXPECT_EQ(second.form.Text7.text(), "7");
    EXPECT_EQ(second.form.Text8.text(), "100");
    EXPECT_EQ(second.form.Text9.text(), "");
}

TEST_F(PreferencesLoad, SelectsNothingForMinusOneAndContinues) {
    store.put("Settings", "Encoding quality", "-1");
    store.put("Settings", "Encoding bitrate", "-1");
    store.put("Settings", "Audio format", "-1");
    start();
    EXPECT_EQ(form.Combo1.listIndex(), -1);
    EXPECT_EQ(form.cbxFormat.text(), "");
    EXPECT_EQ(held("DecodePath"), "c:\\sonarith\\WAVFiles");
}

TEST_F(PreferencesLoad, ToleratesValuesThatAreNot16BitNumbers) {
    // An invalid value leaves the field of its setting at 0, which is a valid value.
    for (const char* key :
         {"Audio format", "Encoding quality", "Encoding bitrate", "HDWarning", "HDWarningNo",
          "HDstopdecoding", "HDStopNo", "desktop icon", "minimize onstart", "Delete WAV",
          "show full path", "encode after extracting", "mute button"}) {
        for (const char* bad : {"", "32768", "-32769", "70000", "-70000", "letters", "1x"}) {
            SCOPED_TRACE(std::string(key) + "=" + bad);
            PreferencesLoad run;
            run.store.put("Settings", key, bad);
            run.start();
            EXPECT_EQ(run.held("DecodePath"), "c:\\sonarith\\WAVFiles");
            EXPECT_THAT(run.boxes.shown, IsEmpty());
            EXPECT_EQ(run.held(key), bad); // the invalid value is kept
        }
    }
}

// --- repeated loads ------------------------------------------------------------------------------

TEST_F(PreferencesLoad, RunsOnceHoweverOftenTheWindowIsHiddenAndShown) {
    start();
    store.writes.clear();
    form.show();
    form.hide();
    form.show();
    EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(PreferencesLoad, RunsInFullWhenTheWindowIsOpenedAgainAfterAClose) {
    start();
    form.Text7.setText("5"); // not saved
    form.unload();
    store.writes.clear();
    muted.clear();
    form.show();
    EXPECT_EQ(form.Text7.text(), "100");
    EXPECT_EQ(store.writes.size(), 7U);
    EXPECT_THAT(muted, ElementsAre("Option13"));
    EXPECT_EQ(store.held("Settings", "Encoding quality"), "5");
}

} // namespace
} // namespace sonarith
