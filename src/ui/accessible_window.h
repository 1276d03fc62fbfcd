// SPDX-License-Identifier: GPL-3.0-or-later
// Represents the window of a form in the accessibility tree. The children of the window are its
// widgets and its popup menus; Qt's own representation of a window omits popup menus that belong to
// no menu bar. Each widget provides its own name and role.
#pragma once

#include <QAccessibleInterface>
#include <QString>

namespace sonarith {

/// A factory for QAccessible::installFactory(). Returns null for an object that is not a
/// FormWindow. Qt owns the result.
[[nodiscard]] QAccessibleInterface* makeAccessibleWindow(const QString& type, QObject* object);

} // namespace sonarith
