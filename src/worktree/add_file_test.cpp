// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/add_file.h"

#include "support/work_tree_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct Cmaddfile2Test : test::WorkTreeWorld {
    Cmaddfile2Test() { tree.showfiles(); }

    void put(const std::string& path, std::size_t bytes = 100) {
        disk.addFile(path, std::string(bytes, 'x'));
    }
};

TEST_F(Cmaddfile2Test, AddsAWavToTheEndOfItsGroupAndToTheTopOfItsList) {
    put("c:\\music\\a.wav");
    put("c:\\music\\b.wav");
    adder.Cmaddfile2("c:\\music\\a.wav");
    adder.Cmaddfile2("c:\\music\\b.wav");
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("c:\\music\\a.wav", "c:\\music\\b.wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\b.wav", "c:\\music\\a.wav"));
    EXPECT_THAT(lines(form.List2), IsEmpty());
    const NodeRef added = node("c:\\music\\a.wav");
    EXPECT_EQ(added->key(), "p namec:\\music\\a.wav");
    EXPECT_EQ(added->image(), 3);
    EXPECT_EQ(added->selectedImage(), 6);
}

TEST_F(Cmaddfile2Test, AddsAnMp3ToItsOwnGroupAndList) {
    put("c:\\music\\a.mp3");
    adder.Cmaddfile2("c:\\music\\a.mp3");
    EXPECT_THAT(childrenOf("MP3 Files"), ElementsAre("c:\\music\\a.mp3"));
    EXPECT_THAT(childrenOf("Selected MP3 Files"), IsEmpty());
    EXPECT_THAT(lines(form.List2), ElementsAre("c:\\music\\a.mp3"));
    EXPECT_THAT(lines(form.List1), IsEmpty());
}

TEST_F(Cmaddfile2Test, WaitsThreeTenthsOfASecondDuringWhichTimersRun) {
    put("c:\\music\\a.wav");
    const auto start = loop.now();
    int ticks = 0;
    const auto wakeup = loop.every(100ms, [&] { ++ticks; });
    adder.Cmaddfile2("c:\\music\\a.wav");
    EXPECT_EQ(loop.now() - start, 300ms);
    EXPECT_GE(ticks, 2);
}

TEST_F(Cmaddfile2Test, AddsAFileThatIsCreatedDuringTheWait) {
    loop.after(200ms, [this] { put("c:\\music\\late.wav"); });
    adder.Cmaddfile2("c:\\music\\late.wav");
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\late.wav"));
}

TEST_F(Cmaddfile2Test, StoresThePathInLowerCase) {
    put("C:\\Music\\Ärger.WAV");
    adder.Cmaddfile2("C:\\Music\\Ärger.WAV");
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("c:\\music\\ärger.wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\ärger.wav"));
}

TEST_F(Cmaddfile2Test, WithoutFullPathsShowsOnlyTheNameAndStoresThePath) {
    process.settings.showFullPath = 0;
    put("c:\\music\\a.wav");
    adder.Cmaddfile2("c:\\music\\a.wav");
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("a.wav"));
    EXPECT_EQ(node("a.wav")->key(), "p namea.wav");
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav"));
    EXPECT_EQ(process.SplitDir, "c:\\music\\");
}

TEST_F(Cmaddfile2Test, ANameWithABracketIsComparedLiterally) {
    put("c:\\music\\x1.wav");
    put("c:\\music\\x[1].wav");
    adder.Cmaddfile2("c:\\music\\x1.wav");
    for (int time = 0; time < 2; ++time) {
        adder.Cmaddfile2("c:\\music\\x[1].wav");
        EXPECT_THAT(childrenOf("WAV Files"),
                    ElementsAre("c:\\music\\x1.wav", "c:\\music\\x[1].wav"));
        EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\x[1].wav", "c:\\music\\x1.wav"));
    }
}

TEST_F(Cmaddfile2Test, AnEntryWithABracketAndWithoutANodeIsNotDuplicated) {
    put("c:\\music\\x[1].wav");
    form.List1.addItem("c:\\music\\x[1].wav");
    adder.Cmaddfile2("c:\\music\\x[1].wav");
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\x[1].wav"));
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("c:\\music\\x[1].wav"));
}

TEST_F(Cmaddfile2Test, AFileBelowAHundredBytesIsIgnored) {
    const auto before = outline();
    put("c:\\music\\short.wav", 99);
    adder.Cmaddfile2("c:\\music\\short.wav");
    EXPECT_EQ(outline(), before);
    EXPECT_THAT(lines(form.List1), IsEmpty());
    put("c:\\music\\enough.wav", 100);
    adder.Cmaddfile2("c:\\music\\enough.wav");
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\enough.wav"));
}

TEST_F(Cmaddfile2Test, APathIsIgnoredIfItsFileLengthIsUnknown) {
    const auto before = outline();
    put("c:\\music\\locked.wav");
    disk.failWith(test::FakeFileSystem::Operation::fileLength, "c:\\music\\locked.wav",
                  ErrorNumber::permissionDenied);
    for (const char* path :
         {"c:\\music\\locked.wav", "c:\\music\\missing.wav", "c:\\music", "3", ""}) {
        adder.Cmaddfile2(path);
    }
    EXPECT_EQ(outline(), before);
    EXPECT_THAT(lines(form.List1), IsEmpty());
}

TEST_F(Cmaddfile2Test, AddingAFileTwiceLeavesOneNodeAndOneEntry) {
    put("c:\\music\\a.wav");
    adder.Cmaddfile2("c:\\music\\a.wav");
    adder.Cmaddfile2("C:\\MUSIC\\A.WAV");
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("c:\\music\\a.wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav"));
}

