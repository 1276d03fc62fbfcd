// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the destination folder of the preferences: how it is chosen, created and stored, and what
// happens if one of these steps fails.
#include <string>
#include <vector>

#include "support/preferences_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Operation = test::FakeFileSystem::Operation;

struct PreferencesDestination : test::PreferencesWorld {
    PreferencesDestination() {
        for (const char* folder : {"c:\\", "c:\\sonarith", "d:\\", "d:\\music"}) {
            directories.addFolder(folder);
        }
        files.addDrive('d');
    }
    void TestBody() override {}

    /// Runs the steps of a user who creates a new folder.
    void create(const std::string& name) {
        form.Check2.setValue(1).passOver();
        form.Text10.setText(name);
        form.Co111.click();
    }
    void expectTwoMessagesFor(const std::string& path) {
        EXPECT_THAT(
            boxes.shown,
            ElementsAre(
                test::ShownBox{"Error While Attempting to Create Directories on Destination Drive.",
                               BoxIcon::exclamation, BoxButtons::ok, "SETUP"},
                test::ShownBox{"Error in creating the path " + path +
                               "  Create a new Destination path using the selection controls"}));
    }
};

// --- at each start -------------------------------------------------------------------------------

TEST_F(PreferencesDestination, IsTheSubfolderWavFilesOfTheProgramFolderAtTheFirstStart) {
    files.setProgramFolder("C:\\Sonarith");
    // In start(), LoadSettings() sets decodePath to the program folder itself; loading the form
    // then sets it to the subfolder.
    start();
    EXPECT_TRUE(files.folderExists("c:\\sonarith\\wavfiles"));
    EXPECT_EQ(held("DecodePath"), "C:\\Sonarith\\WAVFiles");
    EXPECT_EQ(settings.decodePath, "c:\\sonarith\\wavfiles");
    EXPECT_EQ(form.Text9.text(), "C:\\Sonarith\\WAVFiles");
    EXPECT_EQ(form.Text10.text(), "WAVFiles");
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(PreferencesDestination, EachStartTriesToCreateTheFoldersOfThePathEvenIfTheyExist) {
    store.put("Settings", "DecodePath", "c:\\MÜSIC\\Wav");
    files.addFolder("c:\\MÜSIC\\Wav");
    start();
    EXPECT_THAT(files.log,
                ElementsAre("changeDrive c:\\MÜSIC\\Wav\\", "changeFolder \\", "makeFolder MÜSIC",
                            "changeFolder MÜSIC", "makeFolder Wav", "changeFolder Wav"));
    EXPECT_EQ(held("DecodePath"), "c:\\MÜSIC\\Wav"); // upper and lower case are unchanged
    EXPECT_EQ(settings.decodePath, "c:\\müsic\\wav");
    EXPECT_EQ(form.Text10.text(), "Wav");
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(PreferencesDestination,
       IsTheSubfolderWavFilesOfTheProgramFolderIfTheStoredTextHasNoParentFolder) {
    for (const char* stored : {"", "music", "\\music", "\\"}) {
        SCOPED_TRACE(stored);
        PreferencesDestination run;
        run.store.put("Settings", "DecodePath", stored);
        run.start();
        EXPECT_EQ(run.held("DecodePath"), "c:\\sonarith\\WAVFiles");
    }
}

TEST_F(PreferencesDestination, IsTheSubfolderNamedWavFilesIfTheStoredFolderIsARootFolder) {
    store.put("Settings", "DecodePath", "d:\\");
    start();
    EXPECT_EQ(held("DecodePath"), "d:\\WAVFiles");
    EXPECT_TRUE(files.folderExists("d:\\wavfiles"));
}

TEST_F(PreferencesDestination, MayHaveAnyName) {
    struct Row {
        std::string name;
        std::string inLowerCase;
    };
    for (const Row& row :
         {Row{"My  Music", "my  music"}, Row{"\"Quoted\" 'Name'", "\"quoted\" 'name'"},
          Row{"AÑ日🎵", "añ日🎵"}, Row{"CAF\xc9 \xff", "caf\xc9 \xff"},
          Row{std::string(255, 'N'), std::string(255, 'n')}, Row{"A.b.C", "a.b.c"}}) {
        SCOPED_TRACE(row.name);
        PreferencesDestination run;
        run.store.put("Settings", "DecodePath", "d:\\" + row.name);
        run.start();
        EXPECT_TRUE(run.files.folderExists("d:\\" + row.name));
        EXPECT_EQ(run.held("DecodePath"), "d:\\" + row.name);
        EXPECT_EQ(run.settings.decodePath, "d:\\" + row.inLowerCase);
        EXPECT_EQ(run.form.Text9.text(), "d:\\" + row.name);
        EXPECT_EQ(run.form.Text10.text(), row.name);
        EXPECT_THAT(run.boxes.shown, IsEmpty());
    }
}

TEST_F(PreferencesDestination, ShowsTwoMessagesAndKeepsTheStoredPathIfItsCreationFails) {
    store.put("Settings", "DecodePath", "X:\\Gone\\Wav");
    start();
    expectTwoMessagesFor("X:\\Gone\\Wav");
    EXPECT_EQ(held("DecodePath"), "X:\\Gone\\Wav");
    EXPECT_EQ(settings.decodePath, "x:\\gone\\wav");
    EXPECT_EQ(form.Text9.text(), "X:\\Gone\\Wav");
    EXPECT_EQ(loop.yieldCount(), 0);
    EXPECT_TRUE(form.loaded());
}

TEST_F(PreferencesDestination, IsShownAndAppliedBeforeTheMessagesAboutItsFailedCreationAppear) {
    start();
    files.failWith(Operation::makeFolder, "d:\\New", ErrorNumber::permissionDenied);
    form.Text9.setText("d:\\");
    int boxesUp = 0;
    boxes.whileUp = [&](const test::ShownBox&) {
        ++boxesUp;
        EXPECT_EQ(form.Text9.text(), "d:\\New");
        EXPECT_EQ(settings.decodePath, "d:\\new");
        // The controls for a new folder are hidden only after both messages.
        EXPECT_TRUE(form.Picture6.visible());
        EXPECT_EQ(form.Check2.value(), 1);
    };
    create("New");
    EXPECT_EQ(boxesUp, 2);
}

TEST_F(PreferencesDestination, ShowsTwoMessagesIfItCannotBeCreatedOrAFileHasItsPath) {
    struct Row {
        const char* reason;
        ErrorNumber number;
    };
    for (const Row& row :
         {Row{"read-only", ErrorNumber::permissionDenied}, Row{"full", ErrorNumber::diskFull},
          Row{"too long a name", ErrorNumber::badFileName}}) {
        SCOPED_TRACE(row.reason);
        PreferencesDestination run;
        run.files.failWith(Operation::makeFolder, "d:\\music", row.number);
        run.store.put("Settings", "DecodePath", "d:\\music");
        run.start();
        run.expectTwoMessagesFor("d:\\music");
    }
    files.addFile("d:\\music\\wav");
    store.put("Settings", "DecodePath", "d:\\music\\wav");
    start();
    expectTwoMessagesFor("d:\\music\\wav");
}

// --- a choice or a new folder --------------------------------------------------------------------

TEST_F(PreferencesDestination, IsChosenInTheListsOfDrivesAndFolders) {
    start();
    store.writes.clear();
    form.Drive2.setDrive("d:").passOver();
    EXPECT_EQ(form.Dir2.path(), "d:\\");
    EXPECT_EQ(form.Text9.text(), "d:\\");
    EXPECT_EQ(held("DecodePath"), "d:\\");
    form.Dir2.setPath("d:\\music").passOver();
    EXPECT_EQ(form.Text9.text(), "d:\\music");
    // Each choice is saved at once, but actions use the previous folder until Co111_Click() runs.
    EXPECT_THAT(written(), ElementsAre("DecodePath=d:\\", "DecodePath=d:\\music"));
    EXPECT_EQ(settings.decodePath, "c:\\sonarith\\wavfiles");
}

TEST_F(PreferencesDestination, IsNotChangedIfTheDriveWasRemoved) {
    start();
    store.writes.clear();
    directories.removeFolder("d:\\");
    directories.removeFolder("d:\\music");
    EXPECT_FALSE(form.Drive2.setDrive("d:").ok());
    EXPECT_FALSE(form.Dir2.setPath("d:\\music").ok());
    EXPECT_EQ(form.Text9.text(), "c:\\sonarith\\WAVFiles");
    EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(PreferencesDestination, IsNotChangedIfTheDriveCannotBeRead) {
    // The drive is still in the list of drives, but its root folder can no longer be read.
    start();
    store.writes.clear();
    directories.removeFolder("d:\\");
    EXPECT_TRUE(form.Drive2.setDrive("d:").ok());
    EXPECT_EQ(form.Dir2.path(), "c:\\sonarith");
    EXPECT_EQ(form.Text9.text(), "c:\\sonarith\\WAVFiles");
    EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(PreferencesDestination, ShowsTheControlsForANewFolderWhileCheck2IsTicked) {
    start();
    EXPECT_FALSE(form.Picture6.visible());
    form.Check2.setValue(1).passOver();
    EXPECT_TRUE(form.Picture6.visible());
    form.Check2.setValue(0).passOver();
    EXPECT_FALSE(form.Picture6.visible());
}

TEST_F(PreferencesDestination, IsCreatedBelowTheChosenFolder) {
    start();
    form.Dir2.setPath("d:\\music").passOver();
    store.writes.clear();
    create("Köln Live");
    EXPECT_TRUE(files.folderExists("d:\\music\\köln live"));
    EXPECT_EQ(files.pathAsMade("d:\\music\\köln live"), "d:\\music\\Köln Live");
    EXPECT_EQ(form.Text9.text(), "d:\\music\\Köln Live");
    EXPECT_EQ(form.Text10.text(), "Köln Live");
    EXPECT_EQ(settings.decodePath, "d:\\music\\köln live");
    EXPECT_THAT(written(), ElementsAre("DecodePath=d:\\music\\Köln Live"));
    EXPECT_FALSE(form.Picture6.visible());
    EXPECT_EQ(form.Check2.value(), 0);
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(PreferencesDestination,
       RemovesOneTrailingBackslashFromTheParentAndThenAppendsABackslashAndTheNewName) {
    start();
    form.Text9.setText("d:\\");
    create("new");
    EXPECT_EQ(held("DecodePath"), "d:\\new");
    form.Text9.setText("d:\\music\\\\");
    create("new");
    // One of the two backslashes is removed, and one is added before the new name.
    EXPECT_EQ(form.Text9.text(), "d:\\music\\\\new");
}

TEST_F(PreferencesDestination, IsNotChangedIfTheUserEntersNoNameForANewFolder) {
    start();
    store.writes.clear();
    files.log.clear();
    create("");
    EXPECT_THAT(boxes.shown,
                ElementsAre(test::ShownBox{"Enter a name for the Destination directory"}));
    EXPECT_TRUE(form.Picture6.visible());
    EXPECT_EQ(form.Check2.value(), 1);
    EXPECT_EQ(form.Text9.text(), "c:\\sonarith\\WAVFiles");
    EXPECT_EQ(settings.decodePath, "c:\\sonarith\\wavfiles");
    EXPECT_THAT(store.writes, IsEmpty());
    EXPECT_THAT(files.log, IsEmpty());
}

TEST_F(PreferencesDestination, IsAppliedButNotStoredIfItsCreationFails) {
    start();
    files.failWith(Operation::makeFolder, "d:\\New", ErrorNumber::permissionDenied);
    form.Text9.setText("d:\\");
    store.writes.clear();
    create("New");
    expectTwoMessagesFor("d:\\New");
    EXPECT_EQ(settings.decodePath, "d:\\new");
    EXPECT_EQ(form.Text9.text(), "d:\\New");
    EXPECT_THAT(store.writes, IsEmpty());
    EXPECT_FALSE(form.Picture6.visible()); // hidden even after a failure
    EXPECT_EQ(form.Check2.value(), 0);
}

TEST_F(PreferencesDestination, AClickOnCo111WithoutATickInCheck2ShowsTheStoredFolderAgain) {
    start();
    form.Text9.setText("d:\\music\\typed");
    form.Text10.setText("typed");
    form.Co111.click();
    EXPECT_EQ(form.Text9.text(), "c:\\sonarith\\WAVFiles");
    EXPECT_EQ(form.Text10.text(), "WAVFiles");
}

TEST_F(PreferencesDestination,
       ACreationSavesThePathBeforeItsYieldAndHidesTheControlsAfterTheYield) {
    start();
    form.Text9.setText("d:\\");
    loop.atYield(1, [&] {
        EXPECT_EQ(held("DecodePath"), "d:\\new");
        EXPECT_TRUE(form.Picture6.visible());
    });
    const int before = loop.yieldCount();
    create("new");
    EXPECT_EQ(loop.yieldCount(), before + 1);
    EXPECT_FALSE(form.Picture6.visible());
}

} // namespace
} // namespace sonarith
