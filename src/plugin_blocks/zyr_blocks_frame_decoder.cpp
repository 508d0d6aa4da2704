#include "plugin_blocks/zyr_blocks_frame_decoder.h"

#include "plugin_blocks/zyr_blocks_frame_decoder_context.h"
#include "plugin_blocks/zyr_blocks_offers.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/platform/zyr_version.h"

namespace zyr {

BlocksFrameDecoder::BlocksFrameDecoder() {
    initObjectInterface();
    init_This();
}

BlocksFrameDecoder::~BlocksFrameDecoder() {
    release_This();
}

const String& BlocksFrameDecoder::getLibName() const {
    static const String& name = makePermanent<String>("blocks");
    return name;
}

uint64_t BlocksFrameDecoder::getLibVersion() const {
    return zyr_encodeVersion64(1, 0, 0);
}

void BlocksFrameDecoder::getCodecRequests(List<FrameCodecRequest*>& p_requests) {
    for (const blocks::Offer& offer : blocks::OFFERS) {
        p_requests.pushBack(blocks::createRequest(offer));
    }
}

bool_t BlocksFrameDecoder::initialize(const FrameCodecInfo& p_codecInfo) {
    if (!blocks::isPossible(p_codecInfo)) {
        return 0;
    }
    m_codecInfo = p_codecInfo;
    return 1;
}

IFrameDecoderContext* BlocksFrameDecoder::createFrameDecoderContext() {
    BlocksFrameDecoderContext* context = new BlocksFrameDecoderContext;
    context->initialize(static_cast<IFrameDecoder*>(getTLIObject()));
    return context;
}

} // namespace zyr
