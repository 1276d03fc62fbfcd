// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/popup_place.h"

#include <utility>

#include <QCursor>

namespace sonarith {
namespace {

/// The position of the newest PopupPlace; empty if none exists. Each PopupPlace stores the position
/// of the one before it, because handlers may yield and one press may be handled inside another.
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
