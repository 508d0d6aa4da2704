/// One stream on its way into packets of blocks.
#pragma once

#include "picture/zyr_diffmap.h"
#include "picture/zyr_frame_encoder.h"
#include "picture/zyr_image.h"
#include "plugin_blocks/zyr_blocks_picture_encoder.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_object_class.h"

namespace zyr {

/// Each frame gives one packet; an unchanged one gives a packet of a few bytes. The first packet, the first of another
/// size and the first after a deinitialize and initialize are key frames. A difference map that a frame brings is taken
/// at its word: blocks that it does not mark are not looked at, unless the frame before it could not be taken or had a
/// lower quality. The packed frame carries the map of the blocks that changed. One thread at a time uses a context.
class BlocksFrameEncoderContext : public ObjectIdentity<BlocksFrameEncoderContext, WFrameEncoderContext> {
public:
    static constexpr const char* c_className = "BlocksFrameEncoderContext";
    static constexpr const char* c_classGUIDText = "b7e7d17a-0d4e-417b-b1f1-a442e56482d6";

    BlocksFrameEncoderContext();
    ~BlocksFrameEncoderContext() override;

    /// Accepts a BlocksFrameEncoder only, and takes a reference to it.
    bool_t initialize(IFrameEncoder* p_encoder) override;
    bool_t deinitialize() override;
    /// Takes pictures in system memory; other formats than B, G, R, A are converted by the picture module. Null, with a
    /// line in the log, for what cannot be coded; the next packet is a key frame then, but not behind a frame without a
    /// picture.
    IPackedFrameData* encode(IUnpackedFrameData* p_frame) override;
    IFrameEncoder* getEncoder() const override { return m_encoder.get(); }
    uint8_t getQuality() const override { return m_quality; }
    /// 100, the default, is lossless; below it, channels of blocks like photographs may differ by up to
    /// (109 - quality) / 10. Takes effect with the next frame.
    bool_t setQuality(uint8_t p_quality) override;

private:
    /// The picture in B, G, R, A; null when it can't be had.
    const IImage* convert(const IImage& p_image);
    /// A byte for each block, from the map that the frame brings; null without one that fits.
    const uint8_t* findWanted(const IUnpackedFrameData& p_frame, const IImage& p_image);
    void attachDiffmap(IPackedFrameData& p_packed, const IImage& p_image) const;

    Ref<IFrameEncoder> m_encoder;
    uint8_t m_quality = 100;
    uint64_t m_frameCount = 0;
    /// A frame had no picture, and the next one's map does not tell what changed in it.
    bool m_missedFrame = false;
    Ref<IImage> m_converted;
    Ref<IDiffmap> m_wanted;
    blocks::PictureEncoder m_pictureEncoder;
};

} // namespace zyr
