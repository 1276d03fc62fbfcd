// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/check_box_view.h"

#include <QTest>
#include <gmock/gmock.h>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

class CheckBoxViewTest : public testing::Test {
  protected:
    CheckBoxViewTest() {
        model.onClick = [this] {
            ++clicks;
        };
        parent.show();
    }
    void clickIt() {
        view.resize(view.sizeHint());
        QTest::mouseClick(&view, Qt::LeftButton, {}, QPoint(5, view.height() / 2));
    }

    int clicks = 0;
    Form form{"FrmPrefs"};
    CheckBox model{form, "Check6", "Warn & stop"};
    QWidget parent;
    CheckBoxView view{model, "Warning", &parent};
};

TEST_F(CheckBoxViewTest, ShowsCaptionAndTick) {
    EXPECT_EQ(view.text(), "Warn && stop");
    EXPECT_EQ(view.accessibleName(), "Warn & stop");
    model.setValue(1).passOver();
    EXPECT_TRUE(view.isChecked());
    model.setCaption("Off");
    EXPECT_EQ(view.text(), "Off");
}

TEST_F(CheckBoxViewTest, TickingByCodeRunsTheClickHandlerOnce) {
    model.setValue(1).passOver();
    EXPECT_EQ(clicks, 1);
}

TEST_F(CheckBoxViewTest, AMouseClickTicksTheControlAndTheSpaceKeyUnticksIt) {
    clickIt();
    EXPECT_EQ(model.value(), 1);
    EXPECT_EQ(clicks, 1);
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(model.value(), 0);
    EXPECT_EQ(clicks, 2);
}

TEST_F(CheckBoxViewTest, ShowsTheStateThatTheHandlerHasSet) {
    model.onClick = [this] {
        model.setValue(0).passOver();
    };
    clickIt();
    EXPECT_EQ(model.value(), 0);
    EXPECT_FALSE(view.isChecked());
}

TEST_F(CheckBoxViewTest, ShowsItsLabelIfTheControlHasNoCaption) {
    CheckBox bare(form, "Check4");
    const CheckBoxView bareView(bare, "Minimize now", &parent);
    EXPECT_EQ(bareView.text(), "Minimize now");
    EXPECT_EQ(bareView.accessibleName(), "Minimize now");
}

TEST_F(CheckBoxViewTest, ShowsTheDesignedStateAgainWhenTheFormIsLoadedAgain) {
    form.load();
    model.setValue(1).passOver();
    form.unload();
    form.load();
    EXPECT_FALSE(view.isChecked());
}

} // namespace
} // namespace sonarith
