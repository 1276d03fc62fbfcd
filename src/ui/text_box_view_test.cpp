// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/text_box_view.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QTest>
#include <gmock/gmock.h>

#include "platform/controls/form.h"
#include "ui/text_lines_view.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

class TextBoxViewTest : public testing::Test {
  protected:
    TextBoxViewTest() {
        model.onKeyDown = [this] {
            log.push_back("key " + model.text());
        };
        model.onChange = [this] {
            log.push_back("change " + model.text());
        };
        parent.show();
    }

    std::vector<std::string> log;
    Form form{"FrmPrefs"};
    TextBox model{form, "Text7", "100"};
    QWidget parent;
    TextBoxView view{model, "Warning limit", &parent};
};

TEST_F(TextBoxViewTest, AKeyPressIsReportedBeforeItChangesTheText) {
    EXPECT_EQ(view.text(), "100");
    EXPECT_EQ(view.accessibleName(), "Warning limit");
    QTest::keyClick(&view, Qt::Key_End);
    log.clear();
    QTest::keyClicks(&view, "5");
    EXPECT_THAT(log, ElementsAre("key 100", "change 1005"));
}

TEST_F(TextBoxViewTest, ALongerTextSetByCodeMovesOnlyACaretAtTheEnd) {
    view.setCursorPosition(1);
    model.setText("100 MB");
    EXPECT_EQ(view.text(), "100 MB");
    EXPECT_EQ(view.cursorPosition(), 1);
    view.end(false);
    model.setText("100 MB free");
    EXPECT_EQ(view.cursorPosition(), 11);
}

TEST_F(TextBoxViewTest, ShowsTheTextThatTheChangeHandlerSets) {
    model.onChange = [this] {
        std::string lower = model.text();
        for (char& c : lower) {
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
        model.setText(lower);
    };
    view.selectAll();
    QTest::keyClicks(&view, ".WAV");
    EXPECT_EQ(model.text(), ".wav");
    EXPECT_EQ(view.text(), ".wav");
}

TEST_F(TextBoxViewTest, PastingAndDeletingChangeTheTextOfTheControl) {
    QApplication::clipboard()->setText(QStringLiteral("12"));
    view.selectAll();
    view.paste();
    EXPECT_EQ(model.text(), "12");
    view.clear();
    QTest::keyClicks(&view, "7");
    QTest::keyClick(&view, Qt::Key_Backspace);
    EXPECT_EQ(model.text(), "");
}

TEST_F(TextBoxViewTest, TheTypingLimitAppliesToTypingButNotToTextsSetByCode) {
    model.setTypingLimit(4);
    QTest::keyClick(&view, Qt::Key_End);
    QTest::keyClicks(&view, "567");
    EXPECT_EQ(model.text(), "1005");
    model.setText("123456");
    EXPECT_EQ(view.text(), "123456");
    QTest::keyClicks(&view, "7");
    EXPECT_EQ(model.text(), "123456");
    QTest::keyClick(&view, Qt::Key_End);
    for (int i = 0; i < 3; ++i) {
        QTest::keyClick(&view, Qt::Key_Backspace);
    }
    QTest::keyClicks(&view, "789");
    EXPECT_EQ(model.text(), "1237");
    model.setTypingLimit(0);
    QTest::keyClicks(&view, "890");
    EXPECT_EQ(model.text(), "1237890");
}

TEST_F(TextBoxViewTest, ALockedBoxIgnoresTypingAndShowsTextsSetByCode) {
    model.setLocked(true);
    QTest::keyClicks(&view, "5");
    EXPECT_EQ(model.text(), "100");
    model.setText("200");
    EXPECT_EQ(view.text(), "200");
}

TEST_F(TextBoxViewTest, TheFontSizeOfTheControlIsUsedUnlessItIsZero) {
    const qreal own = view.font().pointSizeF();
    model.setFontSize(18);
    EXPECT_EQ(view.font().pointSize(), 18);
    model.setFontSize(0);
    EXPECT_EQ(view.font().pointSizeF(), own);
}

TEST_F(TextBoxViewTest, ADragOnALockedBoxRunsItsPressHandlerAndSelectsNoText) {
    std::vector<std::string> presses;
    model.onMouseDown = [&](MouseButtons buttons) {
        presses.emplace_back(buttons.left ? "left" : "right");
    };
    model.setLocked(true);
    view.resize(100, 24);
    QTest::mousePress(&view, Qt::LeftButton, {}, QPoint(4, 12));
    QMouseEvent move(QEvent::MouseMove, QPointF(60, 12), view.mapToGlobal(QPointF(60, 12)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &move);
    QTest::mouseRelease(&view, Qt::LeftButton, {}, QPoint(60, 12));
    EXPECT_THAT(presses, ElementsAre("left"));
    EXPECT_FALSE(view.hasSelectedText());
}

TEST_F(TextBoxViewTest, AKeyWhoseHandlerDisablesTheBoxDoesNotChangeTheText) {
    model.onKeyDown = [this] {
        model.setEnabled(false);
    };
    QTest::keyClicks(&view, "5");
    EXPECT_EQ(model.text(), "100");
}

TEST_F(TextBoxViewTest, ATextSetThroughTheAccessibilityTreeReachesTheControl) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(accessible, nullptr);
    accessible->setText(QAccessible::Value, QStringLiteral("250"));
    EXPECT_EQ(model.text(), "250");
    EXPECT_THAT(log, ElementsAre("change 250"));
    // Neither a locked nor a disabled box accepts a text from the accessibility tree.
    model.setLocked(true);
    accessible->setText(QAccessible::Value, QStringLiteral("300"));
    model.setLocked(false);
    model.setEnabled(false);
    accessible->setText(QAccessible::Value, QStringLiteral("400"));
    EXPECT_EQ(model.text(), "250");
    EXPECT_EQ(view.text(), "250");
}

class TextLinesViewTest : public testing::Test {
  protected:
    TextLinesViewTest() {
        view.resize(200, 60);
        parent.show();
    }
    Form form{"FrmPrefs"};
    TextBox model{form, "Text6"};
    QWidget parent;
    TextLinesView view{model, "Available space", &parent};
};

TEST_F(TextLinesViewTest, ShowsLinesThatEndWithCrLfOrLf) {
    model.setText("c: 10 MB\r\nd: 20 MB\nend");
    EXPECT_EQ(view.toPlainText(), "c: 10 MB\nd: 20 MB\nend");
    EXPECT_EQ(view.accessibleName(), "Available space");
    EXPECT_TRUE(view.isReadOnly());
}

TEST_F(TextLinesViewTest, KeepsItsScrollPositionWhenTheTextChanges) {
    std::string lines;
    for (int i = 0; i < 100; ++i) {
        lines += "drive\r\n";
    }
    model.setText(lines);
    view.verticalScrollBar()->setValue(50);
    model.setText(lines + "one more");
    EXPECT_EQ(view.verticalScrollBar()->value(), 50);
}

TEST_F(TextLinesViewTest, IgnoresTypingAndLetsTheTabKeyMoveTheFocus) {
    model.setText("a");
    QTest::keyClicks(&view, "b");
    EXPECT_EQ(model.text(), "a");
    EXPECT_EQ(view.toPlainText(), "a");
    EXPECT_TRUE(view.tabChangesFocus());
}

} // namespace
} // namespace sonarith
