// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/help_pages.h"

#include <array>
#include <utility>

#include <QCoreApplication>
#include <QFile>
#include <QObject>

/// The linker omits an object file of a static library if nothing refers to that file. This
/// function refers to the object file that contains the help pages. The function is outside of the
/// namespace because Q_INIT_RESOURCE does not work inside a namespace.
static void keepHelpResource() {
    Q_INIT_RESOURCE(help);
}

namespace sonarith {

const std::vector<HelpPage>& helpPages() {
    static const std::vector<HelpPage> pages = {
        {"first.html", QObject::tr("A first extraction")},
        {"main.html", QObject::tr("The main window")},
        {"player.html", QObject::tr("The CD player")},
        {"preferences.html", QObject::tr("Preferences")},
        {"playlist.html", QObject::tr("The playlist editor")},
        {"finder.html", QObject::tr("The file finder")},
        {"devices.html", QObject::tr("Devices")},
        {"surprises.html", QObject::tr("What may surprise")},
        {"keyboard.html", QObject::tr("Keyboard")},
    };
    return pages;
}

QString helpPageOf(const std::string& window) {
    static constexpr std::array<std::pair<const char*, const char*>, 6> pages = {{
        {"Form1", "main.html"},
        {"Form4", "player.html"},
        {"FrmPrefs", "preferences.html"},
        {"frmPlayList", "playlist.html"},
        {"frmsearch", "finder.html"},
        {"Devices", "devices.html"},
    }};
    for (const auto& [name, page] : pages) {
        if (name == window) {
            return QString::fromLatin1(page);
        }
    }
    return helpPages().front().file;
}

QString helpFolder() {
    const QString installed =
        QCoreApplication::applicationDirPath() + QStringLiteral("/../share/sonarith/help");
    if (QFile::exists(installed + u'/' + helpPages().front().file)) {
        return installed;
    }
    keepHelpResource();
    return QStringLiteral(":/help");
}

} // namespace sonarith
