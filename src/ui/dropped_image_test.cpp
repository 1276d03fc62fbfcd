// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dropped_image.h"

#include <QMimeData>
#include <gmock/gmock.h>

namespace sonarith {
namespace {

std::string dropping(const QByteArray& list) {
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"), list);
    return droppedImage(data);
}

TEST(DroppedImage, TheFirstDiscImageAmongTheFilesIsUsed) {
    EXPECT_EQ(dropping("file:///m/disc.bin\r\nfile:///m/disc.cue\r\nfile:///m/b.toc\r\n"),
              "/m/disc.cue");
    EXPECT_EQ(dropping("file:///m/DISC.TOC\r\n"), "/m/DISC.TOC");
}

TEST(DroppedImage, BytesOfThePathThatAreNotUtf8AreKept) {
    EXPECT_EQ(dropping("file:///m/caf%E9%20%C3%BC%25.cue\r\n"), "/m/caf\xE9 \xC3\xBC%.cue");
}

TEST(DroppedImage, FilesOfOtherTypesAndRemoteDiscImagesAreIgnored) {
    EXPECT_EQ(dropping("file:///m/song.wav\r\n"), "");
    EXPECT_EQ(dropping("http://example.org/disc.cue\r\n"), "");
    EXPECT_EQ(dropping(""), "");
}

} // namespace
} // namespace sonarith
