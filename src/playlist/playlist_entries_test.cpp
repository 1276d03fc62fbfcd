// SPDX-License-Identifier: GPL-3.0-or-later
#include "playlist/playlist_entries.h"

#include <gmock/gmock.h>

#include "support/playlist_world.h"

namespace sonarith {
namespace {

using test::StoreWrite;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class PlaylistEntriesTest : public test::PlaylistWorld {
  protected:
    static StoreWrite wrote(const std::string& key, const std::string& value) {
        return {"music", key, value};
    }
    void add(const std::string& path) {
        editor.Text5.setText(path);
        editor.Command20.click();
    }
};

// --- loading ---------------------------------------------------------------------------------

TEST_F(PlaylistEntriesTest, LoadsTheStoredListIntoACentredWindow) {
    stored({pathB, pathA});
    editor.load();
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathB, pathA));
    EXPECT_EQ(editor.left(), (shell.screenWidth() - editor.width()) / 2);
    EXPECT_EQ(editor.top(), (shell.screenHeight() - editor.height()) / 2);
    EXPECT_THAT(store.writes, IsEmpty());
    EXPECT_EQ(editor.List2.listIndex(), -1);
}

TEST_F(PlaylistEntriesTest, LoadsNothingFromAFreshStore) {
    editor.load();
    EXPECT_THAT(lines(editor.List2), IsEmpty());
    EXPECT_THAT(store.readKeys, testing::Contains("HowMany"));
    EXPECT_THAT(store.readKeys, testing::Not(testing::Contains("1")));
}

TEST_F(PlaylistEntriesTest, ShowsTheWordEmptyForAMissingEntryAndForAnEntryWhoseValueIs0) {
    store.put("music", "HowMany", "4");
    store.put("music", "1", pathA);
    store.put("music", "3", "0");
    store.put("music", "4", "");
    editor.load();
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, "Empty", "Empty", ""));
}

TEST_F(PlaylistEntriesTest, IgnoresKeysBeyondTheCount) {
    stored({pathA, pathB});
    store.put("music", "HowMany", "1");
    editor.load();
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA));
}

TEST_F(PlaylistEntriesTest, LoadsNothingIfTheCountIsNotAPositive32BitNumber) {
    for (const char* count : {"-1", "0", "x", "", " ", "1x", "-70000", "99999999999", "1e300"}) {
        stored({pathA});
        store.put("music", "HowMany", count);
        editor.unload();
        editor.load();
        EXPECT_THAT(lines(editor.List2), IsEmpty()) << count;
    }
}

TEST_F(PlaylistEntriesTest, LoadsAsManyLinesAsTheCountButAtMost100000MissingEntries) {
    struct Row {
        const char* count;
        int lines;
    };
    for (const Row& row : {Row{"32767", 32767}, Row{"70000", 70'000}, Row{"2147483647", 100'000}}) {
        store.put("music", "HowMany", row.count);
        editor.unload();
        editor.load();
        EXPECT_EQ(editor.List2.listCount(), row.lines);
        EXPECT_EQ(editor.List2.list(row.lines - 1), "Empty");
    }
}

