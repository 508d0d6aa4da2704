#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/memory/zyr_power_of_two.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/serialization/zyr_serializer.h"
#include "zyr_common/serialization/zyr_serializer_reserved.h"
#include "zyr_common/storage/zyr_file_format_header.h"
#include "zyr_common/storage/zyr_load_save.h"
#include "zyr_common/storage/zyr_payload_wrapper.h"
#include "zyr_common/storage/zyr_replacing_file.h"
#include "zyr_common/storage/zyr_stored_path.h"

namespace zyr {

namespace {

/// What ends a save, in the order of the steps.
enum class SaveFailure { NONE, NO_SERIALIZER, NOT_INITIALIZED, BAD_OBJECT };

/// The texts of the lines; the word of the first is the format.
constexpr const char* NO_SERIALIZER_TEXT = "Unable to find serializer for format: %s";
constexpr const char* NOT_INITIALIZED_TEXT = "The serializer cannot be initialized: bad internal state";
constexpr const char* BAD_OBJECT_TEXT = "The object cannot be serialized into data: bad object content";

/// Whether a serializer of this system's own has nothing open, which an object may have begun and not ended, and an
/// output, whose end may have found no memory. Nothing is known of others.
bool_t isWhole(ISerializer* p_serializer) {
    return zyr_findReserved(p_serializer) == nullptr ||
           (!p_serializer->endStructure() && p_serializer->getDataSize() != 0);
}

/// A serializer for the time of one save.
class SaveRun {
public:
    SaveRun() = default;
    ~SaveRun() {
        if (m_serializer != nullptr) {
            if (m_initialized) {
                m_serializer->deinitialize();
            }
            m_serializer->release();
        }
    }
    SaveRun(const SaveRun&) = delete;
    SaveRun& operator=(const SaveRun&) = delete;

    SaveFailure run(IObject* p_object, const String& p_format, bool_t p_writeDeferredFiles, const String& p_directory);
    bool_t makeWrapper(uint8_t (&p_wrapper)[c_payloadWrapperSize]) const {
        if (!m_serializer->isBinaryFormat()) {
            return 0;
        }
        zyr_makePayloadWrapper(p_wrapper, m_serializer->getClassName(), m_serializer->getData(),
                               m_serializer->getDataSize());
        return 1;
    }

