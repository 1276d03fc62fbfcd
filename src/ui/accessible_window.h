// SPDX-License-Identifier: GPL-3.0-or-later
// A form's window in the accessibility tree: its widgets, and the popup menus that it has opened.
// Qt omits popup menus that belong to no menu bar. Each widget provides its own name and role.
#pragma once

#include <QAccessibleInterface>
#include <QString>

namespace sonarith {

/// For QAccessible::installFactory. Null for an object that is not a FormWindow; Qt owns the
/// result.
[[nodiscard]] QAccessibleInterface* makeAccessibleWindow(const QString& type, QObject* object);

} // namespace sonarith
