/// Works on the bands of a picture side by side.
#pragma once

#include "zyr_common/threads/zyr_thread_pool.h"

namespace zyr::blocks {

/// The threads are made with the first large picture. Used by one thread.
class BandWorkers {
public:
    BandWorkers() = default;
    ~BandWorkers();
    BandWorkers(const BandWorkers&) = delete;
    BandWorkers& operator=(const BandWorkers&) = delete;

    /// Threads that take part, the caller among them; 0 means as many as the machine has, up to four.
    void setNumOfThreads(uint32_t p_count) { m_numOfThreads = p_count; }

    /// Calls `p_work` for each number below `p_count`, on the calling thread and, with `p_isLarge`, on others.
    void run(uint32_t p_count, bool p_isLarge, void (*p_work)(void* p_context, uint32_t p_index), void* p_context);

private:
    class Job;
    static void help(ThreadData* p_data, ThreadPool* p_pool);
    uint32_t startPool();

    uint32_t m_numOfThreads = 0;
    ThreadPool* m_pool = nullptr;
};

} // namespace zyr::blocks
