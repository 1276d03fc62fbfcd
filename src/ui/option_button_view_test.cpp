// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/option_button_view.h"

#include <QTest>
#include <gmock/gmock.h>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

class OptionButtonViewTest : public testing::Test {
  protected:
    OptionButtonViewTest() {
        on.onClick = [this] {
            log.emplace_back("on");
        };
        off.onClick = [this] {
            log.emplace_back("off");
        };
        apartView.move(0, 80);
        offView.move(0, 40);
        parent.resize(200, 120);
        parent.show();
        parent.activateWindow();
        QCoreApplication::processEvents();
    }
    static void press(QWidget& view) {
        view.resize(view.sizeHint());
        QTest::mouseClick(&view, Qt::LeftButton, {}, QPoint(6, view.height() / 2));
    }

    Form form{"Form4"};
    OptionGroup power;
    OptionButton on{form, power, "OptCD"};
    OptionButton off{form, power, "optNoCD"};
    OptionGroup mute;
    OptionButton apart{form, mute, "Option1"};
    QWidget parent;
    OptionButtonView onView{on, "On", &parent};
    OptionButtonView offView{off, "Off", &parent};
    OptionButtonView apartView{apart, "Mute", &parent};
    std::vector<std::string> log;
};

TEST_F(OptionButtonViewTest, ASelectionByCodeDeselectsTheOtherButtonAndRunsNoHandler) {
    on.setSelected(true);
    EXPECT_TRUE(onView.isChecked());
    off.setSelected(true);
    EXPECT_FALSE(onView.isChecked());
    off.setSelected(false);
    EXPECT_FALSE(onView.isChecked() || offView.isChecked());
    EXPECT_TRUE(log.empty());
}

TEST_F(OptionButtonViewTest, AClickOnTheSelectedButtonRunsTheHandlerAgain) {
    press(onView);
    EXPECT_TRUE(on.selected());
    press(onView);
    EXPECT_TRUE(onView.isChecked());
    press(offView);
    EXPECT_THAT(log, ElementsAre("on", "on", "off"));
    EXPECT_FALSE(onView.isChecked());
}

TEST_F(OptionButtonViewTest, ShowsTheStateThatTheHandlerHasSet) {
    on.onClick = [this] {
        on.setSelected(false);
    };
    press(onView);
    EXPECT_FALSE(onView.isChecked());
}

TEST_F(OptionButtonViewTest, ArrowKeysSelectTheNextButtonOfTheGroupAndWrapAround) {
    onView.setFocus();
    QTest::keyClick(&onView, Qt::Key_Down);
    EXPECT_TRUE(off.selected());
    EXPECT_TRUE(offView.hasFocus());
    QTest::keyClick(&offView, Qt::Key_Right);
    EXPECT_TRUE(on.selected());
    EXPECT_THAT(log, ElementsAre("off", "on"));
    EXPECT_FALSE(apart.selected());
}

TEST_F(OptionButtonViewTest, ArrowKeysDoNotSelectADisabledButton) {
    off.setEnabled(false);
    onView.setFocus();
    QTest::keyClick(&onView, Qt::Key_Down);
    EXPECT_TRUE(log.empty());
    EXPECT_TRUE(onView.hasFocus());
}

TEST_F(OptionButtonViewTest, IfAnEnabledButtonIsSelectedTheTabKeyStopsAtNoOtherButtonOfItsGroup) {
    EXPECT_NE(offView.focusPolicy() & Qt::TabFocus, 0)
        << "the tab key must stop at this button while no button is selected";
    on.setSelected(true);
    EXPECT_EQ(offView.focusPolicy() & Qt::TabFocus, 0);
    EXPECT_NE(onView.focusPolicy() & Qt::TabFocus, 0);
    EXPECT_NE(apartView.focusPolicy() & Qt::TabFocus, 0);
    on.setEnabled(false);
    EXPECT_NE(offView.focusPolicy() & Qt::TabFocus, 0);
}

TEST_F(OptionButtonViewTest, WithoutACaptionTheAccessibleNameIsTheToolTipOrElseTheLabel) {
    EXPECT_EQ(onView.text(), "On");
    EXPECT_EQ(onView.accessibleName(), "On");
    on.setToolTip("Open CD Player");
    EXPECT_EQ(onView.accessibleName(), "Open CD Player");
}

} // namespace
} // namespace sonarith
