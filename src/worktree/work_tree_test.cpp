// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/work_tree.h"

#include <utility>

#include "support/work_tree_world.h"
#include "worktree/node_level.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct ShowfilesTest : test::WorkTreeWorld {
    void files(const std::vector<std::string>& wavFiles, const std::vector<std::string>& mp3Files) {
        finder.files[destination]["wav"] = wavFiles;
        finder.files[destination]["mp3"] = mp3Files;
    }
    /// Key, text, pictures, parent and level of the node at an index, to compare whole rows.
    std::string row(int index) const {
        const NodeRef at = view.node(index);
        const NodeRef parent = at->parent();
        return at->key() + "|" + at->text() + "|" + std::to_string(at->image()) + "," +
               std::to_string(at->selectedImage()) + "|" + (parent ? parent->text() : "none") +
               "|" + std::to_string(NodeLevel(at));
    }
    std::vector<std::string> rows() const {
        std::vector<std::string> all;
        for (int i = 1; i <= view.count(); ++i) {
            all.push_back(row(i));
        }
        return all;
    }
};

TEST_F(ShowfilesTest, TheFirstBuildCreatesTheExpectedNodesInOrder) {
    disc({"Track  1 - 00:03:05"});
    files({"c:\\music\\a.wav"}, {"c:\\music\\b.mp3"});
    tree.showfiles();
    EXPECT_THAT(rows(),
                ElementsAre("f Collection 1|CD Tracks|1,4|none|1",
                            "g Selected Tracks|Selected Tracks|2,5|CD Tracks|2",
                            "g Available Tracks|Available Tracks|2,5|CD Tracks|2",
                            "p Track  1 - 00:03:05|Track  1 - 00:03:05|3,6|Available Tracks|3",
                            "f Collection 2|WAV Files Folder|1,4|none|1",
                            "g WAV Files|WAV Files|2,5|WAV Files Folder|2",
                            "p c:\\music\\a.wav|c:\\music\\a.wav|3,6|WAV Files|3",
                            "f Collection 3|MP3 Files Folder|1,4|none|1",
                            "g Selected MP3 Files|Selected MP3 Files|2,5|MP3 Files Folder|2",
                            // The key contains "Available", the text does not.
                            "g Available MP3 Files|MP3 Files|2,5|MP3 Files Folder|2",
                            "p c:\\music\\b.mp3|c:\\music\\b.mp3|3,6|MP3 Files|3"));
}

TEST_F(ShowfilesTest, WithoutFilesAndWithoutADiscTheThreeCollectionsHaveEmptyGroups) {
    tree.showfiles();
    EXPECT_THAT(outline(), ElementsAre("CD Tracks", "  Selected Tracks", "  Available Tracks",
                                       "WAV Files Folder", "  WAV Files", "MP3 Files Folder",
                                       "  Selected MP3 Files", "  MP3 Files"));
}

TEST_F(ShowfilesTest, ShowsTheWindowBeforeAndAfterTheScan) {
    bool seenDuringScans = true;
    int searches = 0;
    finder.whileSearching = [&] {
        seenDuringScans = seenDuringScans && form.visible();
        if (++searches == 2) {
            form.hide();
        }
    };
    tree.showfiles();
    EXPECT_EQ(searches, 2);
    EXPECT_TRUE(seenDuringScans);
    EXPECT_TRUE(form.visible());
}

TEST_F(ShowfilesTest, ScansTheDestinationForWavThenForMp3) {
    tree.showfiles();
    EXPECT_THAT(finder.log, ElementsAre("folder c:\\music", "search wav", "search mp3"));
}

TEST_F(ShowfilesTest, FileNodesAndFileListsAreInReverseScanOrder) {
    files({"c:\\music\\1.wav", "c:\\music\\2.wav", "c:\\music\\3.wav"},
          {"c:\\music\\1.mp3", "c:\\music\\2.mp3"});
    tree.showfiles();
    EXPECT_THAT(childrenOf("WAV Files"),
                ElementsAre("c:\\music\\3.wav", "c:\\music\\2.wav", "c:\\music\\1.wav"));
    EXPECT_EQ(lines(form.List1), childrenOf("WAV Files"));
    EXPECT_THAT(childrenOf("MP3 Files"), ElementsAre("c:\\music\\2.mp3", "c:\\music\\1.mp3"));
    EXPECT_EQ(lines(form.List2), childrenOf("MP3 Files"));
}

