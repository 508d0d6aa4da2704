/// What a serializer or deserializer keeps for each level that is open. A new one has room for a few, so that a file
/// full of serializers costs no more than one of other objects.
#pragma once

#include "core_module/serializers/zyr_field_kind.h"
#include "zyr_common/memory/zyr_memory.h"

#include <cstring>
#include <type_traits>

namespace zyr {

/// A frame is all zero, or as it was left. The frames move when the stack grows: no reference to one outlives a call of
/// reach.
template <class Frame> class FrameStack {
public:
    FrameStack() = default;
    ~FrameStack() {
        if (m_frames != m_first) {
            zyr_free(m_frames);
        }
    }
    FrameStack(const FrameStack&) = delete;
    FrameStack& operator=(const FrameStack&) = delete;

    /// The frame at a depth that was reached; that of the outermost level is always there.
    Frame& operator[](uint32_t p_depth) { return m_frames[p_depth]; }
    const Frame& operator[](uint32_t p_depth) const { return m_frames[p_depth]; }

    /// Makes room for a frame at that depth. False at c_maxDepth, and where there is no memory.
    bool reach(uint32_t p_depth) { return p_depth < m_capacity || (p_depth < c_maxDepth && grow()); }

private:
    static_assert(std::is_trivially_copyable_v<Frame>);
    static constexpr uint32_t c_first = 4;

    bool grow() {
        Frame* frames = static_cast<Frame*>(zyr_tryMalloc(2 * m_capacity * sizeof(Frame)));
        if (frames == nullptr) {
            return false;
        }
        memcpy(static_cast<void*>(frames), m_frames, m_capacity * sizeof(Frame));
        memset(static_cast<void*>(frames + m_capacity), 0, m_capacity * sizeof(Frame));
        if (m_frames != m_first) {
            zyr_free(m_frames);
        }
        m_frames = frames;
        m_capacity *= 2;
        return true;
    }

    Frame m_first[c_first] = {};
    Frame* m_frames = m_first;
    uint32_t m_capacity = c_first;
};

} // namespace zyr
