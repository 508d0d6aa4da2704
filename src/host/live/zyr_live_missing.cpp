// In place of all the others where X's libraries are missing.
#include "host/zyr_command_line.h"
#include "host/zyr_run_error.h"

namespace zyr::host {

namespace {

[[noreturn]] void refuse() {
    throw RunError("this program was built without libxcb, which live screens need");
}

} // namespace

int runServe(const ServeOptions&) {
    refuse();
}

int runView(const ViewOptions&) {
    refuse();
}

} // namespace zyr::host