// If existing entries were limited, the next change of the list would drop the entries after the
// limit.
TEST_F(PlaylistEntriesTest, TheNumberOfExistingEntriesIsNotLimited) {
    stored(std::vector<std::string>(100'002, pathA));
    editor.load();
    EXPECT_EQ(editor.List2.listCount(), 100'002);
    add(pathB);
    EXPECT_EQ(store.held("music", "HowMany"), "100003");
    EXPECT_EQ(store.held("music", "100003"), pathB);
}

TEST_F(PlaylistEntriesTest, DelistingFromAListWithOnlyMissingEntriesLeavesAnEmptyList) {
    store.put("music", "HowMany", "32767");
    editor.load();
    EXPECT_EQ(editor.List2.listCount(), 32767);
    select(16'000);
    editor.Command6.click();
    EXPECT_EQ(editor.List2.listCount(), 0);
    EXPECT_EQ(store.held("music", "HowMany"), "0");
    EXPECT_EQ(store.held("music", "1"), std::nullopt);
}

TEST_F(PlaylistEntriesTest, HasTheSameEntriesAfterTheWindowWasClosedAndOpenedAgain) {
    open({pathA});
    add(pathB);
    editor.unload();
    editor.load();
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB));
}

TEST_F(PlaylistEntriesTest, PlaylistPathKeysReturnsTheKeysOfExistingAndMissingEntries) {
    EXPECT_THAT(playlistPathKeys(store), IsEmpty());
    stored({pathA, pathB, pathC});
    EXPECT_THAT(playlistPathKeys(store), ElementsAre("1", "2", "3"));
    store.put("music", "HowMany", "x");
    EXPECT_THAT(playlistPathKeys(store), IsEmpty());
    store.put("music", "HowMany", "2000000000");
    EXPECT_THAT(playlistPathKeys(store), SizeIs(100'003));
}

// --- adding ----------------------------------------------------------------------------------

TEST_F(PlaylistEntriesTest, AppendsTheEditedPathAndClearsItsBox) {
    open({pathA});
    add(pathB);
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB));
    EXPECT_THAT(store.writes, ElementsAre(wrote("HowMany", "2"), wrote("2", pathB)));
    EXPECT_EQ(store.fileWrites, 1);
    EXPECT_EQ(editor.Text5.text(), "");
    EXPECT_EQ(editor.List2.listIndex(), -1);
}

TEST_F(PlaylistEntriesTest, AddsATextWithoutCheckingWhetherSuchAFileExists) {
    open({});
    add("  no file at all.wav ");
    EXPECT_THAT(lines(editor.List2), ElementsAre("  no file at all.wav "));
    EXPECT_EQ(store.held("music", "1"), "  no file at all.wav ");
    EXPECT_THAT(disk.log, IsEmpty());
}

TEST_F(PlaylistEntriesTest, DoesNotAddATextOfBlanks) {
    open({});
    for (const char* nothing : {"", " ", "    "}) {
        add(nothing);
        EXPECT_THAT(lines(editor.List2), IsEmpty());
        EXPECT_EQ(editor.Text5.text(), nothing);
    }
    EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(PlaylistEntriesTest, APathThatIsAlreadyInTheListIsNotAddedAndStaysInTheBox) {
    open({pathA, pathB});
    add(pathB);
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB));
    EXPECT_THAT(store.writes, IsEmpty());
    EXPECT_EQ(editor.Text5.text(), pathB);
}

TEST_F(PlaylistEntriesTest, ComparesPathsIncludingCaseAndBlanks) {
    open({pathA});
    add("C:\\music\\a.mp3");
    add(pathA + " ");
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, "C:\\music\\a.mp3", pathA + " "));
}

TEST_F(PlaylistEntriesTest, DoesNotAddAPathThatMatchesAnEntryUsedAsAPattern) {
    open({"c:\\*.mp3", "d:\\#?.mp3", "e:\\[ab].mp3"});
    for (const char* known : {"c:\\x\\y.mp3", "d:\\1z.mp3", "e:\\b.mp3"}) {
        add(known);
        EXPECT_EQ(editor.Text5.text(), known);
    }
    EXPECT_THAT(store.writes, IsEmpty());
    // The edited path is not used as a pattern.
    add("*");
    EXPECT_EQ(editor.List2.listCount(), 4);
}

TEST_F(PlaylistEntriesTest, APathWithAnOpeningSquareBracketCanBeAddedTwice) {
    open({});
    add("c:\\[x.mp3");
    add("c:\\[x.mp3");
    add("c:\\[12].mp3");
    add("c:\\[12].mp3");
    EXPECT_EQ(editor.List2.listCount(), 4);
}

// --- delisting -------------------------------------------------------------------------------

TEST_F(PlaylistEntriesTest, DelistsTheSelectedEntryInOneTransactionOfTheStore) {
    open({pathA, pathB, pathC});
    select(1);
    const int yields = loop.yieldCount();
    editor.Command6.click();
    EXPECT_EQ(loop.yieldCount(), yields);
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathC));
    EXPECT_THAT(inStore(), ElementsAre(pathA, pathC));
    EXPECT_EQ(store.fileWrites, 1);
    EXPECT_THAT(lines(editor.List3), IsEmpty());
    EXPECT_EQ(editor.List2.listIndex(), -1);
    // The selected index, which counts from 0, is used as a key, and keys count from 1. So the key
    // of the previous entry is emptied until the list is written again.
    EXPECT_THAT(store.writes,
                ElementsAre(wrote("1", ""), wrote("HowMany", "0"), wrote("HowMany", "1"),
                            wrote("1", pathA), wrote("HowMany", "2"), wrote("2", pathC)));
}

