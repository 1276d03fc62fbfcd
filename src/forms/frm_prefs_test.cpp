// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/frm_prefs.h"

#include <gmock/gmock.h>

#include "forms/windows.h"
#include "support/fake_machine.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

class FrmPrefsTest : public ::testing::Test, public test::FakeMachine {
  protected:
    ProcessState process;
    Windows windows{platform, process};
    FrmPrefs& form = windows.FrmPrefs;
};

TEST_F(FrmPrefsTest, HasThreeTabs) {
    EXPECT_EQ(form.caption(), "Preferences");
    // The blank before the last caption is intended.
    EXPECT_THAT(form.SSTab2.captions(),
                ElementsAre("Disk Space", "Audio, Misc.", " Destination Path"));
    EXPECT_EQ(form.SSTab2.tab(), 0);
}

TEST_F(FrmPrefsTest, HasTheTextsOfItsBoxesAndButtons) {
    EXPECT_EQ(form.Check6.caption(), "Warn me when hard drive space falls below");
    EXPECT_EQ(form.Check7.caption(), "Stop converting when hard drive space falls below ");
    EXPECT_EQ(form.Check11.caption(), "Show File names as Full File Path");
    EXPECT_EQ(form.Check10.caption(), "Encode to MP3 after extracting");
    EXPECT_EQ(form.Check3.caption(), "Delete WAV file after encoding");
    EXPECT_EQ(form.Check5.caption(), "Minimize program during conversion");
    EXPECT_EQ(form.Check4.caption(), "");
    EXPECT_EQ(form.Check1.caption(), "Mute");
    EXPECT_EQ(form.Check2.caption(), "I'll select the destination path and directory");
    EXPECT_EQ(form.Command3.caption(), "Refresh data");
    EXPECT_EQ(form.Command1.caption(), "Set");
    EXPECT_EQ(form.Co111.caption(), "Create");
    EXPECT_EQ(form.Combo1.toolTip(), "Bitrate selector");
    EXPECT_EQ(form.Check1.toolTip(), "Mute (Silent copy)");
}

TEST_F(FrmPrefsTest, HasTheTextsOfItsFramesAndLabels) {
    EXPECT_EQ(form.DriveSpace.caption(), "Drives; Drive Space");
    EXPECT_EQ(form.Encoding.caption(), "Encoding/Decoding Preferences");
    EXPECT_EQ(form.Audio.caption(), "Audio Preferences");
    EXPECT_EQ(form.lblSpace.caption(), "Available space in hard drive(s):");
    EXPECT_EQ(form.lblQuality.caption(), "Encoding Quality");
    EXPECT_EQ(form.lblBitsize.caption(), "Encoding Bitsize");
    EXPECT_EQ(form.lblTray.caption(), "Minimize program to Desktop Tray Now");
    EXPECT_EQ(form.lblFormat.caption(), "Audio Format");
    EXPECT_EQ(form.lblMute.caption(), "Turn off/on CD sound while extracting");
    EXPECT_EQ(form.lblDestination.caption(), "Destination Path for converted files (WAV, MP3)");
    EXPECT_EQ(form.lblCreate.caption(), "To create a new Destination Directory:");
    EXPECT_EQ(form.lblCreate1.caption(), "1. Enter a name in the space above");
    EXPECT_EQ(form.lblCreate2.caption(),
              "2. Use the file controls on your right to select a parent drive and directory.");
    EXPECT_EQ(form.lblCreate3.caption(), "3. Click \"Create\"");
}

TEST_F(FrmPrefsTest, StartsWithUntickedBoxesAndLimitsOf100) {
    for (const CheckBox* box :
         {&form.Check6, &form.Check7, &form.Check11, &form.Check10, &form.Check3, &form.Check5,
          &form.Check4, &form.Check1, &form.Check2}) {
        EXPECT_EQ(box->value(), 0) << box->name();
    }
    EXPECT_EQ(form.Text7.text(), "100");
    EXPECT_EQ(form.Text8.text(), "100");
    EXPECT_EQ(form.Text9.text(), "");
    EXPECT_EQ(form.Text10.text(), "");
    EXPECT_EQ(form.Label3.caption(), "Label3");
    EXPECT_EQ(form.Label4.caption(), "Label4");
}

TEST_F(FrmPrefsTest, HidesTheLabelsThatOnlyStoreValuesAndTheControlsForCreatingAFolder) {
    EXPECT_FALSE(form.visible());
    EXPECT_FALSE(form.Label3.visible());
    EXPECT_FALSE(form.Label4.visible());
    EXPECT_FALSE(form.Picture6.visible());
    EXPECT_TRUE(form.Text6.locked());
    EXPECT_FALSE(form.Text7.locked());
}

TEST_F(FrmPrefsTest, EachLoadRestoresTheDesignedState) {
    form.load();
    form.Check6.setValue(1).passOver();
    form.Text7.setText("7");
    form.Picture6.setVisible(true);
    form.Label4.setCaption("1234");
    form.unload();
    form.load();
    EXPECT_EQ(form.Check6.value(), 0);
    EXPECT_EQ(form.Text7.text(), "100");
    EXPECT_FALSE(form.Picture6.visible());
    EXPECT_EQ(form.Label4.caption(), "Label4");
}

} // namespace
} // namespace sonarith
