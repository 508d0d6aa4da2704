// SVG paths: what the check lets pass is read whole, and so is the outline that is made of it. Texts that it refuses
// are not read, since the reader stands still where a command is missing.
#include "zyr_fuzz.h"

#include "host/zyr_path_check.h"
#include "host/zyr_path_outline.h"

#include <stdexcept>

using namespace zyr;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* p_data, size_t p_size) {
    zyr_fuzz::getFramework(true);
    const std::string text(reinterpret_cast<const char*>(p_data), p_size);
    try {
        host::checkPath(text);
    } catch (const host::PathError&) {
        return 0;
    }
    Path2D<double> path;
    path.pushBackSVGPath(String(text.c_str()));
    host::PathOutline outline;
    try {
        outline = host::resolveOutline(path);
    } catch (const std::range_error&) {
        return 0;
    }
    // What is shown can be read again.
    Path2D<double> again;
    host::checkPath(outline.m_text);
    again.pushBackSVGPath(String(outline.m_text.c_str()));
    zyr_fuzz::require(path.getCommands().getSize() == again.getCommands().getSize(),
                      "the outline has as many commands as the path");
    return 0;
}
