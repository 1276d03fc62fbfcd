// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/linux_directory_walk.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>

#include "platform/linux/paths/linux_directory_walk_fixture.h"
#include "platform/linux/paths/machine_names.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using test::LinuxDirectoryWalkTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

INSTANTIATE_TEST_SUITE_P(Reached, LinuxDirectoryWalkTest,
                         testing::Values(test::Reach::directly, test::Reach::patiently),
                         [](const auto& reach) { return test::nameOf(reach.param); });

// --- one folder -----------------------------------------------------------------------------

TEST_P(LinuxDirectoryWalkTest, TheEntriesDotAndDotDotAreFirstInEveryFolderAndAtTheRoot) {
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

TEST_P(LinuxDirectoryWalkTest, AnEmptyFolderHasOnlyTheEntriesDotAndDotDot) {
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

TEST_P(LinuxDirectoryWalkTest,
       AFileWhoseNameHasAQuestionMarkIsRemovedByItsListedPathAndOtherFilesRemain) {
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

TEST_P(LinuxDirectoryWalkTest, ListsOnlyOneOfSeveralFoldersWhoseNamesDifferOnlyInCase) {
    write("MUSIC/upper.wav");
    write("Music/mixed.wav");
    EXPECT_THAT(filesBelow("d:"), ElementsAre("d:\\music\\upper.wav"));
    EXPECT_TRUE(files_.fileExists("d:\\music\\upper.wav"));
    write("music/lower.wav");
    EXPECT_THAT(filesBelow("d:"), ElementsAre("d:\\music\\lower.wav"));
    EXPECT_TRUE(files_.fileExists("d:\\music\\lower.wav"));
}

// --- failures -------------------------------------------------------------------------------

TEST_P(LinuxDirectoryWalkTest,
       FindFirstFailsAndLeavesTheRecordUnchangedForAMissingFolderOrAnInvalidPattern) {
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

TEST_P(LinuxDirectoryWalkTest, FindNextAtTheEndOfAFolderFailsAndLeavesTheRecordUnchanged) {
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

TEST_P(LinuxDirectoryWalkTest, AnOpenListingOfADeletedFolderEndsAndAnotherDeletedFolderIsSkipped) {
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

// --- several listings ----------------------------------------------------------------------

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

TEST_P(LinuxDirectoryWalkTest, AFolderIsReturnedAsANormalizedPathThatKeepsTheCaseOfTheGivenPath) {
    makeFolder("Music/One");
    EXPECT_EQ(directories_.folder("D:\\music\\ONE").value(), "D:\\music\\ONE");
    EXPECT_EQ(directories_.folder("d:\\Music\\One\\").value(), "d:\\Music\\One");
    EXPECT_EQ(directories_.folder("d:/Music//./One/../One").value(), "d:\\Music\\One");
    EXPECT_EQ(directories_.folder("d:\\").value(), "d:\\");
    EXPECT_EQ(directories_.folder("d:").value(), "d:\\");
    EXPECT_EQ(directories_.folder("d:\\..\\..").value(), "d:\\");
}

TEST_P(LinuxDirectoryWalkTest, ARelativePathBeginsInTheCurrentFolderOrAtTheRootOfTheCurrentDrive) {
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

TEST_P(LinuxDirectoryWalkTest, ReturnsTheDrivesOfTheRootAndOfTheMountsInLowerCase) {
    EXPECT_THAT(directories_.drives(), ElementsAre("c:", "d:"));
}

} // namespace
} // namespace sonarith
