// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/list_moves.h"

#include "support/work_tree_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A tree with one root and all six groups. itemIn() returns an item of a group, for use as
/// DragNode or as the tree's selected node.
struct ListMovesTest : test::WorkTreeWorld {
    ListMoves lists{loop, process, form, drag};

    ListMovesTest() {
        tree.ShowFilesOneRoot();
        form.List7.addItem("left over");
    }
    /// Moves the entry `s` as if an item of `group` had been double-clicked.
    void move(const std::string& s, const std::string& group) { moveFrom(s, group, group); }
    void moveFrom(const std::string& s, const std::string& dragged, const std::string& selected) {
        drag.DragNode = itemIn(dragged);
        view.setSelectedItem(itemIn(selected)).passOver();
        lists.moveEntry(s, MovedBy::doubleClick);
    }
    NodeRef itemIn(const std::string& group) {
        const auto& children = node(group)->children();
        return children.empty() ? addItem(view, node(group), "p in " + group, "item").value()
                                : children.front();
    }
    /// One text for each list that is not empty, except the scratch list (List7).
    std::vector<std::string> all() const {
        std::vector<std::string> found;
        for (const ListBox* list : {&form.lstTracks, &form.lstRecord, &form.List1, &form.List5,
                                    &form.List2, &form.List4, &form.List3}) {
            std::string text = list->name() + ":";
            for (const std::string& line : lines(*list)) {
                text += " " + line;
            }
            if (list->listCount() > 0) {
                found.push_back(text);
            }
        }
        return found;
    }
};

TEST_F(ListMovesTest, AnAvailableTrackMovesToTheTopOfTheSelectedTracks) {
    fill(form.lstTracks, {"Track_1", "Track_2", "Track_3"});
    fill(form.lstRecord, {"Track_9"});
    move("Track_2", "Available Tracks");
    EXPECT_THAT(all(), ElementsAre("lstTracks: Track_1 Track_3", "lstRecord: Track_2 Track_9"));
    EXPECT_THAT(lines(form.List7), ElementsAre("Track_2", "Track_9"));
}

TEST_F(ListMovesTest, ASelectedTrackReturnsToTheEndOfTheAvailableTracks) {
    fill(form.lstTracks, {"Track_1", "Track_3"});
    fill(form.lstRecord, {"Track_9", "Track_2"});
    move("Track_2", "Selected Tracks");
    EXPECT_THAT(all(), ElementsAre("lstTracks: Track_1 Track_3 Track_2", "lstRecord: Track_9"));
    EXPECT_THAT(lines(form.List7), ElementsAre("left over"));
}

TEST_F(ListMovesTest, OfTwoEqualTracksTheFirstMoves) {
    fill(form.lstTracks, {"Track_1", "Track_2", "Track_1"});
    move("Track_1", "Available Tracks");
    EXPECT_THAT(all(), ElementsAre("lstTracks: Track_2 Track_1", "lstRecord: Track_1"));
}

TEST_F(ListMovesTest, MovingATrackThatIsInNoListChangesNothing) {
    fill(form.lstTracks, {"Track_1"});
    fill(form.lstRecord, {"Track_2"});
    move("Track_5", "Available Tracks");
    move("Track_5", "Selected Tracks");
    EXPECT_THAT(all(), ElementsAre("lstTracks: Track_1", "lstRecord: Track_2"));
    EXPECT_THAT(lines(form.List7), ElementsAre("left over"));
}

TEST_F(ListMovesTest, ATrackThatMatchesAPatternMovesWithItsOwnText) {
    fill(form.lstTracks, {"Track_1", "Track_2"});
    move("Track_#", "Available Tracks");
    EXPECT_THAT(all(), ElementsAre("lstTracks: Track_2", "lstRecord: Track_1"));
    fill(form.lstRecord, {"Track_7"});
    move("Track_?", "Selected Tracks");
    EXPECT_THAT(all(), ElementsAre("lstTracks: Track_2 Track_7"));
}

TEST_F(ListMovesTest, TheCurrentLineOfTheSelectedTracksStaysCurrentIfALineBeforeItIsRemoved) {
    fill(form.lstRecord, {"Track_1", "Track_2", "Track_3"});
    form.lstRecord.setListIndex(2).passOver();
    move("Track_1", "Selected Tracks");
    EXPECT_EQ(form.lstRecord.text(), "Track_3");
}

