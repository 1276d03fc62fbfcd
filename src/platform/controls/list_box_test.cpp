// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/list_box.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> linesOf(const ListBox& list) {
    std::vector<std::string> lines;
    for (int i = 0; i < list.listCount(); ++i) {
        lines.push_back(list.list(i));
    }
    return lines;
}

struct ListBoxTest : testing::Test {
    Form form{"Form1"};
    ListBox list{form, "List1"};
    int clicks = 0;
    int changes = 0;
    Connection connection;

    ListBoxTest() {
        for (const char* text : {"a", "b", "c"}) {
            list.addItem(text);
        }
        list.onClick = [this] {
            ++clicks;
        };
        connection = list.listChanged.connect([this](ListChange) { ++changes; });
    }
};

TEST_F(ListBoxTest, KeepsTheOrderOfItsLinesAndStartsWithoutACurrentLine) {
    EXPECT_THAT(linesOf(list), ElementsAre("a", "b", "c"));
    EXPECT_EQ(list.listIndex(), -1);
}

TEST_F(ListBoxTest, LinesOutsideTheListAreEmpty) {
    for (const int outside : {-2, -1, 3, 1000000}) {
        EXPECT_EQ(list.list(outside), "") << outside;
        EXPECT_FALSE(list.selected(outside));
        EXPECT_EQ(list.itemData(outside), 0);
    }
    EXPECT_EQ(list.text(), "");
}

TEST_F(ListBoxTest, AWriteOutsideTheListFailsAndChangesNothing) {
    for (const int outside : {-1, 3}) {
        EXPECT_EQ(list.setList(outside, "x").error().number, ErrorNumber::subscriptOutOfRange);
        EXPECT_EQ(list.removeItem(outside).error().number, ErrorNumber::subscriptOutOfRange);
        EXPECT_EQ(list.setSelected(outside, true).error().number, ErrorNumber::subscriptOutOfRange);
        EXPECT_EQ(list.setItemData(outside, 1).error().number, ErrorNumber::subscriptOutOfRange);
    }
    EXPECT_EQ(list.addItem("x", -1).error().number, ErrorNumber::invalidProcedureCall);
    EXPECT_EQ(list.addItem("x", 4).error().number, ErrorNumber::invalidProcedureCall);
    EXPECT_THAT(linesOf(list), ElementsAre("a", "b", "c"));
    EXPECT_EQ(changes, 0);
}

TEST_F(ListBoxTest, KeepsOnlyTheTextBeforeTheFirstNul) {
    const std::string withNul("x\0y", 3);
    list.addItem(withNul);
    list.addItem(withNul, 0).passOver();
    list.setList(1, withNul).passOver();
    EXPECT_THAT(linesOf(list), ElementsAre("x", "x", "b", "c", "x"));
}

TEST_F(ListBoxTest, AddItemInsertsBeforeALineOrAfterTheLastLine) {
    EXPECT_TRUE(list.addItem("first", 0).ok());
    EXPECT_TRUE(list.addItem("last", 4).ok());
    EXPECT_THAT(linesOf(list), ElementsAre("first", "a", "b", "c", "last"));
}

TEST_F(ListBoxTest, SetListIndexOutsideTheListFailsAndKeepsTheCurrentLine) {
    list.setListIndex(1).passOver();
    for (const int outside : {-2, 3}) {
        EXPECT_EQ(list.setListIndex(outside).error().number, ErrorNumber::invalidPropertyValue);
    }
    EXPECT_EQ(list.listIndex(), 1);
    EXPECT_EQ(list.text(), "b");
    EXPECT_EQ(clicks, 1);
}

TEST_F(ListBoxTest, SettingTheLastIndexSucceedsIfTheListIsEmpty) {
    list.clear();
    // The logic uses the index "ListCount minus 1" for the last line. Here the index is -1.
    EXPECT_TRUE(list.setListIndex(list.listCount() - 1).ok());
    EXPECT_EQ(list.listIndex(), -1);
}

TEST_F(ListBoxTest, SetListIndexRunsTheClickHandlerOnlyIfTheCurrentLineChanges) {
    list.setListIndex(2).passOver();
    list.setListIndex(2).passOver();
    EXPECT_EQ(clicks, 1);
    list.setListIndex(-1).passOver();
    EXPECT_EQ(clicks, 2);
}

TEST_F(ListBoxTest, TheSameLineStaysCurrentWhenOtherLinesAreAddedOrRemoved) {
    list.setListIndex(1).passOver();
    list.addItem("before", 0).passOver();
    EXPECT_EQ(list.text(), "b");
    list.addItem("in its place", 2).passOver();
    EXPECT_EQ(list.text(), "b");
    list.addItem("behind");
    list.removeItem(0).passOver();
    EXPECT_EQ(list.text(), "b");
    EXPECT_EQ(list.listIndex(), 2);
    list.removeItem(1).passOver();
    EXPECT_EQ(list.text(), "b");
    EXPECT_EQ(list.listIndex(), 1);
    list.removeItem(2).passOver();
    EXPECT_EQ(list.listIndex(), 1);
    EXPECT_EQ(clicks, 1);
}

