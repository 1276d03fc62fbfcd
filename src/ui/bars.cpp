// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/bars.h"

#include <QBoxLayout>
#include <QGridLayout>

#include "ui/button_view.h"
#include "ui/fixed_text.h"
#include "ui/label_view.h"
#include "ui/progress_view.h"

namespace sonarith {
namespace {

// Device-independent pixels.
constexpr int margin = 6;
constexpr int gap = 4;
constexpr int clipSide = 22;   ///< reserved for a clip that is never played (app/activity_clip.h)
constexpr int symbolSide = 18; ///< the activity bar's pictures "Source" and "Destination"
constexpr int progressHeight = 12;

} // namespace

BarView* makeToolBar(Form1& form, const QString& takenLetters, QWidget* parent) {
    auto* bar = new BarView(form.Picture3, QObject::tr("Tool bar"), Qt::BottomEdge, parent);
    auto* rows = new QVBoxLayout(bar);
    rows->setContentsMargins(margin, gap, margin, margin);
    rows->setSpacing(gap);

    auto* pictures = new QHBoxLayout;
    pictures->setSpacing(2);
    const std::pair<CommandButton*, Symbol> commands[] = {
        {&form.Command5, Symbol::exit},     {&form.Cmdhelp, Symbol::help},
        {&form.C5555555, Symbol::playlist}, {&form.Copt, Symbol::preferences},
        {&form.C777, Symbol::search},
    };
    for (const auto& [command, symbol] : commands) {
        pictures->addWidget(new IconButtonView(*command, symbol, bar));
    }
    pictures->addStretch();
    pictures->addWidget(
        new PictureView(form.Picture6, QObject::tr("Activity"), std::nullopt, clipSide, bar));
    rows->addLayout(pictures);

    auto* action = new QHBoxLayout;
    action->setSpacing(gap);
    action->addWidget(new TextButtonView(form.Command2, takenLetters + QLatin1Char('s'), bar), 1);
    action->addWidget(new TextButtonView(form.CmdSelectAction, takenLetters, bar), 2);
    rows->addLayout(action);
    return bar;
}

BarView* makeCdBar(Form1& form, QWidget* parent) {
    auto* bar = new BarView(form.Picture4, QObject::tr("CD bar"), Qt::BottomEdge, parent);
    auto* columns = new QGridLayout(bar);
    columns->setContentsMargins(margin, gap, margin, gap);
    columns->setHorizontalSpacing(2 * gap);
    columns->setVerticalSpacing(0);

    auto* transport = new QHBoxLayout;
    transport->setSpacing(2);
    transport->addWidget(new IconButtonView(form.Command11, Symbol::play, bar));
    transport->addWidget(new IconButtonView(form.Command12, Symbol::stop, bar));
    columns->addLayout(transport, 0, 0, 2, 1);

    columns->addWidget(makeHeading(QObject::tr("CD ID:"), bar), 0, 1);
    columns->addWidget(new LabelView(form.lblCDID, QObject::tr("CD ID:"), LabelView::Cut::end, bar),
                       1, 1);
    columns->addWidget(makeHeading(QObject::tr("Tracks:"), bar), 0, 2);
    columns->addWidget(
        new LabelView(form.lblNumTracks, QObject::tr("Tracks:"), LabelView::Cut::end, bar), 1, 2);
    auto* warning =
        new LabelView(form.Label5, QObject::tr("Drive space"), LabelView::Cut::never, bar);
    warning->setWordWrap(true);
    warning->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    columns->addWidget(warning, 0, 3, 2, 1);
    columns->setColumnStretch(1, 1);
    // A hidden warning takes no space, but the bar, and therefore the window, is always wide enough
    // for the warning.
    bar->setMinimumWidth(columns->minimumSize().width() + columns->horizontalSpacing() +
                         warning->minimumSizeHint().width());
    return bar;
}

BarView* makeActivityBar(Form1& form, QWidget* parent) {
    auto* bar = new BarView(form.Picture2, QObject::tr("Activity bar"), Qt::TopEdge, parent);
    auto* rows = new QGridLayout(bar);
    rows->setContentsMargins(margin, gap + 1, margin, gap);
    rows->setHorizontalSpacing(margin);
    rows->setVerticalSpacing(2);

    rows->addWidget(
        new PictureView(form.Image5, QObject::tr("Source"), Symbol::disc, symbolSide, bar), 0, 0);
    rows->addWidget(
        new LabelView(form.Label3, QObject::tr("Next action"), LabelView::Cut::middle, bar), 0, 1);
    rows->addWidget(
        new PictureView(form.Image4, QObject::tr("Destination"), Symbol::folder, symbolSide, bar),
        1, 0);
    auto* destination =
        new LabelView(form.Label2, QObject::tr("Destination"), LabelView::Cut::middle, bar);
    // The destination is paler, so that the next action stands out. A bold next action would need a
    // second font, and loading that font would take a twentieth of the start-up time.
    destination->setSecondary();
    rows->addWidget(destination, 1, 1);
    rows->setColumnStretch(1, 1);
    return bar;
}

BarView* makeStatusBar(Form1& form, QWidget* parent) {
    auto* bar = new BarView(form.Picture1, QObject::tr("Status bar"), Qt::TopEdge, parent);
    auto* rows = new QVBoxLayout(bar);
    rows->setContentsMargins(margin, margin, margin, gap);
    rows->setSpacing(gap);

    auto* progress = new ProgressView(form.ProgressBar1, QObject::tr("Progress"), bar);
    progress->setFixedHeight(progressHeight);
    rows->addWidget(progress);

    auto* figures = new QHBoxLayout;
    figures->setSpacing(2 * gap);
    figures->addWidget(
        new LabelView(form.Status, QObject::tr("Status"), LabelView::Cut::never, bar));
    figures->addWidget(
        new LabelView(form.Label33, QObject::tr("Percentage"), LabelView::Cut::never, bar));
    auto* bytes =
        new LabelView(form.lblStatus, QObject::tr("Bytes captured"), LabelView::Cut::end, bar);
    bytes->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    figures->addWidget(bytes, 1);
    rows->addLayout(figures);
    return bar;
}

} // namespace sonarith
