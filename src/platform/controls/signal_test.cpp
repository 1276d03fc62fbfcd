// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/signal.h"

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/counted_allocations.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct SignalTest : testing::Test {
    Signal<int> signal;
    std::vector<std::string> calls;

    Signal<int>::Slot note(const std::string& name) {
        return [this, name](int value) {
            calls.push_back(name + std::to_string(value));
        };
    }
};

TEST_F(SignalTest, CallsEverySlotInTheOrderOfConnection) {
    const Connection first = signal.connect(note("a"));
    const Connection second = signal.connect(note("b"));
    signal.emit(7);
    EXPECT_THAT(calls, ElementsAre("a7", "b7"));
}

TEST_F(SignalTest, ASlotIsConnectedWhileItsConnectionExists) {
    {
        const Connection connection = signal.connect(note("a"));
        signal.emit(1);
    }
    signal.emit(2);
    EXPECT_THAT(calls, ElementsAre("a1"));
}

TEST_F(SignalTest, AssigningAConnectionDisconnectsTheOldSlot) {
    Connection connection = signal.connect(note("a"));
    connection = signal.connect(note("b"));
    signal.emit(1);
    EXPECT_THAT(calls, ElementsAre("b1"));
}

TEST_F(SignalTest, ASlotDisconnectedByAnEarlierSlotIsNotCalled) {
    Connection second;
    const Connection first = signal.connect([&](int) { second = Connection(); });
    second = signal.connect(note("b"));
    signal.emit(1);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(SignalTest, ASlotThatDisconnectsItselfCompletesItsCall) {
    Connection self;
    const std::string name = "a name that is too long to be kept without an allocation of its own ";
    self = signal.connect([&, name](int) {
        self = Connection();
        calls.push_back(name);
    });
    signal.emit(1);
    signal.emit(2);
    EXPECT_THAT(calls, ElementsAre(name));
}

TEST_F(SignalTest, ASlotConnectedDuringAnEmissionIsFirstCalledByTheNextEmission) {
    Connection late;
    const Connection first = signal.connect([&](int value) {
        calls.push_back("a" + std::to_string(value));
        if (value == 1) {
            late = signal.connect(note("late"));
        }
    });
    signal.emit(1);
    signal.emit(2);
    EXPECT_THAT(calls, ElementsAre("a1", "a2", "late2"));
}

TEST_F(SignalTest, ASlotMayEmitTheSignalThatCallsIt) {
    const Connection first = signal.connect([&](int value) {
        calls.push_back(std::to_string(value));
        if (value > 0) {
            signal.emit(value - 1);
        }
    });
    signal.emit(2);
    EXPECT_THAT(calls, ElementsAre("2", "1", "0"));
}

TEST_F(SignalTest, AnEmissionDoesNotAllocate) {
    int sum = 0;
    const Connection first = signal.connect([&](int value) { sum += value; });
    const Connection second = signal.connect([&](int value) { sum += value; });
    EXPECT_EQ(test::allocationsOf([&] {
                  for (int i = 0; i < 100; ++i) {
                      signal.emit(1);
                  }
              }),
              0);
    EXPECT_EQ(sum, 200);
}

TEST_F(SignalTest, ANestedEmissionAfterADisconnectionDoesNotDisturbTheOuterEmission) {
    Connection second = signal.connect(note("b"));
    bool nested = false;
    const Connection first = signal.connect([&](int value) {
        if (!nested) {
            nested = true;
            second = Connection();
            signal.emit(value + 1);
        }
        calls.push_back("a" + std::to_string(value));
    });
    const Connection third = signal.connect(note("c"));
    signal.emit(1);
    EXPECT_THAT(calls, ElementsAre("b1", "a2", "c2", "a1", "c1"));
}

TEST(Connection, MayOutliveItsSignal) {
    auto signal = std::make_optional<Signal<>>();
    int calls = 0;
    const Connection connection = signal->connect([&] { ++calls; });
    signal->emit();
    signal.reset();
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace sonarith
