// SPDX-License-Identifier: GPL-3.0-or-later
// The reference for the start-up benchmark: a Qt Widgets program with an empty window.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication qt(argc, argv);
    QWidget window;
    window.resize(266, 366);
    window.show();
    return QApplication::exec();
}