TEST_F(Cmaddfile2Test, WithoutFullPathsANameInTheTreeBlocksAFileOfTheSameNameInAnotherFolder) {
    process.settings.showFullPath = 0;
    put("c:\\one\\a.wav");
    put("c:\\two\\a.wav");
    adder.Cmaddfile2("c:\\one\\a.wav");
    adder.Cmaddfile2("c:\\two\\a.wav");
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("a.wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\one\\a.wav"));
}

TEST_F(Cmaddfile2Test, WithFullPathsFilesOfTheSameNameInTwoFoldersAreBothAdded) {
    put("c:\\one\\a.wav");
    put("c:\\two\\a.wav");
    adder.Cmaddfile2("c:\\one\\a.wav");
    adder.Cmaddfile2("c:\\two\\a.wav");
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\two\\a.wav", "c:\\one\\a.wav"));
}

TEST_F(Cmaddfile2Test, IgnoresAFileWhoseNameWithoutTheFolderIsTheTextOfANodeInAnyGroup) {
    put("c:\\music\\a.wav");
    // The group need not be a group of WAV files.
    addItem(view, node("Selected Tracks"), "p stray", "a.wav").passOver();
    adder.Cmaddfile2("c:\\music\\a.wav");
    EXPECT_THAT(childrenOf("WAV Files"), IsEmpty());
    EXPECT_THAT(lines(form.List1), IsEmpty());
}

TEST_F(Cmaddfile2Test, AnEntryWithoutANodeGetsANodeAndIsNotDuplicated) {
    put("c:\\music\\a.mp3");
    fill(form.List2, {"x", "c:\\music\\a.mp3"});
    adder.Cmaddfile2("c:\\music\\a.mp3");
    EXPECT_THAT(childrenOf("MP3 Files"), ElementsAre("c:\\music\\a.mp3"));
    EXPECT_THAT(lines(form.List2), ElementsAre("x", "c:\\music\\a.mp3"));
}

TEST_F(Cmaddfile2Test, ANewFileWithTheOldNameOfARenamedFileGetsAnEntryButNoNode) {
    process.settings.showFullPath = 0;
    put("c:\\music\\a.wav");
    adder.Cmaddfile2("c:\\music\\a.wav");
    press(node("a.wav"));
    view.finishLabelEdit("b.wav");
    ASSERT_EQ(node("b.wav")->key(), "p namea.wav");
    put("c:\\music\\a.wav");
    adder.Cmaddfile2("c:\\music\\a.wav");
    // The renamed node keeps its key. The new node would need the same key, so adding the new node
    // fails.
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("b.wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav", "c:\\music\\b.wav"));
}

TEST_F(Cmaddfile2Test, AFileThatIsNeitherWavNorMp3IsIgnored) {
    const auto before = outline();
    for (const char* path : {"c:\\music\\a.ogg", "c:\\music\\wav", "c:\\music\\a.mp3.txt"}) {
        put(path);
        adder.Cmaddfile2(path);
    }
    EXPECT_EQ(outline(), before);
    EXPECT_THAT(lines(form.List1), IsEmpty());
    EXPECT_THAT(lines(form.List2), IsEmpty());
}

TEST_F(Cmaddfile2Test, TheFileIsAddedToTheFirstNodeWithTheGroupsText) {
    const NodeRef later = addGroup(view, node("CD Tracks"), "g second", "WAV Files").value();
    put("c:\\music\\a.wav");
    adder.Cmaddfile2("c:\\music\\a.wav");
    EXPECT_THAT(later->children(), IsEmpty());
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("c:\\music\\a.wav"));
}

TEST_F(Cmaddfile2Test, OnlyTheEntryIsAddedIfTheGroupIsMissing) {
    put("c:\\music\\a.wav");
    view.remove(node("WAV Files Folder")).passOver();
    const auto before = outline();
    adder.Cmaddfile2("c:\\music\\a.wav");
    EXPECT_EQ(outline(), before);
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav"));
}

TEST_F(Cmaddfile2Test, OnlyTheEntryIsAddedIfTheGroupIsRemovedAfterItWasFound) {
    put("c:\\music\\a.wav");
    // The wait is the first yield; the second yield is between finding the group and adding to it.
    loop.atYield(2, [this] { view.remove(node("WAV Files Folder")).passOver(); });
    adder.Cmaddfile2("c:\\music\\a.wav");
    EXPECT_EQ(node("c:\\music\\a.wav"), nullptr);
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav"));
}

/// Starts a second call for the same file inside a yield of the first call. The parameter is the
/// number of that yield.
struct OverlappingCalls : Cmaddfile2Test, testing::WithParamInterface<int> {};

TEST_P(OverlappingCalls, LeaveOneNodeAndOneEntry) {
    put("c:\\music\\a.wav");
    bool ran = false;
    loop.atYield(GetParam(), [&] {
        ran = true;
        adder.Cmaddfile2("c:\\music\\a.wav");
    });
    adder.Cmaddfile2("c:\\music\\a.wav");
    EXPECT_TRUE(ran);
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("c:\\music\\a.wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\a.wav"));
}

INSTANTIATE_TEST_SUITE_P(EveryYield, OverlappingCalls, testing::Values(1, 2, 3));

TEST_F(Cmaddfile2Test, MakesTheNewNodeVisible) {
    test::RevealLog reveals;
    put("c:\\music\\a.wav");
    view.setObserver(&reveals);
    adder.Cmaddfile2("c:\\music\\a.wav");
    view.setObserver(nullptr);
    EXPECT_THAT(reveals.texts, ElementsAre("c:\\music\\a.wav"));
}

} // namespace
} // namespace sonarith
