// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_event_loop.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <thread>
#include <utility>

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <gmock/gmock.h>

#include "platform/qt/qt_message_boxes.h"

#include "platform/qt/dialog_loop.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::ExitedWithCode;
using testing::HasSubstr;
using testing::Not;

void post(QObject& context, std::function<void()> work) {
    QMetaObject::invokeMethod(&context, std::move(work), Qt::QueuedConnection);
}

class QtEventLoopTest : public testing::Test {
  protected:
    QtEventLoop loop;
    QObject context;
};

TEST_F(QtEventLoopTest, YieldHandlesPendingEventsAndReturns) {
    int calls = 0;
    post(context, [&] { ++calls; });
    loop.yield();
    EXPECT_EQ(calls, 1);
    loop.yield();
    EXPECT_EQ(calls, 1);
}

TEST_F(QtEventLoopTest, EachYieldHandlesQueuedEventsButFewYieldsAskTheSystemForInput) {
    int asked = 0;
    const auto watch = QObject::connect(QAbstractEventDispatcher::instance(),
                                        &QAbstractEventDispatcher::awake, [&] { ++asked; });
    int calls = 0;
    constexpr int yields = 1000;
    const auto start = std::chrono::steady_clock::now();
    for (int i = 1; i <= yields; ++i) {
        post(context, [&] { ++calls; });
        loop.yield();
        ASSERT_EQ(calls, i);
    }
    const auto passed = std::chrono::steady_clock::now() - start;
    EXPECT_LE(asked, passed / 250us + 2);
    QObject::disconnect(watch);
}

TEST_F(QtEventLoopTest, AYieldHandlesATimerIfAQuarterMillisecondPassedSinceTheLastYield) {
    bool fired = false;
    loop.yield();
    QTimer::singleShot(0, &context, [&] { fired = true; });
    std::this_thread::sleep_for(250us);
    loop.yield();
    EXPECT_TRUE(fired);
}

TEST_F(QtEventLoopTest, AWaitWithAFalseConditionHandlesNothing) {
    int calls = 0;
    post(context, [&] { ++calls; });
    loop.waitWhile([] { return false; });
    EXPECT_EQ(calls, 0);
    loop.yield();
}

TEST_F(QtEventLoopTest, AWaitReturnsAfterTheEventThatMakesItsConditionFalse) {
    std::vector<std::string> log;
    bool waiting = true;
    const auto tick = loop.every(1ms, [&] {
        log.push_back("tick");
        waiting = log.size() < 3;
    });
    loop.waitWhile([&] { return waiting; });
    EXPECT_THAT(log, ElementsAre("tick", "tick", "tick"));
}

TEST_F(QtEventLoopTest, AWaitSleepsInsteadOfSpinning) {
    int asked = 0;
    int rests = 0;
    bool waiting = true;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     &context, [&] { ++rests; });
    const auto wakeup = loop.every(60ms, [&] { waiting = false; });
    loop.waitWhile([&] {
        ++asked;
        return waiting;
    });
    // A wait that spun for 60 ms would evaluate the condition about ten thousand times.
    EXPECT_LT(asked, 20);
    EXPECT_GT(rests, 0);
}

TEST_F(QtEventLoopTest, NestedWaitsEndInnermostFirst) {
    std::vector<std::string> log;
    bool outer = true;
    bool inner = true;
    post(context, [&] {
        post(context, [&] {
            outer = false;
            post(context, [&] { inner = false; });
        });
        loop.waitWhile([&] { return inner; });
        log.push_back("inner");
    });
    loop.waitWhile([&] { return outer; });
    log.push_back("outer");
    EXPECT_THAT(log, ElementsAre("inner", "outer"));
}

TEST_F(QtEventLoopTest, AnOuterWaitWhoseConditionIsFalseLetsTheInnerWaitSleep) {
    bool outer = true;
    bool inner = true;
    int asked = 0;
    post(context, [&] {
        outer = false;
        const auto wakeup = loop.every(60ms, [&] { inner = false; });
        loop.waitWhile([&] {
            ++asked;
            return inner;
        });
    });
    loop.waitWhile([&] { return outer; });
    EXPECT_LT(asked, 20);
}

