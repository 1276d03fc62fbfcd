// SPDX-License-Identifier: GPL-3.0-or-later
// Creates recordings in a temporary folder, collects the notices for the user, and simulates disks
// that hang or fail. For tests only.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "platform/linux/sound/recording.h"
#include "platform/linux/sound/recording_queue.h"
#include "support/call_judge.h"
#include "support/fake_notices.h"
#include "support/fake_sound.h"
#include "support/temp_folder.h"
#include "support/waiting.h"

namespace sonarith::sound {

// No test depends on the speed of the machine. briefTiming is for disks that hang: its waits are
// short, so that they do not delay a test. patientTiming is for disks that work: its limits are
// longer than any delay under load.
inline constexpr RecordingTiming briefTiming{
    std::chrono::milliseconds{20}, std::chrono::milliseconds{30}, std::chrono::milliseconds{10}};
inline constexpr RecordingTiming patientTiming{std::chrono::seconds{30}, std::chrono::seconds{30},
                                               std::chrono::seconds{30}};

class RecordingFixture : public testing::Test {
  public:
    /// Whether the call writes samples and not the header, which is written at offset 0.
    static bool isSamples(const seccomp_data& call) {
        return call.nr == SYS_pwrite64 && call.args[3] > 0;
    }

  protected:
    std::unique_ptr<Recording> begin(const std::vector<std::filesystem::path>& folders,
                                     RecordingTiming timing) {
        context.timing = timing;
        auto begun = Recording::begin(Channels::stereo, folders, context);
        EXPECT_TRUE(begun.ok());
        return begun.ok() ? std::move(begun.value()) : nullptr;
    }
    std::unique_ptr<Recording> begin(RecordingTiming timing = patientTiming) {
        return begin({folder.path()}, timing);
    }

    /// Whether less than a batch of frames waits in the queue. The writer may still be writing the
    /// frames that it took last.
    [[nodiscard]] static bool isWritten(const Recording& recording) {
        const std::size_t waiting = RecordingQueue::capacityFrames - recording.sink()->room();
        return waiting < RecordingQueue::batchFrames;
    }

    /// Runs `body`; `verdict` decides the result of selected calls on files, see CallJudge.
    static void intercepted(const test::CallJudge::Verdict& verdict,
                            const std::function<void(test::CallJudge&)>& body) {
        const bool ran = test::CallJudge::run(
            {SYS_pwrite64, SYS_fdatasync, SYS_fsync, SYS_linkat, SYS_openat}, verdict, body);
        if (!ran) {
            GTEST_SKIP() << "this kernel cannot pass calls to another thread";
        }
    }
    /// Whether the call creates an unnamed file in `where`.
    static bool isCreation(const seccomp_data& call, const std::filesystem::path& where) {
        if (call.nr != SYS_openat || (call.args[2] & O_TMPFILE) != O_TMPFILE) {
            return false;
        }
        const std::filesystem::path opened = std::filesystem::read_symlink(
            "/proc/self/fd/" + std::to_string(static_cast<int>(call.args[0])));
        return opened == std::filesystem::canonical(where);
    }
    /// Holds the creation of unnamed files in `where`.
    static test::CallJudge::Verdict holdCreationIn(const std::filesystem::path& where) {
        return [where](const seccomp_data& call) {
            return isCreation(call, where) ? test::CallJudge::hold : test::CallJudge::letThrough;
        };
    }
    /// Holds the call that gives an unnamed file its name.
    static auto holdNaming(const seccomp_data& call) {
        return call.nr == SYS_linkat ? test::CallJudge::hold : test::CallJudge::letThrough;
    }

    /// Waits until no save is pending; false after 30 seconds.
    [[nodiscard]] bool noSaveIsPending() const {
        return context.saves->awaitNone(std::chrono::seconds(30));
    }

    fakes::TempFolder folder;
    const std::filesystem::path target = folder / "1234-3.wav";
    test::FakeNotices shown;
    RecordingContext context{std::make_shared<RecordingNotices>(shown),
                             std::make_shared<PendingSaves>(), patientTiming};
};

} // namespace sonarith::sound
