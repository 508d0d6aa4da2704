/// Trying a plug-in module before it is loaded.
#pragma once

#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// Loads the module in a child process, looks its entry points up, asks it for its identity, initializes it, makes its
/// objects and asks its encoders and decoders what they offer, so that a module that ends or hangs its process does so
/// there. Gives false and the reason, with the call, if the module is not usable.
///
/// The child is a fork of this process: call this before other threads are busy in the dynamic loader.
/// @param p_milliseconds  how long the module may take
bool_t probePlugin(const String& p_path, String& p_reason, uint32_t p_milliseconds = 30000);

} // namespace zyr