TEST_F(ListMovesTest, AnAvailableWavMovesToTheTopOfTheSelectedWavs) {
    fill(form.List1, {"a.wav", "b.wav"});
    fill(form.List5, {"c.wav", "b.wav"});
    move("b.wav", "WAV Files");
    EXPECT_THAT(all(), ElementsAre("List1: a.wav", "List5: b.wav c.wav"));
    EXPECT_THAT(lines(form.List7), ElementsAre("b.wav", "c.wav"));
}

TEST_F(ListMovesTest, AReturningWavMovesToTheTopOfTheAvailableWavsAndEqualEntriesThereRemain) {
    fill(form.List1, {"a.wav", "b.wav"});
    fill(form.List5, {"c.wav", "b.wav"});
    move("b.wav", "Selected WAV Files");
    EXPECT_THAT(all(), ElementsAre("List1: b.wav a.wav b.wav", "List5: c.wav"));
}

TEST_F(ListMovesTest, AWavIsComparedAsAPatternWhenSelectedAndLiterallyWhenReturned) {
    fill(form.List1, {"1.wav", "a.wav"});
    move("#.wav", "WAV Files");
    EXPECT_THAT(all(), ElementsAre("List1: a.wav", "List5: #.wav"));
    fill(form.List5, {"1.wav", "#.wav"});
    move("#.wav", "Selected WAV Files");
    EXPECT_THAT(all(), ElementsAre("List1: #.wav a.wav", "List5: 1.wav"));
}

TEST_F(ListMovesTest, AWavWithBracketsInItsNameIsSelectedButAlsoStaysAvailable) {
    fill(form.List1, {"[x].wav", "x.wav"});
    move("[x].wav", "WAV Files");
    EXPECT_THAT(all(), ElementsAre("List1: [x].wav", "List5: [x].wav"));
}

TEST_F(ListMovesTest, TheRuleForAWavDependsOnTheParentOfTheSelectedNode) {
    fill(form.List1, {"a.wav"});
    moveFrom("a.wav", "MP3 Files", "WAV Files");
    EXPECT_THAT(all(), ElementsAre("List5: a.wav"));
    moveFrom("a.wav", "WAV Files", "MP3 Files");
    EXPECT_THAT(all(), ElementsAre("List5: a.wav"));
    moveFrom("a.wav", "Selected WAV Files", "MP3 Files");
    EXPECT_THAT(all(), ElementsAre("List5: a.wav"));
    moveFrom("a.wav", "MP3 Files", "Selected WAV Files");
    EXPECT_THAT(all(), ElementsAre("List1: a.wav"));
}

TEST_F(ListMovesTest, TheRulesForTracksAndMp3FilesDependOnTheParentOfDragNode) {
    fill(form.lstTracks, {"Track_1"});
    moveFrom("Track_1", "Available Tracks", "WAV Files");
    EXPECT_THAT(all(), ElementsAre("lstRecord: Track_1"));
    fill(form.List2, {"a.mp3"});
    moveFrom("a.mp3", "WAV Files", "MP3 Files");
    EXPECT_THAT(all(), ElementsAre("lstRecord: Track_1", "List2: a.mp3"));
}

TEST_F(ListMovesTest, SelectingAnMp3EmptiesTheAvailableListAndDuplicatesTheEntriesSelectedBefore) {
    fill(form.List2, {"a.mp3", "b.mp3", "c.mp3"});
    fill(form.List4, {"d.mp3", "e.mp3"});
    move("b.mp3", "MP3 Files");
    EXPECT_THAT(all(), ElementsAre("List4: d.mp3 e.mp3 b.mp3 d.mp3 e.mp3"));
    EXPECT_THAT(lines(form.List7), ElementsAre("b.mp3", "d.mp3", "e.mp3"));
}

TEST_F(ListMovesTest, SelectingAnMp3DoesNotDuplicateEmptyEntries) {
    fill(form.List4, {"", "e.mp3"});
    move("b.mp3", "MP3 Files");
    EXPECT_THAT(lines(form.List4), ElementsAre("", "e.mp3", "b.mp3", "e.mp3"));
}

TEST_F(ListMovesTest, AReturningMp3MovesToTheTopOfTheAvailableMp3sAndTheOtherEntriesStay) {
    fill(form.List2, {"a.mp3", "b.mp3"});
    fill(form.List4, {"b.mp3", "c.mp3"});
    move("b.mp3", "Selected MP3 Files");
    EXPECT_THAT(all(), ElementsAre("List2: b.mp3 a.mp3", "List4: c.mp3"));
}

