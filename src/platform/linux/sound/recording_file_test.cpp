// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/recording_file.h"

#include <gmock/gmock.h>

#include <csignal>
#include <fstream>

#include <sys/resource.h>
#include <sys/wait.h>

#include "support/fake_sound.h"
#include "support/file_content.h"
#include "support/folder_entries.h"
#include "support/sound_matchers.h"
#include "support/temp_folder.h"
#include "support/wav_samples.h"

namespace sonarith::sound {
namespace {

namespace fs = std::filesystem;
using fakes::IsSound;
using fakes::pattern;
using test::contentOf;
using test::entriesIn;
using test::visibleEntriesIn;
using testing::HasSubstr;

std::vector<std::int16_t> interleaved(const std::vector<StereoFrame>& frames) {
    std::vector<std::int16_t> samples;
    for (const StereoFrame& frame : frames) {
        samples.push_back(frame.left);
        samples.push_back(frame.right);
    }
    return samples;
}

/// Kibibytes of this process that are in memory now.
std::int64_t memoryInKibibytes() {
    std::ifstream in("/proc/self/statm");
    std::int64_t total = 0;
    std::int64_t resident = 0;
    in >> total >> resident;
    return resident * ::sysconf(_SC_PAGESIZE) / 1024;
}

class RecordingFileTest : public testing::Test {
  protected:
    std::shared_ptr<RecordingFile> create(Channels channels) {
        auto made = RecordingFile::create(channels, {folder.path()});
        EXPECT_TRUE(made.ok());
        return made.value();
    }

