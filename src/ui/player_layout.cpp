// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player_layout.h"

#include <utility>

#include <QBoxLayout>
#include <QGridLayout>

#include "platform/qt/twips.h"
#include "ui/block_view.h"
#include "ui/button_view.h"
#include "ui/check_box_view.h"
#include "ui/fixed_text.h"
#include "ui/frame_view.h"
#include "ui/label_view.h"
#include "ui/option_button_view.h"
#include "ui/player_display.h"
#include "ui/slider_view.h"
#include "ui/text_box_view.h"
#include "ui/trace_view.h"

namespace sonarith {
namespace {

// Device-independent pixels.
constexpr int panelMargin = 6;
constexpr int panelGap = 4;
constexpr int leastSliderHeight = 48;
constexpr int numberWidth = 44;
constexpr int transportSide = 20;

/// The number that is shown for a slider whose handle is at the top (player/mixer_panel.cpp).
constexpr int loudestNumber = 10;

void placeAsDesigned(QWidget& view, const Control& control) {
    view.setGeometry(toPixels(control.left()), toPixels(control.top()), toPixels(control.width()),
                     toPixels(control.height()));
}

/// Creates the dark surface with the time, the mode and the track length. The user can move the
/// player's window by dragging this surface.
QWidget* makeDisplay(Form4& form, QWidget* parent) {
    auto* display = new PlayerDisplay(form.Picture10, QObject::tr("Display"), parent);
    auto* columns = new QHBoxLayout(display);
    columns->setContentsMargins(2 * panelGap, panelGap, 2 * panelGap, panelGap);
    columns->setSpacing(2 * panelGap);
    auto* time = new TextBoxView(form.timeWindow, QObject::tr("Track and time"), display);
    auto* mode = new TextBoxView(form.CD, QObject::tr("Mode"), display);
    for (TextBoxView* box : {time, mode}) {
        box->setFrame(false);
        box->setFocusPolicy(Qt::ClickFocus);
    }
    columns->addWidget(time, 1);
    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    mode->setAlignment(Qt::AlignRight);
    words->addWidget(mode);
    auto* length =
        new LabelView(form.tracktime, QObject::tr("Track time"), LabelView::Cut::never, display);
    length->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    words->addWidget(length);
    columns->addLayout(words);
    return display;
}

/// Creates the level meter. The logic of the meter computes with the designed sizes of the trace
/// and of the bar's area. So the bar's area has exactly its designed size. The trace also has its
/// designed size, plus the width of a line at the right and at the bottom.
QWidget* makeMeter(Form4& form, QWidget* parent) {
    auto* meter = new PlayerDisplay(form.Picture3, QObject::tr("Level meter"), parent);
    auto* trace = new TraceView(form.picPeakVol, QObject::tr("Sound Level Meter"),
                                {PlayerDisplay::ground, PlayerDisplay::signal}, meter);
    placeAsDesigned(*trace, form.picPeakVol);
    trace->resize(trace->sizeHint());
    auto* clip = new PictureView(form.Picture8, QObject::tr("Level"), std::nullopt, 0, meter);
    placeAsDesigned(*clip, form.Picture8);
    new BlockView(form.Label4, QObject::tr("Level bar"), PlayerDisplay::signal, clip);
    const QRect right = clip->geometry();
    meter->setFixedSize(right.right() + 1 + trace->x(), trace->y() * 2 + trace->height());
    return meter;
}

QWidget* makePower(Form4& form, QWidget* parent) {
    auto* power = new QWidget(parent);
    power->setObjectName(QStringLiteral("power"));
    power->setAccessibleName(QObject::tr("Power"));
    auto* rows = new QVBoxLayout(power);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(new OptionButtonView(form.OptCD, QObject::tr("On"), power));
    rows->addWidget(new OptionButtonView(form.optNoCD, QObject::tr("Off"), power));
    rows->addWidget(new CheckBoxView(form.Check3, QObject::tr("input"), power));
    return power;
}

QWidget* makeTransport(Form4& form, QWidget* parent) {
    auto* surface = new PanelSurface(form.Picture4, QObject::tr("Transport"), parent);
    auto* row = new QHBoxLayout(surface);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    const std::pair<CommandButton*, Symbol> buttons[] = {
        {&form.btrack, Symbol::previousTrack}, {&form.play, Symbol::play},
        {&form.pause, Symbol::pause},          {&form.stopbtn, Symbol::stop},
        {&form.ftrack, Symbol::nextTrack},
    };
    const auto make = [&](CommandButton& button, Symbol symbol) {
        auto* view = new IconButtonView(button, symbol, surface);
        view->setIconSize({transportSide, transportSide});
        return view;
    };
    for (const auto& [button, symbol] : buttons) {
        row->addWidget(make(*button, symbol));
    }
    row->addStretch();
    row->addWidget(make(form.eject, Symbol::eject));
    return surface;
}

/// Adds a slider with its label and its number. The least value of a slider is at the top and means
/// the highest level. The filled part of the groove reaches from the bottom to the handle.
void addSlider(QGridLayout& grid, int column, const QString& name, Slider& slider, TextBox& number,
               QWidget* parent) {
    auto* view = new SliderView(slider, name, Qt::Vertical, SliderView::Greatest::bottomOrLeft,
                                loudestNumber, parent);
    view->setMinimumHeight(leastSliderHeight);
    view->setTickPosition(QSlider::TicksBothSides);
    view->setTickInterval((slider.maximum() - slider.minimum()) / 4);
    auto* box = new TextBoxView(number, QObject::tr("%1 level").arg(name), parent);
    box->setFixedWidth(numberWidth);
    box->setAlignment(Qt::AlignCenter);
    box->setFocusPolicy(Qt::ClickFocus);
    grid.addWidget(makeFixedText(name, view, parent), 0, column, Qt::AlignHCenter);
    grid.addWidget(view, 1, column, Qt::AlignHCenter);
    grid.addWidget(box, 2, column, Qt::AlignHCenter);
}

FrameView* makeMuteFrame(Frame& frame, OptionButton& mute, OptionButton& unmute, QWidget* parent) {
    auto* view = new FrameView(frame, parent);
    auto* row = new QHBoxLayout(view);
    row->setContentsMargins(panelGap, 0, panelGap, 2);
    row->setSpacing(panelGap);
    row->addWidget(new OptionButtonView(unmute, QObject::tr("On"), view));
    row->addWidget(new OptionButtonView(mute, QObject::tr("Mute"), view));
    return view;
}

QLayout* makeMixer(Form4& form, QWidget* parent) {
    auto* columns = new QHBoxLayout;
    columns->setSpacing(2 * panelGap);
    auto* sliders = new QGridLayout;
    sliders->setHorizontalSpacing(panelGap);
    sliders->setVerticalSpacing(2);
    sliders->setRowStretch(1, 1);
    addSlider(*sliders, 0, QObject::tr("Master"), form.sliderMasterVolume, form.txtMasterVolume,
              parent);
    addSlider(*sliders, 1, QObject::tr("CD"), form.Slider1, form.Text1, parent);
    addSlider(*sliders, 2, QObject::tr("Bass"), form.BassSlider, form.BassText, parent);
    addSlider(*sliders, 3, QObject::tr("Treble"), form.trebleslider, form.Treblesliderte, parent);
    columns->addLayout(sliders, 1);
    auto* mutes = new QVBoxLayout;
    mutes->setSpacing(2);
    mutes->addWidget(makeMuteFrame(form.Master, form.Option2, form.Option1, parent));
    mutes->addWidget(makeMuteFrame(form.Wave, form.Option4, form.Option3, parent));
    mutes->addWidget(makeMuteFrame(form.Cd, form.Option13, form.Option14, parent));
    mutes->addStretch();
    columns->addLayout(mutes);
    return columns;
}

void layOut(Form4& form, FormWindow& window) {
    QWidget& client = window.client();
    auto* rows = new QVBoxLayout(&client);
    rows->setContentsMargins(panelMargin, panelMargin, panelMargin, panelMargin);
    rows->setSpacing(panelGap);
    // A window that is too small for the contents clips them instead of compressing them.
    rows->setSizeConstraint(QLayout::SetMinimumSize);
    rows->addWidget(makeDisplay(form, &client));
    auto* second = new QHBoxLayout;
    second->setSpacing(2 * panelGap);
    second->addWidget(makeMeter(form, &client));
    second->addWidget(makePower(form, &client), 1);
    rows->addLayout(second);
    rows->addWidget(makeTransport(form, &client));
    rows->addLayout(makeMixer(form, &client), 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(window.makeButton(form.Command2, &client));
    buttons->addStretch();
    buttons->addWidget(window.makeButton(form.Command1, &client));
    rows->addLayout(buttons);
}

} // namespace

WindowLayout playerLayout(Form4& form) {
    return {.form = form,
            .icon = Symbol::disc,
            .menus = {&form.mnuCD},
            .leastSize = LeastSize::none,
            .menuKey = [&form] { run(form.Picture3.onMouseDown, MouseButtons{.right = true}); },
            .layOut =
                [&form](FormWindow& window) {
                    layOut(form, window);
                }};
}

} // namespace sonarith
