/// What a plug-in module does before its first frame, tried where a crash does no harm.
#pragma once

#include "core_module/plugins/zyr_plugin_exports.h"

namespace zyr {

class ApplicationData;

/// The call that is under way, in memory that outlives the process which makes it. Empty: the module is being loaded.
struct RehearsalStep {
    char m_text[160];

    /// "CALL" or "CALL of CLASS".
    void set(const char* p_call, const char* p_class = nullptr);
};

/// Initializes a loaded module, makes an object of each class that it registers, and asks its encoders and decoders
/// what works here. Meant for a child process: nothing of it is taken back. What only fails is not told: the real start
/// does so again.
void rehearsePlugin(const PluginExports& p_exports, ApplicationData& p_applicationData, RehearsalStep& p_step);

} // namespace zyr
