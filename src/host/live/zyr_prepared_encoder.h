/// An encoder context whose codec is open before it is needed.
#pragma once

#include "host/live/zyr_live_codecs.h"

#include <future>
#include <vector>

namespace zyr::host {

/// VP9 takes far longer to open its codec than to encode a picture, and opens it with a context's first one. So that
/// one is grey, and is encoded on a thread of its own, which ends then. One thread calls.
class PreparedEncoder {
public:
    struct Spare {
        Ref<IFrameEncoderContext> m_context; ///< Null when there is none.
        /// The key frame of the grey picture. What the context encodes next stands on it: putBehindHiddenKey().
        std::vector<uint8_t> m_key;
    };

    /// `p_codecs` must outlive the object.
    explicit PreparedEncoder(const LiveCodecs& p_codecs) : m_codecs(p_codecs) {}

    /// Sees to a spare for pictures of this size and returns at once. A spare of another size is thrown away.
    void prepare(uint32_t p_width, uint32_t p_height);

    /// True when take() has a spare of this size, or there cannot be one.
    bool isReady(uint32_t p_width, uint32_t p_height);

    /// Gives the spare away, if it is of this size and ready.
    Spare take(uint32_t p_width, uint32_t p_height);

    /// Takes a context that has served: closing its codec can take longer than a picture may, too.
    void discard(Ref<IFrameEncoderContext> p_context) { m_old = std::move(p_context); }

    /// Waits for what prepare() has begun.
    void finish();

private:
    void collect();

    const LiveCodecs& m_codecs;
    uint32_t m_width = 0; ///< Of the spare, also while it is prepared.
    uint32_t m_height = 0;
    bool m_isReady = false;
    Spare m_spare;
    Ref<IFrameEncoderContext> m_old; ///< Closed on the next one's thread.
    std::future<Spare> m_work;       ///< Its end is waited for.
};

} // namespace zyr::host
