// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main_window_view.h"

#include <algorithm>

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

#include "platform/qt/run_later.h"
#include "platform/qt/twips.h"
#include "ui/bars.h"
#include "ui/dropped_image.h"

namespace sonarith {
namespace {

/// The minimum height of the work tree, about three rows, in device-independent pixels.
constexpr int leastTreeHeight = 72;
constexpr int gripIconSide = 16;

} // namespace

MainWindowView::MainWindowView(Form1& form)
    : form_(form),
      menu_(
          new MenuBarView({&form.mnuFile, &form.mnuActiopn, &form.mnuPrefs, &form.mnuHelp}, this)),
      client_(new QWidget(this)),
      notices_(new NoticeBar(this)),
      toolBar_(makeToolBar(form, menu_->letters(), client_)),
      cdBar_(makeCdBar(form, client_)),
      activityBar_(makeActivityBar(form, client_)),
      statusBar_(makeStatusBar(form, client_)),
      gripStrip_(new BarView(form.Picture5, tr("Grip"), Qt::RightEdge, client_)),
      grip_(new PictureView(form.Image3, tr("Hand grip"), Symbol::hand, gripIconSide, gripStrip_)),
      tree_(form.TreeView1, tr("Work tree"), client_),
      adapter_(form, *this, *client_, [this] { arrange(); }),
      popups_(form, *this, menu_) {
    client_->setObjectName(QStringLiteral("client"));
    client_->setAccessibleName(tr("Work area"));
    setMenuBar(menu_);
    auto* area = new QWidget(this);
    auto* rows = new QVBoxLayout(area);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(client_, 1);
    rows->addWidget(notices_);
    setCentralWidget(area);
    setAcceptDrops(true);
    grip_->setCursor(Qt::OpenHandCursor);
    followBars();
    connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this, [this] {
        if (form_.Cmdhelp.enabled()) {
            form_.Cmdhelp.click();
        }
    });
    tree_.widget().setFocus();
    takeDesignedSize();
}

bool MainWindowView::event(QEvent* event) {
    const bool handled = QMainWindow::event(event);
    if (event->type() == QEvent::Paint && QApplication::windowIcon().isNull()) {
        // Sets the icon of the whole program, which message boxes also show. Drawing the icon in
        // its many sizes takes time, so the icon is set only after the window is on the screen.
        QTimer::singleShot(0, this, [] { QApplication::setWindowIcon(makeIcon(Symbol::program)); });
    }
    return handled;
}

void MainWindowView::followBars() {
    // The grip strip fills the height between the bars, so it must be adjusted when a bar is shown
    // or hidden. It is adjusted at once: the logic next calls runResizeLayout(), which reads the
    // strip's height.
    for (PictureBox* bar : {&form_.Picture1, &form_.Picture2, &form_.Picture3, &form_.Picture4,
                            &form_.Picture5, &form_.Image3}) {
        connections_.push_back(bar->changed.connect([this](Property) { arrange(); }));
    }
}

void MainWindowView::takeDesignedSize() {
    ensurePolished();
    const QWidget* bars[] = {toolBar_, cdBar_, activityBar_, statusBar_};
    int barHeights = 0;
    int leastWidth = menu_->sizeHint().width();
    for (const QWidget* bar : bars) {
        barHeights += bar->sizeHint().height();
        leastWidth = std::max({leastWidth, bar->minimumSizeHint().width(), bar->minimumWidth()});
    }
    client_->setMinimumSize(leastWidth, barHeights + leastTreeHeight);
    const QSize designed(std::max(toPixels(designWidth), leastWidth),
                         std::max(toPixels(designHeight), barHeights + leastTreeHeight));
    client_->resize(designed);
    resize(designed + QSize(0, menu_->sizeHint().height()));
    adapter_.designSize();
}

void MainWindowView::arrange() {
    if (arranging_) {
        return;
    }
    arranging_ = true;
    const int fullWidth = client_->width();
    int top = 0;
    int bottom = client_->height();
    const auto place = [](BarView& bar, PictureBox& model, const QRect& at) {
        bar.setGeometry(at);
        model.setLeft(toTwips(at.x()));
        model.setTop(toTwips(at.y()));
        model.setWidth(toTwips(at.width()));
        model.setHeight(toTwips(at.height()));
    };
    const std::pair<BarView*, PictureBox*> topBars[] = {{toolBar_, &form_.Picture3},
                                                        {cdBar_, &form_.Picture4}};
    for (const auto& [bar, model] : topBars) {
        const int height = bar->sizeHint().height();
        place(*bar, *model, QRect(0, top, fullWidth, height));
        top += model->visible() ? height : 0;
    }
    const std::pair<BarView*, PictureBox*> bottomBars[] = {{statusBar_, &form_.Picture1},
                                                           {activityBar_, &form_.Picture2}};
    for (const auto& [bar, model] : bottomBars) {
        const int height = bar->sizeHint().height();
        place(*bar, *model, QRect(0, bottom - height, fullWidth, height));
        bottom -= model->visible() ? height : 0;
    }
    place(*gripStrip_, form_.Picture5,
          QRect(0, top, toPixels(gripWidth), std::max(0, bottom - top)));
    grip_->setGeometry(0, 0, gripStrip_->width() - 1, toPixels(form_.Image3.height()));
    arranging_ = false;
}

void MainWindowView::answerDrag(QDropEvent& event) const {
    if (!droppedImage(*event.mimeData()).empty() && (!acceptsImages || acceptsImages())) {
        event.acceptProposedAction();
    } else {
        event.ignore();
    }
}

void MainWindowView::dragEnterEvent(QDragEnterEvent* event) {
    answerDrag(*event);
}

void MainWindowView::dragMoveEvent(QDragMoveEvent* event) {
    answerDrag(*event);
}

void MainWindowView::dropEvent(QDropEvent* event) {
    answerDrag(*event);
    const std::string path = droppedImage(*event->mimeData());
    if (!path.empty() && onImageDropped) {
        // The handler runs after the drop has ended: reading the disc may show a question, and
        // during the drop the program from which the file was dragged would wait for the answer.
        runLater(*this, [this, path] { onImageDropped(path); });
    }
}

} // namespace sonarith
