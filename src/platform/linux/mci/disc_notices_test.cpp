// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/disc_notices.h"

#include <vector>

#include <gtest/gtest.h>

namespace sonarith::mci {
namespace {

TEST(TheNoticeAboutLostSound, NamesTheFileAndGivesTheAffectedSecondsOfEachTrack) {
    const struct {
        std::vector<TrackLoss> losses;
        const char* path;
        const char* text;
    } rows[] = {
        {{{3, {.silent = 180, .guessed = 0}}},
         "c:\\music\\1234-3.wav",
         "Track 3: 2.4 s could not be read and are silent in 1234-3.wav."},
        {{{1, {.silent = 0, .guessed = 1}}},
         "1.wav",
         "Track 1: 0.1 s could not be read without error and were replaced by the drive's best "
         "guess in 1.wav."},
        {{{1, {.silent = 75, .guessed = 76}}},
         "a/1.wav",
         "Track 1: 1.0 s could not be read and are silent, and 1.1 s could not be read without "
         "error and were replaced by the drive's best guess in 1.wav."},
        {{{1, {.silent = 750, .guessed = 0}}, {2, {.silent = 7, .guessed = 0}}},
         "c:\\all.wav",
         "Track 1: 10.0 s could not be read and are silent; Track 2: 0.1 s could not be read and "
         "are silent in all.wav."},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(lostSound(row.losses, row.path).text, row.text);
        EXPECT_EQ(lostSound(row.losses, row.path).cause, "")
            << "the notice must have no cause, because a cause would hide the next notice of a "
               "loss";
    }
}

TEST(DiscNotices, NameTheDriveOrTheDiscImage) {
    const Notice interrupted = playingIsInterrupted("the drive /dev/sr0", std::chrono::seconds(15));
    EXPECT_EQ(interrupted.text,
              "Playing is interrupted: the drive /dev/sr0 has not responded for 15 s.");
    EXPECT_EQ(interrupted.cause, "the drive /dev/sr0");
    EXPECT_EQ(discHasVanished("the disc image /a.cue").text,
              "Playing has ended: the disc image /a.cue was removed or has changed.");
}

} // namespace
} // namespace sonarith::mci
