/// Encoders and decoders of plug-ins as the host uses them: behind facades that guard each call.
#pragma once

#include "host/zyr_framework.h"

namespace zyr::host {

/// A facade around a plug-in's encoder, whose reference it takes over. Its calls and those of its contexts go through
/// callPlugin(), and what comes back is checked: proposals that cannot be used are left out with a line on the standard
/// error, and frames that cannot be used are PluginErrors. Frames are counted by the calls of each context.
Ref<IFrameEncoder> guardEncoder(IFrameEncoder* p_encoder);

/// The same for a decoder.
Ref<IFrameDecoder> guardDecoder(IFrameDecoder* p_decoder);

/// The file of the module that the class of an object comes from, as the loader knows it, also behind such a facade;
/// empty when it cannot be told.
std::string findModuleFile(const IObject& p_object);

} // namespace zyr::host
