// SPDX-License-Identifier: GPL-3.0-or-later
// A form's window in the accessibility tree: its widgets, and the popup menus that it has opened,
// which Qt leaves out where they hang in no menu bar. Names and roles of the widgets are their own.
#pragma once

#include <QAccessibleInterface>
#include <QString>

namespace sonarith {

/// For QAccessible::installFactory. Null for an object that is not a FormWindow; Qt owns the
/// result.
[[nodiscard]] QAccessibleInterface* makeAccessibleWindow(const QString& type, QObject* object);

} // namespace sonarith
