// SPDX-License-Identifier: GPL-3.0-or-later
// A lower-case path of the logic may not be enough to find a file: if a folder cannot be listed, or
// if names differ only in case. The tests check that the remembered spelling then selects the file.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "platform/linux/paths/linux_directory_walk.h"
#include "platform/linux/paths/linux_file_system.h"
#include "platform/text/unicode.h"
#include "support/fake_settings_store.h"
#include "support/temp_folder.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

/// H: is a temporary home folder with capitals and a dot in its path; C: is the machine's root.
class RememberedSpellingTest : public testing::Test {
  protected:
    RememberedSpellingTest() { fs::create_directories(home_); }
    ~RememberedSpellingTest() override {
        for (const std::string& name : hidden_) {
            fs::permissions(home_ + "/" + name, fs::perms::owner_all); // needed to delete it
        }
        // The process must not remain in a folder that is about to be deleted.
        fs::current_path("/");
    }

    void write(const std::string& name) {
        fs::create_directories(fs::path(home_ + "/" + name).parent_path());
        std::ofstream(home_ + "/" + name) << name;
    }
    void makeFolder(const std::string& name) { fs::create_directories(home_ + "/" + name); }
    /// Removes the permission to list the folder. All users may still enter the folder. `more` adds
    /// permissions.
    void hideEntriesOf(const std::string& name, fs::perms more = fs::perms::none) {
        using fs::perms;
        fs::permissions(home_ + "/" + name, perms::owner_write | perms::owner_exec |
                                                perms::group_exec | perms::others_exec | more);
        hidden_.push_back(name);
    }
    void allowAll(const std::string& name) { fs::permissions(home_ + "/" + name, fs::perms::all); }

    /// Creates and enters the folders one by one, as the program does for its destination at each
    /// start. `names` may contain capitals: the settings store keeps the destination's capitals.
    bool makeDestination(const std::vector<std::string>& names, const std::string& drive = "H:") {
        bool made = files_.changeDrive(drive).ok() && files_.changeFolder("\\").ok();
        for (const std::string& name : names) {
            const Status status = files_.makeFolder(name);
            made = made && (status.ok() || status.error().number == ErrorNumber::pathFileAccess) &&
                   files_.changeFolder(name).ok();
        }
        return made;
    }
    /// The machine path of `logic`; relative to the home folder if it is below that folder.
    std::string meant(const std::string& logic) {
        const std::string path = files_.locate(logic).value().path;
        return path.starts_with(home_ + "/") ? path.substr(home_.size() + 1) : path;
    }
    std::vector<std::string> filesIn(const std::string& folder) {
        std::vector<std::string> names;
        const auto walk = directories_.startWalk();
        FindRecord entry;
        const FindHandle handle = walk->FindFirst(folder + "\\*.*", entry);
        while (handle != invalidFindHandle && walk->FindNext(handle, entry)) {
            if ((entry.attributes & file_attribute::directory) == 0) {
                names.push_back(entry.name);
            }
        }
        return names;
    }
    std::string mountList() {
        std::ofstream(folder_ / "mounts") << "1 0 8:1 / / rw - ext4 /dev/a rw\n";
        return (folder_ / "mounts").string();
    }
    /// Runs `holds` as a user to whom permissions apply; returns 0 if `holds` returns true.
    int withoutPrivileges(const std::function<bool()>& holds) {
        fs::permissions(folder_.path(), fs::perms::all);
        return test::runUnprivileged([&] { return holds() ? 0 : 1; });
    }

    fakes::TempFolder folder_;
    std::string home_ = (folder_ / "Jane.Doe").string();
    std::vector<std::string> hidden_;
    test::FakeSettingsStore store_;
    DriveTable drives_{store_, home_};
    MountInfo mounts_{mountList()};
    PathMap paths_{drives_, mounts_};
    LinuxFileSystem files_{paths_, home_};
    LinuxDirectories directories_{paths_, files_};
};

// --- folders that may be entered but not listed -----------------------------------------------