TEST_F(ListMovesTest, AnMp3IsComparedAsAPatternWhenSelectedAndWhenReturned) {
    fill(form.List4, {"1.mp3", "a.mp3"});
    move("#.mp3", "MP3 Files");
    EXPECT_THAT(all(), ElementsAre("List4: a.mp3 #.mp3 a.mp3"));
    fill(form.List2, {"2.mp3"});
    fill(form.List4, {"3.mp3"});
    move("#.mp3", "Selected MP3 Files");
    EXPECT_THAT(all(), ElementsAre("List2: #.mp3"));
}

TEST_F(ListMovesTest, ABareFileNameMatchesNoPathAndIsAddedToTheSelectedWavs) {
    fill(form.List1, {"c:\\x\\a.wav"});
    move("a.wav", "WAV Files");
    EXPECT_THAT(all(), ElementsAre("List1: c:\\x\\a.wav", "List5: a.wav"));
}

TEST_F(ListMovesTest, TheEntryThatMovesIntoThePlaceOfARemovedEntryIsSkipped) {
    fill(form.List1, {"a.wav", "a.wav", "a.wav", "b.wav", "a.wav"});
    move("a.wav", "WAV Files");
    // The second entry moved into the place of the first entry and was skipped.
    EXPECT_THAT(lines(form.List1), ElementsAre("a.wav", "b.wav"));
}

TEST_F(ListMovesTest, AnEntryAppendedInsideAYieldIsNotVisited) {
    fill(form.List1, {"b.wav", "a.wav"});
    loop.atYield(1, [this] {
        form.List1.addItem("c.wav");
        form.List1.addItem("a.wav");
    });
    move("a.wav", "WAV Files");
    EXPECT_THAT(lines(form.List1), ElementsAre("b.wav", "c.wav", "a.wav"));
}

TEST_F(ListMovesTest, YieldsAfterEachRemovalFromAFileListAndNowhereElse) {
    const auto yieldsOf = [this](const std::string& s, const std::string& group) {
        const int before = loop.yieldCount();
        move(s, group);
        return loop.yieldCount() - before;
    };
    fill(form.List1, {"a.wav", "b.wav"});
    fill(form.List5, {"a.wav"});
    EXPECT_EQ(yieldsOf("a.wav", "WAV Files"), 2);
    EXPECT_EQ(yieldsOf("a.wav", "Selected WAV Files"), 1);
    EXPECT_EQ(yieldsOf("none.mp3", "MP3 Files"), 0);
    EXPECT_EQ(yieldsOf("none.mp3", "Selected MP3 Files"), 1);
    fill(form.lstTracks, {"Track_1"});
    EXPECT_EQ(yieldsOf("Track_1", "Available Tracks"), 0);
    EXPECT_EQ(yieldsOf("Track_1", "Selected Tracks"), 0);
}

TEST_F(ListMovesTest, AListThatIsClearedInsideAYieldIsReadAsEmptyFromThenOn) {
    fill(form.List1, {"a.wav", "b.wav", "a.wav"});
    loop.atYield(1, [this] { form.List1.clear(); });
    move("a.wav", "WAV Files");
    EXPECT_THAT(all(), ElementsAre("List5: a.wav"));
}

TEST_F(ListMovesTest, AMoveStartedInsideAYieldFinishesBeforeTheMoveThatYields) {
    fill(form.List1, {"a.wav", "b.wav"});
    loop.atYield(1, [this] { move("b.wav", "WAV Files"); });
    move("a.wav", "WAV Files");
    EXPECT_THAT(all(), ElementsAre("List5: a.wav b.wav"));
}

TEST_F(ListMovesTest, WithoutAMatchingRuleNothingMoves) {
    fill(form.lstTracks, {"Track_1"});
    fill(form.List1, {"a.wav", "a.WAV"});
    fill(form.List2, {"a.mp3", "a.MP3"});
    const auto before = all();
    move("Track_1", "WAV Files");
    move("a.wav", "Available Tracks");
    move("a.mp3", "WAV Files");
    move("a.wav", "Selected MP3 Files");
    move("a.WAV", "WAV Files");
    move("a.MP3", "MP3 Files");
    move("a.txt", "MP3 Files");
    EXPECT_EQ(all(), before);
}

TEST_F(ListMovesTest, InAGroupOfFilesAFileNamedLikeATrackMovesAsAFile) {
    fill(form.List1, {"Track 1.wav"});
    move("Track 1.wav", "WAV Files");
    EXPECT_THAT(lines(form.List5), ElementsAre("Track 1.wav"));
    EXPECT_THAT(lines(form.lstRecord), IsEmpty());
}

