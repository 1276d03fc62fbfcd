// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/file_text.h"

#include <gmock/gmock.h>

namespace sonarith {
namespace {

TEST(HasFileEnding, IsTrueForWavAndMp3InLowerOrUpperCase) {
    for (const char* text : {"a.wav", "a.WAV", "a.mp3", "a.MP3", "c:\\x\\a.wav", ".wav"}) {
        EXPECT_TRUE(hasFileEnding(text)) << text;
    }
}

TEST(HasFileEnding, IsFalseForAMixedCaseEndingAndForAnyOtherEnding) {
    for (const char* text : {"a.Wav", "a.wAV", "a.Mp3", "awav", "a.ogg", "a.wav ", "wav", ""}) {
        EXPECT_FALSE(hasFileEnding(text)) << text;
    }
}

} // namespace
} // namespace sonarith
