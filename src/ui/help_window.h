// SPDX-License-Identifier: GPL-3.0-or-later
// The window that shows the help pages. It has a table of contents, buttons to go back and forward,
// and a search through all pages. It is independent of the other windows: program_help.h determines
// the page for the window that requests help.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTextBrowser>
#include <QToolButton>
#include <QWidget>

namespace sonarith {

class HelpWindow : public QWidget {
  public:
    /// `folder` contains the pages; see helpFolder().
    explicit HelpWindow(QString folder);

    /// Shows a page, such as "main.html", and the window. If the page does not exist, returns false
    /// and changes nothing.
    bool showPage(const QString& file);
    /// The file of the page that is shown; empty before a page is shown.
    [[nodiscard]] QString page() const;
    /// Selects the next match of the search field's text, in this page or the following ones; after
    /// the last page the search continues with the first page. Shows "Not found" if there is no
    /// match.
    void findNext();

  private:
    void buildLayout();
    void connectKeys();
    [[nodiscard]] bool isThere(const QString& file) const;
    [[nodiscard]] bool holds(const QString& file, const QString& text) const;
    void setPage(const QString& file);
    void followPage(const QString& shown);
    QToolButton* makeButton(const char* name, const QString& text, Qt::ArrowType arrow);

    QString folder_;
    QListWidget* contents_;
    QTextBrowser* text_;
    QLineEdit* search_;
    QLabel* outcome_;
    QToolButton* back_;
    QToolButton* forward_;
};

} // namespace sonarith
