// The entry points by which a host loads the plug-in.

#include "lossless_codec.h"

#include "zyr_common/plugins/zyr_plugin_entry.h"

static constexpr zyr::PluginDescription DESCRIPTION = {
    .m_name = "Lossless",
    .m_longName = "Lossless example plug-in",
    .m_guid = "de01bf87-c4b2-454e-98c3-a796b2f47a31",
    .m_description = "Packs each picture as one LZ4 block",
    .m_namespace = "LOSSLESS",
    .m_word = "lossless",
    .m_register = &zyr::registerPluginClasses<LosslessFrameEncoder, LosslessFrameEncoderContext, LosslessFrameDecoder,
                                              LosslessFrameDecoderContext>,
};

ZYR_PLUGIN_EXPORTS(DESCRIPTION)