TEST_F(ShowfilesTest, TracksAreInTheOrderOfTheirList) {
    disc(twoTracks);
    tree.showfiles();
    EXPECT_EQ(childrenOf("Available Tracks"), twoTracks);
    EXPECT_EQ(lines(form.lstTracks), twoTracks);
}

TEST_F(ShowfilesTest, TheQueueOfTracksToExtractIsNeitherChangedNorShown) {
    fill(form.lstRecord, {"Track  9 - 00:01:00"});
    tree.showfiles();
    EXPECT_THAT(childrenOf("Selected Tracks"), IsEmpty());
    EXPECT_THAT(lines(form.lstRecord), ElementsAre("Track  9 - 00:01:00"));
}

TEST_F(ShowfilesTest, TheOldEntriesOfTheFourFileListsAreRemoved) {
    for (ListBox* list : {&form.List1, &form.List2, &form.List4, &form.List5}) {
        fill(*list, {"stale"});
    }
    tree.showfiles();
    for (ListBox* list : {&form.List1, &form.List2, &form.List4, &form.List5}) {
        EXPECT_THAT(lines(*list), IsEmpty()) << list->name();
    }
}

TEST_F(ShowfilesTest, WithoutFullPathsShowsTheFileNameWithALowerCaseExtension) {
    process.settings.showFullPath = 0;
    files({"c:\\music\\Name.WAV"}, {"c:\\music\\sub\\Long.mpeg", "c:\\music\\Tune.Mp3"});
    tree.showfiles();
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("Name.wav"));
    EXPECT_EQ(node("Name.wav")->key(), "p Name.wav");
    // ".mp3" replaces the last four characters of the name, whatever these characters are.
    EXPECT_THAT(childrenOf("MP3 Files"), ElementsAre("Tune.mp3", "Long..mp3"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\Name.WAV"));
}

TEST_F(ShowfilesTest, WithFullPathsShowsThePathAsTheScanReturnedIt) {
    files({"c:\\Music\\Name.WAV"}, {});
    tree.showfiles();
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("c:\\Music\\Name.WAV"));
}

TEST_F(ShowfilesTest, WithoutFullPathsTwoFilesOfTheSameNameGiveOneNodeAndTwoListEntries) {
    process.settings.showFullPath = 0;
    files({"c:\\music\\one\\a.wav", "c:\\music\\two\\a.wav"}, {});
    tree.showfiles();
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("a.wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\two\\a.wav", "c:\\music\\one\\a.wav"));
}

TEST_F(ShowfilesTest, WithoutFullPathsAFileNameTooShortForAnExtensionHasAListEntryButNoNode) {
    process.settings.showFullPath = 0;
    files({"wav", "c:\\music\\a.wav"}, {});
    tree.showfiles();
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("a.wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav", "wav"));
}

TEST_F(ShowfilesTest, TwoTracksWithTheSameTextGiveOneNode) {
    disc({"Track 10 - 00:01:00", "Track 10 - 00:01:00"});
    tree.showfiles();
    EXPECT_THAT(childrenOf("Available Tracks"), ElementsAre("Track 10 - 00:01:00"));
    EXPECT_EQ(form.lstTracks.listCount(), 2);
}

TEST_F(ShowfilesTest, AMissingDestinationIsIgnoredAndTheFinderKeepsItsFolder) {
    process.settings.decodePath = "x:\\gone";
    form.Label2.setCaption("x:\\gone\\");
    finder.files["c:\\sonarith"]["wav"] = {"c:\\sonarith\\ring.wav"};
    tree.showfiles();
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\sonarith\\ring.wav"));
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("c:\\sonarith\\ring.wav"));
    EXPECT_EQ(form.Label2.caption(), "x:\\gone\\");
}

TEST_F(ShowfilesTest, ScrollsToGroupsAndToTheLastAddedFileOfEachKind) {
    files({"c:\\music\\1.wav", "c:\\music\\2.wav"}, {"c:\\music\\1.mp3", "c:\\music\\2.mp3"});
    test::RevealLog reveals;
    view.setObserver(&reveals);
    tree.showfiles();
    EXPECT_THAT(reveals.texts,
                ElementsAre("Selected Tracks", "Available Tracks", "Available Tracks",
                            "c:\\music\\1.wav", "MP3 Files", "c:\\music\\1.mp3"));
    view.setObserver(nullptr);
}

