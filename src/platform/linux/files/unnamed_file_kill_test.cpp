// SPDX-License-Identifier: GPL-3.0-or-later
// Tests what a killed process leaves on the disk, for a kill at each system call of a save.
#include "platform/linux/files/unnamed_file.h"

#include <gmock/gmock.h>

#include <fstream>
#include <optional>
#include <tuple>

#include "support/file_content.h"
#include "support/folder_entries.h"
#include "support/killed_at_call.h"
#include "support/temp_folder.h"

namespace sonarith::files {
namespace {

namespace fs = std::filesystem;
using test::contentOf;
using test::hiddenEntriesIn;
using test::KillOutcome;
using testing::AnyOf;
using testing::Combine;
using testing::Values;

enum class Target { isNew, isReplaced };
/// What gets the name of the target: the unnamed file itself, or a copy of the file because the
/// file already has a name.
enum class Method { itself, copy };

class KilledSaveTest : public testing::TestWithParam<std::tuple<Concealment, Target, Method>> {
  protected:
    /// Runs one save in `folder` in a child process, which is killed at system call number `call`
    /// of the save.
    KillOutcome save(const fs::path& folder, int call) const {
        std::optional<UnnamedFile> file;
        return test::killAtCall(
            call,
            [&] {
                file = std::move(UnnamedFile::create(folder, concealment).value());
                static_cast<void>(::write(file->descriptor().get(), "new", 3));
                if (method == Method::copy) {
                    file->publish(folder / "first.wav").passOver();
                }
            },
            [&] { file->publish(folder / "target.wav").passOver(); });
    }

    const Concealment concealment = std::get<0>(GetParam());
    const Target target = std::get<1>(GetParam());
    const Method method = std::get<2>(GetParam());
};

TEST_P(KilledSaveTest, LeavesTheTargetUnchangedOrCompleteAndTheNextCreateDeletesHiddenFiles) {
    const std::string before = target == Target::isReplaced ? "old" : "(none)";
    bool usesHiddenNames = concealment == Concealment::hiddenName || target == Target::isReplaced;
    int leftovers = 0;
    int call = 0;
    for (KillOutcome outcome = KillOutcome::killed; outcome == KillOutcome::killed; ++call) {
        const fakes::TempFolder folder;
        usesHiddenNames = usesHiddenNames || !test::hasUnnamedFiles(folder.path());
        if (target == Target::isReplaced) {
            std::ofstream(folder / "target.wav") << before;
        }
        outcome = save(folder.path(), call);
        ASSERT_NE(outcome, KillOutcome::failed)
            << "the test must be able to trace the child's system calls";
        const std::string after = contentOf(folder / "target.wav");
        EXPECT_THAT(after, AnyOf(before, "new")) << "call " << call;
        if (outcome == KillOutcome::finished) {
            EXPECT_EQ(after, "new");
        }
        leftovers += hiddenEntriesIn(folder.path());
        EXPECT_TRUE(UnnamedFile::create(folder.path(), concealment).ok());
        EXPECT_EQ(hiddenEntriesIn(folder.path()), 0) << "call " << call;
        EXPECT_EQ(contentOf(folder / "target.wav"), after) << "call " << call;
    }
    EXPECT_GT(call, 5)
        << "a save needs more system calls: it flushes the file, names it and flushes the folder";
    EXPECT_EQ(leftovers > 0, usesHiddenNames)
        << "some kill must leave a hidden file if and only if hidden names are used";
}

INSTANTIATE_TEST_SUITE_P(WithEveryMethod, KilledSaveTest,
                         Combine(Values(Concealment::noName, Concealment::hiddenName),
                                 Values(Target::isNew, Target::isReplaced),
                                 Values(Method::itself, Method::copy)));

} // namespace
} // namespace sonarith::files
