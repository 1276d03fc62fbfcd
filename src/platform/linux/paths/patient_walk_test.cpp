// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/patient_walk.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/paths/hanging_fixture.h"

namespace sonarith {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::UnorderedElementsAre;

/// A walk does not read ahead when it lists its first folder. The constructor lists E: as the first
/// folder of `walk`, so `walk` may read ahead when a test lists another folder. Each call may
/// read ahead for one hour, so that a slow machine cannot affect a test.
class PatientWalkTest : public testing::Test, protected test::HangingWorld {
  protected:
    PatientWalkTest() {
        for (const char* name : {"d/a/1.wav", "d/a/deep/2.wav", "d/b/3.wav", "e/b.wav"}) {
            mounts->write(name);
        }
        EXPECT_THAT(namesIn("e:\\"), Contains("."));
    }

    std::vector<std::string> namesIn(const std::string& folder) { return namesIn(walk, folder); }
    static std::vector<std::string> namesIn(DirectoryWalk& walk, const std::string& folder) {
        std::vector<std::string> names;
        FindRecord entry;
        const FindHandle handle = walk.FindFirst(folder + "*.*", entry);
        if (handle != invalidFindHandle) {
            do {
                names.push_back(entry.name);
            } while (walk.FindNext(handle, entry));
        }
        walk.FindClose(handle);
        return names;
    }

    /// The folder that contains D: and E:, as the logic names it.
    [[nodiscard]] std::string parentOfTheMounts() const {
        std::string path = "c:" + mounts->path("");
        std::replace(path.begin(), path.end(), '/', '\\');
        return path;
    }

    PatientWalk walk{paths, std::chrono::hours(1)};
};

TEST_F(PatientWalkTest, ListsFoldersWithoutAFurtherCallIfTheyWereReadAhead) {
    ASSERT_THAT(namesIn("d:\\"), UnorderedElementsAre(".", "..", "a", "b"));
    const int calls = mounts->calls(d);
    EXPECT_THAT(namesIn("d:\\a\\"), UnorderedElementsAre(".", "..", "1.wav", "deep"));
    EXPECT_THAT(namesIn("d:\\a\\deep\\"), UnorderedElementsAre(".", "..", "2.wav"));
    EXPECT_THAT(namesIn("d:\\b\\"), UnorderedElementsAre(".", "..", "3.wav"));
    EXPECT_EQ(mounts->calls(d), calls);
}

TEST_F(PatientWalkTest, TheFirstFolderOfAWalkIsReadWithoutTheFoldersBelowIt) {
    PatientWalk another(paths, std::chrono::hours(1));
    FindRecord entry;
    const FindHandle handle = another.FindFirst("d:\\*.*", entry);
    ASSERT_NE(handle, invalidFindHandle);
    const int calls = mounts->calls(d);
    while (another.FindNext(handle, entry)) {
    }
    another.FindClose(handle);
    ASSERT_NE(another.FindFirst("d:\\a\\*.*", entry), invalidFindHandle);
    EXPECT_GT(mounts->calls(d), calls);
}

TEST_F(PatientWalkTest, AFolderThatWasReadAheadIsFoundInAnyLetterCase) {
    ASSERT_THAT(namesIn("d:\\"), Contains("a"));
    EXPECT_THAT(namesIn("D:\\A\\"), Contains("1.wav"));
    EXPECT_THAT(namesIn("d:\\A\\Deep\\"), Contains("2.wav"));
}

TEST_F(PatientWalkTest, TheSecondListingOfAFolderThatWasReadAheadIsEmpty) {
    ASSERT_THAT(namesIn("d:\\"), Contains("a"));
    EXPECT_THAT(namesIn("d:\\a\\"), Contains("1.wav"));
    EXPECT_THAT(namesIn("d:\\a\\"), IsEmpty());
}

TEST_F(PatientWalkTest, ListsEveryFolderIfTheFoldersAreListedLevelByLevel) {
    for (int i = 0; i < 50; ++i) {
        mounts->write("d/many" + std::to_string(i) + "/deep/x.wav");
    }
    ASSERT_THAT(namesIn("d:\\"), Contains("many0"));
    for (int i = 0; i < 50; ++i) {
        EXPECT_THAT(namesIn("d:\\many" + std::to_string(i) + "\\"), Contains("deep")) << i;
    }
    for (int i = 0; i < 50; ++i) {
        EXPECT_THAT(namesIn("d:\\many" + std::to_string(i) + "\\deep\\"), Contains("x.wav")) << i;
    }
}

TEST_F(PatientWalkTest, AFolderThatHangsDuringReadAheadIsReportedAndNotAccessedAgain) {
    mounts->hang(d);
    EXPECT_THAT(namesIn(parentOfTheMounts()), IsSupersetOf({"d", "e", "mounts"}));
    const int hanging = mounts->blocked();
    EXPECT_THAT(notices.texts(), ElementsAre(testing::HasSubstr(d)));
    EXPECT_THAT(namesIn(parentOfTheMounts() + "d\\"), IsEmpty());
    EXPECT_EQ(mounts->blocked(), hanging);
    EXPECT_TRUE(files.fileExists("e:\\b.wav"));
}

TEST_F(PatientWalkTest, ListsAllOtherFoldersAfterAReadAheadTimedOut) {
    mounts->write("f/late.wav");
    mounts->write("c/late.wav");
    PatientWalk usual(paths);
    ASSERT_THAT(namesIn(usual, "e:\\"), Contains("."));
    mounts->hang(d);
    ASSERT_THAT(namesIn(usual, parentOfTheMounts()), IsSupersetOf({"c", "d", "f"}));
    std::this_thread::sleep_for(PatientWalk::usualReadAhead);
    mounts->answer(d);
    while (!paths.allReturned()) { // waits for the end of the call that hung
        static_cast<void>(files.fileExists("e:\\none"));
    }
    EXPECT_THAT(namesIn(usual, parentOfTheMounts() + "c\\"), Contains("late.wav"));
    EXPECT_THAT(namesIn(usual, parentOfTheMounts() + "f\\"), Contains("late.wav"));
}

TEST_F(PatientWalkTest, NothingIsReadAheadWhileACallHangs) {
    mounts->hang(e);
    ASSERT_FALSE(files.fileExists("e:\\b.wav"));
    const int hanging = mounts->blocked();
    ASSERT_THAT(namesIn("d:\\"), Contains("a"));
    const int calls = mounts->calls(d);
    EXPECT_THAT(namesIn("d:\\a\\"), Contains("1.wav"));
    EXPECT_GT(mounts->calls(d), calls);
    EXPECT_EQ(mounts->blocked(), hanging);
}

TEST_F(PatientWalkTest, ALargeFolderThatWasReadAheadIsListedToItsEnd) {
    constexpr int many = 2500; // more than twice FolderPart::mostRecords
    for (int i = 0; i < many; ++i) {
        mounts->write("d/large/" + std::to_string(i));
    }
    ASSERT_THAT(namesIn("d:\\"), Contains("large"));
    EXPECT_EQ(namesIn("d:\\large\\").size(), many + 2U);
    EXPECT_THAT(namesIn("d:\\a\\"), Contains("1.wav"));
}

} // namespace
} // namespace sonarith
