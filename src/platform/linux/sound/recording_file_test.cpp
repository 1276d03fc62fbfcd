// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/recording_file.h"

#include <gmock/gmock.h>

#include <csignal>
#include <fstream>

#include "support/fake_sound.h"
#include "support/file_content.h"
#include "support/folder_entries.h"
#include "support/forked_child.h"
#include "support/recorded_wav.h"
#include "support/temp_folder.h"

namespace sonarith::sound {
namespace {

namespace fs = std::filesystem;
using fakes::IsSound;
using fakes::pattern;
using test::contentOf;
using test::entriesIn;
using test::expectPlainWav;
using test::visibleEntriesIn;
using testing::HasSubstr;

class RecordingFileTest : public testing::Test {
  protected:
    RecordingFile create(Channels channels, std::int64_t longestWavBytes = maxWavSampleBytes,
                         files::Concealment concealment = files::Concealment::noName) {
        auto made = RecordingFile::create(channels, folder.path(), longestWavBytes, concealment);
        EXPECT_TRUE(made.ok());
        return std::move(made.value());
    }

    fakes::TempFolder folder;
    const fs::path target = folder / "track.wav";
};

TEST_F(RecordingFileTest, SavesStereoBitForBit) {
    RecordingFile recording = create(Channels::stereo);
    EXPECT_TRUE(recording.append(pattern(0, 10'000)));
    EXPECT_TRUE(recording.append(pattern(10'000, 1)));
    EXPECT_EQ(recording.frames(), 10'001);
    EXPECT_EQ(visibleEntriesIn(folder.path()), 0)
        << "the file must not be visible before it is saved";
    ASSERT_TRUE(recording.save(target).ok());
    expectPlainWav(target, pattern(0, 10'001));
}

TEST_F(RecordingFileTest, SavesMonoAsTheMeanOfBothChannels) {
    RecordingFile recording = create(Channels::mono);
    const std::vector<StereoFrame> frames{
        {10, 20}, {INT16_MAX, INT16_MAX}, {INT16_MIN, INT16_MIN}, {INT16_MIN, INT16_MAX}, {-1, -2}};
    EXPECT_TRUE(recording.append(frames));
    EXPECT_EQ(recording.frames(), 5);
    ASSERT_TRUE(recording.save(target).ok());
    const auto wav = fakes::readWav(target);
    ASSERT_TRUE(wav);
    EXPECT_EQ(wav->channels, 1);
    EXPECT_THAT(wav->samples, testing::ElementsAre(15, INT16_MAX, INT16_MIN, 0, -1));
}

TEST_F(RecordingFileTest, SavesARecordingWithoutAnySound) {
    ASSERT_TRUE(create(Channels::stereo).save(target).ok());
    expectPlainWav(target, {});
}

TEST_F(RecordingFileTest, LeavesNoFileIfItIsNotSaved) {
    EXPECT_TRUE(create(Channels::stereo).append(pattern(0, 100'000)));
    EXPECT_EQ(entriesIn(folder.path()), 0);
}

TEST_F(RecordingFileTest, ReplacesAFileThatHasTheSameName) {
    std::ofstream(target) << "old";
    RecordingFile recording = create(Channels::stereo);
    EXPECT_TRUE(recording.append(pattern(0, 10)));
    ASSERT_TRUE(recording.save(target).ok());
    expectPlainWav(target, pattern(0, 10));
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(RecordingFileTest, CanBeSavedAgainAfterFailedAndSuccessfulSaves) {
    std::ofstream(target) << "old";
    RecordingFile recording = create(Channels::stereo);
    EXPECT_TRUE(recording.append(pattern(0, 10)));
    for (const fs::path& wrong :
         {folder / "missing" / "a.wav", folder / std::string(300, 'n'), folder.path(),
          target / "below.wav", fs::path("/proc/a.wav"), fs::path()}) {
        const Status status = recording.save(wrong);
        ASSERT_FALSE(status.ok()) << wrong;
        EXPECT_FALSE(status.error().text.empty());
    }
    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(entriesIn(folder.path()), 1);
    EXPECT_TRUE(recording.save(folder / "good.wav").ok());
    EXPECT_TRUE(recording.save(folder / "second.wav").ok());
    EXPECT_EQ(contentOf(folder / "good.wav"), contentOf(folder / "second.wav"));
    expectPlainWav(folder / "good.wav", pattern(0, 10));
}

TEST_F(RecordingFileTest, IgnoresFramesAppendedAfterASave) {
    RecordingFile recording = create(Channels::stereo);
    EXPECT_TRUE(recording.append(pattern(0, 10)));
    ASSERT_TRUE(recording.save(target).ok());
    EXPECT_TRUE(recording.append(pattern(10, 10)));
    EXPECT_EQ(recording.frames(), 10);
    expectPlainWav(target, pattern(0, 10));
}

TEST_F(RecordingFileTest, CreateFailsIfTheFolderDoesNotExistOrCannotContainFiles) {
    const auto made = RecordingFile::create(Channels::stereo, folder / "missing");
    ASSERT_FALSE(made.ok());
    EXPECT_EQ(made.error().number, ErrorNumber::pathNotFound);
    EXPECT_THAT(made.error().text, HasSubstr("missing"));
    EXPECT_FALSE(RecordingFile::create(Channels::stereo, "/proc").ok());
}

TEST_F(RecordingFileTest, UsesRf64ForARecordingThatIsTooLongForPlainWav) {
    constexpr std::int64_t smallLimit = 400'000;
    RecordingFile recording = create(Channels::stereo, smallLimit);
    EXPECT_TRUE(recording.append(pattern(0, 100'001)));
    ASSERT_TRUE(recording.save(target).ok());
    EXPECT_EQ(contentOf(target).substr(0, 4), "RF64");
    const auto wav = fakes::readWav(target);
    ASSERT_TRUE(wav);
    EXPECT_THAT(wav->samples, IsSound(test::interleaved(pattern(0, 100'001))));
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(RecordingFileTest, UsesPlainWavForTheLongestRecordingThatFitsIntoIt) {
    constexpr std::int64_t smallLimit = 4000;
    RecordingFile recording = create(Channels::stereo, smallLimit);
    EXPECT_TRUE(recording.append(pattern(0, 1000)));
    ASSERT_TRUE(recording.save(target).ok());
    expectPlainWav(target, pattern(0, 1000));
}

TEST_F(RecordingFileTest, SavesPlainWavAndRf64FromAFileWithAHiddenName) {
    std::ofstream(target) << "old";
    constexpr std::int64_t smallLimit = 4000;
    for (const std::size_t frames : {std::size_t{1000}, std::size_t{1001}}) {
        RecordingFile recording =
            create(Channels::stereo, smallLimit, files::Concealment::hiddenName);
        EXPECT_TRUE(recording.append(pattern(0, frames)));
        EXPECT_EQ(entriesIn(folder.path()), 2);
        ASSERT_TRUE(recording.save(target).ok());
        const auto wav = fakes::readWav(target);
        ASSERT_TRUE(wav);
        EXPECT_THAT(wav->samples, IsSound(test::interleaved(pattern(0, frames))));
        EXPECT_EQ(entriesIn(folder.path()), 1);
    }
    EXPECT_EQ(contentOf(target).substr(0, 4), "RF64");
}

/// Saves one recording after the other, each longer than the previous one, until the process is
/// killed. Reports before and after each save. Returns if append() or save() fails.
void recordForEver(const fs::path& folder, files::Concealment concealment,
                   const test::ReportingChild::Report& report) {
    for (std::size_t frames = 1000;; frames += 1000) {
        auto made = RecordingFile::create(Channels::stereo, folder, maxWavSampleBytes, concealment);
        const bool appended = made.value().append(pattern(0, frames));
        report('x');
        if (!appended || !made.value().save(folder / "track.wav").ok()) {
            return;
        }
        report('x');
    }
}

TEST_F(RecordingFileTest, AfterAKillTheLastSavedWavIsWholeAndTheNextRecordingDeletesLeftovers) {
    for (const files::Concealment concealment :
         {files::Concealment::noName, files::Concealment::hiddenName}) {
        for (int steps = 1; steps < 12; ++steps) {
            const fakes::TempFolder place;
            test::ReportingChild child(
                [&](const auto& report) { recordForEver(place.path(), concealment, report); });
            ASSERT_TRUE(child.reports(steps));
            ASSERT_TRUE(child.kill());
            const bool saved = fs::exists(place / "track.wav");
            EXPECT_TRUE(saved || steps < 2);
            if (saved) {
                const auto wav = fakes::readWav(place / "track.wav");
                ASSERT_TRUE(wav);
                const std::size_t frames = wav->samples.size() / 2;
                EXPECT_GE(frames, 1000U * static_cast<unsigned>(steps / 2));
                EXPECT_THAT(wav->samples, IsSound(test::interleaved(pattern(0, frames))));
            }
            const auto next = RecordingFile::create(Channels::stereo, place.path(),
                                                    maxWavSampleBytes, concealment);
            ASSERT_TRUE(next.ok());
            const bool unnamed =
                concealment == files::Concealment::noName && test::hasUnnamedFiles(place.path());
            EXPECT_EQ(test::hiddenEntriesIn(place.path()), unnamed ? 0 : 1)
                << "killed after " << steps << " reports";
        }
    }
}

} // namespace
} // namespace sonarith::sound
