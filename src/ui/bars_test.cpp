// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/bars.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLayout>
#include <gmock/gmock.h>

#include "platform/qt/qt_event_loop.h"

namespace sonarith {
namespace {

class BarsTest : public testing::Test {
  protected:
    QtEventLoop loop;
    ProcessState state;
    Form1 form{loop, state, {}};
    QWidget window;
};

TEST_F(BarsTest, EachBarFitsIntoTheDesignedWidthOfTheWindow) {
    form.Command2.setVisible(true);
    form.Label5.setVisible(true);
    form.lblCDID.setCaption("1234567890");
    for (const BarView* bar : {makeToolBar(form, "fap", &window), makeCdBar(form, &window),
                               makeActivityBar(form, &window), makeStatusBar(form, &window)}) {
        EXPECT_LE(bar->minimumSizeHint().width(), 266) << bar->objectName().toStdString();
        EXPECT_GT(bar->sizeHint().height(), 20) << bar->objectName().toStdString();
    }
}

TEST_F(BarsTest, TheStatusBarKeepsItsHeightWhenTheActivityIsCleared) {
    const BarView* bar = makeStatusBar(form, &window);
    const int before = bar->sizeHint().height();
    form.ClearActivity();
    bar->layout()->invalidate();
    EXPECT_EQ(bar->sizeHint().height(), before);
}

TEST_F(BarsTest, CancelAndStartAreTextButtonsWithMnemonicLetters) {
    const BarView* bar = makeToolBar(form, "fap", &window);
    EXPECT_EQ(bar->findChild<QAbstractButton*>("Command2")->text(), "&Cancel");
    EXPECT_EQ(bar->findChild<QAbstractButton*>("CmdSelectAction")->text(), "&Start ");
}

TEST_F(BarsTest, TheCdBarsHeadingsAreAboveTheirValues) {
    BarView* bar = makeCdBar(form, &window);
    window.show();
    bar->resize(266, bar->sizeHint().height());
    bar->layout()->activate();
    for (const auto& [text, below] :
         {std::pair("CD ID:", "lblCDID"), std::pair("Tracks:", "lblNumTracks")}) {
        SCOPED_TRACE(text);
        const auto* heading = bar->findChild<QLabel*>(QStringLiteral("heading ") + text);
        const auto* value = bar->findChild<QLabel*>(below);
        ASSERT_NE(heading, nullptr);
        EXPECT_EQ(heading->text(), text);
        EXPECT_LE(heading->geometry().bottom(), value->geometry().top());
        EXPECT_EQ(heading->x(), value->x());
    }
}

} // namespace
} // namespace sonarith
