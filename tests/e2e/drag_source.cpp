// SPDX-License-Identifier: GPL-3.0-or-later
// Replaces a file manager in tests: shows a window from which one file can be dragged. Prints
// "accepted" when the window below the pointer accepts the file, and "dropped" or "refused" at the
// end of the drag.
//
//     drag_source FILE
#include <cstdio>

#include <QApplication>
#include <QDrag>
#include <QFileInfo>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

namespace {

void print(const char* what) {
    std::puts(what);
    std::fflush(stdout);
}

class FileLabel : public QLabel {
  public:
    explicit FileLabel(const QString& path) : QLabel(path), path_(path) {
        setWindowTitle(QStringLiteral("Files"));
        setAlignment(Qt::AlignCenter);
    }

  protected:
    // By default, a label passes a press to its parent. This label accepts the press, so that it
    // receives the movements that follow.
    void mousePressEvent(QMouseEvent* event) override { event->accept(); }
    void mouseMoveEvent(QMouseEvent*) override {
        auto* file = new QMimeData;
        file->setUrls({QUrl::fromLocalFile(path_)});
        auto* drag = new QDrag(this);
        drag->setMimeData(file);
        connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) {
            if (action == Qt::CopyAction) {
                print("accepted");
            }
        });
        print(drag->exec(Qt::CopyAction) == Qt::CopyAction ? "dropped" : "refused");
    }

  private:
    QString path_;
};

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        return 2;
    }
    FileLabel label(QFileInfo(arguments[1]).absoluteFilePath());
    label.setFixedSize(200, 100);
    label.show();
    return QApplication::exec();
}
