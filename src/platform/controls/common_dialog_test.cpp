// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/common_dialog.h"

#include <gtest/gtest.h>

#include "support/fake_file_dialog.h"

namespace sonarith {
namespace {

class CommonDialogTest : public testing::Test {
  protected:
    test::FakeFileDialog dialogs;
    Form form{"form"};
    CommonDialog dialog{form};
};

TEST_F(CommonDialogTest, KeepsTheChosenFileIfALaterUseIsCancelled) {
    dialogs.choices = {"c:\\a.mp3", std::nullopt, "c:\\b.mp3"};
    EXPECT_TRUE(dialog.ShowOpen(dialogs, {}).ok());
    EXPECT_EQ(dialog.FileName, "c:\\a.mp3");
    const Status cancelled = dialog.ShowSave(dialogs, {});
    EXPECT_EQ(cancelled.error().number, ErrorNumber::dialogCancelled);
    EXPECT_EQ(static_cast<int>(cancelled.error().number), 32755);
    EXPECT_EQ(dialog.FileName, "c:\\a.mp3");
    EXPECT_TRUE(dialog.ShowSave(dialogs, {}).ok());
    EXPECT_EQ(dialog.FileName, "c:\\b.mp3");
}

TEST_F(CommonDialogTest, AddsItsFolderAndItsFileNameToTheRequest) {
    dialog.InitDir = "c:\\music";
    dialog.FileName = "name";
    dialog.ShowOpen(dialogs, {.title = "Open", .filter = "A|*.a"}).passOver();
    dialog.ShowSave(dialogs, {.title = "Save", .defaultExtension = "a"}).passOver();
    ASSERT_EQ(dialogs.opened.size(), 1U);
    EXPECT_EQ(dialogs.opened[0].title, "Open");
    EXPECT_EQ(dialogs.opened[0].filter, "A|*.a");
    EXPECT_EQ(dialogs.opened[0].initialFolder, "c:\\music");
    EXPECT_EQ(dialogs.opened[0].fileName, "name");
    ASSERT_EQ(dialogs.savings.size(), 1U);
    EXPECT_EQ(dialogs.savings[0].title, "Save");
    EXPECT_EQ(dialogs.savings[0].defaultExtension, "a");
    EXPECT_EQ(dialogs.savings[0].initialFolder, "c:\\music");
    EXPECT_EQ(dialogs.savings[0].fileName, "name");
}

TEST_F(CommonDialogTest, IsResetWhenItsFormLoads) {
    form.load();
    dialog.InitDir = "c:\\music";
    dialog.FileName = "name";
    form.unload();
    form.load();
    EXPECT_EQ(dialog.InitDir, "");
    EXPECT_EQ(dialog.FileName, "");
}

} // namespace
} // namespace sonarith