TEST_F(QtEventLoopTest, ADialogOpenedDuringAWaitSleepsEvenIfTheConditionOfTheWaitIsFalse) {
    bool waiting = true;
    int asked = 0;
    post(context, [&] {
        waiting = false;
        QEventLoop dialog;
        QTimer::singleShot(60ms, &dialog, &QEventLoop::quit);
        dialog.exec();
    });
    loop.waitWhile([&] {
        ++asked;
        return waiting;
    });
    EXPECT_LT(asked, 20);
}

TEST_F(QtEventLoopTest, WaitForReturnsWhenTheTimeHasPassed) {
    const auto begin = loop.now();
    loop.waitFor(30ms);
    EXPECT_GE(loop.now() - begin, 30ms);
}

TEST_F(QtEventLoopTest, ATimerNeverReentersItsHandler) {
    int depth = 0;
    int deepest = 0;
    int calls = 0;
    const auto timer = loop.every(1ms, [&] {
        ++calls;
        deepest = std::max(deepest, ++depth);
        loop.waitFor(10ms);
        --depth;
    });
    loop.waitWhile([&] { return calls < 3 || depth > 0; });
    EXPECT_EQ(deepest, 1);
}

TEST_F(QtEventLoopTest, OtherTimersRunWhileAHandlerWaits) {
    int others = 0;
    bool done = false;
    const auto other = loop.every(1ms, [&] { ++others; });
    const auto timer = loop.every(1ms, [&] {
        if (!done) {
            const int before = others;
            loop.waitWhile([&] { return others < before + 3; });
            done = true;
        }
    });
    loop.waitWhile([&] { return !done; });
    EXPECT_GE(others, 3);
}

TEST_F(QtEventLoopTest, AHandlerMayCancelItsOwnTimer) {
    int calls = 0;
    std::unique_ptr<Wakeup> timer;
    timer = loop.every(1ms, [&] {
        timer.reset();
        ++calls;
        loop.waitFor(10ms);
    });
    loop.waitWhile([&] { return calls == 0; });
    loop.waitFor(10ms);
    EXPECT_EQ(calls, 1);
}

TEST_F(QtEventLoopTest, ACancelledTimerNeverFires) {
    int calls = 0;
    loop.every(1ms, [&] { ++calls; }).reset();
    loop.waitFor(10ms);
    EXPECT_EQ(calls, 0);
}

/// Counts the calls of a handler of everyInSound() in groups. A group consists of the calls between
/// two sleeps of the thread. The constructor sets a silence function, without which everyInSound()
/// would make each call alone. With it, everyInSound() makes two calls at a time while there is
/// sound (BatchedWakeup::callsInSound). In silence it first makes ten calls
/// (BatchedWakeup::callsBeforeSilence) two at a time. Then it makes five calls at a time
/// (BatchedWakeup::callsInSilence).
struct CallGroups {
    QtEventLoop& loop;
    bool silent = true;
    int rests = 0;
    int restsAtCall = -1;
    std::vector<int> sizes;
    QObject context;

    explicit CallGroups(QtEventLoop& owner) : loop(owner) {
        QObject::connect(QAbstractEventDispatcher::instance(),
                         &QAbstractEventDispatcher::aboutToBlock, &context, [this] { ++rests; });
        loop.setSilence([this] { return silent; });
    }
    [[nodiscard]] std::unique_ptr<Wakeup> start() {
        return loop.everyInSound(2ms, [this] {
            if (rests != restsAtCall) {
                sizes.push_back(0);
            }
            restsAtCall = rests;
            ++sizes.back();
        });
    }
    [[nodiscard]] bool isBatching() const { return !sizes.empty() && sizes.back() == 5; }
};

TEST_F(QtEventLoopTest, TheFirstTenCallsInSilenceAreMadeInPairsAndTheNextFiveInOneBatch) {
    CallGroups groups(loop);
    const auto wakeup = groups.start();
    loop.waitWhile([&] { return !groups.isBatching(); });
    EXPECT_THAT(groups.sizes, testing::ElementsAre(2, 2, 2, 2, 2, 5));
}

