// SPDX-License-Identifier: GPL-3.0-or-later
// An INI file in QSettings' form as a whole: read at once, and written in one step, so that it
// holds the old values or the new ones whatever happens. It knows no key, and does not judge
// whether a file may be trusted (text/store_file_check.h).
#pragma once

#include <map>
#include <string>

#include <QString>

namespace sonarith {

/// Texts, which may be any bytes, by "section/key".
using IniValues = std::map<QString, std::string>;

/// What is no text (a list, as unquoted commas are read) is given as one. A file that is missing
/// has no values.
[[nodiscard]] IniValues readIniFile(const QString& path);

/// Gives the file these values and no others, on the disk, before it returns. It keeps its mode; a
/// symbolic link is followed. False: it could not be written, or may not be, and is as it was.
[[nodiscard]] bool writeIniFile(const QString& path, const IniValues& values);

/// Removes what a program that was killed while it wrote left beside the file. If one that lives
/// is writing, nothing is removed.
void removeUnfinishedIniFiles(const QString& path);

} // namespace sonarith
