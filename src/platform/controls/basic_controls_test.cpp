// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/basic_controls.h"

#include <gmock/gmock.h>

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

/// Counts the change notifications of a control.
class ChangeCount {
  public:
    explicit ChangeCount(Control& control)
        : connection_(control.changed.connect([this](Property) { ++count; })) {}
    int count = 0;

  private:
    Connection connection_;
};

TEST(Control, StartsVisibleAndEnabled) {
    Form form("Form1");
    const Label label(form, "Label2");
    EXPECT_EQ(label.name(), "Label2");
    EXPECT_TRUE(label.visible());
    EXPECT_TRUE(label.enabled());
}

TEST(Control, NotifiesOnlyOfPropertiesWhoseValueChanges) {
    Form form("Form1");
    Label label(form, "Label2", "x");
    const ChangeCount changes(label);
    label.setVisible(true);
    label.setEnabled(true);
    label.setCaption("x");
    label.setLeft(0_twips);
    EXPECT_EQ(changes.count, 0);
    label.setVisible(false);
    label.setEnabled(false);
    label.setCaption("y");
    label.setToolTip("tip");
    label.setLeft(1_twips);
    label.setTop(2_twips);
    label.setWidth(3_twips);
    label.setHeight(4_twips);
    EXPECT_EQ(changes.count, 8);
    EXPECT_EQ(label.caption(), "y");
    EXPECT_EQ(label.toolTip(), "tip");
    EXPECT_THAT((std::array{label.left(), label.top(), label.width(), label.height()}),
                ElementsAre(1_twips, 2_twips, 3_twips, 4_twips));
}

TEST(Label, RunsItsHandlerWhenTheCaptionChanges) {
    Form form("Form1");
    Label label(form, "lbltime", "x");
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

TEST(Control, HasItsNewValueWhenItNotifies) {
    Form form("Form1");
    Label label(form, "Label2", "old");
    std::string seen;
    const Connection connection = label.changed.connect([&](Property) { seen = label.caption(); });
    label.setCaption("new");
    EXPECT_EQ(seen, "new");
}

TEST(Handler, MayReplaceItselfWhileItRuns) {
    Form form("Form1");
    CommandButton button(form, "Command1");
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

TEST(CommandButton, CanBeClickedByCodeWhenHiddenAndDisabled) {
    Form form("Form1");
    CommandButton button(form, "cmdStart", "Start");
    int clicks = 0;
    button.onClick = [&] {
        ++clicks;
    };
    button.setVisible(false);
    button.setEnabled(false);
    button.click();
    EXPECT_EQ(clicks, 1);
}

TEST(CommandButton, IgnoresAClickWithoutAHandler) {
    Form form("Form1");
    CommandButton button(form, "cmdStart", "Start");
    button.click();
    EXPECT_EQ(button.caption(), "Start");
}

TEST(CheckBox, AChangeByCodeRunsTheClickHandlerAfterTheValueIsSet) {
    Form form("Form1");
    CheckBox box(form, "Check9");
    std::vector<int> seen;
    box.onClick = [&] {
        seen.push_back(box.value());
    };
    box.setValue(1).passOver();
    box.setValue(1).passOver();
    box.setValue(0).passOver();
    EXPECT_THAT(seen, ElementsAre(1, 0));
}

TEST(CheckBox, RefusesValuesOtherThanZeroAndOne) {
    Form form("Form1");
    CheckBox box(form, "Check9");
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

TEST(CheckBox, CanBeResetByItsOwnClickHandler) {
    Form form("Form1");
    CheckBox box(form, "Check9");
    int clicks = 0;
    box.onClick = [&] {
        ++clicks;
        box.setValue(0).passOver();
    };
    box.setValue(1).passOver();
    EXPECT_EQ(box.value(), 0);
    EXPECT_EQ(clicks, 2);
}

TEST(TextBox, KeepsOnlyTheTextBeforeTheFirstNul) {
    Form form("Form1");
    TextBox box(form, "Text1");
    box.setText(std::string("abc\0def", 7));
    EXPECT_EQ(box.text(), "abc");
    box.setText(std::string("\0def", 4));
    EXPECT_EQ(box.text(), "");
}

TEST(TextBox, RunsItsHandlerOnlyWhenTheTextChanges) {
    Form form("Form1");
    TextBox box(form, "Text1", "abc");
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

TEST(TextBox, TheTypingLimitDoesNotApplyToTextsSetByCode) {
    Form form("Form1");
    TextBox box(form, "Text1");
    box.setTypingLimit(2);
    box.setText("abc");
    EXPECT_EQ(box.text(), "abc");
    EXPECT_EQ(box.typingLimit(), 2);
}

TEST(ProgressBar, StartsAtItsMinimum) {
    Form form("Form1");
    const ProgressBar bar(form, "ProgressBar1", 5, 100);
    EXPECT_EQ(bar.minimum(), 5);
    EXPECT_EQ(bar.maximum(), 100);
    EXPECT_EQ(bar.value(), 5);
}

TEST(ProgressBar, AcceptsBothEndsOfItsRange) {
    Form form("Form1");
    ProgressBar bar(form, "ProgressBar1", 0, 100);
    EXPECT_TRUE(bar.setValue(100).ok());
    EXPECT_EQ(bar.value(), 100);
    EXPECT_TRUE(bar.setValue(0).ok());
    EXPECT_EQ(bar.value(), 0);
}

TEST(ProgressBar, RefusesValuesOutsideItsRange) {
    Form form("Form1");
    ProgressBar bar(form, "ProgressBar1", 0, 100);
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

TEST(MenuItem, KeepsItsCheckMarkAndTheOrderOfItsEntries) {
    Form form("Form1");
    MenuItem first(form, "mnuFirst", "First");
    MenuItem second(form, "mnuSecond", "Second");
    MenuItem menu(form, "mnuMenu", "Menu", {&first, &second});
    EXPECT_THAT(menu.entries(), ElementsAre(&first, &second));
    const ChangeCount changes(first);
    EXPECT_FALSE(first.checked());
    first.setChecked(true);
    EXPECT_TRUE(first.checked());
    EXPECT_EQ(changes.count, 1);
}

TEST(MenuItem, CanBeClickedByCodeWhenDisabled) {
    Form form("Form1");
    MenuItem entry(form, "mnuMinimize", "Minimize");
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
