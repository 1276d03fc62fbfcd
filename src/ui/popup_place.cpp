// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/popup_place.h"

#include <utility>

#include <QCursor>

namespace sonarith {
namespace {

/// A stack: handlers may yield, so one press may be handled inside another.
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
