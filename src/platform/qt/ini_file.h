// SPDX-License-Identifier: GPL-3.0-or-later
// Reads a whole INI file (in the format of QSettings), and writes it in one step, so that after any
// failure the file contains either the old or the new values. Interprets no keys and does not
// check whether a file may be trusted (see platform/text/store_file_check.h).
#pragma once

#include <string>
#include <unordered_map>

#include <QHashFunctions>
#include <QString>

namespace sonarith {

/// Values by "section/key". A value may contain any bytes. A hash map, because each of the 10,000
/// paths of a long list is looked up by its key.
using IniValues = std::unordered_map<QString, std::string>;

/// Returns all values of the file; none if the file is missing. A value that QSettings does not
/// read as a text is converted to a text; for example, QSettings reads a value with unquoted commas
/// as a list.
[[nodiscard]] IniValues readIniFile(const QString& path);

/// Replaces the content of the file by these values. If the function returns true, the values are
/// on the disk. The mode of the file is kept. A symbolic link to an existing file is followed. A
/// symbolic link without a target is replaced by the new file. Returns false and leaves the file
/// unchanged if the file cannot be written or is write-protected.
[[nodiscard]] bool writeIniFile(const QString& path, const IniValues& values);

/// Removes temporary files beside the file, left by a process that was killed during a write.
/// Removes nothing while a running process is writing.
void removeUnfinishedIniFiles(const QString& path);

} // namespace sonarith
