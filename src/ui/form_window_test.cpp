// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/form_window.h"

#include <memory>

#include <QAccessible>
#include <QApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QVBoxLayout>
#include <gmock/gmock.h>

#include "ui/lazy_window.h"
#include "ui/popup_place.h"
#include "ui/text_box_view.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

class FormWindowTest : public testing::Test {
  protected:
    FormWindowTest() { form.setDesignedSize(4500_twips, 3000_twips); }
    ~FormWindowTest() override {
        while (QWidget* open = QApplication::activePopupWidget()) {
            open->close();
        }
    }
    /// Returns the description of the window, like the function in a file ui/<name>_layout.cpp.
    WindowLayout layout() {
        return {.form = form,
                .icon = Symbol::search,
                .menus = {&menu},
                .cancelButton = &closeButton,
                .layOut = [this](FormWindow& window) {
                    ++laidOut;
                    auto* rows = new QVBoxLayout(&window.client());
                    rows->addWidget(new TextBoxView(text, "Name", &window.client()));
                    rows->addWidget(window.makeButton(closeButton, &window.client()));
                    rows->addWidget(window.makeButton(clear, &window.client()));
                    rows->addStretch();
                }};
    }
    /// Shows the form and handles events, so that the desktop adds the frame of the window.
    void show() {
        form.show();
        QCoreApplication::processEvents();
    }
    static void activate(QWidget& window) {
        window.activateWindow();
        QCoreApplication::processEvents();
    }

    int laidOut = 0;
    Form form{"frmsearch", "File Finder"};
    TextBox text{form, "Text1"};
    CommandButton closeButton{form, "cmdend", "Close"};
    CommandButton clear{form, "cmdclear", "Clear"};
    MenuItem entry{form, "mnuClose", "Close Window"};
    MenuItem menu{form, "mnuCD", "CD Menu", {&entry}};
};

TEST_F(FormWindowTest, HasTheDesignedSizeTheCaptionAndAnIconWhenItsFormIsShown) {
    const FormWindow window(layout());
    EXPECT_FALSE(window.isVisible());
    show();
    EXPECT_TRUE(window.isVisible());
    EXPECT_TRUE(window.isWindow());
    EXPECT_EQ(window.windowTitle(), "File Finder");
    EXPECT_EQ(window.frameGeometry().size(), QSize(300, 200));
    EXPECT_FALSE(window.windowIcon().isNull());
    EXPECT_EQ(window.windowFlags() & Qt::WindowType_Mask, Qt::Window)
        << "a window of a type other than Qt::Window may be missing in the desktop's window list";
    EXPECT_NE(window.findChild<QWidget*>("Text1"), nullptr);
}

TEST_F(FormWindowTest, TheFormIsUnloadedWhenTheWindowManagerClosesTheWindow) {
    std::vector<std::string> log;
    form.onQueryUnload = [&] {
        log.emplace_back("query");
    };
    form.onUnload = [&] {
        log.emplace_back("unload");
    };
    FormWindow window(layout());
    form.show();
    EXPECT_FALSE(window.close()) << "the window must not close itself: only the form may hide it";
    EXPECT_THAT(log, ElementsAre("query", "unload"));
    EXPECT_FALSE(window.isVisible());
    form.show();
    EXPECT_TRUE(window.isVisible());
}

TEST_F(FormWindowTest, ADisabledFormDisablesTheWindowAndItsWidgets) {
    FormWindow window(layout());
    form.show();
    form.setEnabled(false);
    EXPECT_FALSE(window.isEnabled());
    EXPECT_FALSE(window.findChild<QWidget*>("Text1")->isEnabled());
    form.setEnabled(true);
    EXPECT_TRUE(window.findChild<QWidget*>("Text1")->isEnabled());
}

TEST_F(FormWindowTest, EscapeClicksTheCancelButtonWhileItIsEnabled) {
    int clicks = 0;
    closeButton.onClick = [&] {
        ++clicks;
    };
    FormWindow window(layout());
    form.show();
    activate(window);
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_EQ(clicks, 1);
    closeButton.setEnabled(false);
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_EQ(clicks, 1);
}

