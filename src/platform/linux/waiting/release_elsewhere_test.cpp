// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/waiting/release_elsewhere.h"

#include <gtest/gtest.h>

#include "support/gate.h"
#include "support/limited_threads.h"
#include "support/waiting.h"

namespace sonarith::waiting {
namespace {

/// An object whose destructor waits at a gate.
struct Slow {
    explicit Slow(std::shared_ptr<fakes::Gate> passed) : gate(std::move(passed)) {}
    ~Slow() { gate->pass(); }
    Slow(const Slow&) = delete;
    Slow& operator=(const Slow&) = delete;
    std::shared_ptr<fakes::Gate> gate;
};

TEST(ReleaseElsewhere, ASlowDestructorDoesNotBlockTheThreadThatReleasesTheLastPointer) {
    const auto gate = std::make_shared<fakes::Gate>();
    gate->close();
    auto slow = releasedElsewhere(std::make_shared<Slow>(gate));
    EXPECT_EQ(slow->gate, gate);
    auto other = slow;
    slow.reset();
    EXPECT_EQ(gate->arrivals(), 0) << "the object must not be destroyed while `other` owns it";
    other.reset();
    gate->waitForArrivals(1);
    gate->open();
    EXPECT_TRUE(fakes::eventually([&] { return gate.use_count() == 1; }));
}

TEST(ReleaseElsewhere, ReleasesOnTheCallingThreadIfNoThreadCanBeCreated) {
    const fakes::LimitedThreads threads(0);
    auto owned = std::make_shared<int>();
    const std::weak_ptr<int> watched = owned;
    releaseElsewhere(std::move(owned), threads.starter());
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(threads.refused(), 1);
}

} // namespace
} // namespace sonarith::waiting