TEST_F(RememberedSpellingTest, ADestinationIsFoundInAFolderThatCannotBeListed) {
    makeFolder("Shared/My Music/CDs");
    allowAll("Shared/My Music/CDs");
    hideEntriesOf("Shared/My Music");
    hideEntriesOf("Shared");
    EXPECT_EQ(withoutPrivileges([&] {
                  return meant("h:\\shared\\my music\\cds\\1.wav") == "Shared/my music/cds/1.wav";
              }),
              0)
        << "the folder must not be found yet: no spelling is remembered";
    EXPECT_EQ(withoutPrivileges([&] {
                  return makeDestination({"Shared", "My Music", "CDs"}) &&
                         meant("h:\\shared\\my music\\cds\\1.wav") == "Shared/My Music/CDs/1.wav";
              }),
              0);
}

TEST_F(RememberedSpellingTest, ADestinationThatWasEnteredOnDriveHIsFoundOnDriveC) {
    makeFolder("My Music");
    hideEntriesOf(".");
    const std::string fromRoot = lowerCase(home_ + "/My Music/1.wav");
    std::string logic = "c:" + fromRoot;
    std::replace(logic.begin(), logic.end(), '/', '\\');
    EXPECT_EQ(withoutPrivileges([&] {
                  return makeDestination({"My Music"}) && meant(logic) == "My Music/1.wav";
              }),
              0);
}

TEST_F(RememberedSpellingTest, AFolderCreatedInAFolderThatCannotBeListedIsFoundAgain) {
    makeFolder("Drop");
    hideEntriesOf("Drop", fs::perms::others_write);
    EXPECT_EQ(withoutPrivileges([&] {
                  return files_.changeFolder("h:\\Drop").ok() && files_.makeFolder("New").ok() &&
                         meant("h:\\drop\\new\\1.wav") == "Drop/New/1.wav";
              }),
              0);
}

TEST_F(RememberedSpellingTest, AFilePickedInAFolderThatCannotBeListedIsFoundByItsLowerCasePath) {
    write("Hidden/My Songs/One.MP3");
    hideEntriesOf("Hidden/My Songs");
    hideEntriesOf("Hidden");
    EXPECT_EQ(withoutPrivileges([&] {
                  const std::string logic = paths_.toLogic(home_ + "/Hidden/My Songs/One.MP3");
                  return logic == "H:\\Hidden\\My Songs\\One.MP3" &&
                         files_.fileExists(lowerCase(logic)) &&
                         meant("h:\\hidden\\my songs\\new.wav") == "Hidden/My Songs/new.wav";
              }),
              0);
}

// --- names that differ only in case -----------------------------------------------------------

TEST_F(RememberedSpellingTest, ALowerCasePathMeansTheChosenDestination) {
    makeFolder("My Music");
    makeFolder("my music");
    makeFolder("MY MUSIC");
    // Nothing is remembered, so the exact name is meant.
    EXPECT_EQ(meant("h:\\my music\\1.wav"), "my music/1.wav");
    ASSERT_TRUE(makeDestination({"My Music"}));
    EXPECT_EQ(meant("h:\\my music\\1.wav"), "My Music/1.wav");
    EXPECT_EQ(meant("h:\\my music"), "My Music");
    ASSERT_TRUE(makeDestination({"my music"}));
    EXPECT_EQ(meant("h:\\my music\\1.wav"), "my music/1.wav");
    ASSERT_TRUE(makeDestination({"MY MUSIC"}));
    EXPECT_EQ(meant("h:\\my music\\1.wav"), "MY MUSIC/1.wav");
    EXPECT_FALSE(fs::exists(home_ + "/My Music/1.wav"));
}

TEST_F(RememberedSpellingTest, APathWithCapitalsMeansTheExactNamesIfTheyExist) {
    makeFolder("My Music/Sub");
    makeFolder("my music");
    ASSERT_TRUE(makeDestination({"my music"}));
    EXPECT_EQ(meant("H:\\My Music\\1.wav"), "My Music/1.wav");
    EXPECT_EQ(meant("H:\\My Music\\sub\\1.wav"), "My Music/Sub/1.wav");
    // Neither name matches exactly, so the chosen name is meant.
    EXPECT_EQ(meant("H:\\MY MUSIC\\1.wav"), "my music/1.wav");
}