TEST_F(ShowfilesTest, WithoutFullPathsScrollsToEachMp3File) {
    process.settings.showFullPath = 0;
    files({"c:\\music\\1.wav", "c:\\music\\2.wav"}, {"c:\\music\\1.mp3", "c:\\music\\2.mp3"});
    test::RevealLog reveals;
    view.setObserver(&reveals);
    tree.showfiles();
    EXPECT_THAT(reveals.texts,
                ElementsAre("Selected Tracks", "Available Tracks", "Available Tracks", "1.wav",
                            "2.mp3", "1.mp3", "MP3 Files", "1.mp3"));
    view.setObserver(nullptr);
}

TEST_F(ShowfilesTest, ScrollsToTheGroupOfMp3FilesEvenOnALaterBuild) {
    disc(twoTracks);
    tree.showfiles();
    test::RevealLog reveals;
    view.setObserver(&reveals);
    tree.showfiles();
    // The first build added the group "MP3 Files". The second build does not add it again.
    EXPECT_THAT(reveals.texts, ElementsAre("Selected Tracks", "Available Tracks",
                                           "Available Tracks", "MP3 Files"));
    view.setObserver(nullptr);
}

// --- later builds ---------------------------------------------------------------------------

TEST_F(ShowfilesTest, TheSecondBuildReplacesOnlyTheFirstCollectionAndPutsItLast) {
    disc(twoTracks);
    files({"c:\\music\\a.wav"}, {"c:\\music\\b.mp3"});
    tree.showfiles();
    disc({"Track  1 - 00:01:00"});
    tree.showfiles();
    EXPECT_THAT(outline(), ElementsAre("WAV Files Folder", "  WAV Files", "    c:\\music\\a.wav",
                                       "MP3 Files Folder", "  Selected MP3 Files", "  MP3 Files",
                                       "    c:\\music\\b.mp3", "CD Tracks", "  Selected Tracks",
                                       "  Available Tracks", "    Track  1 - 00:01:00"));
    EXPECT_EQ(view.node(1)->text(), "WAV Files Folder");
    EXPECT_EQ(view.node(2)->text(), "WAV Files");
    EXPECT_EQ(view.node(3)->text(), "c:\\music\\a.wav");
}

TEST_F(ShowfilesTest, OnTheSecondBuildANewFileOfAnyKindIsAddedUnderAvailableTracks) {
    disc(twoTracks);
    files({"c:\\music\\a.wav"}, {"c:\\music\\b.mp3"});
    tree.showfiles();
    files({"c:\\music\\a.wav", "c:\\music\\new.wav"}, {"c:\\music\\b.mp3", "c:\\music\\new.mp3"});
    tree.showfiles();
    EXPECT_THAT(
        childrenOf("Available Tracks"),
        ElementsAre(twoTracks[0], twoTracks[1], "c:\\music\\new.wav", "c:\\music\\new.mp3"));
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("c:\\music\\a.wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\new.wav", "c:\\music\\a.wav"));
}

TEST_F(ShowfilesTest, OnTheSecondBuildAFileThatNoLongerExistsKeepsItsNodeButLosesItsListEntry) {
    files({"c:\\music\\a.wav"}, {});
    tree.showfiles();
    files({}, {});
    tree.showfiles();
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("c:\\music\\a.wav"));
    EXPECT_THAT(lines(form.List1), IsEmpty());
}

TEST_F(ShowfilesTest, TheSecondBuildKeepsNodesOfSelectedMp3FilesButListsTheFilesAsAvailable) {
    files({}, {"c:\\music\\b.mp3"});
    tree.showfiles();
    doubleClick("c:\\music\\b.mp3");
    ASSERT_THAT(lines(form.List4), ElementsAre("c:\\music\\b.mp3"));
    tree.showfiles();
    EXPECT_THAT(lines(form.List4), IsEmpty());
    EXPECT_THAT(childrenOf("Selected MP3 Files"), ElementsAre("c:\\music\\b.mp3"));
    EXPECT_THAT(lines(form.List2), ElementsAre("c:\\music\\b.mp3"));
}

TEST_F(ShowfilesTest, OnTheThirdBuildANewTrackIsAddedUnderTheGroupThatTheSecondBuildAddedLast) {
    disc(twoTracks);
    files({"c:\\music\\a.wav"}, {});
    tree.showfiles();
    tree.showfiles();
    disc({"Track  1 - 00:07:07"});
    tree.showfiles();
    // "CD Tracks" exists already, so its groups cannot be added again. The new track is therefore
    // added under the group that the second build added last: "Available Tracks".
    EXPECT_THAT(childrenOf("Available Tracks"),
                ElementsAre(twoTracks[0], twoTracks[1], "Track  1 - 00:07:07"));
}

