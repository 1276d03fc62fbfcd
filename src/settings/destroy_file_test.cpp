// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/destroy_file.h"

#include <gmock/gmock.h>

#include "support/fake_file_system.h"
#include "support/virtual_event_loop.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::FakeFileSystem;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::Le;
using Operation = FakeFileSystem::Operation;

class DestroyFileTest : public ::testing::Test {
  protected:
    Status destroy() { return p_DestroyFile("c:\\music\\a.wav", disk_, loop_); }
    std::chrono::milliseconds destroyTime() {
        const auto start = loop_.now();
        EXPECT_TRUE(destroy().ok());
        return loop_.now() - start;
    }

    FakeFileSystem disk_;
    test::VirtualEventLoop loop_;
};

TEST_F(DestroyFileTest, OpensTheFileForWritingAndDeletesIt) {
    disk_.addFile("c:\\music\\a.wav", "sound");
    EXPECT_TRUE(destroy().ok());
    EXPECT_FALSE(disk_.fileExists("c:\\music\\a.wav"));
    EXPECT_THAT(disk_.log,
                ElementsAre("touchForWriting c:\\music\\a.wav", "removeFile c:\\music\\a.wav"));
}

TEST_F(DestroyFileTest, SucceedsForAFileThatDidNotExist) {
    disk_.addFolder("c:\\music");
    EXPECT_TRUE(destroy().ok());
    EXPECT_FALSE(disk_.fileExists("c:\\music\\a.wav"));
}

TEST_F(DestroyFileTest, YieldsDuringAPauseOfAFifthOfASecondAfterTheDeletion) {
    disk_.addFolder("c:\\music");
    bool ran = false;
    loop_.after(150ms, [&] {
        ran = true;
        EXPECT_FALSE(disk_.fileExists("c:\\music\\a.wav"));
    });
    EXPECT_THAT(destroyTime(), AllOf(Ge(200ms), Le(220ms)));
    EXPECT_TRUE(ran);
    EXPECT_EQ(loop_.wakeupCount(), 0U);
}

TEST_F(DestroyFileTest, PausesForAFifthOfASecondAcrossMidnight) {
    disk_.addFolder("c:\\music");
    loop_.setSecondsSinceMidnight(86399.9);
    EXPECT_THAT(destroyTime(), AllOf(Ge(200ms), Le(220ms)));
    EXPECT_LT(loop_.secondsSinceMidnight(), 1.0);
}

TEST_F(DestroyFileTest, EndsItsPauseIfTheClockIsSetBack) {
    disk_.addFolder("c:\\music");
    loop_.after(100ms, [&] { loop_.setSecondsSinceMidnight(1000.0); });
    EXPECT_THAT(destroyTime(), Le(120ms));
}

TEST_F(DestroyFileTest, DoesNotDeleteAFileThatIsInUseAndReturnsTheFailureAtOnce) {
    disk_.addFile("c:\\music\\a.wav", "sound");
    disk_.failWith(Operation::touchForWriting, "c:\\music\\a.wav", ErrorNumber::permissionDenied);
    const Status status = destroy();
    ASSERT_FALSE(status.ok());
    EXPECT_EQ(status.error().number, ErrorNumber::permissionDenied);
    EXPECT_EQ(status.error().text, "scripted failure");
    EXPECT_EQ(status.error().source, "p_DestroyFile");
    EXPECT_EQ(disk_.content("c:\\music\\a.wav"), "sound");
    EXPECT_EQ(loop_.yieldCount(), 0);
}

TEST_F(DestroyFileTest, ReturnsTheFailureOfTheDeletionAtOnce) {
    disk_.addFile("c:\\music\\a.wav", "sound");
    disk_.failWith(Operation::removeFile, "c:\\music\\a.wav", ErrorNumber::pathFileAccess);
    const Status status = destroy();
    ASSERT_FALSE(status.ok());
    EXPECT_EQ(status.error().number, ErrorNumber::pathFileAccess);
    EXPECT_EQ(status.error().source, "p_DestroyFile");
    EXPECT_EQ(loop_.yieldCount(), 0);
}

} // namespace
} // namespace sonarith
