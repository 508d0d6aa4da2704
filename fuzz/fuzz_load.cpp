// Whole saved files of any bytes: a load ends with an object or null. The first byte chooses: bits 0 and 1 the format,
// bit 2 whether the wrapper of a binary one gets the hash that its bytes have, bit 3 whether the file is loaded from a
// disk.
#include "zyr_fuzz.h"

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/digest/zyr_xxhash.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/storage/zyr_load_save.h"

#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

using namespace zyr;

namespace {

constexpr const char* FORMATS[] = {"raw", "zbf", "xml", "json"};
constexpr uint64_t SEEDS[] = {0x9375e58bc0c5ba10, 0xf3e031aa0b4b71ac};
constexpr size_t WRAPPER_SIZE = 32;

/// Loads from a file in memory.
IObject* loadFile(const std::string& p_bytes, const char* p_format) {
    const int file = memfd_create("load", MFD_CLOEXEC);
    zyr_fuzz::require(file >= 0 && write(file, p_bytes.data(), p_bytes.size()) == static_cast<ssize_t>(p_bytes.size()),
                      "there is room for the file");
    const std::string path = "/proc/self/fd/" + std::to_string(file);
    IObject* object = zyr_loadFromFile(path.c_str(), p_format, "/nowhere");
    close(file);
    return object;
}

IObject* loadData(const std::string& p_bytes, const char* p_format) {
    Array<unsigned char> data;
    data.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, 1);
    data.pushBackRange(p_bytes.data(), p_bytes.size());
    return zyr_loadFromData(data, p_format, "/nowhere");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* p_data, size_t p_size) {
    if (p_size == 0) {
        return 0;
    }
    zyr_fuzz::getFramework(true);
    std::string bytes(reinterpret_cast<const char*>(p_data) + 1, p_size - 1);
    const size_t format = p_data[0] % 4;
    if (format < 2 && (p_data[0] & 4) != 0 && bytes.size() > WRAPPER_SIZE) {
        const uint64_t hash = zyr_xxHash64(bytes.data() + WRAPPER_SIZE, bytes.size() - WRAPPER_SIZE, SEEDS[format]);
        memcpy(bytes.data() + 16, &hash, sizeof(hash));
    }
    const bool fromFile = (p_data[0] & 8) != 0;
    const auto object =
        Ref<IObject>::adopt(fromFile ? loadFile(bytes, FORMATS[format]) : loadData(bytes, FORMATS[format]));
    return 0;
}