TEST_F(ListMovesTest, NothingMovesIfDragNodeIsEmptyAndNothingIsSelected) {
    fill(form.lstTracks, {"Track_1"});
    drag.DragNode = nullptr;
    lists.moveEntry("Track_1", MovedBy::doubleClick);
    lists.moveEntry("a.wav", MovedBy::doubleClick);
    lists.moveEntry("a.mp3", MovedBy::doubleClick);
    EXPECT_THAT(all(), ElementsAre("lstTracks: Track_1"));
}

// --- a drag --------------------------------------------------------------------------------------

struct ListMovesByDragTest : ListMovesTest {
    void moveByDrag(const std::string& text, const std::string& group) {
        drag.DragNode = itemIn(group);
        view.setSelectedItem(itemIn(group)).passOver();
        lists.moveEntry(text, MovedBy::drag);
    }
};

TEST_F(ListMovesByDragTest, ATrackMovesInTheSameWayAsOnADoubleClick) {
    fill(form.lstTracks, {"Track_1", "Track_2"});
    fill(form.lstRecord, {"Track_9"});
    moveByDrag("Track_2", "Available Tracks");
    EXPECT_THAT(all(), ElementsAre("lstTracks: Track_1", "lstRecord: Track_2 Track_9"));
    moveByDrag("Track_9", "Selected Tracks");
    EXPECT_THAT(all(), ElementsAre("lstTracks: Track_1 Track_9", "lstRecord: Track_2"));
}

TEST_F(ListMovesByDragTest, ABareFileNameMovesTheEntryWhosePathHasThatFileName) {
    fill(form.List1, {"c:\\a.wav", "c:\\b.wav"});
    fill(form.List2, {"c:\\a.mp3", "c:\\b.mp3"});
    moveByDrag("b.wav", "WAV Files");
    moveByDrag("b.mp3", "MP3 Files");
    EXPECT_THAT(all(), ElementsAre("List1: c:\\a.wav", "List5: c:\\b.wav", "List2: c:\\a.mp3",
                                   "List4: c:\\b.mp3"));
    moveByDrag("b.wav", "Selected WAV Files");
    moveByDrag("b.mp3", "Selected MP3 Files");
    EXPECT_THAT(all(), ElementsAre("List1: c:\\b.wav c:\\a.wav", "List2: c:\\b.mp3 c:\\a.mp3"));
}

TEST_F(ListMovesByDragTest, AWholePathIsFoundByItsFileNameSoTheFirstEntryOfThatNameMoves) {
    fill(form.List1, {"c:\\one\\a.wav", "c:\\two\\a.wav"});
    moveByDrag("c:\\two\\a.wav", "WAV Files");
    EXPECT_THAT(all(), ElementsAre("List1: c:\\two\\a.wav", "List5: c:\\one\\a.wav"));
}

TEST_F(ListMovesByDragTest, TheAvailableListIsSearchedBeforeTheSelectedList) {
    fill(form.List2, {"c:\\one\\a.mp3"});
    fill(form.List4, {"c:\\two\\a.mp3"});
    moveByDrag("a.mp3", "Selected MP3 Files");
    EXPECT_THAT(all(), ElementsAre("List2: c:\\one\\a.mp3", "List4: c:\\two\\a.mp3"));
}

TEST_F(ListMovesByDragTest, ANameInNoListIsAddedUnchangedToTheSelectedList) {
    moveByDrag("x.wav", "WAV Files");
    moveByDrag("x.mp3", "MP3 Files");
    EXPECT_THAT(all(), ElementsAre("List5: x.wav", "List4: x.mp3"));
}

TEST_F(ListMovesByDragTest, TheNameIsAPatternForTheNamesInTheLists) {
    fill(form.List2, {"c:\\a1.mp3", "c:\\a[1].mp3"});
    moveByDrag("a[1].mp3", "MP3 Files");
    EXPECT_THAT(all(), ElementsAre("List2: c:\\a[1].mp3", "List4: c:\\a1.mp3"));
}

TEST_F(ListMovesByDragTest, SelectingAnMp3MovesOnlyItsEntryAndDuplicatesNothing) {
    fill(form.List2, {"c:\\a.mp3", "c:\\b.mp3", "c:\\c.mp3"});
    fill(form.List4, {"c:\\x.mp3", "c:\\y.mp3"});
    moveByDrag("b.mp3", "MP3 Files");
    EXPECT_THAT(all(),
                ElementsAre("List2: c:\\a.mp3 c:\\c.mp3", "List4: c:\\b.mp3 c:\\x.mp3 c:\\y.mp3"));
}

} // namespace
} // namespace sonarith
