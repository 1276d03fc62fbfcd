// SPDX-License-Identifier: GPL-3.0-or-later
// Tests what happens if, at a yield of a search, the user stops or restarts the search, closes the
// window, changes the lists or ends the program.
#include <gmock/gmock.h>

#include <memory>

#include "support/finder_world.h"
#include "support/must_run.h"

namespace sonarith {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::Gt;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::SizeIs;

/// The step that a search takes after a yield: the next entry of a folder, or the folder's end. For
/// the entry ".." and for the end, `file` is empty and `isFolder` is false.
struct Step {
    int folder; ///< the number of the folder in the walk
    std::string file = {};
    bool isFolder = false;
};

/// A tree of five folders, and the expected step after each yield of a search in it.
class SearchStopsTest : public testing::Test {
  protected:
    static std::unique_ptr<test::FinderWorld> makeWorld() {
        auto world = std::make_unique<test::FinderWorld>();
        world->disk.addFile("c:\\m\\a.wav");
        world->disk.addFolder("c:\\m\\x");
        world->disk.addFile("c:\\m\\b.wav");
        world->disk.addFolder("c:\\m\\y");
        world->disk.addFile("c:\\m\\y\\c.wav");
        world->disk.addFolder("c:\\m\\y\\z");
        world->disk.addFile("c:\\m\\y\\d.wav");
        world->disk.addFile("c:\\m\\x\\e.wav");
        world->disk.addFolder("c:\\m\\x\\w");
        return world;
    }
    inline static const std::vector<Step> steps = {{0},
                                                   {0, "c:\\m\\a.wav"},
                                                   {0, "", true},
                                                   {0, "c:\\m\\b.wav"},
                                                   {0, "", true},
                                                   {0},
                                                   {1},
                                                   {1, "c:\\m\\y\\c.wav"},
                                                   {1, "", true},
                                                   {1, "c:\\m\\y\\d.wav"},
                                                   {1},
                                                   {2},
                                                   {2},
                                                   {3},
                                                   {3, "c:\\m\\x\\e.wav"},
                                                   {3, "", true},
                                                   {3},
                                                   {4},
                                                   {4}};
    static constexpr int stepCount = 19;

