#include "zyr_common/threads/zyr_thread_pool.h"

#include <gtest/gtest.h>

#include <deque>
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

/// What the pool must be in with all its threads at rest.
struct Model {
    uint32_t m_state = 0;
    uint32_t m_workers = 0;
    std::deque<Gate*> m_queue;
    std::vector<Gate*> m_running;
};

} // namespace

// The test holds every token itself and pushes all tasks as reserved, so a token that comes back tells that a worker
// has done all its steps. Tasks pushed while no worker is idle stay queued until a later push, which is part of the
// contract.
TEST(ThreadPoolModel, RandomOperationsFollowTheStateMachine) {
    const uint32_t seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    Model model;
    model.m_workers = 1 + random() % 3;
    ThreadPool pool(model.m_workers);
    pool.start();
    for (uint32_t i = 0; i < model.m_workers; i++) {
        ASSERT_EQ(pool.waitForCapacity(0), 1);
    }
    std::vector<Gate*> all;
    for (int step = 0; step < 3000; step++) {
        SCOPED_TRACE("step " + std::to_string(step));
        switch (random() % 4) {
        case 0: {
            Gate* gate = new Gate();
            all.push_back(gate);
            model.m_state = 0;
            model.m_queue.push_back(gate);
            pool.pushBackNewTask(passGate, gate, 1);
            while (model.m_running.size() < model.m_workers && !model.m_queue.empty()) {
                model.m_queue.front()->m_running.wait();
                model.m_running.push_back(model.m_queue.front());
                model.m_queue.pop_front();
            }
            break;
        }
        case 1: {
            if (model.m_running.empty()) {
                break;
            }
            const size_t index = random() % model.m_running.size();
            model.m_running[index]->m_mayEnd.signal();
            model.m_running.erase(model.m_running.begin() + ptrdiff_t(index));
            ASSERT_EQ(pool.waitForCapacity(LONG), 1);
            if (model.m_queue.empty() && model.m_state == 0) {
                model.m_state = 1;
            }
            break;
        }
        case 2: {
            const bool_t expected = model.m_state != 0;
            ASSERT_EQ(pool.wait(0, 0), expected);
            if (expected) {
                model.m_state = 2;
            }
            break;
        }
        default:
            ASSERT_EQ(pool.waitForCapacity(0), 0);
            break;
        }
    }
    for (Gate* gate : all) {
        gate->m_mayEnd.signal();
        gate->release();
    }
}

} // namespace zyr
