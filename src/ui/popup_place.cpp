// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/popup_place.h"

#include <utility>

#include <QCursor>

namespace sonarith {
namespace {

/// The position of the newest PopupPlace; empty if none exists. Each PopupPlace stores the position
/// of the previous PopupPlace: while the handler of one press yields, another press may be handled.
std::optional<QPoint> newest;

} // namespace

PopupPlace::PopupPlace(const QPoint& global) : outer_(std::exchange(newest, global)) {}

PopupPlace::~PopupPlace() {
    newest = outer_;
}

QPoint PopupPlace::current() {
    return newest.value_or(QCursor::pos());
}

} // namespace sonarith
