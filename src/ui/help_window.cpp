// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/help_window.h"

#include <algorithm>
#include <utility>

#include <QFile>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTextDocument>
#include <QVBoxLayout>

#include "ui/help_pages.h"
#include "ui/icons.h"

namespace sonarith {
namespace {

/// The minimum font size of the help text, in points; 11 is usual in print. The desktop's font size
/// is used if it is larger.
constexpr qreal textPoints = 11;

/// In device-independent pixels. The widest picture on a help page (540) fits beside the table of
/// contents, which has space for the longest page title.
constexpr QSize firstSize(800, 640);
constexpr int contentsWidth = 180;

} // namespace

HelpWindow::HelpWindow(QString folder)
    : folder_(std::move(folder)),
      contents_(new QListWidget),
      text_(new QTextBrowser),
      search_(new QLineEdit(this)),
      outcome_(new QLabel(this)),
      back_(makeButton("back", tr("Back"), Qt::LeftArrow)),
      forward_(makeButton("forward", tr("Forward"), Qt::RightArrow)) {
    setObjectName(QStringLiteral("Help"));
    setWindowTitle(tr("Sonarith Help"));
    setAccessibleName(tr("Sonarith Help"));
    setWindowIcon(makeIcon(Symbol::help));
    buildLayout();
    connectKeys();
    resize(firstSize);
}

QToolButton* HelpWindow::makeButton(const char* name, const QString& text, Qt::ArrowType arrow) {
    auto* button = new QToolButton(this);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(text);
    button->setToolTip(text);
    button->setArrowType(arrow);
    button->setFocusPolicy(Qt::TabFocus);
    button->setEnabled(false);
    return button;
}

void HelpWindow::buildLayout() {
    contents_->setObjectName(QStringLiteral("contents"));
    contents_->setAccessibleName(tr("Contents"));
    for (const HelpPage& page : helpPages()) {
        contents_->addItem(page.title);
    }
    text_->setObjectName(QStringLiteral("text"));
    text_->setAccessibleName(tr("Help text"));
    text_->setOpenExternalLinks(false);
    // With these flags, the tab key moves to links and the arrow keys can select text.
    text_->setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
    QFont font = text_->font();
    font.setPointSizeF(std::max(font.pointSizeF(), textPoints));
    text_->setFont(font);
    search_->setObjectName(QStringLiteral("search"));
    search_->setAccessibleName(tr("Search in all pages"));
    search_->setPlaceholderText(tr("Search"));
    search_->setClearButtonEnabled(true);
    // This label gets no accessible name: a screen reader would read that name instead of the text.
    outcome_->setObjectName(QStringLiteral("outcome"));

    auto* bar = new QHBoxLayout;
    bar->addWidget(back_);
    bar->addWidget(forward_);
    bar->addWidget(search_, 1);
    bar->addWidget(outcome_);
    auto* halves = new QSplitter(this);
    halves->addWidget(contents_);
    halves->addWidget(text_);
    halves->setStretchFactor(1, 1);
    halves->setSizes({contentsWidth, firstSize.width() - contentsWidth});
    halves->setChildrenCollapsible(false);
    auto* rows = new QVBoxLayout(this);
    rows->addLayout(bar);
    rows->addWidget(halves, 1);
    setTabOrder(search_, contents_);
    setTabOrder(contents_, text_);
}

void HelpWindow::connectKeys() {
    connect(contents_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0) {
            setPage(helpPages()[static_cast<std::size_t>(row)].file);
        }
    });
    connect(text_, &QTextBrowser::sourceChanged, this,
            [this](const QUrl& shown) { followPage(shown.fileName()); });
    connect(text_, &QTextBrowser::backwardAvailable, back_, &QWidget::setEnabled);
    connect(text_, &QTextBrowser::forwardAvailable, forward_, &QWidget::setEnabled);
    connect(back_, &QToolButton::clicked, text_, &QTextBrowser::backward);
    connect(forward_, &QToolButton::clicked, text_, &QTextBrowser::forward);
    connect(search_, &QLineEdit::returnPressed, this, [this] { findNext(); });
    connect(search_, &QLineEdit::textChanged, outcome_, &QLabel::clear);

    const auto onKey = [this](const QKeySequence& key, auto action) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, action);
    };
    onKey(QKeySequence::Back, [this] { text_->backward(); });
    onKey(QKeySequence::Forward, [this] { text_->forward(); });
    onKey(Qt::ALT | Qt::Key_Home, [this] { setPage(helpPages().front().file); });
    onKey(QKeySequence::Find, [this] {
        search_->setFocus(Qt::ShortcutFocusReason);
        search_->selectAll();
    });
    onKey(Qt::Key_F3, [this] { findNext(); });
    onKey(QKeySequence::ZoomIn, [this] { text_->zoomIn(); });
    onKey(QKeySequence::ZoomOut, [this] { text_->zoomOut(); });
    onKey(Qt::Key_Escape, [this] { close(); });
}

bool HelpWindow::isThere(const QString& file) const {
    return QFile::exists(folder_ + u'/' + file);
}

void HelpWindow::setPage(const QString& file) {
    const QString path = folder_ + u'/' + file;
    text_->setSource(path.startsWith(u':') ? QUrl(QStringLiteral("qrc") + path)
                                           : QUrl::fromLocalFile(path));
}

void HelpWindow::followPage(const QString& shown) {
    const auto& pages = helpPages();
    const auto found = std::find_if(pages.begin(), pages.end(),
                                    [&](const HelpPage& each) { return each.file == shown; });
    if (found != pages.end()) {
        const QSignalBlocker quiet(contents_);
        contents_->setCurrentRow(static_cast<int>(found - pages.begin()));
    }
}

bool HelpWindow::showPage(const QString& file) {
    if (!isThere(file)) {
        return false;
    }
    setPage(file);
    text_->setFocus();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
    return true;
}

QString HelpWindow::page() const {
    return text_->source().fileName();
}

bool HelpWindow::holds(const QString& file, const QString& text) const {
    QFile read(folder_ + u'/' + file);
    if (!read.open(QIODevice::ReadOnly)) {
        return false;
    }
    QTextDocument document;
    document.setHtml(QString::fromUtf8(read.readAll()));
    return !document.find(text).isNull();
}

void HelpWindow::findNext() {
    const QString text = search_->text();
    if (text.isEmpty() || text_->find(text)) {
        return;
    }
    const auto& pages = helpPages();
    const auto current = static_cast<std::size_t>(std::max(0, contents_->currentRow()));
    // The last step returns to the current page: a match may be before the current position.
    for (std::size_t step = 1; step <= pages.size(); ++step) {
        const QString& file = pages[(current + step) % pages.size()].file;
        if (holds(file, text)) {
            setPage(file);
            text_->moveCursor(QTextCursor::Start);
            text_->find(text);
            return;
        }
    }
    outcome_->setText(tr("Not found"));
}

} // namespace sonarith
