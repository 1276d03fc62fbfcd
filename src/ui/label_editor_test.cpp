// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/label_editor.h"

#include <QFocusEvent>
#include <QTest>
#include <gmock/gmock.h>

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LabelEditorTest : public testing::Test {
  protected:
    LabelEditorTest() {
        editor.onFinished = [this](const QString& text) {
            log.push_back("finished " + text.toStdString());
        };
        editor.onCancelled = [this] {
            log.push_back("cancelled");
        };
        editor.handlesPress = [this](QMouseEvent&) {
            return handlesPress;
        };
        window.show();
    }
    void loseFocus(Qt::FocusReason reason) {
        QFocusEvent out(QEvent::FocusOut, reason);
        QCoreApplication::sendEvent(&editor, &out);
    }

    bool handlesPress = false;
    QWidget window;
    LabelEditor editor{QStringLiteral("one.wav"), &window};
    std::vector<std::string> log;
};

TEST_F(LabelEditorTest, ReportsTheEndOfTheEditOnlyOnce) {
    QTest::keyClick(&editor, Qt::Key_Return);
    QTest::keyClick(&editor, Qt::Key_Escape);
    loseFocus(Qt::MouseFocusReason);
    EXPECT_THAT(log, ElementsAre("finished one.wav"));
}

TEST_F(LabelEditorTest, MovingTheFocusWithinTheWindowFinishesTheEdit) {
    loseFocus(Qt::TabFocusReason);
    EXPECT_THAT(log, ElementsAre("finished one.wav"));
}

TEST_F(LabelEditorTest, LosingTheFocusToAnotherWindowCancelsTheEdit) {
    loseFocus(Qt::ActiveWindowFocusReason);
    EXPECT_THAT(log, ElementsAre("cancelled"));
}

TEST_F(LabelEditorTest, LosingTheFocusToAMenuDoesNotEndTheEdit) {
    loseFocus(Qt::PopupFocusReason);
    loseFocus(Qt::MenuBarFocusReason);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(LabelEditorTest, TheDownKeyDoesNotReachTheParentWidget) {
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    down.ignore();
    QCoreApplication::sendEvent(&editor, &down);
    EXPECT_TRUE(down.isAccepted());
}

TEST_F(LabelEditorTest, APressThatTheOwnerHandlesDoesNotChangeTheSelectedText) {
    handlesPress = true;
    QTest::mouseClick(&editor, Qt::LeftButton);
    EXPECT_EQ(editor.selectedText(), "one.wav");
    handlesPress = false;
    QTest::mouseClick(&editor, Qt::LeftButton);
    EXPECT_EQ(editor.selectedText(), "");
}

} // namespace
} // namespace sonarith