TEST_F(RememberedSpellingTest,
       ANewNameBelowTheDestinationKeepsItsCaseAndAnExistingNameIsFoundInAnyCase) {
    makeFolder("My Music");
    makeFolder("my music");
    write("My Music/Track.wav");
    ASSERT_TRUE(makeDestination({"My Music"}));
    EXPECT_EQ(meant("h:\\my music\\New Name.WAV"), "My Music/New Name.WAV");
    EXPECT_EQ(meant("h:\\my music\\track.wav"), "My Music/Track.wav");
}

TEST_F(RememberedSpellingTest, ADestinationThatIsRemovedOrRenamedIsIgnored) {
    makeFolder("My Music");
    makeFolder("my music");
    ASSERT_TRUE(makeDestination({"My Music"}));
    fs::rename(home_ + "/My Music", home_ + "/Other");
    EXPECT_EQ(meant("h:\\my music\\1.wav"), "my music/1.wav");
    fs::rename(home_ + "/Other", home_ + "/My Music");
    EXPECT_EQ(meant("h:\\my music\\1.wav"), "My Music/1.wav"); // the destination exists again
    fs::remove(home_ + "/My Music");
    fs::remove(home_ + "/my music");
    EXPECT_FALSE(files_.locate("h:\\my music\\1.wav").value().found);
    EXPECT_EQ(meant("h:\\my music"), "my music");
    write("my music/Song.mp3");
    EXPECT_EQ(paths_.toLogic(home_ + "/my music/Song.mp3"), "H:\\my music\\Song.mp3");
    makeFolder("My Music"); // no effect: toLogic() has made "my music" the chosen spelling
    EXPECT_EQ(meant("h:\\my music\\1.wav"), "my music/1.wav");
}

TEST_F(RememberedSpellingTest, FoldersWhoseParentsAndNamesDifferOnlyInCaseAreDistinguished) {
    makeFolder("My Music/CDs");
    makeFolder("my music/cds");
    ASSERT_TRUE(makeDestination({"My Music", "CDs"}));
    ASSERT_TRUE(makeDestination({"my music", "cds"}));
    EXPECT_EQ(meant("h:\\my music\\cds\\1.wav"), "my music/cds/1.wav");
    ASSERT_TRUE(makeDestination({"My Music"}));
    EXPECT_EQ(meant("h:\\my music\\1.wav"), "My Music/1.wav");
    EXPECT_EQ(meant("H:\\My Music\\cds\\1.wav"), "My Music/CDs/1.wav");
}

TEST_F(RememberedSpellingTest, ALowerCaseNameMeansTheChosenFolderWhateverTheCaseOfItsParent) {
    makeFolder("My Music/CD");
    makeFolder("My Music/cd");
    ASSERT_TRUE(makeDestination({"My Music", "CD"}));
    EXPECT_EQ(meant("H:\\MY MUSIC\\cd\\1.wav"), "My Music/CD/1.wav");
}

TEST_F(RememberedSpellingTest, ASpellingChosenOnOneDiskDoesNotApplyToAnotherDisk) {
    write("Stick/A.wav");
    write("stick/a.wav");
    store_.put("Drives", "D", home_ + "/stick");
    drives_.update({{home_ + "/stick", "vfat"}});
    EXPECT_EQ(lowerCase(paths_.toLogic(home_ + "/Stick/A.wav")), "h:\\stick\\a.wav");
    EXPECT_EQ(meant("d:\\a.wav"), "stick/a.wav");
    EXPECT_EQ(meant("h:\\stick\\a.wav"), "Stick/A.wav");
}