TEST_F(PlaylistEntriesTest, DelistingKeepsTheKeysAboveTheNewCount) {
    open({pathA, pathB, pathC});
    select(2);
    editor.Command6.click();
    EXPECT_EQ(store.held("music", "3"), pathC);
    EXPECT_EQ(store.held("music", "HowMany"), "2");
}

TEST_F(PlaylistEntriesTest, DelistingTheOnlyEntryLeavesItsKeyAndAKey0) {
    for (const bool byProcedure : {false, true}) {
        open({pathA});
        select(0);
        if (byProcedure) {
            EXPECT_TRUE(playlist.entries.CompactPlayList().ok());
        } else {
            editor.Command6.click();
        }
        EXPECT_THAT(lines(editor.List2), IsEmpty());
        EXPECT_EQ(store.held("music", "HowMany"), "0");
        EXPECT_EQ(store.held("music", "1"), pathA);
        EXPECT_EQ(store.held("music", "0"), "");
        EXPECT_THAT(store.writes, ElementsAre(wrote("0", ""), wrote("HowMany", "0")));
        editor.unload();
    }
}

// The last three characters may be "mp3" or "MP3"; an entry that ends in "Mp3" is removed.
TEST_F(PlaylistEntriesTest, DelistingAlsoRemovesEveryEntryThatDoesNotEndInMp3) {
    open({pathA, "Empty", "c:\\b.wav", "c:\\c.Mp3", "c:\\d.MP3", "mp3", "c:\\e.mp3 ", pathB});
    select(7);
    editor.Command6.click();
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, "c:\\d.MP3", "mp3"));
    EXPECT_THAT(inStore(), ElementsAre(pathA, "c:\\d.MP3", "mp3"));
}

TEST_F(PlaylistEntriesTest, AnAddedWavIsKeptUntilTheNextDelisting) {
    open({pathA, pathB});
    add("c:\\b.wav");
    EXPECT_THAT(inStore(), ElementsAre(pathA, pathB, "c:\\b.wav"));
    select(0);
    editor.Command6.click();
    EXPECT_THAT(inStore(), ElementsAre(pathB));
}

TEST_F(PlaylistEntriesTest, DelistingAlsoRemovesTheLineOfAMissingEntry) {
    store.put("music", "HowMany", "3");
    store.put("music", "1", pathA);
    store.put("music", "3", pathC);
    editor.load();
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, "Empty", pathC));
    select(2);
    editor.Command6.click();
    EXPECT_THAT(inStore(), ElementsAre(pathA));
}

TEST_F(PlaylistEntriesTest, EvenWithoutASelectionDelistingRemovesEntriesThatDoNotEndInMp3) {
    open({pathA, "Empty", pathB});
    editor.Command6.click();
    EXPECT_EQ(store.held("music", "-1"), "");
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB));
    EXPECT_THAT(inStore(), ElementsAre(pathA, pathB));
}

TEST_F(PlaylistEntriesTest, CompactPlayListFailsWithoutASelection) {
    open({pathA, "Empty", pathB});
    editor.List3.addItem("left");
    const Status status = playlist.entries.CompactPlayList();
    ASSERT_FALSE(status.ok());
    EXPECT_EQ(status.error().number, ErrorNumber::subscriptOutOfRange);
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, "Empty", pathB));
    EXPECT_THAT(lines(editor.List3), ElementsAre("left"));
    EXPECT_THAT(store.writes, ElementsAre(wrote("-1", "")));
    EXPECT_THAT(inStore(), ElementsAre(pathA, "Empty", pathB));
}

TEST_F(PlaylistEntriesTest, CompactPlayListStoresTheCountAfterEachMove) {
    open({pathA, pathB, pathC});
    select(0);
    EXPECT_TRUE(playlist.entries.CompactPlayList().ok());
    EXPECT_EQ(store.fileWrites, 1);
    EXPECT_THAT(store.writes,
                ElementsAre(wrote("0", ""), wrote("HowMany", "1"), wrote("HowMany", "0"),
                            wrote("HowMany", "1"), wrote("1", pathB), wrote("HowMany", "2"),
                            wrote("2", pathC)));
}

