// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/button_view.h"

#include <QTest>
#include <gmock/gmock.h>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

class ButtonViewTest : public testing::Test {
  protected:
    ButtonViewTest() {
        model.onClick = [this] {
            ++clicks;
        };
    }

    int clicks = 0;
    QWidget parent;
    Form form{"Form1"};
    CommandButton model{form, "CmdSelectAction", "Start "};
};

TEST_F(ButtonViewTest, AMouseClickAndTheSpaceKeyRunTheClickHandler) {
    TextButtonView view(model, "", &parent);
    parent.show();
    QTest::mouseClick(&view, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(clicks, 2);
}

TEST_F(ButtonViewTest, AButtonKeepsTheFocusIfItsClickHandlerDisablesAndEnablesIt) {
    TextButtonView view(model, "", &parent);
    CommandButton closing(form, "cmdClose", "Close");
    TextButtonView other(closing, "", &parent);
    model.onClick = [this] {
        ++clicks;
        model.setEnabled(false);
        model.setEnabled(true);
    };
    parent.show();
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(parent.focusWidget(), &view);
    // The button does not take the focus back if the user has moved the focus to another widget.
    CommandButton third(form, "cmdThird", "Third");
    TextButtonView chosen(third, "", &parent);
    chosen.show();
    model.setEnabled(false);
    chosen.setFocus();
    model.setEnabled(true);
    EXPECT_EQ(parent.focusWidget(), &chosen);
}

TEST_F(ButtonViewTest, ADoubleClickIsOneClick) {
    TextButtonView text(model, "", &parent);
    IconButtonView icon(model, Symbol::exit, &parent);
    parent.show();
    for (QWidget* view : {static_cast<QWidget*>(&text), static_cast<QWidget*>(&icon)}) {
        clicks = 0;
        // These are the events that the desktop sends for a double click: a press, a release, the
        // second press as an event of another type (double click), a release.
        QTest::mouseClick(view, Qt::LeftButton);
        QTest::mouseDClick(view, Qt::LeftButton); // sends only the second press
        QTest::mouseRelease(view, Qt::LeftButton);
        EXPECT_EQ(clicks, 1);
        QTest::mouseClick(view, Qt::LeftButton);
        EXPECT_EQ(clicks, 2);
    }
}

TEST_F(ButtonViewTest, ADisabledButtonIgnoresClicks) {
    IconButtonView view(model, Symbol::exit, &parent);
    parent.show();
    model.setEnabled(false);
    QTest::mouseClick(&view, Qt::LeftButton);
    EXPECT_EQ(clicks, 0);
}

TEST_F(ButtonViewTest, ATextButtonShowsItsCaptionWithAMnemonicThatIsNotYetTaken) {
    const TextButtonView view(model, "fs", &parent);
    EXPECT_EQ(view.text(), "S&tart ");
    EXPECT_EQ(view.accessibleName(), "Start ");
    EXPECT_EQ(view.objectName(), "CmdSelectAction");
}

TEST_F(ButtonViewTest, APictureButtonShowsItsCaptionAsToolTipIfItsControlHasNoToolTip) {
    const IconButtonView view(model, Symbol::search, &parent);
    EXPECT_EQ(view.toolTip(), "Start ");
    EXPECT_EQ(view.accessibleName(), "Start ");
    EXPECT_FALSE(view.icon().isNull());
    EXPECT_NE(view.focusPolicy() & Qt::TabFocus, 0);
}

TEST_F(ButtonViewTest, APictureButtonShowsTheToolTipOfItsControl) {
    CommandButton play(form, "Command11");
    play.setToolTip("Play Selected track");
    const IconButtonView view(play, Symbol::play, &parent);
    EXPECT_EQ(view.toolTip(), "Play Selected track");
    EXPECT_EQ(view.accessibleName(), "Play Selected track");
}

TEST_F(ButtonViewTest, AButtonCanBeClickedWhileItsClickHandlerRuns) {
    TextButtonView view(model, "", &parent);
    parent.show();
    model.onClick = [&] {
        if (++clicks == 1) {
            QTest::mouseClick(&view, Qt::LeftButton);
        }
    };
    QTest::mouseClick(&view, Qt::LeftButton);
    EXPECT_EQ(clicks, 2);
}

} // namespace
} // namespace sonarith
