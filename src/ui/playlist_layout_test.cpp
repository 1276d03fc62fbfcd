// SPDX-License-Identifier: GPL-3.0-or-later
// Tests what the playlist editor shows at its first size, what its boxes accept, and how it aligns
// the lines about the header of an MP3 file. window_layouts_test.cpp tests the requirements that
// are the same for all layouts.
#include "ui/playlist_layout.h"

#include <array>

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QStyleOptionFrame>
#include <QTest>
#include <QToolButton>
#include <gmock/gmock.h>

#include "support/fake_machine.h"
#include "ui/header_line_delegate.h"
#include "ui/icons.h"

namespace sonarith {
namespace {

/// The lines that the logic writes about the header of an MP3 file, each with its longest value.
constexpr std::array headerOfAFile = {
    "Bitrate            320",     "Frequency       44100",  "Duration          2147483647",
    "MpegVersion   25",           "MpegLayer      3",       "Original           yes",
    "Emphasis        CCITT J 17", "CopyRight        yes",   "Mode               single channel",
    "Padding           yes",      "CRC                yes", "Private             yes"};

class PlaylistLayoutTest : public testing::Test {
  protected:
    PlaylistLayoutTest() {
        form.show();
        for (const char* line : headerOfAFile) {
            form.List1.addItem(line);
        }
        QCoreApplication::processEvents();
    }
    template <typename Widget>
    Widget& get(const char* name) {
        auto* found = window.findChild<Widget*>(QString::fromLatin1(name));
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }
    static std::string boxName(std::size_t number) {
        return "Text4(" + std::to_string(number) + ")";
    }
    /// The width of the area in which a line edit shows text, in pixels. A wider text is scrolled.
    static int textWidth(const QLineEdit& box) {
        constexpr int marginsOfText = 2 * 2; // pixels; no function of QLineEdit returns them
        QStyleOptionFrame option;
        option.initFrom(&box);
        option.lineWidth = box.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &box);
        return box.style()->subElementRect(QStyle::SE_LineEditContents, &option, &box).width() -
               marginsOfText;
    }