TEST_F(ShowfilesTest, OnTheFourthBuildANewTrackIsAddedUnderWavFiles) {
    tree.showfiles();
    tree.showfiles();
    tree.showfiles();
    // The third build added the group "WAV Files" last. The collections are now in the order MP3
    // files, CD tracks, WAV files.
    disc({"Track  1 - 00:07:07"});
    tree.showfiles();
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("Track  1 - 00:07:07"));
    EXPECT_THAT(view.roots().back()->text(), "MP3 Files Folder");
}

TEST_F(ShowfilesTest, TheThirdBuildReplacesTheCollectionThatIsThenTheFirst) {
    disc(twoTracks);
    files({"c:\\music\\a.wav"}, {"c:\\music\\b.mp3"});
    tree.showfiles();
    tree.showfiles();
    files({"c:\\music\\c.wav"}, {"c:\\music\\b.mp3"});
    tree.showfiles();
    EXPECT_THAT(outline(),
                ElementsAre("MP3 Files Folder", "  Selected MP3 Files", "  MP3 Files",
                            "    c:\\music\\b.mp3", "CD Tracks", "  Selected Tracks",
                            "  Available Tracks", "    " + twoTracks[0], "    " + twoTracks[1],
                            "WAV Files Folder", "  WAV Files", "    c:\\music\\c.wav"));
}

TEST_F(ShowfilesTest, ABuildRemovesTheNodesAtTheFirstAndTheSecondIndex) {
    tree.showfiles();
    tree.showfiles();
    tree.showfiles();
    ASSERT_EQ(view.node(1), node("MP3 Files Folder"));
    ASSERT_EQ(view.node(2), node("Selected MP3 Files"));
    // Moves the second node out of the subtree of the first node. If the build removed only the
    // first node, the moved node would remain below "CD Tracks".
    ASSERT_TRUE(view.setParent(node("Selected MP3 Files"), node("CD Tracks")).ok());
    tree.showfiles();
    EXPECT_THAT(childrenOf("CD Tracks"), ElementsAre("Selected Tracks", "Available Tracks"));
    EXPECT_THAT(childrenOf("MP3 Files Folder"), ElementsAre("Selected MP3 Files", "MP3 Files"));
}

TEST_F(ShowfilesTest, DuringTheScanOfALaterBuildTheTreeLacksTheFirstCollectionButCanBeUsed) {
    disc(twoTracks);
    files({"c:\\music\\a.wav"}, {"c:\\music\\b.mp3"});
    tree.showfiles();
    bool clicked = false;
    finder.whileSearching = [&] {
        if (!clicked) {
            clicked = true;
            EXPECT_EQ(node("CD Tracks"), nullptr);
            click("c:\\music\\b.mp3");
            doubleClick("c:\\music\\a.wav");
        }
    };
    tree.showfiles();
    EXPECT_TRUE(clicked);
    EXPECT_EQ(view.selectedItem(), node("c:\\music\\a.wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav"));
}

TEST_F(ShowfilesTest, AFileAddedDuringTheScanGetsAListEntryAndANode) {
    files({"c:\\music\\a.wav"}, {});
    disk.addFile("c:\\other\\x.wav", std::string(200, 'x'));
    bool added = false;
    finder.whileSearching = [&] {
        if (!std::exchange(added, true)) {
            adder.Cmaddfile2("c:\\other\\x.wav");
        }
    };
    tree.showfiles();
    // When the file was added to the list, its group did not exist yet. The rest of the build adds
    // the group and the file's node.
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav", "c:\\other\\x.wav"));
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("c:\\music\\a.wav", "c:\\other\\x.wav"));
}

TEST_F(ShowfilesTest, AHundredThousandFilesCanBeShownRepeatedly) {
    constexpr int count = 50'000;
    std::vector<std::string> wavFiles;
    std::vector<std::string> mp3Files;
    for (int i = 0; i < count; ++i) {
        wavFiles.push_back("c:\\music\\" + std::to_string(i) + ".wav");
        mp3Files.push_back("c:\\music\\" + std::to_string(i) + ".mp3");
    }
    disc(twoTracks);
    files(wavFiles, mp3Files);
    tree.showfiles();
    EXPECT_EQ(view.count(), 2 * count + 10);
    tree.showfiles();
    tree.showfiles();
    EXPECT_EQ(view.count(), 2 * count + 10);
}

} // namespace
} // namespace sonarith
