// SPDX-License-Identifier: GPL-3.0-or-later
// Tests dragging nodes in the widget, by mouse and by keys, with the handlers that the program
// uses. After a drop on any target, the tree must contain the same tracks and files as the main
// window's lists.
#include <algorithm>
#include <vector>

#include "support/tree_editing_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

const std::string t1 = "Track  1 - 00:03:05";
const std::string t2 = "Track  2 - 00:04:00";
/// Represents the empty area below the last row. A node can also be dropped on this area.
const std::string noRow;

struct TreeCarryingTest : test::TreeEditingWorld {
    TreeCarryingTest() {
        view.clear();
        disc({t1, t2});
        tree.showfiles();
    }

    /// The texts of all rows from top to bottom, and `noRow` at the end. Expands all nodes first.
    std::vector<std::string> places() {
        widget().expandAll();
        std::vector<std::string> texts;
        for (QModelIndex row = widget().model()->index(0, 0); row.isValid();
             row = widget().indexBelow(row)) {
            texts.push_back(row.data().toString().toStdString());
        }
        texts.push_back(noRow);
        return texts;
    }
    QPoint pointOf(const std::string& place) {
        return place == noRow ? QPoint(50, widget().viewport()->height() - 2) : placeOf(place);
    }
    /// Moves the pointer slowly over a row, by `movements` small movements.
    void creepOver(const std::string& place, int movements) {
        for (int i = 0; i < movements; ++i) {
            movePointer(pointOf(place) + QPoint(i, 0));
        }
    }
    /// Drags the node with this text over all rows between its own row and the row `target`, and
    /// releases it over `target`.
    void carry(const std::string& text, const std::string& target, int movementsPerRow) {
        const std::vector<std::string> way = places();
        auto at = std::find(way.begin(), way.end(), text);
        const auto end = std::find(way.begin(), way.end(), target);
        pressAt(text);
        while (at != end) {
            creepOver(*at, movementsPerRow);
            at += at < end ? 1 : -1;
        }
        creepOver(target, movementsPerRow);
        QTest::mouseRelease(widget().viewport(), Qt::LeftButton, {}, pointOf(target));
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&widget(), key, modifiers);
    }
    void goTo(const std::string& text) {
        key(Qt::Key_Home);
        for (int row = 0; row < view.count() &&
                          widget().currentIndex().data().toString() != QString::fromStdString(text);
             ++row) {
            key(Qt::Key_Down);
        }
        ASSERT_EQ(widget().currentIndex().data().toString().toStdString(), text);
    }

    /// The entries of these lists, without the folder if an entry is a path.
    std::vector<std::string> namesIn(std::initializer_list<const ListBox*> lists) const {
        std::vector<std::string> names;
        for (const ListBox* list : lists) {
            for (const std::string& entry : lines(*list)) {
                names.push_back(entry.substr(entry.rfind('\\') + 1));
            }
        }
        return names;
    }
    void expectTreeAndListsAgree() {
        const auto expectGroup = [&](const char* group,
                                     std::initializer_list<const ListBox*> lists) {
            EXPECT_THAT(childrenOf(group), UnorderedElementsAreArray(namesIn(lists))) << group;
        };
        expectGroup("Selected Tracks", {&form.lstRecord});
        expectGroup("Available Tracks", {&form.lstTracks});
        expectGroup("Selected MP3 Files", {&form.List4});
        expectGroup("MP3 Files", {&form.List2});
        // Selected WAV files have no group of their own.
        expectGroup("WAV Files", {&form.List1, &form.List5});
    }
};

TEST_F(TreeCarryingTest, TreeAndListsAgreeAfterASlowDragFromAnyItemToAnyRow) {
    for (const std::string& target : places()) {
        for (const std::string& text :
             std::vector<std::string>{"a.mp3", "b.mp3", "a.wav", "b.wav", t1, t2}) {
            for (const int movements : {2, 3, 6}) {
                carry(text, target, movements);
                SCOPED_TRACE(text + " to \"" + target +
                             "\", movements per row: " + std::to_string(movements));
                expectTreeAndListsAgree();
                if (HasFailure()) {
                    return;
                }
            }
        }
    }
}

TEST_F(TreeCarryingTest, TheResultOfADragIsTheSameForThreeToSixMovementsOnEachRow) {
    for (const std::string& target : places()) {
        std::vector<std::vector<std::string>> outcomes;
        for (const int movements : {3, 4, 5, 6}) {
            view.clear();
            for (ListBox* list : {&form.List1, &form.List2, &form.List4, &form.List5}) {
                list->clear();
            }
            drag = {};
            disc({t1, t2});
            tree.showfiles();
            carry("b.mp3", target, movements);
            outcomes.push_back(outline());
        }
        for (const auto& outcome : outcomes) {
            EXPECT_EQ(outcome, outcomes.front()) << target;
        }
    }
}

TEST_F(TreeCarryingTest, TwoMp3FilesCanBeSelectedByKeysAlone) {
    for (const char* name : {"a.mp3", "b.mp3"}) {
        goTo(name);
        key(Qt::Key_X, Qt::ControlModifier);
        EXPECT_EQ(editor(), nullptr);
        goTo("Selected MP3 Files");
        key(Qt::Key_Return);
    }
    EXPECT_THAT(childrenOf("Selected MP3 Files"), ElementsAre("a.mp3", "b.mp3"));
    EXPECT_THAT(childrenOf("MP3 Files"), IsEmpty());
    EXPECT_THAT(lines(form.List4), ElementsAre("c:\\music\\b.mp3", "c:\\music\\a.mp3"));
    expectTreeAndListsAgree();
}

TEST_F(TreeCarryingTest, TreeAndListsAgreeAfterADragByKeysToAnyRow) {
    for (const std::string& target : places()) {
        for (const std::string& text :
             std::vector<std::string>{"a.mp3", "b.mp3", "a.wav", t1, t2}) {
            if (target == noRow) {
                continue;
            }
            widget().expandAll();
            goTo(text);
            key(Qt::Key_X, Qt::ControlModifier);
            goTo(target);
            key(Qt::Key_V, Qt::ControlModifier);
            SCOPED_TRACE(text + " to " + target);
            expectTreeAndListsAgree();
            if (HasFailure()) {
                return;
            }
        }
    }
}

TEST_F(TreeCarryingTest, ControlXOnAGroupClicksTheGroupAndStartsNoDrag) {
    const auto before = outline();
    goTo("MP3 Files");
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(form.Label3.caption(), "Next Action:  Process  MP3 Files")
        << "the key must click the group";
    goTo("WAV Files Folder");
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(outline(), before);
}

} // namespace
} // namespace sonarith
