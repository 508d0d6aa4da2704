#include "zyr_common/zyr_common_initialize.h"

#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/digest/zyr_compression.h"
#include "zyr_common/memory/zyr_report.h"

#include <csignal>

namespace zyr {

bool_t commonInitialize(ApplicationData* p_applicationData) {
    if (p_applicationData == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot initialize component module: common");
        return 0;
    }
    zyr_setMainThreadId(zyr_getCurrentThreadId());
    zyr_setApplicationData(p_applicationData);
    zyr_addCompressDataCallback("lz4", &compressLZ4);
    zyr_addDecompressDataCallback("lz4", &decompressLZ4);
    zyr_addCompressDataCallback("zip", &compressZIP);
    zyr_addDecompressDataCallback("zip", &decompressZIP);
    // A peer that closes its end of a pipe or socket is told by the write that fails, not by a signal.
    signal(SIGPIPE, SIG_IGN);
    p_applicationData->m_deinitializeFunctions.pushFront(&commonDeinitialize);
    return 1;
}

void commonDeinitialize() {
    if (zyr_getApplicationData() == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot deinitialize module: common");
    }
}

} // namespace zyr
