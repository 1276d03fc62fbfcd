// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/playlist_layout.h"

#include <QBoxLayout>
#include <QFormLayout>

#include "ui/button_view.h"
#include "ui/check_box_view.h"
#include "ui/fixed_text.h"
#include "ui/frame_view.h"
#include "ui/header_line_delegate.h"
#include "ui/list_box_view.h"
#include "ui/text_box_view.h"
#include "ui/window_measures.h"

namespace sonarith {
namespace {

constexpr int listWidth = 300; ///< device-independent pixels
/// The length of the longest fields of the tag, in characters. Each box of the tag is wide enough
/// for this many characters of average width.
constexpr int charactersOfABox = 30;
constexpr int headerLines = 12;
constexpr int lineSpace = 4; ///< the most that a style adds to a line, in device-independent pixels

QWidget* makeList(FrmPlayList& form, FormWindow& window, QWidget* parent) {
    auto* frame = new FrameView(form.Playlist, parent);
    auto* rows = new QVBoxLayout(frame);
    rows->setSpacing(windowGap);
    auto* list =
        new ListBoxView(form.List2, QObject::tr("PlayList"), ListBoxView::LineTips::whenCut, frame);
    list->setMinimumWidth(listWidth);
    rows->addWidget(list, 1);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(windowGap);
    buttons->addWidget(new IconButtonView(form.Command11, Symbol::play, frame));
    buttons->addWidget(new IconButtonView(form.Command12, Symbol::stop, frame));
    buttons->addStretch();
    buttons->addWidget(window.makeButton(form.Command20, frame));
    buttons->addWidget(window.makeButton(form.Command6, frame));
    rows->addLayout(buttons);
    rows->addWidget(new CheckBoxView(form.Check11, QString(), frame));
    return frame;
}

QLayout* makeTag(FrmPlayList& form, QWidget* parent) {
    auto* rows = new QFormLayout;
    rows->setSpacing(windowGap);
    const QString labels[] = {QObject::tr("Artist"), QObject::tr("Title"),   QObject::tr("Album"),
                              QObject::tr("Year"),   QObject::tr("Comment"), QObject::tr("Genre"),
                              QObject::tr("HasTag"), QObject::tr("Length")};
    std::size_t number = 1;
    for (const QString& label : labels) {
        auto* box = new TextBoxView(form.Text4(number++), label, parent);
        box->setMinimumWidth(charactersOfABox * box->fontMetrics().averageCharWidth());
        rows->addRow(makeFixedText(label, box, parent), box);
    }
    return rows;
}

void layOut(FrmPlayList& form, FormWindow& window) {
    QWidget& client = window.client();
    auto* columns = new QHBoxLayout(&client);
    columns->setContentsMargins(windowMargin, windowMargin, windowMargin, windowMargin);
    columns->setSpacing(windowMargin);
    columns->addWidget(makeList(form, window, &client), 1);
    auto* file = new QVBoxLayout;
    file->setSpacing(windowGap);
    auto* path = new QHBoxLayout;
    path->setSpacing(windowGap);
    auto* pathBox = new TextBoxView(form.Text5, QObject::tr("File"), &client);
    path->addWidget(makeFixedText(QObject::tr("File"), pathBox, &client));
    path->addWidget(pathBox, 1);
    path->addWidget(window.makeButton(form.cmdHdr1, &client));
    file->addLayout(path);
    auto* header = new ListBoxView(form.List1, QObject::tr("Header Info"),
                                   ListBoxView::LineTips::none, &client);
    header->setItemDelegate(new HeaderLineDelegate(header));
    header->setMinimumHeight(headerLines * (header->fontMetrics().height() + lineSpace) +
                             2 * header->frameWidth());
    file->addWidget(header, 1);
    file->addLayout(makeTag(form, &client));
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(windowGap);
    for (CommandButton* button : {&form.cmdHdr2, &form.cmdTag, &form.Command2, &form.Command10}) {
        buttons->addWidget(window.makeButton(*button, &client));
    }
    file->addLayout(buttons);
    columns->addLayout(file, 1);
}

} // namespace

WindowLayout playlistLayout(FrmPlayList& form) {
    return {.form = form, .icon = Symbol::playlist, .layOut = [&form](FormWindow& window) {
                layOut(form, window);
            }};
}

} // namespace sonarith
