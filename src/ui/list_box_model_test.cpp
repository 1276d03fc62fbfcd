// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/list_box_model.h"

#include <random>
#include <string>
#include <vector>

#include <QSignalSpy>
#include <gmock/gmock.h>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using Gathered = ListBoxModel::Gathered;

struct Announced {
    explicit Announced(const QAbstractItemModel& model)
        : inserted(&model, &QAbstractItemModel::rowsInserted),
          removed(&model, &QAbstractItemModel::rowsRemoved),
          changed(&model, &QAbstractItemModel::dataChanged) {}
    [[nodiscard]] std::vector<qsizetype> counts() const {
        return {inserted.count(), removed.count(), changed.count()};
    }
    QSignalSpy inserted;
    QSignalSpy removed;
    QSignalSpy changed;
};

std::vector<std::string> rowsOf(const ListBoxModel& model) {
    std::vector<std::string> rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        rows.push_back(model.data(model.index(row), Qt::DisplayRole).toString().toStdString());
    }
    return rows;
}

class ListBoxModelTest : public testing::Test {
  protected:
    void fill(const std::vector<std::string>& lines) {
        for (const std::string& line : lines) {
            list.addItem(line);
        }
    }
    Form form{"frmsearch"};
    ListBox list{form, "lstdirs"};
};

/// Makes the changes that a file search makes in its list of folders to scan. The search always
/// scans the first folder of the list: it inserts the subfolders behind this folder and then
/// removes this folder.
TEST_F(ListBoxModelTest, ChangesOfNearbyLinesAreAnnouncedTogetherAndOnlyOnce) {
    fill({"scanned", "waiting", "last"});
    ListBoxModel model(list, Gathered::changes);
    const Announced announced(model);
    for (const char* folder : {"a", "b", "c"}) {
        list.addItem(folder, 1).passOver();
    }
    list.removeItem(0).passOver();
    list.addItem("d", 1).passOver();
    list.removeItem(0).passOver();
    EXPECT_THAT(announced.counts(), ElementsAre(0, 0, 0));
    EXPECT_EQ(model.rowCount(), 3);
    model.showAll();
    EXPECT_THAT(rowsOf(model), ElementsAre("d", "b", "a", "waiting", "last"));
    EXPECT_THAT(announced.counts(), ElementsAre(1, 0, 1));
    model.showAll();
    EXPECT_THAT(announced.counts(), ElementsAre(1, 0, 1));
}

TEST_F(ListBoxModelTest, RemovalsWithoutAdditionsAreAnnouncedTogether) {
    fill({"a", "b", "c", "d"});
    ListBoxModel model(list, Gathered::changes);
    const Announced announced(model);
    for (int i = 0; i < 3; ++i) {
        list.removeItem(0).passOver();
    }
    EXPECT_EQ(model.rowCount(), 4);
    model.showAll();
    EXPECT_THAT(rowsOf(model), ElementsAre("d"));
    EXPECT_THAT(announced.counts(), ElementsAre(0, 1, 0));
}

TEST_F(ListBoxModelTest, AdditionsModeDelaysOnlyLinesAddedBehindAllAnnouncedLines) {
    fill({"a", "b", "c"});
    ListBoxModel model(list, Gathered::additions);
    const Announced announced(model);
    list.addItem("first", 0).passOver();
    EXPECT_THAT(announced.counts(), ElementsAre(1, 0, 0));
    list.removeItem(1).passOver();
    EXPECT_THAT(announced.counts(), ElementsAre(1, 1, 0));
    list.addItem("last");
    list.addItem("before the last", 3).passOver();
    EXPECT_THAT(rowsOf(model), ElementsAre("first", "b", "c"));
    model.showAll();
    EXPECT_THAT(rowsOf(model), ElementsAre("first", "b", "c", "before the last", "last"));
}

/// The changes except the last are those of a file search that scans two folders without subfolders
/// and then a folder with three subfolders.
TEST_F(ListBoxModelTest, AChangeCloseToPendingChangesIsAnnouncedWithThem) {
    fill({"a", "b", "c", "d", "e", "f"});
    ListBoxModel model(list, Gathered::changes);
    const Announced announced(model);
    list.removeItem(0).passOver();
    list.removeItem(0).passOver();
    for (const char* folder : {"x", "y", "z"}) {
        list.addItem(folder, 1).passOver();
    }
    list.removeItem(0).passOver();
    list.removeItem(3).passOver();
    EXPECT_THAT(announced.counts(), ElementsAre(0, 0, 0));
    model.showAll();
    EXPECT_THAT(rowsOf(model), ElementsAre("z", "y", "x", "e", "f"));
    EXPECT_THAT(announced.counts(), ElementsAre(0, 1, 1));
}

