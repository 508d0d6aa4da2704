#include "zyr_common/threads/zyr_thread_pool.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace zyr {

namespace {

constexpr uint32_t LONG = 60000;

class Gate : public ThreadData {
public:
    Event m_running;
    Event m_mayEnd;
};

void passGate(ThreadData* p_data, ThreadPool*) {
    Gate* gate = static_cast<Gate*>(p_data);
    gate->m_running.signal();
    gate->m_mayEnd.wait();
}

/// The tasks of a run. They all may end when the run does, also when it ends early.
struct Gates {
    ~Gates() {
        for (Gate* gate : m_all) {
            gate->m_mayEnd.signal();
            gate->release();
        }
    }
    std::vector<Gate*> m_all;
    std::vector<Gate*> m_running;
};

} // namespace

// The test holds every token itself and pushes all tasks as reserved, so a token that comes back tells that a worker
// has done all its steps, and the pool is at rest after each operation. A task is pushed only to an idle worker: when
// the dispatcher looks for one is up to the scheduler.
TEST(ThreadPoolModel, RandomOperationsFollowTheStateMachine) {
    const uint32_t seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const size_t workers = 1 + random() % 3;
    uint32_t state = 0;
    ThreadPool pool(static_cast<uint32_t>(workers));
    Gates gates;
    pool.start();
    for (size_t i = 0; i < workers; i++) {
        ASSERT_EQ(pool.waitForCapacity(0), 1);
    }
    for (int step = 0; step < 3000; step++) {
        SCOPED_TRACE("step " + std::to_string(step));
        switch (random() % 4) {
        case 0:
            if (gates.m_running.size() < workers) {
                Gate* gate = new Gate();
                gates.m_all.push_back(gate);
                gates.m_running.push_back(gate);
                pool.pushBackNewTask(passGate, gate, 1);
                gate->m_running.wait();
                state = 0;
            }
            break;
        case 1:
            if (!gates.m_running.empty()) {
                const size_t index = random() % gates.m_running.size();
                gates.m_running[index]->m_mayEnd.signal();
                gates.m_running.erase(gates.m_running.begin() + ptrdiff_t(index));
                ASSERT_EQ(pool.waitForCapacity(LONG), 1);
                state = state == 0 ? 1 : state;
            }
            break;
        case 2: {
            const bool_t expected = state != 0;
            ASSERT_EQ(pool.wait(0, 0), expected);
            state = expected ? 2 : state;
            break;
        }
        default:
            ASSERT_EQ(pool.waitForCapacity(0), 0);
            break;
        }
    }
}

} // namespace zyr