    fakes::TempFolder folder;
    const fs::path target = folder / "track.wav";
};

TEST_F(RecordingFileTest, SavesStereoBitForBit) {
    const auto recording = create(Channels::stereo);
    recording->record(pattern(0, 1000));
    recording->record(pattern(1000, 1));
    EXPECT_EQ(recording->bytes(), 1001 * 4);
    EXPECT_EQ(visibleEntriesIn(folder.path()), 0) << "it has no name until it is saved";
    ASSERT_TRUE(recording->save(target).ok());
    const auto wav = fakes::readWav(target);
    ASSERT_TRUE(wav);
    EXPECT_EQ(wav->channels, 2);
    EXPECT_EQ(wav->rate, 44100);
    EXPECT_THAT(wav->samples, IsSound(interleaved(pattern(0, 1001))));
}

TEST_F(RecordingFileTest, SavesMonoAsTheMeanOfBothChannels) {
    const auto recording = create(Channels::mono);
    const std::vector<StereoFrame> frames{
        {10, 20}, {INT16_MAX, INT16_MAX}, {INT16_MIN, INT16_MIN}, {INT16_MIN, INT16_MAX}, {-1, -2}};
    recording->record(frames);
    EXPECT_EQ(recording->bytes(), 10);
    ASSERT_TRUE(recording->save(target).ok());
    const auto wav = fakes::readWav(target);
    ASSERT_TRUE(wav);
    EXPECT_EQ(wav->channels, 1);
    EXPECT_THAT(wav->samples, testing::ElementsAre(15, INT16_MAX, INT16_MIN, 0, -1));
}

TEST_F(RecordingFileTest, SavesARecordingWithoutAnySound) {
    ASSERT_TRUE(create(Channels::stereo)->save(target).ok());
    EXPECT_EQ(static_cast<std::int64_t>(fs::file_size(target)), wavHeaderBytes);
    ASSERT_TRUE(fakes::readWav(target));
}

TEST_F(RecordingFileTest, LeavesNothingBehindIfItIsNotSaved) {
    create(Channels::stereo)->record(pattern(0, 100'000));
    EXPECT_EQ(entriesIn(folder.path()), 0);
}

TEST_F(RecordingFileTest, ReplacesAFileOfThatName) {
    std::ofstream(target) << "old";
    const auto recording = create(Channels::stereo);
    recording->record(pattern(0, 10));
    ASSERT_TRUE(recording->save(target).ok());
    const auto wav = fakes::readWav(target);
    ASSERT_TRUE(wav);
    EXPECT_THAT(wav->samples, IsSound(interleaved(pattern(0, 10))));
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(RecordingFileTest, CanBeSavedAgainAfterASaveThatFailed) {
    std::ofstream(target) << "old";
    const auto recording = create(Channels::stereo);
    recording->record(pattern(0, 10));
    for (const fs::path& wrong :
         {folder / "missing" / "a.wav", folder / std::string(300, 'n'), folder.path(),
          target / "below.wav", fs::path("/proc/a.wav"), fs::path()}) {
        const Status status = recording->save(wrong);
        ASSERT_FALSE(status.ok()) << wrong;
        EXPECT_FALSE(status.error().text.empty());
    }
    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(entriesIn(folder.path()), 1);
    EXPECT_TRUE(recording->save(folder / "good.wav").ok());
    EXPECT_TRUE(recording->save(folder / "second.wav").ok());
    EXPECT_EQ(contentOf(folder / "good.wav"), contentOf(folder / "second.wav"));
    EXPECT_TRUE(fakes::readWav(folder / "good.wav"));
}

TEST_F(RecordingFileTest, IgnoresWhatIsRecordedAfterItWasSaved) {
    const auto recording = create(Channels::stereo);
    recording->record(pattern(0, 10));
    ASSERT_TRUE(recording->save(target).ok());
    recording->record(pattern(10, 10));
    EXPECT_EQ(recording->bytes(), 40);
    EXPECT_EQ(fs::file_size(target), 84U);
}

TEST_F(RecordingFileTest, TakesTheFirstFolderThatWill) {
    const auto made = RecordingFile::create(Channels::stereo,
                                            {folder / "missing", fs::path("/proc"), folder.path()});
    ASSERT_TRUE(made.ok());
    made.value()->record(pattern(0, 10));
    EXPECT_TRUE(made.value()->save(target).ok());
}

TEST_F(RecordingFileTest, FailsWhereNoFolderWill) {
    const auto made = RecordingFile::create(Channels::stereo, {folder / "missing"});
    ASSERT_FALSE(made.ok());
    EXPECT_EQ(made.error().number, ErrorNumber::pathNotFound);
    EXPECT_THAT(made.error().text, HasSubstr("missing"));
    EXPECT_FALSE(RecordingFile::create(Channels::stereo, {}).ok());
}

TEST_F(RecordingFileTest, FailsOnAFullDiskAndLeavesTheOldFile) {
    std::ofstream(target) << "old";
    const pid_t child = ::fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{10'001, 10'001}; // in the middle of a frame
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const auto recording = create(Channels::stereo);
        recording->record(pattern(0, 2000));
        const bool wasWhole = !recording->failed() && recording->bytes() == 8000;
        recording->record(pattern(2000, 2000));
        const std::int64_t bytes = recording->bytes();
        recording->record(pattern(4000, 2000));
        const bool hasStopped =
            recording->failed() && recording->bytes() == bytes && bytes < 10'001;
        const Status status = recording->save(target);
        const bool isSaid = !status.ok() && status.error().number == ErrorNumber::diskFull;
        ::_exit((wasWhole ? 0 : 1) + (hasStopped ? 0 : 2) + (isSaid ? 0 : 4));
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(RecordingFileTest, TakesTheLargeFormForARecordingThatIsTooLongForAPlainOne) {
    constexpr std::int64_t smallLimit = 400'000;
    const auto made = RecordingFile::create(Channels::stereo, {folder.path()}, smallLimit);
    ASSERT_TRUE(made.ok());
    made.value()->record(pattern(0, 100'001));
    ASSERT_TRUE(made.value()->save(target).ok());
    EXPECT_EQ(contentOf(target).substr(0, 4), "RF64");
    const auto wav = fakes::readWav(target);
    ASSERT_TRUE(wav);
    EXPECT_THAT(wav->samples, IsSound(interleaved(pattern(0, 100'001))));
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(RecordingFileTest, KeepsThePlainFormUpToItsLimit) {
    constexpr std::int64_t smallLimit = 4000;
    const auto made = RecordingFile::create(Channels::stereo, {folder.path()}, smallLimit);
    ASSERT_TRUE(made.ok());
    made.value()->record(pattern(0, 1000));
    ASSERT_TRUE(made.value()->save(target).ok());
    EXPECT_EQ(contentOf(target).substr(0, 4), "RIFF");
}

TEST_F(RecordingFileTest, IsSavedInEitherFormFromUnderAHiddenName) {
    std::ofstream(target) << "old";
    constexpr std::int64_t smallLimit = 4000;
    for (const std::size_t frames : {std::size_t{1000}, std::size_t{1001}}) {
        const auto made = RecordingFile::create(Channels::stereo, {folder.path()}, smallLimit,
                                                files::Concealment::hiddenName);
        ASSERT_TRUE(made.ok());
        made.value()->record(pattern(0, frames));
        EXPECT_EQ(entriesIn(folder.path()), 2);
        ASSERT_TRUE(made.value()->save(target).ok());
        const auto wav = fakes::readWav(target);
        ASSERT_TRUE(wav);
        EXPECT_THAT(wav->samples, IsSound(interleaved(pattern(0, frames))));
        EXPECT_EQ(entriesIn(folder.path()), 1);
    }
    EXPECT_EQ(contentOf(target).substr(0, 4), "RF64");
}

/// Records and saves, longer each time, until it is killed; tells before each save and after it.
[[noreturn]] void recordForEver(const fs::path& folder, files::Concealment concealment, int tell) {
    for (std::size_t frames = 1000;; frames += 1000) {
        const auto made =
            RecordingFile::create(Channels::stereo, {folder}, maxWavSampleBytes, concealment);
        made.value()->record(pattern(0, frames));
        static_cast<void>(::write(tell, "x", 1));
        if (!made.value()->save(folder / "track.wav").ok()) {
            ::_exit(1);
        }
        static_cast<void>(::write(tell, "x", 1));
    }
}

TEST_F(RecordingFileTest, LeavesTheLastWavAfterAKillAndTheNextRecordingSweepsUp) {
    for (const files::Concealment concealment :
         {files::Concealment::noName, files::Concealment::hiddenName}) {
        for (int told = 1; told < 12; ++told) {
            const fakes::TempFolder place;
            int pipe[2];
            ASSERT_EQ(::pipe(pipe), 0);
            const pid_t child = ::fork();
            ASSERT_GE(child, 0);
            if (child == 0) {
                recordForEver(place.path(), concealment, pipe[1]);
            }
            char byte = 0;
            for (int i = 0; i < told; ++i) {
                ASSERT_EQ(::read(pipe[0], &byte, 1), 1);
            }
            ASSERT_EQ(::kill(child, SIGKILL), 0);
            ASSERT_EQ(::waitpid(child, nullptr, 0), child);
            ::close(pipe[0]);
            ::close(pipe[1]);
            const bool saved = fs::exists(place / "track.wav");
            EXPECT_TRUE(saved || told < 2);
            if (saved) {
                const auto wav = fakes::readWav(place / "track.wav");
                ASSERT_TRUE(wav);
                const std::size_t frames = wav->samples.size() / 2;
                EXPECT_GE(frames, 1000U * static_cast<unsigned>(told / 2));
                EXPECT_THAT(wav->samples, IsSound(interleaved(pattern(0, frames))));
            }
            const auto next = RecordingFile::create(Channels::stereo, {place.path()},
                                                    maxWavSampleBytes, concealment);
            ASSERT_TRUE(next.ok());
            const bool unnamed =
                concealment == files::Concealment::noName && test::hasUnnamedFiles(place.path());
            EXPECT_EQ(test::hiddenEntriesIn(place.path()), unnamed ? 0 : 1) << told;
        }
    }
}

TEST_F(RecordingFileTest, NeedsNoMoreMemoryTheLongerItGets) {
    const auto recording = create(Channels::stereo);
    const auto block = pattern(0, blockFrames);
    recording->record(block);
    const std::int64_t before = memoryInKibibytes();
    constexpr int tenMinutesOfBlocks = 10 * 60 * 100;
    for (int i = 0; i < tenMinutesOfBlocks; ++i) {
        recording->record(block);
    }
    EXPECT_GT(recording->bytes(), 100'000'000);
    EXPECT_LT(memoryInKibibytes() - before, 4096) << "of more than 100,000 that were recorded";
}

} // namespace
} // namespace sonarith::sound
