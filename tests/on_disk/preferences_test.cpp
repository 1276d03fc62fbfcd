// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the preferences with real files and a real settings file: destination folders with unusual
// names, destination folders that cannot be created, and settings that survive a restart of the
// program.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <sys/mount.h>
#include <unistd.h>

#include "on_disk/preferences_over.h"
#include "platform/linux/paths/hanging_fixture.h"
#include "platform/linux/paths/linux_directory_walk.h"
#include "platform/qt/ini_settings_store.h"
#include "support/forked_child.h"
#include "support/small_disk.h"
#include "support/temp_folder.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using test::PreferencesOver;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// Drive D: is a folder of the machine. The settings file is in a folder beside it.
class PreferencesOnDisk : public testing::Test {
  protected:
    /// A run of the program. Only its files remain for the next run: the settings file and the
    /// folders on drive D:.
    class Run {
      public:
        explicit Run(const PreferencesOnDisk& test)
            : store(QString::fromStdString((test.folder / "config").string())),
              mounts_((test.folder / "mounts").string()),
              files_(paths_, test.disk().string()) {}
        void start() { preferences().start(); }
        PreferencesOver& preferences() {
            if (!preferences_) {
                preferences_.emplace(files_, directories_, store);
            }
            return *preferences_;
        }
        [[nodiscard]] std::string stored(const std::string& key) const {
            return store.GetSetting(applicationName, settingsSection, key, "(none)");
        }
        void put(const std::string& key, const std::string& value) {
            store.SaveSetting(applicationName, settingsSection, key, value);
        }
        std::vector<std::string> messages() { return preferences().machine.boxes.texts(); }

        IniSettingsStore store;

      private:
        test::FakeSettingsStore letters_;
        DriveTable drives_{letters_};
        MountInfo mounts_;
        PathMap paths_{drives_, mounts_};
        LinuxFileSystem files_;
        LinuxDirectories directories_{paths_, files_};
        std::optional<PreferencesOver> preferences_;
    };

    PreferencesOnDisk() {
        fs::create_directory(disk());
        std::ofstream(folder / "mounts")
            << "1 0 8:1 / / rw - ext4 /dev/a rw\n"
            << "2 1 8:2 / " << disk().string() << " rw - ext4 /dev/b rw\n";
    }
    ~PreferencesOnDisk() override {
        fs::current_path("/"); // the current folder may be below `folder`, which is deleted next
    }
    [[nodiscard]] fs::path disk() const { return folder / "disk"; }
    [[nodiscard]] std::vector<std::string> namesOnDisk() const {
        std::vector<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(disk())) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }
    /// Starts the program with the stored destination folder `path` and opens the preferences'
    /// window. Returns true if the program refuses `path` as expected: it shows two error messages,
    /// the stored path is unchanged, settings.decodePath is not empty, and the window is visible.
    [[nodiscard]] bool isRefused(const std::string& path) const {
        Run run(*this);
        run.put(decodePathKey, path);
        run.start();
        run.preferences().form.show();
        const std::vector<std::string> expected = {
            "Error While Attempting to Create Directories on Destination Drive.",
            "Error in creating the path " + path +
                "  Create a new Destination path using the selection controls"};
        return run.messages() == expected && run.stored(decodePathKey) == path &&
               run.preferences().form.visible() &&
               run.preferences().process.settings.decodePath != "";
    }

    fakes::TempFolder folder;
};

TEST_F(PreferencesOnDisk, ADestinationWithAnUnusualNameIsCreatedAtOneStartAndFoundAtTheNext) {
    for (const std::string& name :
         {std::string("My  Music"), std::string("\"Quoted\" 'Name'"), std::string("AÑ日🎵"),
          std::string("CAF\xc9 \xff"), std::string(255, 'N'), std::string("percent %20 = # ;")}) {
        SCOPED_TRACE(name);
        for (int start = 1; start <= 2; ++start) {
            Run run(*this);
            if (start == 1) {
                run.put(decodePathKey, "d:\\" + name);
            }
            run.start();
            EXPECT_THAT(run.messages(), IsEmpty());
            EXPECT_THAT(namesOnDisk(), ElementsAre(name));
            EXPECT_EQ(run.stored(decodePathKey), "d:\\" + name);
            // The run uses a path in lower case, which must lead to the same folder.
            const std::string& used = run.preferences().process.settings.decodePath;
            EXPECT_TRUE(run.preferences().platform.files.changeFolder(used).ok());
            EXPECT_THAT(namesOnDisk(), ElementsAre(name));
        }
        fs::remove(disk() / name);
    }
}

TEST_F(PreferencesOnDisk, AMissingDestinationIsCreatedAgainWithItsParents) {
    for (int start = 1; start <= 2; ++start) {
        Run run(*this);
        run.put(decodePathKey, "d:\\Music\\Live\\Wav");
        run.start();
        EXPECT_TRUE(fs::is_directory(disk() / "Music/Live/Wav"));
        EXPECT_THAT(run.messages(), IsEmpty());
        fs::remove_all(disk() / "Music");
    }
}

TEST_F(PreferencesOnDisk, ADestinationThatIsAFileIsRefusedAndTheFileIsKept) {
    std::ofstream(disk() / "taken") << "content";
    EXPECT_TRUE(isRefused("d:\\taken"));
    EXPECT_TRUE(isRefused("d:\\taken\\below"));
    std::ifstream file(disk() / "taken");
    EXPECT_EQ((std::stringstream() << file.rdbuf()).str(), "content");
}

