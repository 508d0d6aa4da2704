#include "plugin_blocks/zyr_blocks_workers.h"

#include <unistd.h>

namespace zyr::blocks {

namespace {

constexpr uint32_t MOST_THREADS = 4;

} // namespace

/// What remains to be done. A helper that comes late finds nothing left and never looks at the context, which may be
/// gone by then.
class BandWorkers::Job : public ThreadData {
public:
    Job(uint32_t p_count, void (*p_work)(void*, uint32_t), void* p_context)
        : m_count(p_count), m_work(p_work), m_context(p_context) {}

    void work() {
        for (;;) {
            const uint32_t index = __atomic_fetch_add(&m_next, 1, __ATOMIC_RELAXED);
            if (index >= m_count) {
                return;
            }
            m_work(m_context, index);
            if (__atomic_add_fetch(&m_finished, 1, __ATOMIC_ACQ_REL) == m_count) {
                m_done.signal();
            }
        }
    }
    void wait() { m_done.wait(); }

private:
    const uint32_t m_count;
    void (*const m_work)(void*, uint32_t);
    void* const m_context;
    uint32_t m_next = 0;
    uint32_t m_finished = 0;
    Event m_done;
};

BandWorkers::~BandWorkers() {
    if (m_pool != nullptr) {
        m_pool->release();
    }
}

void BandWorkers::help(ThreadData* p_data, ThreadPool*) {
    static_cast<Job*>(p_data)->work();
}

uint32_t BandWorkers::startPool() {
    if (m_numOfThreads == 0) {
        const long processors = sysconf(_SC_NPROCESSORS_ONLN);
        m_numOfThreads = processors < 1 ? 1 : (processors > MOST_THREADS ? MOST_THREADS : uint32_t(processors));
    }
    if (m_pool == nullptr && m_numOfThreads > 1) {
        m_pool = new ThreadPool(m_numOfThreads - 1);
        m_pool->start();
    }
    return m_numOfThreads - 1;
}

void BandWorkers::run(uint32_t p_count, bool p_isLarge, void (*p_work)(void*, uint32_t), void* p_context) {
    const uint32_t helpers = p_isLarge && p_count > 1 ? startPool() : 0;
    if (helpers == 0) {
        for (uint32_t i = 0; i < p_count; ++i) {
            p_work(p_context, i);
        }
        return;
    }
    Job* job = new Job(p_count, p_work, p_context);
    // A task without a free worker would wait for the next picture.
    for (uint32_t i = 0; i < helpers && m_pool->waitForCapacity(0); ++i) {
        m_pool->pushBackNewTask(&help, job, 1);
    }
    job->work();
    job->wait();
    job->release();
}

} // namespace zyr::blocks
