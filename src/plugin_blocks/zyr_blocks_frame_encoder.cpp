#include "plugin_blocks/zyr_blocks_frame_encoder.h"

#include "plugin_blocks/zyr_blocks_frame_encoder_context.h"
#include "plugin_blocks/zyr_blocks_offers.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/platform/zyr_version.h"

namespace zyr {

BlocksFrameEncoder::BlocksFrameEncoder() {
    initObjectInterface();
    init_This();
}

BlocksFrameEncoder::~BlocksFrameEncoder() {
    release_This();
}

const String& BlocksFrameEncoder::getLibName() const {
    static const String& name = makePermanent<String>("blocks");
    return name;
}

uint64_t BlocksFrameEncoder::getLibVersion() const {
    return zyr_encodeVersion64(1, 0, 0);
}

void BlocksFrameEncoder::getCodecProposals(List<FrameCodecProposal*>& p_proposals) {
    for (const blocks::Offer& offer : blocks::OFFERS) {
        p_proposals.pushBack(blocks::createProposal(offer, getAdapterID()));
    }
}

bool_t BlocksFrameEncoder::initialize(const FrameCodecInfo& p_codecInfo) {
    if (!blocks::isPossible(p_codecInfo) || !blocks::hasCompression(p_codecInfo)) {
        return 0;
    }
    m_codecInfo = p_codecInfo;
    return 1;
}

IFrameEncoderContext* BlocksFrameEncoder::createFrameEncoderContext() {
    BlocksFrameEncoderContext* context = new BlocksFrameEncoderContext;
    context->initialize(static_cast<IFrameEncoder*>(getTLIObject()));
    return context;
}

} // namespace zyr
