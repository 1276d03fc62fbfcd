// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/image_path.h"

#include <gmock/gmock.h>

#include "platform/linux/disc/image_fixture.h"

namespace sonarith::disc {
namespace {

TEST(ImagePath, TakesTheExactNameFirst) {
    const ImageFolder folder;
    folder.write("a.bin", "1");
    folder.write("A.BIN", "2");
    EXPECT_EQ(findImageFile(folder.path(""), "a.bin"), folder.path("a.bin"));
    EXPECT_EQ(findImageFile(folder.path(""), "A.BIN"), folder.path("A.BIN"));
    EXPECT_EQ(findImageFile(folder.path(""), "A.bin"), folder.path("A.BIN"))
        << "the first in byte order";
}

TEST(ImagePath, FindsFilesBelowInAnyCaseAndWithBackslashes) {
    const ImageFolder folder;
    folder.write("Disc One/Track.Wav", "1");
    EXPECT_EQ(findImageFile(folder.path(""), "disc one\\TRACK.WAV"),
              folder.path("") / "Disc One" / "Track.Wav");
    EXPECT_EQ(findImageFile(folder.path(""), ".//disc one/./track.wav"),
              folder.path("") / "Disc One" / "Track.Wav");
}

TEST(ImagePath, FindsNothingThatIsNotThere) {
    const ImageFolder folder;
    folder.write("a.bin", "1");
    EXPECT_FALSE(findImageFile(folder.path(""), "b.bin").has_value());
    EXPECT_FALSE(findImageFile(folder.path(""), "sub/a.bin").has_value());
    EXPECT_FALSE(findImageFile(folder.path("nowhere"), "a.bin").has_value());
    EXPECT_FALSE(findImageFile(folder.path(""), std::string(5000, 'x')).has_value());
}

} // namespace
} // namespace sonarith::disc
