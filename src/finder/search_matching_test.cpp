// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the rules by which a search finds or skips a file. The type of a search is the wanted
// extension (zFileExt); the name of a search is the wanted file name without extension (Text1).
#include <gmock/gmock.h>

#include "support/finder_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SearchMatchingTest : public testing::Test, protected test::FinderWorld {
  protected:
    std::vector<std::string> found() { return lines(finder.lstfiles); }
};

// --- what matches ---------------------------------------------------------------------------

TEST_F(SearchMatchingTest, FindsFilesOfTheTypeInAnyCaseAndListsThemInLowerCase) {
    disk.addFile("c:\\Music\\a.wav");
    disk.addFile("c:\\Music\\B.WAV");
    disk.addFile("c:\\Music\\c.mp3");
    disk.addFile("c:\\Music\\d.wave");
    search("c:\\Music", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\music\\a.wav", "c:\\music\\b.wav"));
}

TEST_F(SearchMatchingTest, TakesTheExtensionFromTheFirstDotOfTheWholePath) {
    disk.addFile("c:\\music\\my.album\\a.wav");
    disk.addFile("c:\\music\\a.b.wav");
    disk.addFile("c:\\music\\c.wav");
    search("c:\\music", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\music\\c.wav"));
    EXPECT_EQ(finder.zFileExt2.text(), ".album\\a.wav");
}

TEST_F(SearchMatchingTest, FindsNothingBelowAFolderWithADotInItsName) {
    disk.addFile("c:\\my.music\\a.wav");
    disk.addFile("c:\\my.music\\x\\b.wav");
    search("c:\\my.music", ".wav");
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_THAT(disk.listed, SizeIs(2));
}

TEST_F(SearchMatchingTest, AddsADotToATypeWithoutALeadingDot) {
    disk.addFile("c:\\music\\a.mp3");
    disk.addFile("c:\\music\\b.wav");
    search("c:\\music", "mp3");
    EXPECT_THAT(found(), ElementsAre("c:\\music\\a.mp3"));
    EXPECT_EQ(finder.zFileExt.text(), ".mp3");
}

TEST_F(SearchMatchingTest, SupportsNoWildcards) {
    disk.addFile("c:\\music\\a.wav");
    search("c:\\music", "*.*");
    EXPECT_EQ(finder.zFileExt.text(), ".*.*");
    EXPECT_THAT(found(), IsEmpty());
    finder.Text1.setText("*");
    search("c:\\music", ".wav");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(SearchMatchingTest, TakesWildcardsAndOtherCharactersOfATypeLiterally) {
    disk.addFile("c:\\music\\a.wav");
    for (const std::string& type :
         {std::string("*"), std::string("?"), std::string("a*b["), std::string("[!"),
          std::string("\xff\xfe"), std::string(10'000, 'w')}) {
        search("c:\\music", type);
        EXPECT_EQ(finder.zFileExt.text(), "." + type);
        EXPECT_THAT(found(), IsEmpty());
        EXPECT_EQ(finder.Label1.caption(), "Directories: 0   Files:  0");
    }
    disk.addFile("c:\\music\\a.a*b[");
    search("c:\\music", "A*B[");
    EXPECT_THAT(found(), ElementsAre("c:\\music\\a.a*b["));
}

TEST_F(SearchMatchingTest, AnEmptyTypeFindsANameWhoseOnlyDotIsAtItsEnd) {
    disk.addFile("c:\\music\\a.wav");
    disk.addFile("c:\\music\\b.");
    search("c:\\music", "");
    EXPECT_EQ(finder.zFileExt.text(), ".");
    EXPECT_THAT(found(), ElementsAre("c:\\music\\b."));
}

TEST_F(SearchMatchingTest, AcceptsEveryFileWhileTheTypeIsStarDotStar) {
    // The type can be "*.*" only if it is set during the search: the start of a search changes
    // "*.*" to ".*.*".
    disk.addFile("c:\\music\\a.txt");
    disk.addFile("c:\\music\\b.c.d");
    loop.atYield(1, [this] { finder.zFileExt.setText("*.*"); });
    search("c:\\music", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\music\\a.txt", "c:\\music\\b.c.d"));
}

TEST_F(SearchMatchingTest, TheNameOfASearchMatchesOnlyAWholeFileNameInAnyCase) {
    disk.addFile("c:\\music\\track10.wav");
    disk.addFile("c:\\music\\Track1.WAV");
    disk.addFile("c:\\music\\track1.mp3");
    disk.addFile("c:\\music\\atrack1.wav");
    finder.Text1.setText("TRACK1");
    search("c:\\music", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\music\\track1.wav"));
}

TEST_F(SearchMatchingTest, TheNameOfAFoundFileEndsBeforeItsFirstDot) {
    disk.addFile("c:\\music\\a.wav.wav");
    search("c:\\music", ".wav");
    EXPECT_EQ(finder.Text2.text(), "a");
    disk.addFile("c:\\other\\.wav");
    search("c:\\other", ".wav");
    EXPECT_EQ(finder.Text2.text(), "");
    EXPECT_THAT(found(), ElementsAre("c:\\other\\.wav"));
}

TEST_F(SearchMatchingTest, IncludesHiddenAndSystemEntries) {
    disk.addFile("c:\\music\\a.wav", file_attribute::hidden);
    disk.addFile("c:\\music\\b.wav", file_attribute::system);
    disk.addFolder("c:\\music\\x", file_attribute::hidden | file_attribute::system);
    disk.addFile("c:\\music\\x\\c.wav");
    search("c:\\music", ".wav");
    EXPECT_THAT(found(),
                ElementsAre("c:\\music\\a.wav", "c:\\music\\b.wav", "c:\\music\\x\\c.wav"));
}

TEST_F(SearchMatchingTest, SkipsFoldersWhoseNamesStartWithADot) {
    disk.addFolder("c:\\music\\.hidden");
    disk.addFolder("c:\\music\\..odd");
    search("c:\\music", ".wav");
    EXPECT_THAT(disk.listed, ElementsAre("c:\\music\\*.*"));
    EXPECT_EQ(finder.Label1.caption(), "Directories: 0   Files:  0");
}

TEST_F(SearchMatchingTest, AcceptsNamesOfAnyBytes) {
    disk.addFile("c:\\music\\\xff\xfe Ä [x]\".WAV");
    search("c:\\music", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\music\\\xff\xfe ä [x]\".wav"));
}

// --- names without a dot --------------------------------------------------------------------

TEST_F(SearchMatchingTest, AFileWithoutADotInheritsThePreviousFilesExtension) {
    disk.addFile("c:\\music\\before");
    disk.addFile("c:\\music\\a.wav");
    disk.addFile("c:\\music\\after");
    disk.addFile("c:\\music\\b.mp3");
    disk.addFile("c:\\music\\last");
    search("c:\\music", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\music\\a.wav", "c:\\music\\after"));
}

TEST_F(SearchMatchingTest, TheInheritedExtensionIsResetForEachFolder) {
    disk.addFile("c:\\music\\a.wav");
    disk.addFile("c:\\music\\x\\first");
    search("c:\\music", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\music\\a.wav"));
}

TEST_F(SearchMatchingTest, AFileWithoutADotIsMatchedByItsOwnNameAndTheInheritedExtension) {
    disk.addFile("c:\\music\\track1.wav");
    disk.addFile("c:\\music\\other");
    disk.addFile("c:\\music\\Track1");
    finder.Text1.setText("track1");
    search("c:\\music", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\music\\track1.wav", "c:\\music\\track1"));
}

} // namespace
} // namespace sonarith
