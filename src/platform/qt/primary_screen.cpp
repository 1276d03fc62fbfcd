// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/primary_screen.h"

#include <QGuiApplication>
#include <QScreen>

namespace sonarith {

QRect primaryScreen() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->geometry() : QRect();
}

} // namespace sonarith
