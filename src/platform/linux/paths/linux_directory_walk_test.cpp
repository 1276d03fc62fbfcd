// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/linux_directory_walk.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>

#include "platform/linux/paths/linux_file_system.h"
#include "platform/linux/paths/machine_names.h"
#include "platform/linux/paths/patient_fixture.h"
#include "platform/text/unicode.h"
#include "support/fake_settings_store.h"
#include "support/temp_folder.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

/// D: is a temporary folder; C: is the machine's root.
class LinuxDirectoryWalkTest : public testing::TestWithParam<test::Reach> {
  protected:
    // The process must not remain in a folder that is about to be deleted.
    ~LinuxDirectoryWalkTest() override { fs::current_path("/"); }

    void write(const std::string& name) {
        fs::create_directories(fs::path(disk_ + "/" + name).parent_path());
        std::ofstream(disk_ + "/" + name) << "sound";
    }
    void makeFolder(const std::string& name) { fs::create_directories(disk_ + "/" + name); }
    void link(const std::string& target, const std::string& name) {
        fs::create_directory_symlink(target, disk_ + "/" + name);
    }

    /// The names of one folder in the order of the listing.
    static std::vector<std::string> names(DirectoryWalk& walk, const std::string& pattern) {
        std::vector<std::string> all;
        FindRecord entry;
        const FindHandle handle = walk.FindFirst(pattern, entry);
        for (bool found = handle != invalidFindHandle; found;
             found = walk.FindNext(handle, entry)) {
            all.push_back(entry.name);
        }
        walk.FindClose(handle);
        return all;
    }
    /// All files below a folder, found as the file search does it: with paths in lower case,
    /// without hidden folders, and with the most recently found folder first.
    std::vector<std::string> filesBelow(const std::string& start) {
        return filesBelow(start, directories_);
    }
    std::vector<std::string> filesBelow(const std::string& start, Directories& directories) {
        const auto walk = directories.startWalk();
        std::vector<std::string> waiting{start + "\\"};
        std::vector<std::string> files;
        while (!waiting.empty() && ++foldersVisited_ < 1000) {
            const std::string folder = waiting.back();
            waiting.pop_back();
            FindRecord entry;
            const FindHandle handle = walk->FindFirst(folder + "*.*", entry);
            while (walk->FindNext(handle, entry)) {
                const std::string path = lowerCase(folder + entry.name);
                if ((entry.attributes & file_attribute::directory) == 0) {
                    files.push_back(path);
                } else if (!entry.name.starts_with('.')) {
                    waiting.push_back(path + "\\");
                }
            }
            walk->FindClose(handle);
        }
        EXPECT_TRUE(waiting.empty()) << "the walk did not end after 1000 folders";
        return files;
    }
    std::uint32_t attributesOf(const std::string& name) {
        const auto walk = directories_.startWalk();
        FindRecord entry;
        const FindHandle handle = walk->FindFirst("d:\\*.*", entry);
        while (walk->FindNext(handle, entry)) {
            if (entry.name == name) {
                return entry.attributes;
            }
        }
        ADD_FAILURE() << name << " is not listed";
        return 0;
    }

    /// Creates the list of mounts for this test and the disk's folder; returns the list's
    /// path.
    std::string mountList() {
        fs::create_directories(disk_);
        std::ofstream list(folder_ / "mounts");
        list << "1 0 8:1 / / rw - ext4 /dev/a rw\n"
             << "2 1 8:2 / " << disk_ << " rw - ext4 /dev/b rw\n";
        return (folder_ / "mounts").string();
    }

    /// Null if the machine is accessed directly. A forked process creates its own object, since it
    /// does not inherit the threads of its parent.
    std::unique_ptr<test::PatientMachine> reach() {
        return GetParam() == test::Reach::patiently
                   ? std::make_unique<test::PatientMachine>(store_, (folder_ / "mounts").string(),
                                                            disk_)
                   : nullptr;
    }

    fakes::TempFolder folder_;
    std::string disk_ = (folder_ / "disk").string();
    test::FakeSettingsStore store_;
    DriveTable drives_{store_};
    MountInfo mounts_{mountList()};
    PathMap paths_{drives_, mounts_};
    LinuxFileSystem directFiles_{paths_, disk_};
    LinuxDirectories direct_{paths_, directFiles_};
    std::unique_ptr<test::PatientMachine> patient_ = reach();
    FileSystem& files_ = patient_ ? static_cast<FileSystem&>(patient_->files) : directFiles_;
    Directories& directories_ =
        patient_ ? static_cast<Directories&>(patient_->directories) : direct_;
    int foldersVisited_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Reached, LinuxDirectoryWalkTest,
                         testing::Values(test::Reach::directly, test::Reach::patiently),
                         [](const auto& reach) { return test::nameOf(reach.param); });

