// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/coming_window.h"

#include <QLabel>
#include <QPushButton>
#include <gmock/gmock.h>

namespace sonarith {
namespace {

class ComingWindowTest : public testing::Test {
  protected:
    Form form{"frmPlayList", "Playlist Editor"};
    FormWindow window{comingWindow(form)};
};

TEST_F(ComingWindowTest, SaysWhichWindowItStandsInForAndThatItIsNotBuilt) {
    form.show();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.windowTitle(), "Playlist Editor");
    EXPECT_EQ(window.findChild<QLabel*>("caption")->text(), "Playlist Editor");
    EXPECT_EQ(window.findChild<QLabel*>("sentence")->text(),
              "This window comes with a later version.");
}

TEST_F(ComingWindowTest, EachWayOfClosingUnloadsTheForm) {
    const std::function<void()> ways[] = {
        [&] { window.close(); },
        [&] { window.findChild<QPushButton*>("close")->click(); },
    };
    for (const auto& close : ways) {
        form.show();
        ASSERT_TRUE(window.isVisible());
        close();
        EXPECT_FALSE(form.loaded());
        EXPECT_FALSE(window.isVisible());
    }
}

TEST_F(ComingWindowTest, EveryWidgetHasASpokenName) {
    EXPECT_FALSE(window.accessibleName().isEmpty());
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
    }
}

} // namespace
} // namespace sonarith
