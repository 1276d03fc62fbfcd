// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/help_window.h"

#include <QAccessible>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <gmock/gmock.h>

#include "ui/help_pages.h"

namespace sonarith {
namespace {

using testing::IsEmpty;

class HelpPagesTest : public testing::Test {
  protected:
    static QString read(const QString& file) {
        QFile page(helpFolder() + u'/' + file);
        EXPECT_TRUE(page.open(QIODevice::ReadOnly)) << file.toStdString();
        return QString::fromUtf8(page.readAll());
    }
    /// The values of an attribute in a page, in order.
    static QStringList values(const QString& html, const char* attribute) {
        const QRegularExpression pattern(QLatin1String(attribute) +
                                         QStringLiteral("=\"([^\"]*)\""));
        QStringList found;
        for (auto at = pattern.globalMatch(html); at.hasNext();) {
            found.push_back(at.next().captured(1));
        }
        return found;
    }
};

TEST_F(HelpPagesTest, EveryLinkOfEachPageResolves) {
    std::vector<std::string> broken;
    int links = 0;
    for (const HelpPage& page : helpPages()) {
        const QString html = read(page.file);
        for (const QString& link : values(html, "href")) {
            ++links;
            const QString file = link.section(u'#', 0, 0);
            const QString anchor = link.section(u'#', 1);
            const QString target = file.isEmpty() ? page.file : file;
            const bool there = QFile::exists(helpFolder() + u'/' + target);
            if (!there || (!anchor.isEmpty() && !values(read(target), "name").contains(anchor))) {
                broken.push_back((page.file + u' ' + link).toStdString());
            }
        }
    }
    EXPECT_THAT(broken, IsEmpty());
    EXPECT_GT(links, 20);
}

TEST_F(HelpPagesTest, EveryPictureOfEachPageExistsAndFitsTheWindowAndHasAnAltText) {
    int pictures = 0;
    for (const HelpPage& page : helpPages()) {
        const QString html = read(page.file);
        for (const QString& file : values(html, "src")) {
            ++pictures;
            const QImage picture(helpFolder() + u'/' + file);
            EXPECT_FALSE(picture.isNull()) << file.toStdString();
            EXPECT_LE(picture.width(), 540) << file.toStdString();
        }
        EXPECT_EQ(values(html, "alt").size(), values(html, "src").size())
            << page.file.toStdString();
    }
    EXPECT_EQ(pictures, 9);
}

TEST_F(HelpPagesTest, TheTableOfContentsListsEveryPageOfTheFolderWithItsHeading) {
    EXPECT_EQ(QDir(helpFolder()).entryList({"*.html"}).size(),
              static_cast<qsizetype>(helpPages().size()));
    for (const HelpPage& page : helpPages()) {
        EXPECT_TRUE(read(page.file).contains(QStringLiteral("<h1>%1</h1>").arg(page.title)))
            << page.file.toStdString();
    }
}

TEST_F(HelpPagesTest, TheCopyInTheExecutableEqualsTheSourceFiles) {
    const QDir sources(QStringLiteral(SONARITH_SOURCES "/share/help"));
    ASSERT_EQ(helpFolder(), ":/help");
    int files = 0;
    for (QDirIterator each(sources.path(), QDir::Files, QDirIterator::Subdirectories);
         each.hasNext();) {
        QFile source(each.next());
        const QString file = sources.relativeFilePath(source.fileName());
        if (file == "help.qrc") {
            continue;
        }
        ++files;
        QFile copy(helpFolder() + u'/' + file);
        ASSERT_TRUE(source.open(QIODevice::ReadOnly));
        ASSERT_TRUE(copy.open(QIODevice::ReadOnly)) << file.toStdString();
        EXPECT_TRUE(copy.readAll() == source.readAll()) << file.toStdString();
    }
    EXPECT_GT(files, 9);
}

class HelpWindowTest : public testing::Test {
  protected:
    HelpWindowTest() {
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    template <typename Widget>
    Widget& child(const char* name) {
        return *window.findChild<Widget*>(QLatin1String(name));
    }
    std::string title() {
        return child<QTextBrowser>("text").document()->firstBlock().text().toStdString();
    }
    void search(const char* words) {
        child<QLineEdit>("search").setText(QLatin1String(words));
        QTest::keyClick(&child<QLineEdit>("search"), Qt::Key_Return);
    }
    std::string selected() {
        return child<QTextBrowser>("text").textCursor().selectedText().toStdString();
    }

    HelpWindow window{helpFolder()};
};

TEST_F(HelpWindowTest, ShowsAPageAndSelectsItInTheTableOfContents) {
    EXPECT_TRUE(window.showPage("player.html"));
    EXPECT_EQ(title(), "The CD player");
    EXPECT_EQ(child<QListWidget>("contents").currentRow(), 2);
}

TEST_F(HelpWindowTest, ARequestForAMissingPageFailsAndChangesNothing) {
    window.showPage("player.html");
    window.hide();
    EXPECT_FALSE(window.showPage("nothing.html"));
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(window.page(), "player.html");
}

TEST_F(HelpWindowTest, PagesOfAFolderOnTheDiskAreShown) {
    const QTemporaryDir folder;
    QFile page(folder.filePath("main.html"));
    ASSERT_TRUE(page.open(QIODevice::WriteOnly));
    page.write("<h1>Of a folder</h1>");
    page.close();
    HelpWindow other(folder.path());
    EXPECT_TRUE(other.showPage("main.html"));
    EXPECT_TRUE(other.findChild<QTextBrowser*>("text")->toPlainText().startsWith("Of a folder"));
}

TEST_F(HelpWindowTest, TheTableOfContentsAndTheBackAndForwardButtonsChangeThePage) {
    window.showPage("main.html");
    EXPECT_FALSE(child<QToolButton>("back").isEnabled());
    child<QListWidget>("contents").setCurrentRow(4);
    EXPECT_EQ(window.page(), "playlist.html");
    child<QToolButton>("back").click();
    EXPECT_EQ(window.page(), "main.html");
    EXPECT_EQ(child<QListWidget>("contents").currentRow(), 1);
    EXPECT_FALSE(child<QToolButton>("back").isEnabled());
    child<QToolButton>("forward").click();
    EXPECT_EQ(window.page(), "playlist.html");
}

TEST_F(HelpWindowTest, TheWindowIsNavigatedByShortcutKeysAndHiddenByEscape) {
    window.showPage("main.html");
    child<QListWidget>("contents").setCurrentRow(4);
    QTest::keyClick(&window, Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(window.page(), "main.html");
    QTest::keyClick(&window, Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(window.page(), "playlist.html");
    QTest::keyClick(&window, Qt::Key_Home, Qt::AltModifier);
    EXPECT_EQ(window.page(), "first.html");
    QTest::keyClick(&window, Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(window.focusWidget(), &child<QLineEdit>("search"));
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(HelpWindowTest, ALinkCanBeFollowedByKeyboard) {
    window.showPage("keyboard.html");
    auto& text = child<QTextBrowser>("text");
    QTest::keyClick(&text, Qt::Key_Tab);
    QTest::keyClick(&text, Qt::Key_Return);
    EXPECT_EQ(window.page(), "main.html");
}

TEST_F(HelpWindowTest, TheSearchContinuesOnTheFollowingPagesAndThenOnTheFirstPage) {
    window.showPage("main.html");
    search("brackets, such");
    EXPECT_EQ(child<QLabel>("outcome").text(), "Not found");
    EXPECT_EQ(window.page(), "main.html");
    search("PEBIBYTE");
    EXPECT_EQ(child<QLabel>("outcome").text(), "Not found");
    search("bit for bit");
    EXPECT_EQ(window.page(), "surprises.html");
    EXPECT_EQ(selected(), "bit for bit");
    EXPECT_EQ(child<QLabel>("outcome").text(), "");
    search("put an audio cd");
    EXPECT_EQ(window.page(), "first.html");
    EXPECT_EQ(selected(), "Put an audio CD");
}

TEST_F(HelpWindowTest, F3FindsTheNextMatch) {
    window.showPage("surprises.html");
    search("bracket");
    const int first = child<QTextBrowser>("text").textCursor().position();
    QTest::keyClick(&window, Qt::Key_F3);
    EXPECT_EQ(selected(), "bracket");
    EXPECT_TRUE(window.page() != "surprises.html" ||
                child<QTextBrowser>("text").textCursor().position() > first);
}

TEST_F(HelpWindowTest, EachPartHasAnAccessibleNameAndTheFontHasAtLeast11Points) {
    for (const char* name : {"contents", "text", "search", "back", "forward"}) {
        EXPECT_FALSE(child<QWidget>(name).accessibleName().isEmpty()) << name;
    }
    EXPECT_GE(child<QTextBrowser>("text").font().pointSizeF(), 11);
}

TEST_F(HelpWindowTest, TheSearchResultIsAccessible) {
    window.showPage("main.html");
    search("PEBIBYTE");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&child<QLabel>("outcome"))
                  ->text(QAccessible::Name)
                  .toStdString(),
              "Not found");
}

} // namespace
} // namespace sonarith
