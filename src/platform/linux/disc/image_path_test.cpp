// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/image_path.h"

#include <gmock/gmock.h>

#include "platform/linux/disc/image_fixture.h"

namespace sonarith::disc {
namespace {

TEST(ImagePath, PrefersTheExactNameAndThenTheFirstMatchInByteOrder) {
    const ImageFolder folder;
    folder.write("a.bin", "1");
    folder.write("A.BIN", "2");
    EXPECT_EQ(findImageFile(folder.path(""), "a.bin"), folder.path("a.bin"));
    EXPECT_EQ(findImageFile(folder.path(""), "A.BIN"), folder.path("A.BIN"));
    EXPECT_EQ(findImageFile(folder.path(""), "A.bin"), folder.path("A.BIN"))
        << "the result must be the first match in byte order";
}

TEST(ImagePath, FindsFilesInSubfoldersByPathsInAnyLetterCaseWithSlashesOrBackslashes) {
    const ImageFolder folder;
    folder.write("Disc One/Track.Wav", "1");
    EXPECT_EQ(findImageFile(folder.path(""), "disc one\\TRACK.WAV"),
              folder.path("") / "Disc One" / "Track.Wav");
    EXPECT_EQ(findImageFile(folder.path(""), ".//disc one/./track.wav"),
              folder.path("") / "Disc One" / "Track.Wav");
}

TEST(ImagePath, FindsNamesOfAnyWritingSystemInAnyLetterCase) {
    const ImageFolder folder;
    folder.write("ära.bin", "1");
    folder.write("Straße/Σίσυφος.wav", "1");
    EXPECT_EQ(findImageFile(folder.path(""), "ÄRA.BIN"), folder.path("ära.bin"));
    EXPECT_EQ(findImageFile(folder.path(""), "STRASSE\\ΣΊΣΥΦΟΣ.WAV"),
              folder.path("") / "Straße" / "Σίσυφος.wav");
}

TEST(ImagePath, FindsNamesThatAreNotUtf8) {
    const ImageFolder folder;
    folder.write("caf\xe9.bin", "1");
    EXPECT_EQ(findImageFile(folder.path(""), "CAF\xe9.BIN"), folder.path("caf\xe9.bin"));
    EXPECT_FALSE(findImageFile(folder.path(""), "caf\xc9.bin").has_value());
}

TEST(ImagePath, DoesNotFindMissingFiles) {
    const ImageFolder folder;
    folder.write("a.bin", "1");
    EXPECT_FALSE(findImageFile(folder.path(""), "b.bin").has_value());
    EXPECT_FALSE(findImageFile(folder.path(""), "sub/a.bin").has_value());
    EXPECT_FALSE(findImageFile(folder.path("nowhere"), "a.bin").has_value());
    EXPECT_FALSE(findImageFile(folder.path(""), std::string(5000, 'x')).has_value());
}

} // namespace
} // namespace sonarith::disc