TEST_F(ListBoxTest, NoLineIsCurrentAfterTheCurrentLineWasRemoved) {
    list.setListIndex(1).passOver();
    list.removeItem(1).passOver();
    EXPECT_EQ(list.listIndex(), -1);
    list.setListIndex(0).passOver();
    list.clear();
    EXPECT_EQ(list.listIndex(), -1);
}

TEST_F(ListBoxTest, TheMarkAndTheItemDataOfALineMoveWithTheLine) {
    list.setSelected(1, true).passOver();
    list.setItemData(1, 42).passOver();
    list.addItem("first", 0).passOver();
    EXPECT_TRUE(list.selected(2));
    EXPECT_EQ(list.itemData(2), 42);
    EXPECT_FALSE(list.selected(1));
    list.removeItem(2).passOver();
    EXPECT_FALSE(list.selected(2));
    EXPECT_EQ(list.itemData(2), 0);
}

TEST_F(ListBoxTest, NotifiesOnceOfEachInsertedEditedOrRemovedLine) {
    list.addItem("d");
    list.setList(0, "A").passOver();
    list.setList(0, "A").passOver();
    list.removeItem(0).passOver();
    list.setSelected(0, true).passOver();
    EXPECT_EQ(changes, 4);
    list.clear();
    EXPECT_EQ(changes, 5);
    EXPECT_EQ(list.listCount(), 0);
}

TEST_F(ListBoxTest, ATextReadFromALineIsACopy) {
    const auto& line = list.list(0);
    list.clear();
    EXPECT_EQ(line, "a");
}

TEST_F(ListBoxTest, CanAppendTheTextOfOneOfItsOwnLines) {
    for (int i = 0; i < 100; ++i) {
        list.addItem(list.list(0));
    }
    EXPECT_EQ(list.list(102), "a");
}

TEST_F(ListBoxTest, ChoosingALineRunsTheClickHandlerEvenIfTheLineIsCurrent) {
    list.choose(1);
    list.choose(1);
    EXPECT_EQ(clicks, 2);
    EXPECT_EQ(list.listIndex(), 1);
    for (const int outside : {-1, 3}) {
        list.choose(outside);
    }
    EXPECT_EQ(clicks, 2);
    EXPECT_EQ(list.listIndex(), 1);
}

TEST_F(ListBoxTest, NotifiesWhichLineHasChangedAndHow) {
    using Kind = ListChange::Kind;
    std::vector<std::pair<Kind, int>> seen;
    const Connection watch = list.listChanged.connect(
        [&](ListChange change) { seen.emplace_back(change.kind, change.index); });
    list.addItem("d");
    list.addItem("top", 0).passOver();
    list.removeItem(2).passOver();
    list.setList(1, "A").passOver();
    list.setList(1, "A").passOver();
    list.setSelected(3, true).passOver();
    list.setSelected(3, true).passOver();
    list.clear();
    EXPECT_THAT(seen, ElementsAre(std::pair(Kind::inserted, 3), std::pair(Kind::inserted, 0),
                                  std::pair(Kind::removed, 2), std::pair(Kind::edited, 1),
                                  std::pair(Kind::edited, 3), std::pair(Kind::cleared, 0)));
}

struct ReorderTest : ListBoxTest {
    ListBox scratch{form, "List7"};
    ReorderTest() { scratch.addItem("left over"); }
};

TEST_F(ReorderTest, PutOnTopInsertsTheLineAndLeavesACopyOfTheResultInTheScratchList) {
    putOnTop(list, "top", scratch);
    EXPECT_THAT(linesOf(list), ElementsAre("top", "a", "b", "c"));
    EXPECT_THAT(linesOf(scratch), ElementsAre("top", "a", "b", "c"));
}

TEST_F(ReorderTest, PutOnTopCanAddALineToAnEmptyList) {
    list.clear();
    putOnTop(list, "top", scratch);
    EXPECT_THAT(linesOf(list), ElementsAre("top"));
}

TEST_F(ReorderTest, PutOnTopAcceptsALineOfTheScratchList) {
    putOnTop(list, scratch.list(0), scratch);
    EXPECT_THAT(linesOf(list), ElementsAre("left over", "a", "b", "c"));
}

TEST_F(ReorderTest, ReverseReversesTheListAndLeavesACopyOfTheResultInTheScratchList) {
    reverse(list, scratch);
    EXPECT_THAT(linesOf(list), ElementsAre("c", "b", "a"));
    EXPECT_THAT(linesOf(scratch), ElementsAre("c", "b", "a"));
    list.clear();
    reverse(list, scratch);
    EXPECT_THAT(linesOf(list), IsEmpty());
}

} // namespace
} // namespace sonarith
