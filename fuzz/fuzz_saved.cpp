// A deserializer on any bytes, which are what lies in a saved file, of a binary format without the wrapper: it ends,
// and an object that comes of them is stored to bytes from which it comes again. One program for each format.
#include "zyr_fuzz.h"

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/serialization/zyr_serializer.h"
#include "zyr_common/storage/zyr_file_format_header.h"
#include "zyr_common/storage/zyr_load_save.h"

#include <string>

using namespace zyr;

namespace {

/// Null where the bytes are no saved object.
Ref<IObject> read(const uint8_t* p_data, size_t p_size) {
    const auto object = Ref<IObject>::adopt(zyr_createObjectFromName(ZYR_FUZZ_PREFIX "Deserializer"));
    IDeserializer* deserializer = static_cast<IDeserializer*>(object.get());
    FileFormatHeader header;
    IObject* read = nullptr;
    bool_t found = 0;
    if (!deserializer->initialize(p_data, p_size)) {
        return {};
    }
    deserializer->setBaseDirectory("/nowhere");
    const bool_t done = deserializer->readHeaderFromFile(found, header) && found &&
                        deserializer->readSingleObject("fileObject", found, &read, String::getConstEmpty()) && found;
    auto result = Ref<IObject>::adopt(read);
    zyr_fuzz::require(!done || result, "what was read whole is an object");
    return done ? Ref<IObject>::share(result.get()) : Ref<IObject>();
}

/// Empty where the object can't be saved.
std::string save(IObject* p_object) {
    Array<unsigned char> data;
    data.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE);
    return zyr_saveToData(p_object, data, ZYR_FUZZ_WORD, 0, "/nowhere")
               ? std::string(reinterpret_cast<const char*>(data.getData()), data.getSize())
               : std::string();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* p_data, size_t p_size) {
    zyr_fuzz::getFramework(true);
    const Ref<IObject> object = read(p_data, p_size);
    if (!object) {
        return 0;
    }
    const std::string saved = save(object.get());
    if (saved.empty()) {
        return 0;
    }
    const size_t wrapper = std::string(ZYR_FUZZ_WORD) == "raw" || std::string(ZYR_FUZZ_WORD) == "zbf" ? 32 : 0;
    const Ref<IObject> again = read(reinterpret_cast<const uint8_t*>(saved.data()) + wrapper, saved.size() - wrapper);
    zyr_fuzz::require(static_cast<bool>(again), "what was saved is read");
    zyr_fuzz::require(save(again.get()) == saved, "what was read again is saved to the same bytes");
    return 0;
}