// --- one folder -----------------------------------------------------------------------------

TEST_P(LinuxDirectoryWalkTest, TheTwoDotEntriesAreFirstInEveryFolderAndAtTheRoot) {
    write("a.wav");
    write("Sub/b.wav");
    const auto walk = directories_.startWalk();
    const auto root = names(*walk, "d:\\*.*");
    ASSERT_THAT(root, SizeIs(4));
    EXPECT_EQ(root[0], ".");
    EXPECT_EQ(root[1], "..");
    EXPECT_THAT(root, UnorderedElementsAre(".", "..", "a.wav", "Sub"));
    EXPECT_THAT(names(*walk, "d:\\sub\\*.*"), ElementsAre(".", "..", "b.wav"));
}

TEST_P(LinuxDirectoryWalkTest, AnEmptyFolderHasOnlyTheTwoDotEntries) {
    makeFolder("empty");
    const auto walk = directories_.startWalk();
    EXPECT_THAT(names(*walk, "d:\\empty\\*.*"), ElementsAre(".", ".."));
}

TEST_P(LinuxDirectoryWalkTest, DistinguishesFoldersFilesAndHiddenEntries) {
    write("a.wav");
    write(".b");
    makeFolder("x");
    makeFolder(".y");
    EXPECT_EQ(attributesOf("a.wav"), file_attribute::archive);
    EXPECT_EQ(attributesOf(".b"), file_attribute::archive | file_attribute::hidden);
    EXPECT_EQ(attributesOf("x"), file_attribute::directory);
    EXPECT_EQ(attributesOf(".y"), file_attribute::directory | file_attribute::hidden);
    EXPECT_EQ(attributesOf(".."), file_attribute::directory);
}

TEST_P(LinuxDirectoryWalkTest, ListsNoPipesAndNoDanglingLinks) {
    ASSERT_EQ(::mkfifo((disk_ + "/pipe.wav").c_str(), 0600), 0);
    link("nowhere.wav", "dangling.wav");
    write("real.wav");
    link("real.wav", "link.wav");
    EXPECT_THAT(filesBelow("d:"), UnorderedElementsAre("d:\\real.wav", "d:\\link.wav"));
}

TEST_P(LinuxDirectoryWalkTest, ConvertsNamesWithCharactersThatTheLogicDoesNotAllow) {
    write("a\\b:c*/d:e?.wav");
    const auto files = filesBelow("d:");
    ASSERT_THAT(files, ElementsAre("d:\\" + logicName("a\\b:c*") + "\\" + logicName("d:e?.wav")));
    EXPECT_TRUE(files_.fileExists(files[0]));
}

TEST_P(LinuxDirectoryWalkTest, TheListedPathOfAFileWithAQuestionMarkRemovesOnlyThatFile) {
    write("what?.mp3");
    write("whats.mp3");
    EXPECT_FALSE(files_.removeFile("d:\\what?.mp3").ok());
    EXPECT_TRUE(files_.removeFile("d:\\" + logicName("what?.mp3")).ok());
    EXPECT_THAT(filesBelow("d:"), ElementsAre("d:\\whats.mp3"));
}

TEST_P(LinuxDirectoryWalkTest, EveryListedFileIsFoundByItsPathInLowerCase) {
    for (const char* name : {"With Blank.WAV", "\"quoted\".wav", "[x].WAV", "*.WAV", "What?.wav",
                             "\xc3\x84.wav", "\xff\xfe.wav", "\xc4\xb0.wav", "\n.wav",
                             "Folder Ä/[B]/\xfe.WAV", " lead/ trail /a.wav"}) {
        write(name);
    }
    write(std::string(251, 'N') + ".wav");
    const auto files = filesBelow("d:");
    EXPECT_THAT(files, SizeIs(12));
    for (const std::string& file : files) {
        EXPECT_TRUE(files_.fileExists(file)) << file;
    }
}

TEST_P(LinuxDirectoryWalkTest, FindsAFolderByItsNameInAnyCase) {
    write("Music/Albums/a.wav");
    const auto walk = directories_.startWalk();
    EXPECT_THAT(names(*walk, "D:\\MUSIC\\albums\\*.*"), ElementsAre(".", "..", "a.wav"));
}

TEST_P(LinuxDirectoryWalkTest, OfFoldersThatDifferOnlyInCaseTheSameOneIsWalkedAndOpened) {
    write("MUSIC/upper.wav");
    write("Music/mixed.wav");
    EXPECT_THAT(filesBelow("d:"), ElementsAre("d:\\music\\upper.wav"));
    EXPECT_TRUE(files_.fileExists("d:\\music\\upper.wav"));
    write("music/lower.wav");
    EXPECT_THAT(filesBelow("d:"), ElementsAre("d:\\music\\lower.wav"));
    EXPECT_TRUE(files_.fileExists("d:\\music\\lower.wav"));
}