    test::FakeMachine machine;
    FrmPlayList form{machine.mp3};
    FormWindow window{playlistLayout(form)};
};

TEST_F(PlaylistLayoutTest, EveryBoxAndHeaderLineIsVisibleAtTheFirstSize) {
    const auto& header = get<QAbstractItemView>("List1");
    ASSERT_TRUE(QTest::qWaitFor([&] { return header.model()->rowCount() == 12; }));
    EXPECT_EQ(header.verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(header.horizontalScrollBar()->maximum(), 0);
    const QRect last = header.visualRect(header.model()->index(11, 0));
    EXPECT_TRUE(header.viewport()->rect().contains(last));
    std::vector<std::string> names{"List2", "List1", "Text5"};
    for (std::size_t number = 1; number <= FrmPlayList::text4Count; ++number) {
        names.push_back(boxName(number));
    }
    for (const std::string& name : names) {
        const auto& widget = get<QWidget>(name.c_str());
        EXPECT_TRUE(widget.isVisible()) << name;
        const QRect place(widget.mapTo(&window, QPoint()), widget.size());
        EXPECT_TRUE(window.rect().contains(place)) << name;
    }
}

TEST_F(PlaylistLayoutTest, DoesNotBlockOtherWindows) {
    EXPECT_EQ(window.windowModality(), Qt::NonModal);
}

TEST_F(PlaylistLayoutTest, TheBoxesOfTheTagHaveSpaceForThirtyCharactersOfAverageWidth) {
    for (std::size_t number = 1; number <= FrmPlayList::text4Count; ++number) {
        const auto& box = get<QLineEdit>(boxName(number).c_str());
        EXPECT_GE(textWidth(box), 30 * box.fontMetrics().averageCharWidth()) << boxName(number);
    }
    // The boxes keep this width when the user makes the window as small as possible.
    window.resize(window.minimumSizeHint());
    QCoreApplication::processEvents();
    const auto& artist = get<QLineEdit>("Text4(1)");
    EXPECT_GE(textWidth(artist), 30 * artist.fontMetrics().averageCharWidth());
}

TEST_F(PlaylistLayoutTest, TheBoxesAcceptLongTextsAndTheGenreBoxAcceptsATypedNumber) {
    const QString longText(100'000, QLatin1Char('x'));
    QApplication::clipboard()->setText(longText);
    std::vector<std::string> names{"Text5"};
    for (std::size_t number = 1; number <= 6; ++number) {
        names.push_back(boxName(number));
    }
    for (const std::string& name : names) {
        auto& box = get<QLineEdit>(name.c_str());
        box.selectAll();
        box.paste();
        EXPECT_EQ(box.text(), longText) << name;
    }
    EXPECT_EQ(form.Text5.text().size(), 100'000U);
    auto& genre = get<QLineEdit>("Text4(6)");
    genre.selectAll();
    QTest::keyClicks(&genre, "255");
    EXPECT_EQ(form.Text4(6).text(), "255");
}

TEST_F(PlaylistLayoutTest, PlayAndStopAreButtonsWithSymbols) {
    const auto picture = [](const QIcon& icon) {
        return icon.pixmap(QSize(22, 22)).toImage();
    };
    const auto& play = get<QToolButton>("Command11");
    const auto& stop = get<QToolButton>("Command12");
    EXPECT_EQ(picture(play.icon()), picture(makeIcon(Symbol::play)));
    EXPECT_EQ(picture(stop.icon()), picture(makeIcon(Symbol::stop)));
    EXPECT_NE(picture(play.icon()), picture(stop.icon()));
    EXPECT_EQ(play.accessibleName(), "Play");
    EXPECT_EQ(stop.accessibleName(), "Stop");
}

// --- the columns of the lines about an MP3 header ----------------------------------------------

class HeaderColumnsTest : public testing::Test {
  protected:
    static QImage painted(const QString& line, const QFont& font) {
        QStandardItemModel model(1, 1);
        model.setData(model.index(0, 0), line);
        QStyleOptionViewItem option;
        option.rect = QRect(0, 0, 600, 40);
        option.font = font;
        option.fontMetrics = QFontMetrics(font);
        option.palette = QApplication::palette();
        QImage image(option.rect.size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        HeaderLineDelegate().paint(&painter, option, model.index(0, 0));
        return image;
    }
    /// The first and the last column of pixels in which two pictures differ.
    static std::pair<int, int> difference(const QImage& a, const QImage& b) {
        std::pair<int, int> columns(-1, -1);
        for (int x = 0; x < a.width(); ++x) {
            for (int y = 0; y < a.height(); ++y) {
                if (a.pixel(x, y) != b.pixel(x, y)) {
                    columns = {columns.first < 0 ? x : columns.first, x};
                }
            }
        }
        return columns;
    }
};

TEST_F(HeaderColumnsTest, LabelsAndValuesAreAlignedInEveryFont) {
    for (const char* family : {"Sans Serif", "Serif", "Monospace"}) {
        for (const int points : {8, 10, 16}) {
            const QFont font(QString::fromLatin1(family), points);
            const QImage blank = painted(QString(), font);
            std::vector<int> values;
            int labelsEnd = 0;
            for (const char* line : headerOfAFile) {
                const QString text = QString::fromLatin1(line);
                const QString label = text.left(text.lastIndexOf(QLatin1String("   ")) + 3);
                const QImage labelOnly = painted(label, font);
                const auto [begin, end] = difference(blank, labelOnly);
                EXPECT_LT(begin, 10) << line;
                labelsEnd = std::max(labelsEnd, end);
                // Each line gets the value "H", because the margin to the left of a letter differs
                // from letter to letter.
                const QImage whole = painted(label + QLatin1Char('H'), font);
                values.push_back(difference(labelOnly, whole).first);
            }
            EXPECT_THAT(values, testing::Each(values.front())) << family << " " << points;
            EXPECT_GT(values.front(), labelsEnd) << family << " " << points;
        }
    }
}

} // namespace
} // namespace sonarith
