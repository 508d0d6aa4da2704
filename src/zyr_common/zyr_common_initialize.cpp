#include "zyr_common/zyr_common_initialize.h"

#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/digest/zyr_compression.h"
#include "zyr_common/geometry/zyr_path2d_command.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"

#include <csignal>

namespace zyr {

/// The float and double form of each.
template <template <typename> class... Commands> static void addPathCommands() {
    ((zyr_addUnknownVariableAllocator<Commands<float>>(), zyr_addUnknownVariableAllocator<Commands<double>>()), ...);
}

bool_t commonInitialize(ApplicationData* p_applicationData) {
    if (p_applicationData == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot initialize component module: common");
        return 0;
    }
    zyr_setMainThreadId(zyr_getCurrentThreadId());
    zyr_setApplicationData(p_applicationData);
    addPathCommands<Path2DCommand, MoveToPath2DCommand, LineToPath2DCommand, CurveToPath2DCommand, SmoothPath2DCommand,
                    QuadCurveToPath2DCommand, QuadSmoothPath2DCommand, ArcPath2DCommand, ClosePath2DCommand>();
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