// --- failures -------------------------------------------------------------------------------

TEST_P(LinuxDirectoryWalkTest, FindFirstOfANonFolderFailsAndLeavesTheRecordUnchanged) {
    write("a.wav");
    const auto walk = directories_.startWalk();
    for (const char* pattern : {"d:\\none\\*.*", "d:\\a.wav\\*.*", "x:\\*.*", "\\*.*", "", "*.*",
                                "d:\\a:b\\*.*", "d:\\a?b\\*.*", "d:\\*.wav", "d:\\", "d:*.*"}) {
        FindRecord entry{file_attribute::system, "old"};
        EXPECT_EQ(walk->FindFirst(pattern, entry), invalidFindHandle) << pattern;
        EXPECT_EQ(entry.name, "old");
        EXPECT_EQ(entry.attributes, file_attribute::system);
    }
}

TEST_P(LinuxDirectoryWalkTest, AHandleThatIsNotOpenHasNoNextEntry) {
    const auto walk = directories_.startWalk();
    FindRecord entry;
    EXPECT_FALSE(walk->FindNext(invalidFindHandle, entry));
    EXPECT_FALSE(walk->FindNext(0, entry));
    const FindHandle handle = walk->FindFirst("d:\\*.*", entry);
    EXPECT_GT(handle, 0);
    walk->FindClose(handle);
    walk->FindClose(handle);
    walk->FindClose(invalidFindHandle);
    EXPECT_FALSE(walk->FindNext(handle, entry));
    EXPECT_EQ(entry.name, ".");
}

TEST_P(LinuxDirectoryWalkTest, TheEndOfAFolderLeavesTheRecordUnchanged) {
    makeFolder("x");
    const auto walk = directories_.startWalk();
    FindRecord entry;
    const FindHandle handle = walk->FindFirst("d:\\x\\*.*", entry);
    EXPECT_TRUE(walk->FindNext(handle, entry));
    EXPECT_FALSE(walk->FindNext(handle, entry));
    EXPECT_FALSE(walk->FindNext(handle, entry));
    EXPECT_EQ(entry.name, "..");
}

TEST_P(LinuxDirectoryWalkTest, AFolderWithoutPermissionIsSkipped) {
    write("open/a.wav");
    write("locked/b.wav");
    fs::permissions(folder_.path(), fs::perms::all);
    fs::permissions(disk_ + "/locked", fs::perms::none);
    EXPECT_EQ(test::runUnprivileged([&] {
                  const auto reached = reach();
                  const auto files = filesBelow(
                      "d:", reached ? static_cast<Directories&>(reached->directories) : direct_);
                  return files == std::vector<std::string>{"d:\\open\\a.wav"} ? 0 : 1;
              }),
              0);
    fs::permissions(disk_ + "/locked", fs::perms::all);
}

TEST_P(LinuxDirectoryWalkTest, ADeletedFolderIsSkippedAndItsListingEnds) {
    write("x/a.wav");
    write("y/b.wav");
    const auto walk = directories_.startWalk();
    EXPECT_THAT(names(*walk, "d:\\*.*"), SizeIs(4));
    FindRecord entry;
    const FindHandle handle = walk->FindFirst("d:\\x\\*.*", entry);
    fs::remove_all(disk_ + "/x");
    fs::remove_all(disk_ + "/y");
    int rest = 0;
    while (walk->FindNext(handle, entry)) {
        ++rest;
    }
    EXPECT_LE(rest, 2); // "..", and entries that were already read
    EXPECT_EQ(walk->FindFirst("d:\\y\\*.*", entry), invalidFindHandle);
}

TEST_P(LinuxDirectoryWalkTest, AFolderReplacedByAFileIsSkipped) {
    makeFolder("x");
    const auto walk = directories_.startWalk();
    EXPECT_THAT(names(*walk, "d:\\*.*"), SizeIs(3));
    fs::remove(disk_ + "/x");
    write("x");
    EXPECT_THAT(names(*walk, "d:\\x\\*.*"), IsEmpty());
}

// --- links ----------------------------------------------------------------------------------

TEST_P(LinuxDirectoryWalkTest, ALinkToAFolderElsewhereIsFollowed) {
    fs::create_directories(folder_ / "elsewhere/sub");
    std::ofstream(folder_ / "elsewhere/sub/a.wav") << "x";
    link((folder_ / "elsewhere").string(), "Link");
    EXPECT_THAT(filesBelow("d:"), ElementsAre("d:\\link\\sub\\a.wav"));
}

