// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/system/patient_calls.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <thread>

#include "support/gate.h"

namespace sonarith::system_information {
namespace {

using namespace std::chrono_literals;

class PatientCallsTest : public ::testing::Test {
  protected:
    ~PatientCallsTest() override { gate->open(); }

    /// Makes a call that hangs while the gate is closed. `object` is the name of what the call
    /// accesses, such as a mount.
    std::optional<int> askGate(const std::string& object = "gate") {
        return calls.ask(object, [gate = gate] {
            gate->pass();
            return std::optional(7);
        });
    }
    /// Calls an object whose calls do not hang. Repeats the call until its answer arrives in time,
    /// because even such a call may exceed its time limit on a busy machine.
    std::optional<int> askOther() {
        std::optional<int> answer;
        for (int tries = 0; tries < 300 && !answer; ++tries) {
            answer = calls.ask("other", [] { return std::optional(8); });
        }
        return answer;
    }
    void waitForAnswers() {
        while (calls.unanswered() > 0) {
            std::this_thread::sleep_for(1ms);
        }
    }

    std::shared_ptr<fakes::Gate> gate = std::make_shared<fakes::Gate>();
    waiting::WorkerThreads threads;
    PlainWaiting plain;
    PatientCalls calls{threads, plain, 100ms};
};

TEST_F(PatientCallsTest, ReturnAResultThatArrivesInTime) {
    PatientCalls unhurried(threads, plain, 60s);
    EXPECT_EQ(unhurried.ask("object", [] { return std::optional(7); }), 7);
    EXPECT_EQ(unhurried.unanswered(), 0U);
}

TEST_F(PatientCallsTest, ReturnAnEmptyResultUnchanged) {
    PatientCalls unhurried(threads, plain, 60s);
    EXPECT_EQ(unhurried.ask("object", [] { return std::optional<int>(); }), std::nullopt);
    EXPECT_EQ(unhurried.unanswered(), 0U);
}

TEST_F(PatientCallsTest, WaitForAHangingCallUntilTheTimeLimitAndNotMuchLonger) {
    gate->close();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(askGate(), std::nullopt);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, 100ms);
    EXPECT_LT(waited, 5s); // enough even for a busy machine
    EXPECT_EQ(calls.unanswered(), 1U);
}

TEST_F(PatientCallsTest, MakeNoSecondCallToAnObjectBeforeTheFirstHasReturned) {
    gate->close();
    EXPECT_EQ(askGate(), std::nullopt);
    const auto start = std::chrono::steady_clock::now();
    for (int tick = 0; tick < 1000; ++tick) {
        EXPECT_EQ(askGate(), std::nullopt);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 50s); // not 1000 times 100 ms
    EXPECT_EQ(gate->arrivals(), 1);
    EXPECT_EQ(calls.unanswered(), 1U);
}

TEST_F(PatientCallsTest, CallAnotherObjectWhileCallsToOneOrTwoObjectsHang) {
    gate->close();
    EXPECT_EQ(askGate("first"), std::nullopt);
    EXPECT_EQ(askOther(), 8);
    EXPECT_EQ(askGate("second"), std::nullopt);
    EXPECT_EQ(askOther(), 8);
    EXPECT_EQ(gate->arrivals(), 2);
}

TEST_F(PatientCallsTest, CallAnObjectAgainAfterTheFirstCallToItHasReturned) {
    gate->close();
    EXPECT_EQ(askGate(), std::nullopt);
    gate->open();
    waitForAnswers();
    std::optional<int> answer;
    while (!answer) {
        answer = askGate();
    }
    EXPECT_EQ(answer, 7);
    EXPECT_GE(gate->arrivals(), 2);
}

} // namespace
} // namespace sonarith::system_information