    ISerializer* m_serializer = nullptr;

private:
    bool_t m_initialized = 0;
};

SaveFailure SaveRun::run(IObject* p_object, const String& p_format, bool_t p_writeDeferredFiles,
                         const String& p_directory) {
    m_serializer = zyr_getSerializerFromFileFormat(p_format);
    if (m_serializer == nullptr) {
        return SaveFailure::NO_SERIALIZER;
    }
    m_initialized = m_serializer->initialize();
    if (!m_initialized) {
        return SaveFailure::NOT_INITIALIZED;
    }
    m_serializer->setBaseDirectory(p_directory);
    m_serializer->setWritingDeferredFiles(p_writeDeferredFiles);
    FileFormatHeader header;
    header.m_format = p_format;
    const bool_t written =
        zyr_getTopSerializer(m_serializer)->writeHeaderAndObjectToFile(header, p_object) && isWhole(m_serializer);
    return written ? SaveFailure::NONE : SaveFailure::BAD_OBJECT;
}

/// Smaller outputs are copied: their block is larger than they need.
constexpr size_t GIVEN_SIZE = 64 << 10;

/// Whether the array is as new and one of this module, so that nothing that its owner has set is lost when it gets
/// another block. Arrays have no getter for their allocator; their layout is a contract.
bool_t isNew(const Array<unsigned char>& p_array) {
    const Array<unsigned char> fresh;
    const char* bytes = reinterpret_cast<const char*>(&p_array);
    const char* expected = reinterpret_cast<const char*>(&fresh);
    constexpr size_t TABLE = sizeof(void*);
    constexpr size_t STATE = sizeof(RefCountedData);
    return memcmp(bytes, expected, TABLE) == 0 && memcmp(bytes + STATE, expected + STATE, sizeof(fresh) - STATE) == 0;
}

/// Gives the serializer's own block to the array, which then is as if the bytes had been appended to it. Gives 0, with
/// nothing changed, where they must be copied.
bool_t takeOutput(ISerializer* p_serializer, Array<unsigned char>& p_data, const uint8_t* p_wrapper,
                  size_t p_wrapperSize) {
    const size_t size = p_wrapperSize + p_serializer->getDataSize();
    ISerializerReserved* reserved = zyr_findReserved(p_serializer);
    if (size < GIVEN_SIZE || reserved == nullptr || !isNew(p_data)) {
        return 0;
    }
    const size_t capacity = zyr_getNearestPowerOfTwo(size);
    void* block = reserved->giveOutput(p_serializer->getData(), p_wrapperSize, capacity);
    if (block == nullptr) {
        return 0;
    }
    memcpy(block, p_wrapper, p_wrapperSize);
    p_data.bindInitialData(block, capacity);
    return p_data.resize(size);
}

} // namespace

bool_t zyr_saveToData(IObject* p_object, Array<unsigned char>& p_data, const String& p_format,
                      bool_t p_writeDeferredFiles, const String& p_directory) {
    if (zyr_getApplicationData() == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot save file format %s to data", p_format.getData());
        return 0;
    }
    SaveRun save;
    switch (save.run(p_object, p_format, p_writeDeferredFiles, zyr_getBaseDirectoryOrCurrent(p_directory))) {
    case SaveFailure::NONE:
        break;
    case SaveFailure::NO_SERIALIZER:
        ZYR_LOG_WARN(NO_SERIALIZER_TEXT, p_format.getData());
        return 0;
    case SaveFailure::NOT_INITIALIZED:
        ZYR_LOG_WARN(NOT_INITIALIZED_TEXT);
        return 0;
    case SaveFailure::BAD_OBJECT:
        ZYR_LOG_WARN(BAD_OBJECT_TEXT);
        return 0;
    }
    uint8_t wrapper[c_payloadWrapperSize] = {};
    const size_t wrapperSize = save.makeWrapper(wrapper) ? sizeof(wrapper) : 0;
    if (!takeOutput(save.m_serializer, p_data, wrapper, wrapperSize)) {
        const size_t oldSize = p_data.getSize();
        const size_t size = save.m_serializer->getDataSize();
        p_data.pushBackRange(wrapper, wrapperSize);
        p_data.pushBackRange(save.m_serializer->getData(), size);
        if (p_data.getSize() != oldSize + wrapperSize + size) { // It can't grow.
            p_data.resize(oldSize);
            ZYR_LOG_WARN(BAD_OBJECT_TEXT);
            return 0;
        }
    }
    return 1;
}

bool_t zyr_saveToFile(IObject* p_object, const String& p_path, const String& p_format, bool_t p_writeDeferredFiles,
                      const String& p_directory) {
    if (zyr_getApplicationData() == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot export file format %s to file %s", p_format.getData(),
                     p_path.getData());
        return 0;
    }
    const String directory = zyr_getBaseDirectoryOrCurrent(p_directory);
    const String path = zyr_resolvePath(p_path, directory);
    const String format = p_format.isEmpty() ? zyr_getFormatFromPath(path) : p_format;
    SaveRun save;
    switch (save.run(p_object, format, p_writeDeferredFiles, directory)) {
    case SaveFailure::NONE:
        break;
    case SaveFailure::NO_SERIALIZER:
        ZYR_LOG_WARN(NO_SERIALIZER_TEXT, format.getData());
        return 0;
    case SaveFailure::NOT_INITIALIZED:
        ZYR_LOG_WARN(NOT_INITIALIZED_TEXT);
        return 0;
    case SaveFailure::BAD_OBJECT:
        ZYR_LOG_WARN(BAD_OBJECT_TEXT);
        return 0;
    }
    IOutputStreamFile* outputStreamFile = zyr_createObject<IOutputStreamFile>();
    ZYR_ASSERT(outputStreamFile != NULL);
    ReplacingFile file(outputStreamFile);
    if (!file.open(path)) {
        ZYR_LOG_WARN("Unable to open file: %s for writing", path.getData());
        return 0;
    }
    uint8_t wrapper[c_payloadWrapperSize];
    if ((save.makeWrapper(wrapper) && !file.write(wrapper, sizeof(wrapper))) ||
        !file.write(save.m_serializer->getData(), save.m_serializer->getDataSize()) || !file.finish()) {
        ZYR_LOG_WARN("Unable to write file: %s", path.getData());
        return 0;
    }
    return 1;
}

} // namespace zyr