TEST_F(ListBoxModelTest, AChangeTwoLinesFromPendingChangesIsAnnouncedWithThem) {
    fill({"a", "b", "c", "d", "e", "f", "g", "h"});
    ListBoxModel model(list, Gathered::changes);
    const Announced announced(model);
    list.addItem("new", 4).passOver();
    list.removeItem(7).passOver(); // "e" and "f" are between the changes
    EXPECT_THAT(announced.counts(), ElementsAre(0, 0, 0));
    model.showAll();
    EXPECT_THAT(announced.counts(), ElementsAre(0, 0, 1));
    EXPECT_THAT(rowsOf(model), ElementsAre("a", "b", "c", "d", "new", "e", "f", "h"));
}

TEST_F(ListBoxModelTest, AChangeMoreThanTwoLinesFromPendingChangesIsAnnouncedAtOnce) {
    fill({"a", "b", "c", "d", "e", "f", "g", "h"});
    ListBoxModel model(list, Gathered::changes);
    list.addItem("new", 4).passOver();
    list.removeItem(8).passOver();
    EXPECT_THAT(rowsOf(model), ElementsAre("a", "b", "c", "d", "e", "f", "g"));
    list.removeItem(0).passOver();
    EXPECT_THAT(rowsOf(model), ElementsAre("b", "c", "d", "e", "f", "g"));
    list.addItem("first", 0).passOver();
    EXPECT_THAT(rowsOf(model), ElementsAre("first", "b", "c", "d", "e", "f", "g"));
    model.showAll();
    EXPECT_THAT(rowsOf(model), ElementsAre("first", "b", "c", "d", "new", "e", "f", "g"));
}

TEST_F(ListBoxModelTest, RowsCanBeConvertedToLinesAndBackWhileChangesArePending) {
    fill({"a", "b", "c"});
    ListBoxModel model(list, Gathered::changes);
    list.addItem("new", 1).passOver();
    EXPECT_EQ(model.rowOf(0), 0);
    EXPECT_EQ(model.rowOf(1), -1);
    EXPECT_EQ(model.rowOf(3), 2);
    EXPECT_EQ(model.rowOf(-1), -1);
    EXPECT_EQ(model.lineOf(2), 3);
    EXPECT_EQ(model.lineOf(-1), -1);
    model.showAll();
    list.removeItem(2).passOver();
    EXPECT_EQ(model.lineOf(2), -1);
    EXPECT_EQ(model.lineOf(3), 2);
}

TEST_F(ListBoxModelTest, ClearingTheListDiscardsPendingChanges) {
    fill({"a", "b"});
    ListBoxModel model(list, Gathered::changes);
    list.addItem("new", 1).passOver();
    list.clear();
    EXPECT_EQ(model.rowCount(), 0);
    list.addItem("first");
    model.showAll();
    EXPECT_THAT(rowsOf(model), ElementsAre("first"));
}

/// Makes changes of random kind in random order. After each change, lineOf() reverses rowOf() for
/// every line that has a row. After showAll(), the rows are the lines of the list.
TEST_F(ListBoxModelTest, AfterRandomChangesTheRowsAreTheLinesOfTheList) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        const auto below = [&](int limit) {
            return static_cast<int>(random() % static_cast<unsigned>(limit));
        };
        list.clear();
        fill({"a", "b", "c", "d", "e"});
        ListBoxModel model(list, seed % 2 == 0 ? Gathered::changes : Gathered::additions);
        int announced = model.rowCount();
        const auto added = [&](const QModelIndex&, int first, int last) {
            EXPECT_LE(first, announced);
            announced += last - first + 1;
        };
        const auto removed = [&](const QModelIndex&, int first, int last) {
            EXPECT_LT(last, announced);
            announced -= last - first + 1;
        };
        QObject::connect(&model, &QAbstractItemModel::rowsInserted, added);
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved, removed);
        for (int step = 0; step < 200; ++step) {
            const int count = list.listCount();
            switch (below(8)) {
            case 0:
                list.addItem(std::to_string(step));
                break;
            case 1:
            case 2:
            case 3:
                list.addItem(std::to_string(step), below(count + 1)).passOver();
                break;
            case 4:
            case 5:
                list.removeItem(count > 0 ? below(count) : 0).passOver();
                break;
            case 6:
                list.setList(count > 0 ? below(count) : 0, "edited").passOver();
                break;
            default:
                model.showAll();
                ASSERT_EQ(model.rowCount(), count);
                break;
            }
            ASSERT_EQ(model.rowCount(), announced);
            for (int line = 0; line < list.listCount(); ++line) {
                const int row = model.rowOf(line);
                ASSERT_LT(row, model.rowCount());
                if (row >= 0) {
                    ASSERT_EQ(model.lineOf(row), line);
                }
            }
        }
        model.showAll();
        ASSERT_EQ(model.rowCount(), list.listCount());
        for (int line = 0; line < list.listCount(); ++line) {
            ASSERT_EQ(model.data(model.index(line), Qt::DisplayRole).toString().toStdString(),
                      list.list(line));
        }
    }
}

} // namespace
} // namespace sonarith
