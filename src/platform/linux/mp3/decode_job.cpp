// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/decode_job.h"

#include <condition_variable>
#include <mutex>
#include <utility>

#include "platform/linux/mp3/target_turn.h"

namespace sonarith::mp3 {

namespace {

bool unchanged(const DecodeOrder& order, const CompletedDecoding& former) {
    return FileIdentity::of(order.source) == former.source &&
           FileIdentity::of(order.target) == former.target;
}

} // namespace

/// Everything that the decoding's thread accesses. The thread may outlive the job, so the
/// thread and the job share this object.
struct DecodeJob::Run {
    Run(DecodeOrder ordered, Report reports, std::shared_ptr<sound::PendingSaves> pending,
        std::optional<CompletedDecoding> before)
        : order(std::move(ordered)),
          saves(std::move(pending)),
          report(std::move(reports)),
          completed(std::move(before)) {
        saves->add();
    }

    void execute() {
        if (completed && unchanged(order, *completed)) {
            result = completed->result;
            progress.raiseTo(progress.total());
        } else {
            completed.reset();
            decode();
        }
        end();
    }

    void decode() {
        Decoding decoding(order, stop, progress);
        result = decoding.run();
        if (result.outcome == DecodeOutcome::completed) {
            progress.raiseTo(progress.total());
            const std::optional<FileIdentity> target = FileIdentity::of(order.target);
            if (target && decoding.sourceIdentity()) {
                completed = {result, *decoding.sourceIdentity(), *target};
            }
        }
        report(result);
        // Destroys the objects that `report` owns, because this Run may exist much longer.
        report = nullptr;
    }

    void end() {
        {
            const std::lock_guard lock(mutex);
            over = true;
            changed.notify_all();
        }
        saves->remove();
    }

    bool awaitEnd(std::chrono::milliseconds patience) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, patience, [this] { return over.load(); });
    }

    const DecodeOrder order;
    const std::shared_ptr<sound::PendingSaves> saves;
    Progress progress;
    std::atomic<bool> stop = false;
    std::atomic<bool> over = false;
    std::mutex mutex; ///< for the threads that wait for `over`
    std::condition_variable changed;
    // Until `over` is true, the members below are accessed only by the thread, or by DecodeJob's
    // constructor if no thread could be started. Afterwards they are constant.
    Report report;
    DecodeResult result;
    std::optional<CompletedDecoding> completed; ///< initially the earlier decoding whose result
                                                ///< may be reused
};

DecodeJob::DecodeJob(DecodeOrder order, Report report, std::shared_ptr<sound::PendingSaves> saves,
                     std::optional<CompletedDecoding> former)
    : run_(std::make_shared<Run>(std::move(order), std::move(report), std::move(saves),
                                 std::move(former))) {
    const Status started =
        thread_.start([run = run_] { run->execute(); }, run_->order.division.starter);
    if (!started.ok()) {
        run_->completed.reset();
        run_->result.outcome = DecodeOutcome::failed;
        run_->result.failure = DecodeFailure{DecodeStep::decoding, started.error()};
        run_->report(run_->result);
        run_->end();
    }
}

void DecodeJob::stop(std::chrono::milliseconds patience) {
    run_->stop = true;
    TargetTurn::wakeWaiting();
    run_->awaitEnd(patience);
}

bool DecodeJob::busy() const {
    return !run_->stop && !run_->over;
}

bool DecodeJob::over() const {
    return run_->over;
}

bool DecodeJob::awaitEnd(std::chrono::milliseconds patience) const {
    return run_->awaitEnd(patience);
}

const Progress& DecodeJob::progress() const {
    return run_->progress;
}

bool DecodeJob::isFor(const DecodeOrder& order) const {
    return order.source == run_->order.source && order.target == run_->order.target;
}

const DecodeResult& DecodeJob::result() const {
    return run_->result;
}

std::optional<CompletedDecoding> DecodeJob::completed() const {
    return over() ? run_->completed : std::nullopt;
}

} // namespace sonarith::mp3
