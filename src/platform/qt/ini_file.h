// SPDX-License-Identifier: GPL-3.0-or-later
// Reads an INI file in QSettings' form as a whole and writes it in one step, so that it contains
// either the old or the new values after any failure. It interprets no keys and does not check
// whether a file may be trusted (text/store_file_check.h).
#pragma once

#include <string>
#include <unordered_map>

#include <QHashFunctions>
#include <QString>

namespace sonarith {

/// Values by "section/key". A value may contain any bytes. A hash map, since a list of 10,000 paths
/// is read key by key.
using IniValues = std::unordered_map<QString, std::string>;

/// A value that is not a text is converted to one: QSettings reads a value with unquoted commas as
/// a list. A missing file has no values.
[[nodiscard]] IniValues readIniFile(const QString& path);

/// Replaces the content of the file by these values. They are on the disk when the function
/// returns. The mode of the file is kept; a symbolic link is followed. Returns false and leaves the
/// file unchanged if it cannot or must not be written.
[[nodiscard]] bool writeIniFile(const QString& path, const IniValues& values);

/// Removes temporary files that a process left beside the file when it was killed during a write.
/// Removes nothing while a running process is writing.
void removeUnfinishedIniFiles(const QString& path);

} // namespace sonarith
