#include "host/zyr_stage_pipeline.h"

#include "zyr_common/threads/zyr_thread_pool.h"

#include <algorithm>
#include <chrono>

namespace zyr::host {

namespace {

/// One stage as the pool sees it.
class StageTask : public ThreadData {
public:
    explicit StageTask(std::function<void()> p_work) : m_work(std::move(p_work)) {}

    static void run(ThreadData* p_data, ThreadPool*) { static_cast<StageTask*>(p_data)->m_work(); }

private:
    std::function<void()> m_work;
};

} // namespace

StagePipeline::StagePipeline(size_t p_slots) : m_queues(1) {
    for (size_t i = 0; i < p_slots; i++) {
        m_queues[0].m_slots.push_back(i);
    }
}

void StagePipeline::run(const std::function<void()>& p_onTick) {
    m_queues.resize(m_stages.size());
    m_working = m_stages.size();
    {
        // A stage occupies its worker until the end, so there are as many workers as stages.
        ThreadPool pool(uint32_t(m_stages.size()));
        pool.start();
        for (size_t i = 0; i < m_stages.size(); i++) {
            pool.waitForCapacity(1000);
            auto* task = new StageTask([this, i] { work(i); });
            pool.pushBackNewTask(StageTask::run, task, 1);
            task->release();
        }
        std::unique_lock<std::mutex> lock(m_mutex);
        while (!m_changed.wait_for(lock, std::chrono::milliseconds(100), [this] { return m_working == 0; })) {
            lock.unlock();
            p_onTick();
            lock.lock();
        }
        lock.unlock();
        pool.stop();
    }
    if (m_error) {
        std::rethrow_exception(m_error);
    }
}

void StagePipeline::work(size_t p_stage) {
    std::exception_ptr error;
    try {
        size_t slot = 0;
        while (take(p_stage, slot)) {
            if (!m_stages[p_stage](slot) && p_stage == 0) {
                break;
            }
            hand((p_stage + 1) % m_stages.size(), slot);
        }
    } catch (...) {
        error = std::current_exception();
    }
    finish(p_stage, error);
}

bool StagePipeline::take(size_t p_stage, size_t& p_slot) {
    std::unique_lock<std::mutex> lock(m_mutex);
    Queue& queue = m_queues[p_stage];
    m_changed.wait(lock, [&] { return p_stage < m_stopped || queue.m_ended || !queue.m_slots.empty(); });
    if (p_stage < m_stopped || queue.m_slots.empty()) {
        return false;
    }
    p_slot = queue.m_slots.front();
    queue.m_slots.pop_front();
    return true;
}

void StagePipeline::hand(size_t p_stage, size_t p_slot) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_queues[p_stage].m_slots.push_back(p_slot);
    m_changed.notify_all();
}

void StagePipeline::finish(size_t p_stage, std::exception_ptr p_error) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (p_error) {
        m_stopped = std::max(m_stopped, p_stage);
        m_error = m_error ? m_error : p_error;
    }
    if (p_stage + 1 < m_stages.size()) {
        m_queues[p_stage + 1].m_ended = true;
    }
    m_working--;
    m_changed.notify_all();
}

} // namespace zyr::host
