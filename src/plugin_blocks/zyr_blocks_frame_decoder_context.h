/// One stream of packets of blocks on its way back into pictures.
#pragma once

#include "picture/zyr_frame_decoder.h"
#include "plugin_blocks/zyr_blocks_picture_decoder.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_object_class.h"

namespace zyr {

class IImage;

/// Each packet gives one picture in R, G, B, A in system memory, with an alpha of 255, or null and a WARN line. Packets
/// may be damaged in any way; behind a bad or missing one the next key frame is decoded, and nothing before it. The
/// packed frame's size has to be that of the packet. One thread at a time uses a context.
class BlocksFrameDecoderContext : public ObjectIdentity<BlocksFrameDecoderContext, WFrameDecoderContext> {
public:
    static constexpr const char* c_className = "BlocksFrameDecoderContext";
    static constexpr const char* c_classGUIDText = "40f64738-fb64-4235-89e5-1ac312ca1582";

    BlocksFrameDecoderContext();
    ~BlocksFrameDecoderContext() override;

    /// Accepts a BlocksFrameDecoder only, and takes a reference to it.
    bool_t initialize(IFrameDecoder* p_decoder) override;
    bool_t deinitialize() override;
    IUnpackedFrameData* decode(IPackedFrameData* p_frame) override;
    IFrameDecoder* getDecoder() const override { return m_decoder.get(); }

private:
    Ref<IImage> createImage() const;

    Ref<IFrameDecoder> m_decoder;
    blocks::PictureDecoder m_pictureDecoder;
};

} // namespace zyr