TEST_F(QtEventLoopTest, SoundThatBeginsInAHandlerInterruptsABatchOfFive) {
    CallGroups groups(loop);
    const auto wakeup = groups.start();
    loop.waitWhile([&] { return !groups.isBatching(); });
    groups.sizes.clear();
    post(context, [&] { groups.silent = false; });
    loop.waitWhile([&] { return groups.sizes.size() < 5; });
    // The first group is the batch that was interrupted. After it, the calls come in pairs.
    EXPECT_LT(groups.sizes.front(), 5);
    EXPECT_THAT(std::vector<int>(groups.sizes.begin() + 1, groups.sizes.end() - 1),
                testing::Each(2));
}

TEST_F(QtEventLoopTest, EachCallIsMadeAloneIfNoSilenceFunctionIsSet) {
    CallGroups groups(loop);
    loop.setSilence(nullptr);
    const auto wakeup = groups.start();
    loop.waitWhile([&] { return groups.sizes.size() < 30; });
    EXPECT_FALSE(groups.isBatching());
    EXPECT_THAT(std::vector<int>(groups.sizes.begin(), groups.sizes.end() - 1), testing::Each(1));
}

TEST_F(QtEventLoopTest, AHandlerInBatchesIsNotCalledAfterItsWakeupIsDestroyed) {
    CallGroups groups(loop);
    auto wakeup = groups.start();
    loop.waitWhile([&] { return !groups.isBatching(); });
    wakeup.reset();
    groups.sizes.clear();
    groups.silent = false;
    loop.waitFor(30ms);
    EXPECT_THAT(groups.sizes, testing::IsEmpty());
}

TEST_F(QtEventLoopTest, SecondsSinceMidnightFollowTheWallClock) {
    constexpr double day = 86400;
    const std::time_t before = std::time(nullptr);
    const double seconds = loop.secondsSinceMidnight();
    EXPECT_GE(seconds, 0.0);
    EXPECT_LT(seconds, day);
    std::tm wall{};
    ASSERT_NE(::localtime_r(&before, &wall), nullptr);
    const double expected = wall.tm_hour * 3600 + wall.tm_min * 60 + wall.tm_sec;
    // Midnight may have passed between the two readings.
    EXPECT_LT(std::fmod(seconds - expected + day, day), 2.0);
}

/// During a wait, the handler of a timer opens a message box, and while the box is open, another
/// timer ends the program. The last steps, which must run, print a text; code that must not run
/// prints a text, too.
[[noreturn]] void endInsideANestedBox() {
    QtEventLoop loop;
    QtMessageBoxes boxes("Title");
    QObject context;
    loop.setLastSteps([] { std::fputs("last steps;", stderr); });
    const auto timer = loop.every(1ms, [&] {
        QTimer::singleShot(0, &context, [&] {
            if (!runningDialog()) {
                std::_Exit(3);
            }
            post(context, [] { std::fputs("yielded;", stderr); });
            loop.endProgram();
        });
        boxes.show("Question");
        std::fputs("box returned;", stderr);
    });
    loop.waitWhile([] { return true; });
    std::_Exit(4);
}

TEST_F(QtEventLoopTest, EndProgramInsideNestedLoopsRunsNoFurtherHandler) {
    EXPECT_EXIT(endInsideANestedBox(), ExitedWithCode(0),
                AllOf(HasSubstr("last steps;"), Not(HasSubstr("yielded;")),
                      Not(HasSubstr("box returned;"))));
}

[[noreturn]] void endTwice() {
    QtEventLoop loop;
    loop.setLastSteps([&] {
        std::fputs("last steps;", stderr);
        loop.endProgram();
    });
    loop.endProgram();
}

TEST_F(QtEventLoopTest, EndProgramWithinTheLastStepsExitsAtOnce) {
    EXPECT_EXIT(endTwice(), ExitedWithCode(0), HasSubstr("last steps;"));
}

[[noreturn]] void runWithoutWindows() {
    QtEventLoop loop;
    QWidget window;
    QTimer::singleShot(0, &window, [&] {
        window.show();
        window.close();
        QTimer::singleShot(20, &window, [&] {
            std::fputs("still here;", stderr);
            loop.endProgram();
        });
    });
    loop.run();
    std::_Exit(5);
}

TEST_F(QtEventLoopTest, ClosingTheLastWindowDoesNotEndTheProgram) {
    EXPECT_EXIT(runWithoutWindows(), ExitedWithCode(0), HasSubstr("still here;"));
}

} // namespace
} // namespace sonarith
