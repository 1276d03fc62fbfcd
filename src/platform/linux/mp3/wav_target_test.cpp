// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/wav_target.h"

#include <gmock/gmock.h>

#include <csignal>
#include <sys/resource.h>

#include "platform/linux/mp3/mp3_fixture.h"
#include "support/folder_entries.h"
#include "support/unprivileged.h"

namespace sonarith::mp3 {
namespace {

namespace fs = std::filesystem;
using fixture::Data;
using fixture::Samples;

class WavTargetTest : public testing::Test {
  protected:
    std::unique_ptr<WavTarget> create(std::int64_t longest = sound::maxWavSampleBytes) {
        auto made = WavTarget::create(path, {22050, 2}, longest);
        EXPECT_TRUE(made.ok());
        return std::move(made.value());
    }
    int entries() const { return test::entriesIn(folder.path()); }
    fakes::TempFolder folder;
    const fs::path path = folder / "a.wav";
};

TEST_F(WavTargetTest, IsInvisibleUntilItIsFinished) {
    const auto target = create();
    EXPECT_TRUE(target->place(0, Samples{1, 2, 3, 4}).ok());
    EXPECT_EQ(test::visibleEntriesIn(folder.path()), 0);
    EXPECT_TRUE(target->finish(2).ok());
    EXPECT_EQ(entries(), 1);
}

TEST_F(WavTargetTest, AFileWithAHiddenNameIsRenamedByFinishAndDeletedIfItIsNotFinished) {
    const auto hidden = [&] {
        return std::move(WavTarget::create(path, {22050, 2}, sound::maxWavSampleBytes,
                                           files::Concealment::hiddenName)
                             .value());
    };
    {
        const auto dropped = hidden();
        const auto target = hidden();
        EXPECT_TRUE(target->place(0, Samples{1, 2, 3, 4}).ok());
        EXPECT_EQ(entries(), 2);
        EXPECT_FALSE(fs::exists(path));
        EXPECT_TRUE(target->finish(2).ok());
        EXPECT_EQ(fixture::readWav(path).samples, (Samples{1, 2, 3, 4}));
    }
    EXPECT_EQ(entries(), 1);
}

TEST_F(WavTargetTest, StoresSamplesAtTheirOffsetsEvenIfLaterSamplesArePlacedFirst) {
    const auto target = create();
    EXPECT_TRUE(target->place(2, Samples{5, 6}).ok());
    EXPECT_TRUE(target->place(0, Samples{1, 2, 3, 4}).ok());
    EXPECT_TRUE(target->finish(3).ok());
    const auto decoded = fixture::readWav(path);
    EXPECT_EQ(decoded.format, (PcmFormat{22050, 2}));
    EXPECT_EQ(decoded.samples, (Samples{1, 2, 3, 4, 5, 6}));
}

TEST_F(WavTargetTest, FinishTruncatesTheFileAtTheGivenEnd) {
    const auto target = create();
    EXPECT_TRUE(target->place(0, Samples{1, 2, 3, 4}).ok());
    EXPECT_TRUE(target->place(1000, Samples{9, 9}).ok());
    EXPECT_TRUE(target->finish(1).ok());
    EXPECT_EQ(fixture::readWav(path).samples, (Samples{1, 2}));
    EXPECT_EQ(fs::file_size(path), 48U);
}

TEST_F(WavTargetTest, BecomesRf64AboveTheSizeLimitOfAPlainWav) {
    // More samples than fit into one block: finish() moves the samples block by block, to make
    // space for the larger header (WavTarget::moveUp()).
    Samples samples(400'000);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<std::int16_t>(i * 7);
    }
    const auto target = create(799'999);
    EXPECT_TRUE(target->place(0, samples).ok());
    EXPECT_TRUE(target->finish(200'000).ok());
    EXPECT_EQ(fixture::part(fixture::readFile(path), 0, 4), fixture::text("RF64"));
    EXPECT_EQ(fixture::readWav(path).samples, samples);
}

TEST_F(WavTargetTest, CreateRefusesTargetsThatCannotBeWritten) {
    EXPECT_FALSE(WavTarget::create(folder / "none" / "a.wav", {}).ok());
    EXPECT_FALSE(WavTarget::create(std::string("a\0.wav", 6), {}).ok());
    fs::create_directory(path);
    EXPECT_FALSE(WavTarget::create(path, {}).ok());
}

TEST_F(WavTargetTest, ReportsAFullDiskAndKeepsAnExistingFileOfTheSameName) {
    fixture::writeFile(path, fixture::text("old"));
    fs::permissions(folder.path(), fs::perms(0777));
    const int code = test::runUnprivileged([&] {
        // A file size limit simulates the full disk.
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{10'000, 10'000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const auto target = create();
        if (!target->place(0, Samples(4000)).ok()) {
            return 1;
        }
        const Status status = target->place(2000, Samples(4000));
        return !status.ok() && status.error().number == ErrorNumber::diskFull ? 0 : 2;
    });
    EXPECT_EQ(code, 0);
    EXPECT_EQ(fixture::readFile(path), fixture::text("old"));
    EXPECT_EQ(entries(), 1);
}

TEST_F(WavTargetTest, IsNotCreatedForAPathWithoutAFileName) {
    EXPECT_FALSE(WavTarget::create("", {44100, 2}).ok());
    EXPECT_FALSE(WavTarget::create(folder.path() / "", {44100, 2}).ok());
}

} // namespace
} // namespace sonarith::mp3
