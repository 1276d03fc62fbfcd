// SPDX-License-Identifier: GPL-3.0-or-later
// A Qt Widgets program that shows an empty window. program_bench.py compares the start of Sonarith
// with the start of this program.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication qt(argc, argv);
    QWidget window;
    window.resize(266, 366);
    window.show();
    return QApplication::exec();
}