TEST_F(PlaylistEntriesTest, DelistingFromAnEmptyListWritesKeyMinus1AndTheCount0) {
    open({});
    editor.Command6.click();
    EXPECT_THAT(store.writes, ElementsAre(wrote("-1", ""), wrote("HowMany", "0")));
}

TEST_F(PlaylistEntriesTest, KeepsPathsOfAnyBytes) {
    const std::vector<std::string> odd = {"  c:\\blanks.mp3",
                                          "c:\\\xff\xfe.mp3",
                                          "c:\\Z\xc3\xbcrich \xe4\xb8\xad.mp3",
                                          "c:\\[.mp3",
                                          "c:\\[1].mp3",
                                          "c:\\\"q\".mp3",
                                          "c:\\'q', %41;=.mp3",
                                          "c:\\no. #1.mp3",
                                          "c:\\what?.mp3",
                                          "c:\\star*.mp3",
                                          "c:\\" + std::string(4089, 'x') + ".mp3"};
    ASSERT_EQ(odd.back().size(), 4096U);
    open({});
    for (const std::string& path : odd) {
        add(path);
    }
    EXPECT_EQ(lines(editor.List2), odd);
    add(pathA);
    select(static_cast<int>(odd.size()));
    editor.Command6.click();
    EXPECT_EQ(lines(editor.List2), odd);
    editor.unload();
    editor.load();
    EXPECT_EQ(lines(editor.List2), odd);
}

TEST_F(PlaylistEntriesTest, DelistingDropsThePreviousContentOfList3) {
    for (const bool byProcedure : {false, true}) {
        open({pathA, pathB});
        editor.List3.addItem(pathC);
        select(0);
        if (byProcedure) {
            EXPECT_TRUE(playlist.entries.CompactPlayList().ok());
        } else {
            editor.Command6.click();
        }
        EXPECT_THAT(inStore(), ElementsAre(pathB));
        EXPECT_THAT(lines(editor.List3), IsEmpty());
        editor.unload();
    }
}

TEST_F(PlaylistEntriesTest, AddingAndDelistingDoNotYield) {
    open({pathA, pathB});
    add(pathC);
    select(0);
    editor.Command6.click();
    select(0);
    EXPECT_TRUE(playlist.entries.CompactPlayList().ok());
    EXPECT_EQ(loop.yieldCount(), 0);
}

// A delisting moves lines from List2 to List3 and back, and writes keys of the store meanwhile. So
// a reader of the store sees each step.
TEST_F(PlaylistEntriesTest, ReadersOfTheStoreSeeEachStepOfADelisting) {
    struct Row {
        bool byProcedure;
        std::vector<std::string> counts;
    };
    // `counts`: the stored count at each removal of a line from List2. The delisted line is removed
    // first; then the two other lines move to List3. CompactPlayList stores the new count after
    // each line that moves, and the button "Delist" only after the last one.
    for (const Row& row : {Row{false, {"3", "3", "3"}}, Row{true, {"3", "3", "1"}}}) {
        open({pathA, pathB, pathC});
        std::vector<std::string> counts;
        std::vector<std::string> added;
        const auto read = [&](const std::string& key) {
            return store.GetSetting(applicationName, playlistSection, key, "(none)");
        };
        const auto leaving = editor.List2.listChanged.connect([&](const ListChange& change) {
            if (change.kind == ListChange::Kind::removed) {
                EXPECT_EQ(read("1"), ""); // the index 1 of the delisted line, used as a key
                counts.push_back(read("HowMany"));
            }
        });
        const auto moving = editor.List3.listChanged.connect([&](const ListChange& change) {
            if (change.kind == ListChange::Kind::removed) {
                added.push_back(read("HowMany") + " " + read(read("HowMany")));
            }
        });
        select(1);
        if (row.byProcedure) {
            EXPECT_TRUE(playlist.entries.CompactPlayList().ok());
        } else {
            editor.Command6.click();
        }
        EXPECT_EQ(counts, row.counts);
        EXPECT_THAT(added, ElementsAre("1 " + pathA, "2 " + pathC));
        EXPECT_EQ(store.fileWrites, 1);
        editor.unload();
    }
}

} // namespace
} // namespace sonarith