TEST_P(LinuxDirectoryWalkTest, TwoLinksToOneFolderAreFollowedOnce) {
    fs::create_directories(folder_ / "elsewhere");
    std::ofstream(folder_ / "elsewhere/a.wav") << "x";
    link((folder_ / "elsewhere").string(), "one");
    link((folder_ / "elsewhere").string(), "two");
    EXPECT_THAT(filesBelow("d:"), SizeIs(1));
}

TEST_P(LinuxDirectoryWalkTest, ALoopOfLinksEnds) {
    write("a.wav");
    write("x/b.wav");
    write("y/c.wav");
    link(".", "self");
    link("..", "x/up");
    link("../y", "x/across");
    link("../x", "y/across");
    link(disk_, "y/whole");
    const auto files = filesBelow("d:");
    EXPECT_THAT(files, SizeIs(3));
    for (const char* name : {"a.wav", "b.wav", "c.wav"}) {
        EXPECT_THAT(files, Contains(testing::EndsWith(name)));
    }
}

TEST_P(LinuxDirectoryWalkTest, AWalkThroughManyFoldersThatLinkToEachOtherEndsSoon) {
    constexpr int count = 20;
    for (int i = 0; i < count; ++i) {
        write(std::to_string(i) + "/a.wav");
        for (int k = 0; k < count; ++k) {
            link("../" + std::to_string(k), std::to_string(i) + "/to" + std::to_string(k));
        }
    }
    EXPECT_THAT(filesBelow("d:"), SizeIs(count));
    EXPECT_LE(foldersVisited_, 1 + count + count * count);
}

TEST_P(LinuxDirectoryWalkTest, AFolderIsListedOnceInAWalkAndAgainInTheNextWalk) {
    write("x/a.wav");
    const auto walk = directories_.startWalk();
    EXPECT_THAT(names(*walk, "d:\\x\\*.*"), SizeIs(3));
    EXPECT_THAT(names(*walk, "d:\\x\\*.*"), IsEmpty());
    const auto next = directories_.startWalk();
    EXPECT_THAT(names(*next, "d:\\x\\*.*"), SizeIs(3));
}

TEST_P(LinuxDirectoryWalkTest, TwoListingsOfOneWalkCanInterleave) {
    write("x/a.wav");
    write("y/b.wav");
    const auto walk = directories_.startWalk();
    FindRecord one;
    FindRecord two;
    const FindHandle first = walk->FindFirst("d:\\x\\*.*", one);
    const FindHandle second = walk->FindFirst("d:\\y\\*.*", two);
    EXPECT_NE(first, second);
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(walk->FindNext(first, one));
        EXPECT_TRUE(walk->FindNext(second, two));
    }
    EXPECT_EQ(one.name, "a.wav");
    EXPECT_EQ(two.name, "b.wav");
}

// --- which folders exist --------------------------------------------------------------------

TEST_P(LinuxDirectoryWalkTest, AFolderIsReturnedInTheGivenSpelling) {
    makeFolder("Music/One");
    EXPECT_EQ(directories_.folder("D:\\music\\ONE").value(), "D:\\music\\ONE");
    EXPECT_EQ(directories_.folder("d:\\Music\\One\\").value(), "d:\\Music\\One");
    EXPECT_EQ(directories_.folder("d:/Music//./One/../One").value(), "d:\\Music\\One");
    EXPECT_EQ(directories_.folder("d:\\").value(), "d:\\");
    EXPECT_EQ(directories_.folder("d:").value(), "d:\\");
    EXPECT_EQ(directories_.folder("d:\\..\\..").value(), "d:\\");
}

TEST_P(LinuxDirectoryWalkTest, ARelativeFolderIsInTheCurrentFolder) {
    makeFolder("Music/One");
    ASSERT_TRUE(files_.changeFolder("d:\\Music").ok());
    EXPECT_EQ(directories_.folder("one").value(), "D:\\Music\\one");
    EXPECT_EQ(directories_.folder("\\music").value(), "D:\\music");
    EXPECT_EQ(directories_.folder(".").value(), "D:\\Music");
}

TEST_P(LinuxDirectoryWalkTest, OnlyFoldersAreFound) {
    write("file");
    link("nowhere", "dangling");
    for (const char* path :
         {"", "d:\\none", "d:\\file", "d:\\file\\x", "d:\\dangling", "x:\\", "d:\\a:b"}) {
        const auto folder = directories_.folder(path);
        ASSERT_FALSE(folder.ok()) << path;
        EXPECT_EQ(folder.error().number, ErrorNumber::pathNotFound) << path;
    }
    EXPECT_FALSE(directories_.folder(std::string("d:\\a\0b", 6)).ok());
}

TEST_P(LinuxDirectoryWalkTest, OnlyMountedDrivesAreReturned) {
    EXPECT_THAT(directories_.drives(), ElementsAre("c:", "d:"));
}

} // namespace
} // namespace sonarith
