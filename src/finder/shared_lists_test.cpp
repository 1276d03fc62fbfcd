// SPDX-License-Identifier: GPL-3.0-or-later
// The user's searches and the work tree's scan share the finder's boxes and lists. The lists
// contain the result of the last search. A scan consists of two searches of the destination folder:
// for WAV files and then for MP3 files. Tests a search after a scan, a scan after a search, a scan
// during a search, and the window's commands during a scan.
#include <gmock/gmock.h>

#include <memory>

#include "support/finder_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// A destination with two files, and a folder elsewhere that the user searches.
struct SharedWorld : test::FinderWorld {
    SharedWorld() {
        disk.addFile("c:\\Music\\a.wav");
        disk.addFile("c:\\Music\\b.mp3");
        disk.addFile("c:\\Other\\o.wav");
        disk.addFile("c:\\Other\\p.mp3");
        disk.addFile("c:\\Other\\sub\\q.wav");
        process.settings.decodePath = "c:\\Music";
        process.settings.showFullPath = 1;
        windows.frmsearch.unload();
    }
    void expectTreeOfDestination() const {
        EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav"));
        EXPECT_THAT(lines(form.List2), ElementsAre("c:\\music\\b.mp3"));
    }
    void expectIdle() const {
        EXPECT_EQ(finder.Command1.caption(), "Search !");
        EXPECT_TRUE(finder.Drive1.enabled());
        EXPECT_TRUE(finder.zFileExt.enabled());
        EXPECT_EQ(finder.lstdirs.listCount(), 0);
    }
};

class SharedListsTest : public testing::Test, protected SharedWorld {};

TEST_F(SharedListsTest, TheWindowOpensWithTheResultOfTheScan) {
    tree.showfiles();
    EXPECT_FALSE(finder.visible());
    form.mnuSearch.onClick = [this] {
        windows.frmsearch.show();
    };
    form.mnuSearch.click();
    EXPECT_TRUE(finder.visible());
    EXPECT_EQ(finder.timesLoaded(), 2); // including the load at the start of the test
    EXPECT_EQ(finder.Dir1.path(), "c:\\Music");
    EXPECT_EQ(finder.zFileExt.text(), ".mp3");
    EXPECT_THAT(lines(finder.lstfiles), ElementsAre("c:\\music\\b.mp3"));
    search("c:\\Other", ".wav");
    EXPECT_THAT(lines(finder.lstfiles), ElementsAre("c:\\other\\o.wav", "c:\\other\\sub\\q.wav"));
    expectTreeOfDestination();
}

TEST_F(SharedListsTest, AScanReplacesTheUsersResultInTheOpenWindow) {
    windows.frmsearch.show();
    search("c:\\Other", ".wav");
    tree.showfiles();
    expectTreeOfDestination();
    EXPECT_TRUE(finder.visible());
    EXPECT_THAT(lines(finder.lstfiles), ElementsAre("c:\\music\\b.mp3"));
    expectIdle();
}

TEST_F(SharedListsTest, TheOptionToHideTheListsDoesNotAffectTheScan) {
    windows.frmsearch.show();
    EXPECT_TRUE(finder.chkhidelist.setValue(1).ok());
    tree.showfiles();
    expectTreeOfDestination();
    EXPECT_TRUE(finder.lstfiles.visible());
}

TEST_F(SharedListsTest, OpeningTheWindowAtAnyYieldDoesNotAffectTheScan) {
    tree.showfiles();
    const int yields = loop.yieldCount();
    for (int n = 1; n <= yields; ++n) {
        SCOPED_TRACE(n);
        SharedWorld world;
        world.loop.atYield(n, [&] { world.windows.frmsearch.show(); });
        world.tree.showfiles();
        world.expectTreeOfDestination();
        EXPECT_TRUE(world.finder.visible());
        EXPECT_EQ(world.finder.timesLoaded(), 2); // including the load at the start of the test
        world.expectIdle();
    }
}

TEST_F(SharedListsTest, ClosingTheWindowDuringAScanLosesTheRestOfItsResults) {
    tree.showfiles();
    const int yields = loop.yieldCount();
    for (int n = 1; n <= yields; ++n) {
        SCOPED_TRACE(n);
        SharedWorld world;
        world.windows.frmsearch.show();
        world.loop.atYield(n, [&] { world.finder.cmdend.click(); });
        world.tree.showfiles();
        // The scan's next step loads the closed window again, hidden and empty.
        EXPECT_FALSE(world.finder.visible());
        world.expectIdle();
        const bool inFirstSearch = n <= yields / 2;
        EXPECT_EQ(world.lines(world.form.List1).empty(), inFirstSearch);
        // List2 is empty for each n. A close during the second search ended that search. A close
        // before the second search discarded the folder, which the scan sets only once: the second
        // search then searched the window's initial folder, and this folder contains no MP3 file.
        EXPECT_THAT(world.lines(world.form.List2), IsEmpty());
    }
}

TEST_F(SharedListsTest, TheStopButtonEndsOnlyTheRunningSearchOfAScanAndKeepsItsFoundFiles) {
    windows.frmsearch.show();
    disk.addFile("c:\\Music\\sub\\c.wav");
    // At this yield a.wav has been found, and b.mp3 is next.
    loop.atYield(3, [this] { finder.Command1.click(); });
    tree.showfiles();
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav"));
    EXPECT_THAT(lines(form.List2), ElementsAre("c:\\music\\b.mp3"));
    expectIdle();
}

/// For its WAV files, the scan clicks the search button, which only stops the user's running
/// search. So the scan uses the files that the stopped search has found. For its MP3 files, the
/// scan then starts a search of its own.
TEST_F(SharedListsTest, AScanInsideASearchStopsTheSearchAndReplacesItsResult) {
    windows.frmsearch.show();
    // At this yield o.wav has been found, and p.mp3 is next.
    loop.atYield(3, [this] {
        tree.showfiles();
        EXPECT_THAT(lines(form.List1), ElementsAre("c:\\other\\o.wav"));
        EXPECT_THAT(lines(form.List2), ElementsAre("c:\\music\\b.mp3"));
    });
    search("c:\\Other", ".wav");
    // The user's search still finishes its current folder. The type box now contains ".mp3", the
    // last type of the scan, so this search finds p.mp3. After the stop, no folder is added to this
    // search, so the folder sub is not searched.
    EXPECT_THAT(lines(finder.lstfiles), ElementsAre("c:\\music\\b.mp3", "c:\\other\\p.mp3"));
    expectIdle();
}

TEST_F(SharedListsTest, AScanAtAnyYieldOfASearchFinishesAndSoDoesTheSearch) {
    windows.frmsearch.show();
    search("c:\\Other", ".wav");
    const int yields = loop.yieldCount();
    for (int n = 1; n <= yields; ++n) {
        SCOPED_TRACE(n);
        SharedWorld world;
        world.windows.frmsearch.show();
        world.loop.atYield(n, [&] { world.tree.showfiles(); });
        world.search("c:\\Other", ".wav");
        world.expectIdle();
        EXPECT_THAT(world.lines(world.form.List2), Not(IsEmpty()));
    }
}

} // namespace
} // namespace sonarith