    static std::vector<std::string> filesUpToFolder(int folder) {
        std::vector<std::string> files;
        for (const Step& step : steps) {
            if (step.folder <= folder && !step.file.empty()) {
                files.push_back(step.file);
            }
        }
        return files;
    }
    static void expectIdle(const test::FinderWorld& world) {
        const FrmSearch& finder = world.finder;
        EXPECT_EQ(finder.Command1.caption(), "Search !");
        EXPECT_TRUE(finder.Command1.enabled());
        EXPECT_TRUE(finder.Drive1.enabled());
        EXPECT_TRUE(finder.Text1.enabled());
        EXPECT_TRUE(finder.zFileExt.enabled());
        EXPECT_TRUE(finder.chkhidelist.visible());
        EXPECT_TRUE(finder.lstdirs.visible());
        EXPECT_TRUE(finder.List1.visible());
        EXPECT_TRUE(finder.lstfiles.visible());
        EXPECT_EQ(finder.lstdirs.listCount(), 0);
        EXPECT_EQ(finder.DirCount, 0);
        EXPECT_EQ(finder.FileCount, 0);
    }
};

TEST_F(SearchStopsTest, ACompleteSearchHasTheExpectedNumberOfYields) {
    const auto world = makeWorld();
    world->search("c:\\m", ".wav");
    EXPECT_EQ(world->loop.yieldCount(), stepCount);
    EXPECT_THAT(steps, SizeIs(stepCount));
    EXPECT_THAT(world->lines(world->finder.lstfiles), ElementsAreArray(filesUpToFolder(4)));
    EXPECT_EQ(world->finder.Label1.caption(), "Directories: 4   Files:  5");
    expectIdle(*world);
}

TEST_F(SearchStopsTest, AStopAtAnyYieldEndsTheSearchAtTheEndOfTheCurrentFolder) {
    for (int n = 1; n <= stepCount; ++n) {
        SCOPED_TRACE(n);
        const auto world = makeWorld();
        FrmSearch& finder = world->finder;
        world->loop.setSecondsSinceMidnight(100);
        const auto stoppedAt = static_cast<std::size_t>(n - 1);
        world->loop.atYield(n, [&] {
            const std::string files = std::to_string(finder.lstfiles.listCount());
            const std::string folders = std::to_string(finder.DirCount);
            finder.lstdirs.setVisible(false);
            finder.Command1.click();
            // The click resets the window at once.
            EXPECT_EQ(finder.lbltime.caption(), "Time taken: 0 second(s)");
            EXPECT_EQ(finder.Label1.caption(), "Directories: " + folders + "   Files:  " + files);
            expectIdle(*world);
            world->loop.setSecondsSinceMidnight(107.5);
        });
        world->search("c:\\m", ".wav");
        const int folder = steps[stoppedAt].folder;
        int foldersAfter = 0;
        std::size_t yields = 0;
        for (std::size_t i = 0; i < steps.size() && steps[i].folder <= folder; ++i) {
            ++yields;
            foldersAfter += i >= stoppedAt && steps[i].isFolder ? 1 : 0;
        }
        EXPECT_EQ(world->loop.yieldCount(), static_cast<int>(yields));
        const std::vector<std::string> files = filesUpToFolder(folder);
        EXPECT_THAT(world->lines(finder.lstfiles), ElementsAreArray(files));
        EXPECT_EQ(finder.lbltime.caption(), "Time taken: 7.5 second(s)");
        EXPECT_EQ(finder.Label1.caption(), "Directories: " + std::to_string(foldersAfter) +
                                               "   Files:  " + std::to_string(files.size()));
        expectIdle(*world);
    }
}

TEST_F(SearchStopsTest, FoldersInTheCurrentFolderAreStillAddedToList1AfterAStop) {
    const auto world = makeWorld();
    world->loop.atYield(2, [&] { world->finder.Command1.click(); });
    world->search("c:\\m", ".wav");
    EXPECT_THAT(world->lines(world->finder.List1),
                ElementsAre("c:\\m\\", "c:\\m\\y\\", "c:\\m\\x\\"));
    EXPECT_THAT(world->disk.listed, ElementsAre("c:\\m\\*.*"));
}

TEST_F(SearchStopsTest, ASearchStartedInsideAStoppedSearchFinishesFirst) {
    for (int n = 1; n < stepCount; ++n) {
        SCOPED_TRACE(n);
        const auto world = makeWorld();
        FrmSearch& finder = world->finder;
        std::vector<std::string> inner;
        world->loop.atYield(n, [&] {
            finder.Command1.click(); // stop
            finder.Command1.click(); // start the inner search
            inner = world->lines(finder.lstfiles);
            EXPECT_EQ(finder.Label1.caption(), "Directories: 4   Files:  5");
        });
        world->search("c:\\m", ".wav");
        EXPECT_THAT(inner, ElementsAreArray(filesUpToFolder(4)));
        // After the inner search, only the remaining files of the outer search's current folder
        // are added.
        EXPECT_THAT(world->lines(finder.lstfiles), IsSupersetOf(inner));
        int rest = 0;
        const int folder = steps[static_cast<std::size_t>(n - 1)].folder;
        for (auto i = static_cast<std::size_t>(n - 1); i < steps.size(); ++i) {
            rest += steps[i].folder == folder && !steps[i].file.empty() ? 1 : 0;
        }
        EXPECT_EQ(finder.lstfiles.listCount(), 5 + rest);
        EXPECT_EQ(world->disk.walksStarted, 2);
        expectIdle(*world);
    }
}

TEST_F(SearchStopsTest, TwoClicksOnTheSearchButtonAtDifferentYieldsLeaveTheWindowIdleAtTheEnd) {
    for (int first = 1; first <= stepCount; ++first) {
        for (int second = first + 1; second <= first + 8; ++second) {
            SCOPED_TRACE(std::to_string(first) + ", " + std::to_string(second));
            const auto world = makeWorld();
            world->loop.atYield(first, [&] { world->finder.Command1.click(); });
            world->loop.atYield(second, [&] { world->finder.Command1.click(); });
            world->search("c:\\m", ".wav");
            expectIdle(*world);
            EXPECT_THAT(world->disk.walksStarted, AnyOf(1, 2));
        }
    }
}

TEST_F(SearchStopsTest, ClosingTheWindowAtAnyYieldEndsTheSearchAtOnce) {
    for (int n = 1; n <= stepCount; ++n) {
        SCOPED_TRACE(n);
        const auto world = makeWorld();
        FrmSearch& finder = world->finder;
        world->loop.atYield(
            n, [&] { (n % 2 == 0 ? finder.cmdend.onClick : finder.mnuClose.onClick)(); });
        world->search("c:\\m", ".wav");
        EXPECT_FALSE(finder.loaded());
        EXPECT_EQ(world->loop.yieldCount(), n);
        // The search has closed every folder that it listed.
        EXPECT_EQ(world->disk.closed.size(), world->disk.listed.size());
        finder.show();
        expectIdle(*world);
        EXPECT_THAT(world->lines(finder.lstfiles), IsEmpty());
        EXPECT_THAT(world->lines(finder.List1), IsEmpty());
        EXPECT_EQ(finder.zFileExt.text(), ".wav");
        EXPECT_EQ(finder.lbltime.caption(), "Time taken: 0 second(s)");
        EXPECT_EQ(finder.Label1.caption(), "");
        // The next search counts from 0.
        world->search("c:\\m", ".wav");
        EXPECT_EQ(finder.Label1.caption(), "Directories: 4   Files:  5");
    }
}

TEST_F(SearchStopsTest, AWindowReopenedDuringASearchIsIndependentOfThatSearch) {
    for (int n = 1; n <= stepCount; ++n) {
        SCOPED_TRACE(n);
        const auto world = makeWorld();
        world->disk.addFile("c:\\other\\o.mp3");
        FrmSearch& finder = world->finder;
        world->loop.atYield(n, [&] {
            finder.cmdend.click();
            finder.show();
            world->search("c:\\other", ".mp3");
        });
        world->search("c:\\m", ".wav");
        // The earlier search has not changed the result in the reopened window.
        EXPECT_THAT(world->lines(finder.lstfiles), ElementsAre("c:\\other\\o.mp3"));
        EXPECT_THAT(world->lines(finder.List1), ElementsAre("c:\\other\\"));
        EXPECT_EQ(finder.Label1.caption(), "Directories: 0   Files:  1");
        EXPECT_TRUE(finder.visible());
        expectIdle(*world);
    }
}

TEST_F(SearchStopsTest, TheUnusedFunctionFindfilesdirEndsAtOnceWhenTheWindowIsClosed) {
    const auto world = makeWorld();
    const auto walk = world->disk.startWalk();
    world->loop.atYield(4, [&] { world->finder.cmdend.click(); });
    std::string path = "c:\\m";
    world->engine.findfilesdir(*walk, path, "*.*");
    EXPECT_EQ(world->loop.yieldCount(), 4);
    EXPECT_FALSE(world->finder.loaded());
    EXPECT_THAT(world->disk.closed, SizeIs(1));
}

TEST_F(SearchStopsTest, ResultsMayBeRemovedAtEveryYield) {
    const auto world = makeWorld();
    FrmSearch& finder = world->finder;
    for (int n = 1; n <= stepCount; ++n) {
        world->loop.atYield(n, [&] {
            finder.lstfiles.setListIndex(finder.lstfiles.listCount() - 1).passOver();
            finder.mnuRemoveFile.click();
        });
    }
    world->search("c:\\m", ".wav");
    EXPECT_THAT(world->lines(finder.lstfiles), IsEmpty());
    EXPECT_EQ(finder.Label1.caption(), "Directories: 4   Files:  0");
}

TEST_F(SearchStopsTest, AFileMayBeDeletedInsideAYield) {
    const auto world = makeWorld();
    FrmSearch& finder = world->finder;
    world->files.addFile("c:\\m\\a.wav", "sound");
    world->boxes.answers = {BoxAnswer::yes};
    world->loop.atYield(4, [&] {
        EXPECT_TRUE(finder.lstfiles.setListIndex(0).ok());
        finder.mnuDelete.click();
        // The deletion yields while it pauses, here inside a yield of the search.
        EXPECT_THAT(world->loop.yieldCount(), Gt(5));
    });
    world->search("c:\\m", ".wav");
    EXPECT_FALSE(world->files.fileExists("c:\\m\\a.wav"));
    EXPECT_THAT(world->lines(finder.lstfiles), ElementsAre("c:\\m\\b.wav", "c:\\m\\y\\c.wav",
                                                           "c:\\m\\y\\d.wav", "c:\\m\\x\\e.wav"));
    expectIdle(*world);
}

TEST_F(SearchStopsTest, SelectingAFileForConversionAtAnyYieldDoesNotAffectTheSearch) {
    for (int n = 3; n <= stepCount; ++n) { // from the third yield on, a.wav is listed
        SCOPED_TRACE(n);
        const auto world = makeWorld();
        FrmSearch& finder = world->finder;
        world->files.addFile("c:\\m\\a.wav", std::string(200, 'x'));
        world->loop.atYield(n, test::mustRun([&] {
                                EXPECT_TRUE(finder.lstfiles.setListIndex(0).ok());
                                finder.mnuSeelectfile.click();
                                EXPECT_EQ(finder.Command1.caption(), "Stop!");
                                EXPECT_THAT(world->lines(world->form.List1),
                                            Contains("c:\\m\\a.wav"));
                            }));
        world->search("c:\\m", ".wav");
        EXPECT_THAT(world->lines(finder.lstfiles), ElementsAreArray(filesUpToFolder(4)));
        EXPECT_EQ(finder.Label1.caption(), "Directories: 4   Files:  5");
        expectIdle(*world);
    }
}

TEST_F(SearchStopsTest, TheEndOfTheProgramEndsTheSearchAtOnce) {
    for (int n = 1; n <= stepCount; ++n) {
        const auto world = makeWorld();
        world->loop.atYield(n, [&] { world->loop.endProgram(); });
        EXPECT_THROW(world->search("c:\\m", ".wav"), test::ProgramEnded);
        EXPECT_EQ(world->loop.yieldsAfterEnd(), 0);
    }
}

} // namespace
} // namespace sonarith