TEST_F(RememberedSpellingTest,
       APickedFileIsFoundEvenIfItsFolderDiffersFromTheDestinationOnlyInCase) {
    write("My Music/song.mp3");
    write("my music/Song.mp3");
    ASSERT_TRUE(makeDestination({"My Music"}));
    const std::string picked = lowerCase(paths_.toLogic(home_ + "/my music/Song.mp3"));
    EXPECT_EQ(meant(picked), "my music/Song.mp3");
    EXPECT_EQ(meant("h:\\my music\\new.wav"), "My Music/new.wav");
    // rename() and removeFile() find the picked file, too. rename() does not move it to the
    // destination.
    ASSERT_TRUE(files_.rename(picked, "h:\\my music\\renamed.mp3").ok());
    EXPECT_TRUE(fs::exists(home_ + "/my music/renamed.mp3"));
    EXPECT_TRUE(fs::exists(home_ + "/My Music/song.mp3"));
    EXPECT_TRUE(files_.removeFile("h:\\my music\\renamed.mp3").ok());
    EXPECT_FALSE(fs::exists(home_ + "/my music/renamed.mp3"));
}

TEST_F(RememberedSpellingTest, AFileCanBeMovedToAFolderThatIsGivenInAnotherCase) {
    write("One/a.wav");
    makeFolder("Two");
    ASSERT_TRUE(files_.rename("h:\\one\\a.wav", "h:\\two\\a.wav").ok());
    EXPECT_TRUE(fs::exists(home_ + "/Two/a.wav"));
    ASSERT_TRUE(files_.rename("h:\\two\\a.wav", "h:\\two\\..\\One\\a.wav").ok());
    EXPECT_TRUE(fs::exists(home_ + "/One/a.wav"));
}

TEST_F(RememberedSpellingTest, AWalkListsTheDestinationAndItsFilesAreFound) {
    write("My Music/Mine.wav");
    write("my music/other.wav");
    EXPECT_THAT(filesIn("h:\\my music"), ElementsAre("other.wav"));
    ASSERT_TRUE(makeDestination({"My Music"}));
    EXPECT_THAT(filesIn("h:\\my music"), ElementsAre("Mine.wav"));
    EXPECT_TRUE(files_.fileExists("h:\\my music\\mine.wav"));
}

TEST_F(RememberedSpellingTest, AWalkThatHasListedTheParentFolderListsTheDestination) {
    write("My Music/Mine.wav");
    write("my music/other.wav");
    ASSERT_TRUE(makeDestination({"My Music"}));
    const auto walk = directories_.startWalk();
    FindRecord entry;
    const FindHandle above = walk->FindFirst("h:\\*.*", entry);
    while (walk->FindNext(above, entry)) {
    }
    const FindHandle handle = walk->FindFirst("h:\\my music\\*.*", entry);
    std::vector<std::string> names;
    while (walk->FindNext(handle, entry)) {
        names.push_back(entry.name);
    }
    EXPECT_THAT(names, ElementsAre("..", "Mine.wav"));
}

TEST_F(RememberedSpellingTest, ASpellingFromAWalkOverridesByteOrderButNotAnExactMatch) {
    write("Music/a.wav");
    EXPECT_THAT(filesIn("h:\\music"), ElementsAre("a.wav"));
    makeFolder("MUSIC"); // would be the first match in byte order
    EXPECT_EQ(meant("h:\\music\\a.wav"), "Music/a.wav");
    makeFolder("music"); // an exact match is preferred to the walk's spelling
    EXPECT_EQ(meant("h:\\music\\a.wav"), "music/a.wav");
}

TEST_F(RememberedSpellingTest, TheCurrentFolderAtTheStartDoesNotCountAsChosen) {
    makeFolder("My Music");
    makeFolder("my music");
    fs::current_path(home_ + "/My Music");
    const LinuxFileSystem later(paths_, home_ + "/My Music");
    EXPECT_EQ(later.currentFolder(), "H:\\My Music");
    EXPECT_EQ(meant("h:\\my music\\1.wav"), "my music/1.wav");
}

} // namespace
} // namespace sonarith
