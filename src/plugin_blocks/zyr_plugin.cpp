// The plug-in's entry points. A host looks them up by their plain names.

#include "plugin_blocks/zyr_blocks_frame_decoder.h"
#include "plugin_blocks/zyr_blocks_frame_decoder_context.h"
#include "plugin_blocks/zyr_blocks_frame_encoder.h"
#include "plugin_blocks/zyr_blocks_frame_encoder_context.h"
#include "zyr_common/plugins/zyr_plugin_entry.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

static constexpr PluginDescription DESCRIPTION = {
    .m_name = "Blocks",
    .m_longName = "Blocks Plugin Module v1.5.0 (Zyrmont Framework)",
    .m_guid = "6b74ba83-e64a-404c-8f5f-9321413ec855",
    .m_description = "Plugin Module which codes screens without loss, as blocks of few colors",
    .m_namespace = "ZYR",
    .m_word = "blocks",
    .m_register = &registerPluginClasses<BlocksFrameDecoder, BlocksFrameDecoderContext, BlocksFrameEncoder,
                                         BlocksFrameEncoderContext>,
};

} // namespace zyr

ZYR_PLUGIN_EXPORTS(DESCRIPTION)
