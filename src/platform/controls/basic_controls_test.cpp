// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/basic_controls.h"

#include <gmock/gmock.h>

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace sonarith {
namespace {

using testing::ElementsAre;

/// Counts how often a control tells that it has changed.
class ChangeCount {
  public:
    explicit ChangeCount(Control& control)
        : connection_(control.changed.connect([this] { ++count; })) {}
    int count = 0;

  private:
    Connection connection_;
};

TEST(Control, StartsVisibleAndEnabled) {
    const Label label("Label2");
    EXPECT_EQ(label.name(), "Label2");
    EXPECT_TRUE(label.visible());
    EXPECT_TRUE(label.enabled());
}

TEST(Control, TellsOfEachChangedPropertyAndOfNothingElse) {
    Label label("Label2", "x");
    const ChangeCount changes(label);
    label.setVisible(true);
    label.setEnabled(true);
    label.setCaption("x");
    label.setLeft(0);
    EXPECT_EQ(changes.count, 0);
    label.setVisible(false);
    label.setEnabled(false);
    label.setCaption("y");
    label.setToolTip("tip");
    label.setLeft(1);
    label.setTop(2);
    label.setWidth(3);
    label.setHeight(4);
    EXPECT_EQ(changes.count, 8);
    EXPECT_EQ(label.caption(), "y");
    EXPECT_EQ(label.toolTip(), "tip");
    EXPECT_THAT((std::array{label.left(), label.top(), label.width(), label.height()}),
                ElementsAre(1, 2, 3, 4));
}

TEST(Label, RunsItsHandlerForEachCaptionThatIsAnotherOne) {
    Label label("lbltime", "x");
    std::vector<std::string> captions;
    label.onChange = [&] {
        captions.push_back(label.caption());
        label.setCaption("final");
    };
    label.setCaption("x");
    label.setVisible(false);
    EXPECT_TRUE(captions.empty());
    label.setCaption("y");
    EXPECT_THAT(captions, ElementsAre("y", "final"));
}

TEST(Control, HoldsItsNewValueWhenItTellsOfIt) {
    Label label("Label2", "old");
    std::string seen;
    const Connection connection = label.changed.connect([&] { seen = label.caption(); });
    label.setCaption("new");
    EXPECT_EQ(seen, "new");
}

TEST(Handler, MayReplaceItselfWhileItRuns) {
    CommandButton button("Command1");
    std::string calls;
    button.onClick = [&] {
        button.onClick = [&] {
            calls += "second ";
        };
        calls += "first ";
    };
    button.click();
    button.click();
    EXPECT_EQ(calls, "first second ");
}

TEST(CommandButton, IsAProcedureEvenWhenNobodyCanPressIt) {
    CommandButton button("cmdStart", "Start");
    int clicks = 0;
    button.onClick = [&] {
        ++clicks;
    };
    button.setVisible(false);
    button.setEnabled(false);
    button.click();
    EXPECT_EQ(clicks, 1);
}

TEST(CommandButton, WithoutAHandlerLetsAClickPass) {
    CommandButton button("cmdStart", "Start");
    button.click();
    EXPECT_EQ(button.caption(), "Start");
}

TEST(CheckBox, SetFromCodeRunsItsClickWithTheNewValueInPlace) {
    CheckBox box("Check9");
    std::vector<int> seen;
    box.onClick = [&] {
        seen.push_back(box.value());
    };
    box.setValue(1).passOver();
    box.setValue(1).passOver();
    box.setValue(0).passOver();
    EXPECT_THAT(seen, ElementsAre(1, 0));
}

TEST(CheckBox, RefusesAnythingButZeroAndOneAndStaysAsItWas) {
    CheckBox box("Check9");
    int clicks = 0;
    box.setValue(1).passOver();
    box.onClick = [&] {
        ++clicks;
    };
    for (const int wrong : {-1, 2, 70000}) {
        const Status status = box.setValue(wrong);
        ASSERT_FALSE(status.ok()) << wrong;
        EXPECT_EQ(status.error().number, ErrorNumber::invalidPropertyValue);
    }
    EXPECT_EQ(box.value(), 1);
    EXPECT_EQ(clicks, 0);
}

TEST(CheckBox, MayBePutBackByItsOwnClick) {
    CheckBox box("Check9");
    int clicks = 0;
    box.onClick = [&] {
        ++clicks;
        box.setValue(0).passOver();
    };
    box.setValue(1).passOver();
    EXPECT_EQ(box.value(), 0);
    EXPECT_EQ(clicks, 2);
}

TEST(TextBox, KeepsWhatStandsBeforeTheFirstNul) {
    TextBox box("Text1");
    box.setText(std::string("abc\0def", 7));
    EXPECT_EQ(box.text(), "abc");
    box.setText(std::string("\0def", 4));
    EXPECT_EQ(box.text(), "");
}

TEST(TextBox, TellsOfAnotherTextOnly) {
    TextBox box("Text1", "abc");
    int changes = 0;
    box.onChange = [&] {
        ++changes;
    };
    box.setText("abc");
    box.setText(std::string("abc\0x", 5));
    EXPECT_EQ(changes, 0);
    box.setText("abd");
    EXPECT_EQ(changes, 1);
}

TEST(TextBox, TakesMoreFromCodeThanCanBeTyped) {
    TextBox box("Text1");
    box.setTypingLimit(2);
    box.setText("abc");
    EXPECT_EQ(box.text(), "abc");
    EXPECT_EQ(box.typingLimit(), 2);
}

TEST(ProgressBar, StartsAtItsMinimum) {
    const ProgressBar bar("ProgressBar1", 5, 100);
    EXPECT_EQ(bar.minimum(), 5);
    EXPECT_EQ(bar.maximum(), 100);
    EXPECT_EQ(bar.value(), 5);
}

TEST(ProgressBar, TakesBothEndsOfItsRange) {
    ProgressBar bar("ProgressBar1", 0, 100);
    EXPECT_TRUE(bar.setValue(100).ok());
    EXPECT_EQ(bar.value(), 100);
    EXPECT_TRUE(bar.setValue(0).ok());
    EXPECT_EQ(bar.value(), 0);
}

TEST(ProgressBar, RefusesWhatLiesOutsideAndStaysAsItWas) {
    ProgressBar bar("ProgressBar1", 0, 100);
    bar.setValue(40).passOver();
    for (const std::int64_t wrong :
         {std::int64_t{-1}, std::int64_t{101}, (std::int64_t{1} << 32) + 7,
          std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
        const Status status = bar.setValue(wrong);
        ASSERT_FALSE(status.ok()) << wrong;
        EXPECT_EQ(status.error().number, ErrorNumber::invalidPropertyValue);
    }
    EXPECT_EQ(bar.value(), 40);
}

TEST(MenuItem, HoldsItsEntriesInOrderAndItsMark) {
    MenuItem first("mnuFirst", "First");
    MenuItem second("mnuSecond", "Second");
    MenuItem menu("mnuMenu", "Menu", {&first, &second});
    EXPECT_THAT(menu.entries(), ElementsAre(&first, &second));
    const ChangeCount changes(first);
    EXPECT_FALSE(first.checked());
    first.setChecked(true);
    EXPECT_TRUE(first.checked());
    EXPECT_EQ(changes.count, 1);
}

TEST(MenuItem, IsAProcedureEvenWhenItIsClosed) {
    MenuItem entry("mnuMinimize", "Minimize");
    int clicks = 0;
    entry.onClick = [&] {
        ++clicks;
    };
    entry.setEnabled(false);
    entry.click();
    EXPECT_EQ(clicks, 1);
}

} // namespace
} // namespace sonarith
