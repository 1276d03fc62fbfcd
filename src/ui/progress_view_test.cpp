// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/progress_view.h"

#include <gmock/gmock.h>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

TEST(ProgressView, ShowsTheValueOfTheControl) {
    Form form("Form1");
    ProgressBar model(form, "ProgressBar1", 0, 100);
    QWidget parent;
    const ProgressView view(model, "Progress", &parent);
    EXPECT_EQ(view.value(), 0);
    EXPECT_EQ(view.maximum(), 100);
    model.setValue(42).passOver();
    EXPECT_EQ(view.value(), 42);
    model.setValue(101).passOver();
    EXPECT_EQ(view.value(), 42);
    EXPECT_EQ(view.accessibleName(), "Progress");
}

} // namespace
} // namespace sonarith
