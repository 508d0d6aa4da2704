#include "host/zyr_console.h"

#include <filesystem>

namespace zyr::host {

std::string explainEmptyConsole() {
    namespace fs = std::filesystem;
    const char* reason = fs::exists("/run/systemd/seats/seat0") ? "no user's session is active on seat0"
                         : fs::exists("/run/systemd/seats")     ? "there is no seat0 on this machine"
                                                                : "systemd-logind is not running";
    return std::string(reason) + ", and there is no display manager's account";
}

} // namespace zyr::host
