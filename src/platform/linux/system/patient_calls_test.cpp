// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/system/patient_calls.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace sonarith::system_information {
namespace {

using namespace std::chrono_literals;

/// Something that answers when the test allows it.
struct Gate {
    std::mutex mutex;
    std::condition_variable changed;
    bool open = false;
    std::atomic<int> asked = 0;

    std::optional<int> answer() {
        ++asked;
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return open; });
        return 7;
    }
    void letThrough() {
        const std::lock_guard lock(mutex);
        open = true;
        changed.notify_all();
    }
};

class PatientCallsTest : public ::testing::Test {
  protected:
    std::optional<int> askGate(const std::string& thing = "gate") {
        return calls.ask(thing, [gate = gate] { return gate->answer(); });
    }
    std::optional<std::thread::id> askForThread(const std::string& thing) {
        return calls.ask(thing, [] { return std::optional(std::this_thread::get_id()); });
    }

    std::shared_ptr<Gate> gate = std::make_shared<Gate>();
    PatientCalls calls{100ms};
};

TEST_F(PatientCallsTest, ReturnTheAnswerThatComesInTime) {
    gate->letThrough();
    EXPECT_EQ(askGate(), 7);
    EXPECT_EQ(calls.unanswered(), 0U);
}

TEST_F(PatientCallsTest, ReturnARefusalAsItIs) {
    EXPECT_EQ(calls.ask("thing", [] { return std::optional<int>(); }), std::nullopt);
    EXPECT_EQ(calls.unanswered(), 0U);
}

TEST_F(PatientCallsTest, AskEverythingOnOneThreadWhichIsNotTheCallers) {
    const auto first = askForThread("one");
    EXPECT_EQ(askForThread("two"), first);
    EXPECT_NE(first, std::this_thread::get_id());
}

TEST_F(PatientCallsTest, WaitNoLongerThanTheirPatience) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(askGate(), std::nullopt);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, 100ms);
    EXPECT_LT(waited, 5s); // far more than a loaded machine takes, far less than forever
    EXPECT_EQ(calls.unanswered(), 1U);
    gate->letThrough();
}

TEST_F(PatientCallsTest, AskNothingMoreOfAThingThatHasNotAnswered) {
    EXPECT_EQ(askGate(), std::nullopt);
    const auto start = std::chrono::steady_clock::now();
    for (int tick = 0; tick < 1000; ++tick) {
        EXPECT_EQ(askGate(), std::nullopt);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 50s); // not 1000 times 100 ms
    EXPECT_EQ(gate->asked, 1);
    EXPECT_EQ(calls.unanswered(), 1U);
    gate->letThrough();
}

TEST_F(PatientCallsTest, GoOnAskingTheOthers) {
    EXPECT_EQ(askGate("first"), std::nullopt);
    EXPECT_TRUE(askForThread("other").has_value());
    EXPECT_EQ(askGate("second"), std::nullopt);
    EXPECT_TRUE(askForThread("other").has_value());
    EXPECT_EQ(calls.unanswered(), 2U);
    gate->letThrough();
}

TEST_F(PatientCallsTest, AskAgainWhatHasAnsweredAtLast) {
    EXPECT_EQ(askGate(), std::nullopt);
    gate->letThrough();
    while (calls.unanswered() > 0) {
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(askGate(), 7);
    EXPECT_EQ(gate->asked, 2);
}

TEST_F(PatientCallsTest, NeedNoNewThreadOnceTheLateOneIsBack) {
    const auto gateThread = std::make_shared<std::atomic<std::thread::id>>();
    const auto late = calls.ask("gate", [gate = gate, gateThread] {
        *gateThread = std::this_thread::get_id();
        return gate->answer();
    });
    EXPECT_EQ(late, std::nullopt);
    gate->letThrough();
    while (calls.unanswered() > 0) {
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(askForThread("other"), gateThread->load());
}

TEST_F(PatientCallsTest, EndWithoutWaitingForAnAnswer) {
    const auto start = std::chrono::steady_clock::now();
    {
        PatientCalls passing(10ms);
        EXPECT_EQ(passing.ask("gate", [gate = gate] { return gate->answer(); }), std::nullopt);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
    gate->letThrough(); // what was left behind owns the gate
}

} // namespace
} // namespace sonarith::system_information
