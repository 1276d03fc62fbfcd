// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/destination_folder.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

TEST(DestinationOf, ReturnsTheDefaultFolderIfTheStoredTextHasNoParentFolder) {
    const DestinationFolder first{"C:\\Sonarith", "WAVFiles"};
    EXPECT_EQ(destinationOf("", "C:\\Sonarith"), first);
    EXPECT_EQ(destinationOf("music", "C:\\Sonarith"), first);
    EXPECT_EQ(destinationOf("\\music", "C:\\Sonarith"), first);
    EXPECT_EQ(destinationOf("\\", "C:\\Sonarith"), first);
}

TEST(DestinationOf, SplitsTheStoredFolderAtItsLastBackslash) {
    EXPECT_EQ(destinationOf("c:\\music\\wav", "C:\\P"), (DestinationFolder{"c:\\music", "wav"}));
    EXPECT_EQ(destinationOf("c:\\wav", "C:\\P"), (DestinationFolder{"c:", "wav"}));
}

TEST(DestinationOf, UsesTheNameWavFilesIfTheStoredNameIsEmpty) {
    EXPECT_EQ(destinationOf("d:\\", "C:\\P"), (DestinationFolder{"d:", "WAVFiles"}));
    EXPECT_EQ(destinationOf("c:\\music\\", "C:\\P"), (DestinationFolder{"c:\\music", "WAVFiles"}));
}

} // namespace
} // namespace sonarith
