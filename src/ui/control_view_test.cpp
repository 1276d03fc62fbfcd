// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/control_view.h"

#include <gmock/gmock.h>

#include <vector>

#include <QAccessible>

#include "platform/controls/basic_controls.h"
#include "platform/controls/form.h"

namespace sonarith {
namespace {

class ControlViewTest : public testing::Test {
  protected:
    QWidget parent;
    QWidget widget{&parent};
    Form form{"Form1"};
    Label model{form, "lblStatus", "12 Bytes"};
    ControlView view{model, widget, [this] { return model.caption(); }, "Bytes captured"};
};

TEST_F(ControlViewTest, TheWidgetHasTheControlsName) {
    EXPECT_EQ(widget.objectName(), "lblStatus");
}

TEST_F(ControlViewTest, TheWidgetIsVisibleAndEnabledLikeTheControl) {
    model.setVisible(false);
    EXPECT_TRUE(widget.isHidden());
    model.setVisible(true);
    EXPECT_FALSE(widget.isHidden());
    model.setEnabled(false);
    EXPECT_FALSE(widget.isEnabled());
}

TEST_F(ControlViewTest, TheAccessibleNameIsTheCaptionOrElseTheToolTipOrElseTheLabel) {
    EXPECT_EQ(widget.accessibleName(), "12 Bytes");
    model.setCaption("");
    EXPECT_EQ(widget.accessibleName(), "Bytes captured");
    model.setToolTip("What came so far");
    EXPECT_EQ(widget.accessibleName(), "What came so far");
    EXPECT_EQ(widget.toolTip(), "What came so far");
}

/// How often Qt has queried the factories for a widget's accessible object. Setting the accessible
/// name of a widget causes such a query, unless the object exists already. The next test counts
/// these queries to detect whether a name was set.
int queries = 0;
QAccessibleInterface* countQuery(const QString& /*className*/, QObject* /*asked*/) {
    ++queries;
    return nullptr; // the next factory creates the object
}

TEST_F(ControlViewTest, AnAccessibleNameThatStaysTheSameIsNotSetAgain) {
    const auto forgetAccessibleObject = [&] {
        QAccessible::deleteAccessibleInterface(
            QAccessible::uniqueId(QAccessible::queryAccessibleInterface(&widget)));
        queries = 0;
    };
    QAccessible::installFactory(countQuery);
    forgetAccessibleObject();
    model.setToolTip("What came so far");
    EXPECT_EQ(queries, 0) << "the name is the caption as before, so it must not be set";
    forgetAccessibleObject();
    model.setCaption("13 Bytes");
    EXPECT_GT(queries, 0);
    QAccessible::removeFactory(countQuery);
}

TEST_F(ControlViewTest, TheControlPlacesTheWidgetOnlyIfPlacementIsByControl) {
    model.setLeft(150_twips);
    EXPECT_EQ(widget.x(), 0);
    QWidget placed(&parent);
    const ControlView placedView(model, placed, {}, "", {}, Placement::byControl);
    model.setTop(30_twips);
    model.setWidth(300_twips);
    model.setHeight(45_twips);
    EXPECT_EQ(placed.geometry(), QRect(10, 2, 20, 3));
}

TEST_F(ControlViewTest, AChangeOfAPropertyUpdatesOnlyThatProperty) {
    std::vector<Property> shown;
    QWidget other(&parent);
    const ControlView otherView(
        model, other, [this] { return model.caption(); }, "",
        [&](Property which) { shown.push_back(which); }, Placement::byControl);
    shown.clear();
    // A change of the caption must not change the four values that are set here.
    const QRect place(1, 2, 3, 4);
    other.setGeometry(place);
    other.setToolTip("kept");
    other.setEnabled(false);
    other.setVisible(false);
    model.setCaption("13 Bytes");
    EXPECT_EQ(other.accessibleName(), "13 Bytes");
    EXPECT_EQ(other.geometry(), place);
    EXPECT_EQ(other.toolTip(), "kept");
    EXPECT_FALSE(other.isEnabled());
    EXPECT_TRUE(other.isHidden());
    other.setAccessibleName("kept");
    model.setEnabled(false);
    EXPECT_EQ(other.accessibleName(), "kept");
    EXPECT_THAT(shown, testing::ElementsAre(Property::caption, Property::enabled));
}

TEST_F(ControlViewTest, AControlMayChangeAfterOneOfItsViewsIsDestroyed) {
    {
        QWidget brief(&parent);
        const ControlView briefView(model, brief, {}, "");
    }
    model.setCaption("still there");
    EXPECT_EQ(widget.accessibleName(), "still there");
}

} // namespace
} // namespace sonarith
