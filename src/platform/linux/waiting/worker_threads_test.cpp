// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/waiting/worker_threads.h"

#include <mutex>
#include <set>
#include <thread>

#include <gtest/gtest.h>

#include "platform/waiting.h"
#include "support/gate.h"
#include "support/limited_threads.h"
#include "support/waiting.h"

namespace sonarith::waiting {
namespace {

using namespace std::chrono_literals;

/// Counts the threads that have run jobs.
class Threads {
  public:
    void note() {
        const std::lock_guard lock(mutex_);
        ids_.insert(std::this_thread::get_id());
    }
    std::size_t count() const {
        const std::lock_guard lock(mutex_);
        return ids_.size();
    }

  private:
    mutable std::mutex mutex_;
    std::set<std::thread::id> ids_;
};

TEST(WorkerThreads, OneThreadRunsAllConsecutiveJobs) {
    Threads used;
    WorkerThreads workers;
    for (int job = 0; job < 500; ++job) {
        Completion done;
        ASSERT_TRUE(workers.run([&] { used.note(); }, [&] { done.complete(); }));
        ASSERT_TRUE(done.restFor(1h));
    }
    EXPECT_EQ(used.count(), 1u);
}

TEST(WorkerThreads, AHangingJobBlocksOnlyItsThread) {
    const auto gate = std::make_shared<fakes::Gate>();
    const auto owned = std::make_shared<int>();
    gate->close();
    WorkerThreads workers;
    ASSERT_TRUE(workers.run([gate, owned] { gate->pass(); }, [] {}));
    gate->waitForArrivals(1);
    Completion done;
    ASSERT_TRUE(workers.run([] {}, [&] { done.complete(); }));
    EXPECT_TRUE(done.restFor(1h));
    EXPECT_EQ(owned.use_count(), 2) << "the first job must still hang";
    gate->open();
    EXPECT_TRUE(fakes::eventually([&] { return owned.use_count() == 1; }));
}

TEST(WorkerThreads, TheJobIsDestroyedBeforeItsEndIsSignalled) {
    WorkerThreads workers;
    const auto owned = std::make_shared<int>();
    WorkerThreads::Job job = [owned] {
    };
    long ownersAtItsEnd = 0;
    Completion done;
    ASSERT_TRUE(workers.run(std::move(job), [&] {
        ownersAtItsEnd = owned.use_count();
        done.complete();
    }));
    ASSERT_TRUE(done.restFor(1h));
    EXPECT_EQ(ownersAtItsEnd, 1);
}

TEST(WorkerThreads, TheThreadOfAHangingJobOutlivesTheWorkerThreadsObject) {
    const auto gate = std::make_shared<fakes::Gate>();
    gate->close();
    {
        WorkerThreads workers;
        ASSERT_TRUE(workers.run([gate] { gate->pass(); }, [gate] {}));
        gate->waitForArrivals(1);
    }
    gate->open();
    EXPECT_TRUE(fakes::eventually([&] { return gate.use_count() == 1; }));
}

TEST(WorkerThreads, RunNothingIfNoThreadCanBeCreated) {
    fakes::LimitedThreads threads(0);
    WorkerThreads workers(threads.starter());
    const auto ran = std::make_shared<int>(0);
    EXPECT_FALSE(workers.run([ran] { ++*ran; }, [ran] { ++*ran; }));
    EXPECT_EQ(*ran, 0);
    EXPECT_EQ(ran.use_count(), 1);
    threads.free(1);
    Completion done;
    EXPECT_TRUE(workers.run([] {}, [&] { done.complete(); }));
    EXPECT_TRUE(done.restFor(1h));
}

} // namespace
} // namespace sonarith::waiting
