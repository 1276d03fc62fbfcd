// SPDX-License-Identifier: GPL-3.0-or-later
// Tests WorkTree::showfiles3 and ShowFilesOneRoot; work_tree_test.cpp tests showfiles. Deliberate:
// showfiles3 appends a WAV file to the MP3 list, and an MP3 file to the WAV list.
#include <chrono>
#include <utility>

#include "support/work_tree_world.h"
#include "worktree/node_level.h"
#include "worktree/work_tree.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct Showfiles3Test : test::WorkTreeWorld {
    Showfiles3Test() {
        tree.showfiles();
        fill(finder.list, {"c:\\x\\zero.wav", "c:\\x\\one.wav", "c:\\x\\Two.wav", "c:\\x\\Two.mp3",
                           "c:\\x\\notes.txt"});
    }
    void choose(int index) { finder.list.setListIndex(index).passOver(); }
    EventLoop::Duration timeOfShowfiles3() {
        const auto start = loop.now();
        tree.showfiles3();
        return loop.now() - start;
    }
};

TEST_F(Showfiles3Test, DoesNothingIfEitherFileListContainsTheChosenPath) {
    choose(1);
    for (ListBox* list : {&form.List1, &form.List2}) {
        form.List1.clear();
        form.List2.clear();
        list->addItem("c:\\x\\one.wav");
        EXPECT_EQ(timeOfShowfiles3(), 0ms);
        EXPECT_EQ(form.List1.listCount() + form.List2.listCount(), 1);
    }
}

TEST_F(Showfiles3Test, ComparesCaseSensitivelyAndAppendsAWavToTheMp3List) {
    fill(form.List1, {"c:\\x\\two.wav"});
    choose(2);
    tree.showfiles3();
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\x\\two.wav"));
    EXPECT_THAT(lines(form.List2), ElementsAre("c:\\x\\Two.wav"));
}

TEST_F(Showfiles3Test, AppendsAnMp3ToTheWavList) {
    fill(form.List1, {"c:\\x\\a.wav"});
    choose(3);
    tree.showfiles3();
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\x\\a.wav", "c:\\x\\Two.mp3"));
    EXPECT_THAT(lines(form.List2), IsEmpty());
}

TEST_F(Showfiles3Test, ComparesABracketLiterally) {
    fill(finder.list, {"c:\\x\\[a].wav"});
    choose(0);
    fill(form.List1, {"c:\\x\\a.wav"});
    tree.showfiles3();
    EXPECT_THAT(lines(form.List2), ElementsAre("c:\\x\\[a].wav"));
}

TEST_F(Showfiles3Test, AddsNothingForAFileOfAnotherTypeOrWithoutASelection) {
    choose(4);
    tree.showfiles3();
    choose(-1);
    tree.showfiles3();
    EXPECT_THAT(lines(form.List1), IsEmpty());
    EXPECT_THAT(lines(form.List2), IsEmpty());
}

TEST_F(Showfiles3Test, PassesTheIndexOfTheLineToFileAdderInsteadOfThePath) {
    choose(2);
    const auto before = outline();
    EXPECT_EQ(timeOfShowfiles3(), 300ms);
    EXPECT_EQ(outline(), before);
    // Runs showfiles3 again, now with a file "2" in the current folder. List2 is cleared first: if
    // it contained the path that the first run added, showfiles3 would do nothing. The adder
    // receives "2", finds the file of this name, and stores the folder part of "2", which is empty,
    // in SplitDir.
    disk.changeFolder("c:\\sonarith").passOver();
    disk.addFile("c:\\sonarith\\2", std::string(100, 'x'));
    process.SplitDir = "untouched";
    fill(form.List2, {});
    tree.showfiles3();
    EXPECT_EQ(process.SplitDir, "");
    EXPECT_EQ(outline(), before);
}

struct OneRootTest : test::WorkTreeWorld {
    OneRootTest() {
        disc({twoTracks[0]});
        tree.showfiles();
        fill(form.lstRecord, {twoTracks[1]});
        fill(form.List1, {"c:\\x\\A.WAV", "c:\\x\\b.wav", "c:\\y\\b.wav", "wav"});
        fill(form.List2, {"c:\\x\\c.mp3"});
        tree.ShowFilesOneRoot();
    }
};

TEST_F(OneRootTest, AllGroupsAreSiblingsBelowOneRoot) {
    EXPECT_THAT(outline(),
                ElementsAre("CD Tracks, WAV, MP3 files", "  Selected Tracks", "    " + twoTracks[1],
                            "  Available Tracks", "    " + twoTracks[0], "  Selected WAV Files",
                            "  WAV Files", "    A.wav", "    b.wav", "  Selected MP3 Files",
                            "  MP3 Files", "    c.mp3"));
}

TEST_F(OneRootTest, EachNodeHasItsKeyAndThePicturesOfItsLevel) {
    const std::vector<std::pair<std::string, std::string>> keys = {
        {"CD Tracks, WAV, MP3 files", "f Collection 1"},
        {"Selected Tracks", "g Selected Tracks"},
        {"Available Tracks", "g Available Tracks"},
        {"Selected WAV Files", "g Selected WAV Files"},
        {"WAV Files", "g WAV Files"},
        {"Selected MP3 Files", "g Selected MP3 Files"},
        {"MP3 Files", "g Available MP3 Files"},
        {twoTracks[0], "p " + twoTracks[0]},
        {"A.wav", "p A.wav"},
        {"c.mp3", "p c.mp3"}};
    for (const auto& [text, key] : keys) {
        ASSERT_NE(node(text), nullptr) << text;
        EXPECT_EQ(node(text)->key(), key);
        const int level = NodeLevel(node(text));
        EXPECT_EQ(node(text)->image(), level);
        EXPECT_EQ(node(text)->selectedImage(), level + 3);
    }
}

TEST_F(OneRootTest, ADoubleClickMovesATrackOrFileToTheOtherGroupOfItsKind) {
    doubleClick("b.wav");
    EXPECT_THAT(childrenOf("Selected WAV Files"), ElementsAre("b.wav"));
    doubleClick("b.wav");
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("A.wav", "b.wav"));
    doubleClick("c.mp3");
    EXPECT_THAT(childrenOf("Selected MP3 Files"), ElementsAre("c.mp3"));
    doubleClick(twoTracks[0]);
    EXPECT_THAT(childrenOf("Selected Tracks"), ElementsAre(twoTracks[1], twoTracks[0]));
}

} // namespace
} // namespace sonarith
