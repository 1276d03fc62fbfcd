// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/label_view.h"

#include <algorithm>

#include <QImage>
#include <QTest>
#include <gmock/gmock.h>

#include "ui/tool_tip.h"

#include "platform/controls/form.h"

namespace sonarith {
namespace {

QImage paintedAt(LabelView& view, int width) {
    view.resize(width, 20);
    return view.grab().toImage();
}

TEST(LabelView, ShowsTheCaptionAsPlainText) {
    Form form("Form1");
    Label model(form, "Label3", "<b>Next & Action:</b>");
    QWidget parent;
    LabelView view(model, "", LabelView::Cut::end, &parent);
    EXPECT_EQ(view.text(), "<b>Next & Action:</b>");
    EXPECT_EQ(view.textFormat(), Qt::PlainText);
    model.setCaption("Größe");
    EXPECT_EQ(view.text(), "Größe");
    EXPECT_EQ(view.accessibleName(), "Größe");
}

TEST(LabelView, AtALimitedPaceOnlyTheFirstAndTheLatestOfManyCaptionsAreShown) {
    Form form("frmsearch");
    Label model(form, "lbltime", "idle");
    QWidget parent;
    LabelView view(model, "Progress", LabelView::Cut::middle, &parent, Pace::captions);
    EXPECT_EQ(view.text(), "idle");
    model.setCaption("first");
    EXPECT_EQ(view.text(), "first");
    for (int i = 0; i < 100; ++i) {
        model.setCaption("folder " + std::to_string(i));
    }
    EXPECT_EQ(view.text(), "first");
    EXPECT_EQ(view.accessibleName(), "first");
    EXPECT_TRUE(QTest::qWaitFor([&] { return view.text() != "first"; }));
    EXPECT_EQ(view.text(), "folder 99");
    EXPECT_EQ(view.accessibleName(), "folder 99");
    EXPECT_EQ(view.toolTip(), "folder 99");
    // Other properties are shown at once.
    model.setEnabled(false);
    EXPECT_FALSE(view.isEnabled());
    // After a pause the next caption is shown at once.
    QTest::qWait(300);
    model.setCaption("done");
    EXPECT_EQ(view.text(), "done");
}

TEST(LabelView, ATextThatMayBeShortenedNeedsNoWidthAndHasTheWholeTextAsToolTip) {
    Form form("Form1");
    Label model(form, "Label2", "c:\\a very long folder indeed\\with another in it\\WAVFiles\\");
    QWidget parent;
    LabelView view(model, "Destination", LabelView::Cut::middle, &parent);
    EXPECT_EQ(view.minimumSizeHint().width(), 0);
    EXPECT_EQ(view.toolTip(), view.text());
    model.setCaption("c:\\<b>x</b>.wav");
    EXPECT_EQ(view.toolTip(), plainToolTip(view.text()));
    EXPECT_NE(view.toolTip(), view.text());
}

TEST(LabelView, ATextShortenedInTheMiddleShowsBothItsEnds) {
    Form form("Form1");
    QWidget parent;
    Label whole(form, "a", "begin" + std::string(60, 'x') + "end");
    const QFontMetrics metrics(parent.font());
    const int width = metrics.horizontalAdvance("beginxxxxxxxxxend");
    Label cut(form, "b",
              metrics.elidedText(QString::fromStdString(whole.caption()), Qt::ElideMiddle, width)
                  .toStdString());
    LabelView longView(whole, "", LabelView::Cut::middle, &parent);
    LabelView cutView(cut, "", LabelView::Cut::middle, &parent);
    ASSERT_NE(whole.caption(), cut.caption());
    EXPECT_EQ(paintedAt(longView, width), paintedAt(cutView, width));
}

TEST(LabelView, ASecondaryTextIsPalerButLegible) {
    Form form("Form1");
    const auto darkest = [](const QImage& image) {
        int least = 255;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                least = std::min(least, qGray(image.pixel(x, y)));
            }
        }
        return least;
    };
    Label model(form, "Label2", "IIIIIIII");
    QWidget parent;
    LabelView view(model, "Destination", LabelView::Cut::middle, &parent);
    const int before = darkest(paintedAt(view, 200));
    view.setSecondary();
    const int after = darkest(paintedAt(view, 200));
    EXPECT_GT(after, before + 40);
    EXPECT_LT(after, 128);
}

TEST(LabelView, ATextThatIsNeverShortenedRequestsItsFullWidth) {
    Form form("Form1");
    Label model(form, "Status", "00.00%");
    QWidget parent;
    const LabelView view(model, "Status", LabelView::Cut::never, &parent);
    EXPECT_GE(view.minimumSizeHint().width(),
              view.fontMetrics().horizontalAdvance(QStringLiteral("00.00%")));
}

TEST(LabelView, AnEmptyLabelKeepsTheHeightOfALine) {
    Form form("Form1");
    Label model(form, "lblStatus");
    QWidget parent;
    LabelView view(model, "Bytes", LabelView::Cut::end, &parent);
    const int empty = view.sizeHint().height();
    model.setCaption("12 Bytes");
    EXPECT_EQ(view.sizeHint().height(), empty);
}

} // namespace
} // namespace sonarith