TEST_F(PreferencesOnDisk, ADestinationWithAnInvalidNameOrWithoutADriveIsRefused) {
    EXPECT_TRUE(isRefused("d:\\" + std::string(256, 'n')));
    EXPECT_TRUE(isRefused("x:\\gone\\wav"));
    EXPECT_TRUE(isRefused("d:\\bad?name"));
    EXPECT_TRUE(isRefused("no drive\\at all"));
    EXPECT_THAT(namesOnDisk(), IsEmpty());
}

TEST_F(PreferencesOnDisk, ADestinationInAReadOnlyFolderIsRefused) {
    fs::permissions(disk(), fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read |
                                fs::perms::others_exec);
    fs::create_directory(folder / "config");
    fs::permissions(folder / "config", fs::perms::all);
    fs::permissions(folder.path(), fs::perms::all);
    EXPECT_EQ(test::runUnprivileged([&] { return isRefused("d:\\new") ? 1 : 0; }), 1);
    fs::permissions(disk(), fs::perms::all);
    EXPECT_EQ(test::runUnprivileged([&] { return isRefused("d:\\new") ? 1 : 0; }), 0);
}

TEST_F(PreferencesOnDisk, ADestinationOnAFullOrReadOnlyDiskIsRefused) {
    const std::string disk = this->disk().string();
    const auto step = [&](unsigned long flags, const char* options) {
        if (!test::mountSmallDisk(disk)) {
            return test::mayNotMount;
        }
        if (isRefused("d:\\room")) {
            return 1; // refused although the disk is writable and has space
        }
        if (::mount(nullptr, disk.c_str(), nullptr, MS_REMOUNT | flags, options) != 0) {
            return 2;
        }
        return isRefused("d:\\new") ? 0 : 3;
    };
    // Two inodes, one for the root and one for the folder that step() creates first, leave none for
    // another folder.
    const int full = test::runInChild([&] { return step(0, "nr_inodes=2"); });
    if (full == test::mayNotMount) {
        GTEST_SKIP() << "this user has no permission to mount a disk";
    }
    EXPECT_EQ(full, 0);
    EXPECT_EQ(test::runInChild([&] { return step(MS_RDONLY, ""); }), 0);
}

TEST_F(PreferencesOnDisk, AllSettingsAreKeptAcrossARestart) {
    const std::vector<const char*> switches = {
        hdWarningKey, hdStopDecodingKey, desktopIconKey,           minimizeOnStartKey,
        deleteWavKey, showFullPathKey,   encodeAfterExtractingKey, muteButtonKey};
    const auto boxes = [](FrmPrefs& form) {
        return std::vector<CheckBox*>{&form.Check6, &form.Check7,  &form.Check4,  &form.Check5,
                                      &form.Check3, &form.Check11, &form.Check10, &form.Check1};
    };
    {
        Run run(*this);
        run.start();
        FrmPrefs& form = run.preferences().form;
        form.Text9.setText("d:\\");
        form.Check2.setValue(1).passOver();
        form.Text10.setText("Caf\xe9 \"Live\"");
        form.Co111.click();
        for (CheckBox* box : boxes(form)) {
            box->setValue(1 - box->value()).passOver();
        }
        form.Text7.setText("300");
        form.Text8.setText("-200");
        form.Command1.click();
        form.Combo1.choose(0);
        form.Combo2.choose(13);
        form.cbxFormat.choose(0);
        form.unload();
    }
    Run next(*this);
    next.start();
    FrmPrefs& form = next.preferences().form;
    const std::vector<std::string> expected = {"0", "0", "1", "1", "0", "0", "0", "0"};
    for (std::size_t i = 0; i < switches.size(); ++i) {
        EXPECT_EQ(next.stored(switches[i]), expected[i]) << switches[i];
        EXPECT_EQ(std::to_string(boxes(form)[i]->value()), expected[i]) << switches[i];
    }
    EXPECT_EQ(form.Text7.text(), "300");
    EXPECT_EQ(form.Text8.text(), "-200");
    EXPECT_EQ(form.Combo1.listIndex(), 0);
    EXPECT_EQ(form.Combo2.listIndex(), 13);
    EXPECT_EQ(form.cbxFormat.listIndex(), 0);
    EXPECT_EQ(form.Text9.text(), "d:\\Caf\xe9 \"Live\"");
    EXPECT_THAT(next.messages(), IsEmpty());
}

TEST(PreferencesWithAHangingDestination, ShowTwoErrorMessagesAndLoadThePreferencesWindow) {
    test::HangingWorld world;
    test::FakeSettingsStore store;
    store.put(settingsSection, decodePathKey, "e:\\Music\\Wav");
    world.mounts->hang(world.e);
    PreferencesOver over(world.files, world.directories, store);
    over.start();
    EXPECT_THAT(over.machine.boxes.texts(),
                ElementsAre("Error While Attempting to Create Directories on Destination Drive.",
                            StartsWith("Error in creating the path e:\\Music\\Wav  ")));
    EXPECT_TRUE(over.form.loaded());
    EXPECT_EQ(over.process.settings.decodePath, "e:\\music\\wav");
    EXPECT_EQ(store.held(settingsSection, decodePathKey), "e:\\Music\\Wav");
    // Choosing the hanging drive in the window does not hang, either.
    EXPECT_TRUE(over.form.Drive2.setDrive("e:").ok());
    EXPECT_EQ(over.form.Text9.text(), "e:\\Music\\Wav");
    world.mounts->answer(world.e);
}

} // namespace
} // namespace sonarith
