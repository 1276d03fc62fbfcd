// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/destination_folder.h"

#include <gmock/gmock.h>

#include "support/fake_file_system.h"
#include "support/fake_message_boxes.h"
#include "support/fake_mouse_pointer.h"
#include "support/fake_settings_store.h"
#include "support/virtual_event_loop.h"

namespace sonarith {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(DestinationOf, IsWavFilesInTheProgramsFolderWithoutAStoredFolder) {
    const DestinationFolder first{"C:\\Sonarith", "WAVFiles"};
    EXPECT_EQ(destinationOf("", "C:\\Sonarith"), first);
    EXPECT_EQ(destinationOf("music", "C:\\Sonarith"), first);
    EXPECT_EQ(destinationOf("\\music", "C:\\Sonarith"), first);
    EXPECT_EQ(destinationOf("\\", "C:\\Sonarith"), first);
}

TEST(DestinationOf, SplitsTheStoredFolderAtItsLastBackslash) {
    EXPECT_EQ(destinationOf("c:\\music\\wav", "C:\\P"), (DestinationFolder{"c:\\music", "wav"}));
    EXPECT_EQ(destinationOf("c:\\wav", "C:\\P"), (DestinationFolder{"c:", "wav"}));
}

TEST(DestinationOf, TakesWavFilesForAnEmptyName) {
    EXPECT_EQ(destinationOf("c:\\music\\", "C:\\P"), (DestinationFolder{"c:\\music", "WAVFiles"}));
}

class PrepareDestinationFolderTest : public ::testing::Test {
  protected:
    DestinationFolder prepare() {
        return prepareDestinationFolder(store_, disk_, boxes_, pointer_, loop_, settings_);
    }

    test::FakeSettingsStore store_;
    test::FakeFileSystem disk_;
    test::FakeMessageBoxes boxes_;
    test::FakeMousePointer pointer_;
    test::VirtualEventLoop loop_;
    AppSettings settings_;
};

TEST_F(PrepareDestinationFolderTest, MakesWavFilesBesideTheProgramAtTheFirstStart) {
    disk_.setProgramFolder("C:\\Sonarith");
    settings_.decodePath = "C:\\Sonarith"; // the loader's default
    EXPECT_EQ(prepare().path(), "C:\\Sonarith\\WAVFiles");
    EXPECT_TRUE(disk_.folderExists("c:\\sonarith\\wavfiles"));
    EXPECT_EQ(store_.held("Settings", "DecodePath"), "C:\\Sonarith\\WAVFiles");
    EXPECT_THAT(boxes_.shown, IsEmpty());
}

TEST_F(PrepareDestinationFolderTest, KeepsTheCaseInTheStoreAndLowersItInTheRecord) {
    store_.put("Settings", "DecodePath", "c:\\MÜSIC\\Wav");
    prepare();
    EXPECT_EQ(settings_.decodePath, "c:\\müsic\\wav");
    EXPECT_EQ(disk_.pathAsMade("c:\\müsic\\wav"), "c:\\MÜSIC\\Wav");
    EXPECT_THAT(store_.writes,
                ElementsAre(test::StoreWrite{"Settings", "DecodePath", "c:\\MÜSIC\\Wav"}));
}

TEST_F(PrepareDestinationFolderTest, YieldsOnceAfterSaving) {
    loop_.atYield(1, [&] { EXPECT_TRUE(store_.held("Settings", "DecodePath").has_value()); });
    prepare();
    EXPECT_EQ(loop_.yieldCount(), 1);
}

TEST_F(PrepareDestinationFolderTest, MakesTheFolderAgainAtEachStart) {
    prepare();
    prepare();
    EXPECT_THAT(boxes_.shown, IsEmpty());
    EXPECT_EQ(store_.held("Settings", "DecodePath"), "c:\\sonarith\\WAVFiles");
}

TEST_F(PrepareDestinationFolderTest, ShowsTwoBoxesOnAFailureAndKeepsTheStoredFolder) {
    store_.put("Settings", "DecodePath", "X:\\Gone\\Wav");
    prepare();
    EXPECT_THAT(
        boxes_.shown,
        ElementsAre(
            test::ShownBox{"Error While Attempting to Create Directories on Destination Drive.",
                           BoxIcon::exclamation, BoxButtons::ok, "SETUP"},
            test::ShownBox{"Error in creating the path X:\\Gone\\Wav  Create a new "
                           "Destination path using the selection controls"}));
    EXPECT_THAT(store_.writes, IsEmpty());
    EXPECT_EQ(settings_.decodePath, "x:\\gone\\wav");
    EXPECT_EQ(loop_.yieldCount(), 0);
}

} // namespace
} // namespace sonarith
