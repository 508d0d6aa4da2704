/// A row of stages that work beside each other on the thread pool, each on one item at a time.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <vector>

namespace zyr::host {

/// Items are numbered slots that go round: through all stages in order, then to the first again. A slot is with one
/// stage at a time, so what the slots stand for needs no locks, and their number bounds all queues.
///
///     StagePipeline pipeline(4);
///     pipeline.addStage([&](size_t slot) { return read(items[slot]); });
///     pipeline.addStage([&](size_t slot) { write(items[slot]); return true; });
///     pipeline.run([] {});
class StagePipeline {
public:
    /// Works on an item. The first stage ends the run with false; what others give is not looked at.
    using Stage = std::function<bool(size_t)>;

    explicit StagePipeline(size_t p_slots);
    StagePipeline(const StagePipeline&) = delete;
    StagePipeline& operator=(const StagePipeline&) = delete;

    void addStage(Stage p_stage) { m_stages.push_back(std::move(p_stage)); }

    /// Runs until the first stage has ended and all items are through. A stage that throws ends the run too: the stages
    /// before it stop, those behind it finish the items that they have, and the exception goes to the caller. Of
    /// several the one counts that came first. `p_onTick` is called on the calling thread, ten times a second. Once.
    void run(const std::function<void()>& p_onTick);

private:
    struct Queue {
        std::deque<size_t> m_slots;
        bool m_ended = false; ///< Nothing more will come.
    };

    void work(size_t p_stage);
    bool take(size_t p_stage, size_t& p_slot);
    void hand(size_t p_stage, size_t p_slot);
    void finish(size_t p_stage, std::exception_ptr p_error);

    std::vector<Stage> m_stages;
    std::vector<Queue> m_queues; ///< In front of each stage.
    std::mutex m_mutex;          ///< Guards all below and the queues.
    std::condition_variable m_changed;
    std::exception_ptr m_error;
    size_t m_stopped = 0; ///< Stages below this number take nothing more.
    size_t m_working = 0;
};

} // namespace zyr::host
