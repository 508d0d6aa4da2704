/// Encodes the pictures of one lane for all of its viewers.
#pragma once

#include "host/live/zyr_live_codecs.h"
#include "host/live/zyr_prepared_encoder.h"
#include "host/live/zyr_region_choice.h"
#include "host/zyr_stream_run.h"

#include <array>
#include <vector>

namespace zyr::host {

/// A packet of a picture.
struct CodedPart {
    LiveCodec m_codec{};
    bool m_key = false;
    bool m_exact = false; ///< With it, all of the screen is shown to the bit.
    PictureArea m_area;
    Ref<IPackedFrameData> m_packet;
};

/// Blocks are for all of the picture but the region that moves like a video; that one goes by VP9, in a context of its
/// size. At rest, and when the region has come to rest, blocks show it exactly. The two contexts' states do not touch:
/// what blocks leave out they have as it was. Beside VP9's context there may be a spare, which the next key frame comes
/// from; a new region waits for it, since opening takes longer than a picture may. Times are microseconds. One thread.
class FrameCoder {
public:
    /// `p_codecs` must outlive the object. `p_hasSpare`: a key frame of VP9 is quick, but one that is not shown stands
    /// before it in its packet; decoders of older players don't get over that behind an error. Without, no regions.
    explicit FrameCoder(const LiveCodecs& p_codecs, bool p_hasSpare = true)
        : m_codecs(p_codecs), m_hasSpare(p_hasSpare), m_allowed(p_codecs.getCodecs()), m_spare(p_codecs) {}

    /// Leaves only codecs that all viewers know.
    void setAllowed(uint8_t p_codecs);

    /// codecBit() of the codecs that a picture encoded now would take.
    uint8_t getUsed(bool p_atRest, uint64_t p_time) const;

    /// True when a picture encoded now would have a key frame for those who miss what its codecs stand on (`p_missing`:
    /// codecBit() of the codecs). There is one in a second at most.
    bool isKeyDue(uint8_t p_missing, bool p_atRest, uint64_t p_time) const;

    /// Encodes a picture, blocks before VP9. A key frame comes from a new context, which replaces the running one.
    /// `p_changed`: outside of it the picture is as the last one was. Empty when an encoder has failed.
    std::vector<CodedPart> encode(IUnpackedFrameData& p_frame, const PictureArea& p_changed, uint8_t p_missing,
                                  bool p_atRest, uint64_t p_time);

    /// Waits for the spare that is being prepared.
    void finishSpare() { m_spare.finish(); }

private:
    struct Side {
        Ref<IFrameEncoderContext> m_context;
        uint64_t m_keyTime = 0; ///< 0: no key frame yet.
    };

    bool isKeyDue(LiveCodec p_codec, uint8_t p_missing, uint64_t p_time) const;
    PictureArea findVideo(const PictureArea& p_whole, bool p_atRest, uint64_t p_time) const;
    void followRegion();
    void prepareSpare();
    void watchRegion(const IUnpackedFrameData& p_frame, uint64_t p_time);
    Ref<IDiffmap> findStale(const PictureArea& p_whole, const PictureArea& p_video) const;
    void addBlocks(IUnpackedFrameData& p_frame, const PictureArea& p_video, uint8_t p_missing, uint64_t p_time,
                   std::vector<CodedPart>& p_parts);
    void addVideo(IUnpackedFrameData& p_frame, const PictureArea& p_area, uint8_t p_missing, uint64_t p_time,
                  std::vector<CodedPart>& p_parts);
    bool runSpare(CodedPart& p_part, IUnpackedFrameData& p_frame);
    bool run(CodedPart& p_part, IUnpackedFrameData& p_frame, bool p_afresh, uint64_t p_time);

    const LiveCodecs& m_codecs;
    bool m_hasSpare;
    RegionChoice m_choice;
    uint8_t m_allowed;
    PictureArea m_region;    ///< The choice's, as soon as there is a context for it.
    PictureArea m_stale;     ///< What blocks' context may have otherwise than the picture.
    PictureArea m_videoArea; ///< That VP9's context is for.
    PictureArea m_seenArea;  ///< The region that the present one of the next was taken from.
    std::array<FramePicture, 2> m_seen;
    size_t m_present = 0;
    std::array<Side, NUM_OF_LIVE_CODECS> m_sides;
    PreparedEncoder m_spare;
};

} // namespace zyr::host
