// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dropped_image.h"

#include <QMimeData>
#include <QUrl>

namespace sonarith {

std::string droppedImage(const QMimeData& dropped) {
    for (const QUrl& url : dropped.urls()) {
        if (!url.isLocalFile()) {
            continue;
        }
        // The path is decoded here, because QUrl would lose bytes that are not UTF-8.
        const QByteArray path =
            QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
        const QByteArray ending = path.right(4).toLower();
        if (ending == ".cue" || ending == ".toc") {
            return path.toStdString();
        }
    }
    return {};
}

} // namespace sonarith
