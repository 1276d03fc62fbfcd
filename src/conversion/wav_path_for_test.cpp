// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/conversion_worker.h"

#include <gmock/gmock.h>

namespace sonarith {
namespace {

struct WavPathTest : testing::Test {
    ProcessState process;
    WavPathTest() { process.settings.decodePath = "c:\\wavfiles"; }
};

TEST_F(WavPathTest, ConsistsOfTheDestinationFolderTheBaseNameAndTheExtensionWav) {
    EXPECT_EQ(wavPathFor("d:\\music\\Song.MP3", process).value(), "c:\\wavfiles\\Song.wav");
}

TEST_F(WavPathTest, IsTheSameForEqualNamesInDifferentFolders) {
    EXPECT_EQ(wavPathFor("c:\\a\\x.mp3", process).value(),
              wavPathFor("c:\\b\\x.mp3", process).value());
}

TEST_F(WavPathTest, FailsForANameThatIsTooShort) {
    const auto path = wavPathFor("mp3", process);
    ASSERT_FALSE(path.ok());
    EXPECT_EQ(path.error().number, ErrorNumber::invalidProcedureCall);
}

} // namespace
} // namespace sonarith