TEST_F(FormWindowTest, EscapeDoesNothingWithoutACancelButton) {
    WindowLayout plain = layout();
    plain.cancelButton = nullptr;
    FormWindow window(plain);
    form.show();
    activate(window);
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible());
    EXPECT_TRUE(form.loaded());
}

TEST_F(FormWindowTest, AScreenReaderFindsTheWidgetsAndTheOpenedPopupMenus) {
    MenuItem play{form, "mnuPlayCDp", "Play CD"};
    MenuItem popup{form, "mnupopup", "PopupMenu", {&play}};
    FormWindow window(layout());
    show();
    QAccessibleInterface* read = QAccessible::queryAccessibleInterface(&window);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->role(), QAccessible::Window);
    EXPECT_EQ(read->text(QAccessible::Name), "File Finder");
    const int widgets = read->childCount();
    EXPECT_EQ(widgets, 2) << "the children must be the menu bar and the client area";
    form.popupRequested.emit(popup);
    ASSERT_EQ(read->childCount(), widgets + 1);
    QAccessibleInterface* opened = read->child(widgets);
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(opened->role(), QAccessible::PopupMenu);
    EXPECT_EQ(opened->text(QAccessible::Name), "PopupMenu");
    EXPECT_EQ(read->indexOfChild(opened), widgets);
    EXPECT_EQ(read->indexOfChild(read->child(0)), 0);
    ASSERT_EQ(opened->childCount(), 1);
    EXPECT_EQ(opened->child(0)->text(QAccessible::Name), "Play CD");
    EXPECT_FALSE(opened->child(0)->state().invisible);
    QApplication::activePopupWidget()->close();
    EXPECT_TRUE(opened->state().invisible);
    EXPECT_EQ(read->child(widgets + 1), nullptr);
}

TEST_F(FormWindowTest, F1RequestsHelpOnTheForm) {
    std::vector<std::string> helped;
    FormWindow window(layout(), [&](const Form& about) { helped.push_back(about.name()); });
    form.show();
    activate(window);
    QTest::keyClick(&window, Qt::Key_F1);
    EXPECT_THAT(helped, ElementsAre("frmsearch"));
}

TEST_F(FormWindowTest, TheClientAreaFillsTheWindowBelowTheMenuBar) {
    FormWindow window(layout());
    show();
    EXPECT_GT(window.client().y(), 10);
    EXPECT_EQ(form.innerHeight(), Twips(window.client().height() * 15));
    EXPECT_EQ(window.client().y() + window.client().height(), window.height());
}

TEST_F(FormWindowTest, ButtonsHaveMnemonicsThatMenusAndOtherButtonsDoNotUse) {
    const FormWindow window(layout());
    EXPECT_EQ(window.findChild<QPushButton*>("cmdend")->text(), "C&lose");
    EXPECT_EQ(window.findChild<QPushButton*>("cmdclear")->text(), "Cl&ear");
}

TEST_F(FormWindowTest, TheMenuKeyActsAsTheRightMouseButtonUnlessTheLayoutHandlesTheKey) {
    std::vector<std::string> log;
    QPoint place;
    form.onMouseDown = [&](MouseButtons buttons) {
        log.emplace_back(buttons.right ? "right" : "left");
        place = PopupPlace::current();
        form.popupRequested.emit(menu);
    };
    QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    {
        FormWindow window(layout());
        form.show();
        activate(window);
        auto* button = window.findChild<QWidget*>("cmdend");
        button->setFocus();
        QCoreApplication::sendEvent(button, &key);
        EXPECT_EQ(place, button->mapToGlobal(button->rect().center()));
        ASSERT_NE(QApplication::activePopupWidget(), nullptr);
        EXPECT_EQ(QApplication::activePopupWidget()->objectName(), "mnuCD");
        QApplication::activePopupWidget()->close();
        QContextMenuEvent mouse(QContextMenuEvent::Mouse, QPoint(), QPoint());
        QCoreApplication::sendEvent(button, &mouse);
    }
    form.hide();
    WindowLayout own = layout();
    own.menuKey = [&] {
        log.emplace_back("own");
    };
    FormWindow window(own);
    form.show();
    QCoreApplication::sendEvent(&window, &key);
    EXPECT_THAT(log, ElementsAre("right", "own"));
}

TEST_F(FormWindowTest, ADesignedSizeThatIsTooSmallIsReplacedByTheSizeOfTheContents) {
    form.setDesignedSize(150_twips, 150_twips);
    form.onLoad = [&] {
        form.setLeft(1500_twips);
        form.setTop(1500_twips);
    };
    form.show();
    const FormWindow window(layout());
    QCoreApplication::processEvents();
    const QSize least = window.minimumSize();
    EXPECT_GT(least.width(), 10);
    EXPECT_EQ(window.size(), least);
    EXPECT_EQ(form.width(), Twips(window.frameGeometry().width() * 15));
    EXPECT_EQ(form.left(), Twips(1500));
    form.unload();
    form.onLoad = [&] {
        EXPECT_EQ(form.width(), Twips(least.width() * 15))
            << "the form must have the width of the grown window: a load step that centres the "
               "window needs this width";
    };
    show();
    EXPECT_EQ(window.size(), least);
}

TEST_F(FormWindowTest, ACentredWindowStaysCentredWhenItGrows) {
    form.setDesignedSize(150_twips, 150_twips);
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    form.onLoad = [&] {
        form.setLeft((Twips(screen.width() * 15) - form.width()) / 2);
        form.setTop((Twips(screen.height() * 15) - form.height()) / 2);
    };
    form.show();
    const FormWindow window(layout());
    // The test ignores the window's frame, because the size of the frame is unknown until the
    // window is on the screen.
    EXPECT_NEAR(window.geometry().center().x(), screen.center().x(), 2);
    EXPECT_NEAR(window.geometry().center().y(), screen.center().y(), 2);
}

TEST_F(FormWindowTest, WithoutALeastSizeTheWindowCanBeSmallerThanItsContents) {
    WindowLayout any = layout();
    any.leastSize = LeastSize::none;
    const FormWindow window(any);
    show();
    form.setHeight(600_twips);
    EXPECT_EQ(window.frameGeometry().size(), QSize(300, 40));
}

TEST_F(FormWindowTest, EveryWidgetWithAnObjectNameHasAnAccessibleName) {
    FormWindow window(layout());
    EXPECT_EQ(window.accessibleName(), "File Finder");
    int named = 0;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const std::string name = widget->objectName().toStdString();
        if (!name.empty() && !name.starts_with("qt_")) {
            ++named;
            EXPECT_FALSE(widget->accessibleName().isEmpty()) << name;
        }
    }
    EXPECT_GT(named, 0);
}

TEST_F(FormWindowTest, ALazyWindowIsBuiltWhenItsFormIsFirstShown) {
    const LazyWindow lazy(layout());
    form.load();
    EXPECT_EQ(lazy.window(), nullptr);
    EXPECT_EQ(laidOut, 0);
    form.show();
    ASSERT_NE(lazy.window(), nullptr);
    EXPECT_TRUE(lazy.window()->isVisible());
    form.hide();
    form.show();
    EXPECT_EQ(laidOut, 1);
}

TEST_F(FormWindowTest, ALazyWindowOpensAtThePositionSetByTheLoadStep) {
    form.onLoad = [&] {
        form.setLeft(1500_twips);
        form.setTop(750_twips);
    };
    const LazyWindow lazy(layout());
    form.show();
    QCoreApplication::processEvents();
    ASSERT_NE(lazy.window(), nullptr);
    const QPoint corner = QGuiApplication::primaryScreen()->geometry().topLeft();
    EXPECT_EQ(lazy.window()->pos(), corner + QPoint(100, 50));
    EXPECT_EQ(form.left(), Twips(1500));
}

TEST_F(FormWindowTest, ALazyWindowIsNotBuiltIfTheLoadStepUnloadsItsForm) {
    form.onLoad = [&] {
        form.unload();
    };
    const LazyWindow lazy(layout());
    form.show();
    EXPECT_EQ(lazy.window(), nullptr);
}

} // namespace
} // namespace sonarith
