#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/memory/zyr_memory.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/serialization/zyr_single_objects.h"
#include "zyr_common/storage/zyr_file_format_header.h"
#include "zyr_common/storage/zyr_load_nesting.h"
#include "zyr_common/storage/zyr_load_save.h"
#include "zyr_common/storage/zyr_payload_wrapper.h"
#include "zyr_common/storage/zyr_stored_path.h"
#include "zyr_common/streams/zyr_file_stream.h"

namespace zyr {

namespace {

/// What ends a load.
enum class LoadFailure {
    NONE,
    NOT_ENOUGH_DATA,
    WRONG_BINARY_FORMAT,
    BAD_IDENTIFIER,
    CORRUPTED,
    NOT_INITIALIZED,
    NO_HEADER,
    OTHER_FORMAT,
    BAD_OBJECT
};

constexpr const char* NO_DESERIALIZER_TEXT = "Unable to find deserializer for format: %s";
constexpr const char* NO_HEADER_TEXT = "The file header cannot be deserialized from data: bad data format";
constexpr const char* OTHER_FORMAT_TEXT = "The file format: %s doesn't match the requested format: %s";

/// Where the bytes come from.
class LoadSource {
public:
    virtual ~LoadSource() = default;
    virtual uint64_t getSize() const = 0;
    virtual bool_t read(void* p_data, uint64_t p_size) = 0;
    /// The next bytes where they are, as long as the load lasts; null where they must be read.
    virtual const uint8_t* look() const = 0;
};

class FileSource final : public LoadSource {
public:
    explicit FileSource(IInputStreamFile* p_stream) : m_stream(p_stream) {}
    uint64_t getSize() const override { return m_stream->getFileSize(); }
    bool_t read(void* p_data, uint64_t p_size) override { return m_stream->readBytes(p_data, p_size) == p_size; }
    const uint8_t* look() const override { return nullptr; }

private:
    IInputStreamFile* m_stream;
};

class MemorySource final : public LoadSource {
public:
    explicit MemorySource(const Array<unsigned char>& p_data) : m_data(p_data) {}
    uint64_t getSize() const override { return m_data.getSize(); }
    bool_t read(void* p_data, uint64_t p_size) override {
        if (p_size != 0) {
            memcpy(p_data, m_data.getData() + m_position, p_size);
        }
        m_position += p_size;
        return 1;
    }
    const uint8_t* look() const override { return m_data.getData() + m_position; }

private:
    const Array<unsigned char>& m_data;
    size_t m_position = 0;
};

void copyBudget(const LoadBudget& p_from, const LoadBudget& p_to) {
    if (p_from.m_bytes != nullptr && p_to.m_bytes != nullptr) {
        *p_to.m_bytes = *p_from.m_bytes;
        *p_to.m_files = *p_from.m_files;
    }
}

/// One load, from the bytes to the object.
class LoadRun {
public:
    LoadRun(IDeserializer* p_deserializer, LoadNesting& p_nesting)
        : m_deserializer(p_deserializer), m_nesting(p_nesting) {}
    ~LoadRun() {
        copyBudget(m_budget, m_nesting.getBudget());
        if (m_initialized) {
            m_deserializer->deinitialize();
        }
        zyr_free(m_buffer);
        m_deserializer->release();
    }
    LoadRun(const LoadRun&) = delete;
    LoadRun& operator=(const LoadRun&) = delete;

    LoadFailure run(LoadSource& p_source, const String& p_format, const String& p_directory);

    IObject* m_object = nullptr;
    FileFormatHeader m_header;
    /// The line of WRONG_BINARY_FORMAT.
    const char* m_mismatch = nullptr;

private:
    LoadFailure readPayload(LoadSource& p_source);
    LoadFailure readWrappedPayload(LoadSource& p_source);
    bool_t readBytes(LoadSource& p_source, uint64_t p_size);

    IDeserializer* m_deserializer;
    LoadNesting& m_nesting;
    /// The deserializer's copy of the nesting's.
    LoadBudget m_budget;
    /// What was read, null where the source has the bytes in memory.
    uint8_t* m_buffer = nullptr;
    const uint8_t* m_payload = nullptr;
    size_t m_payloadSize = 0;
    bool_t m_initialized = 0;
};

bool_t LoadRun::readBytes(LoadSource& p_source, uint64_t p_size) {
    m_payload = p_source.look();
    m_payloadSize = p_size;
    if (m_payload != nullptr) {
        return 1;
    }
    m_buffer = static_cast<uint8_t*>(zyr_tryMalloc(p_size));
    m_payload = m_buffer;
    return m_buffer != nullptr && p_source.read(m_buffer, p_size);
}

LoadFailure LoadRun::readPayload(LoadSource& p_source) {
    if (m_deserializer->isBinaryFormat()) {
        return readWrappedPayload(p_source);
    }
    const uint64_t size = p_source.getSize();
    return size == 0 || readBytes(p_source, size) ? LoadFailure::NONE : LoadFailure::NOT_ENOUGH_DATA;
}

LoadFailure LoadRun::readWrappedPayload(LoadSource& p_source) {
    uint64_t remaining = p_source.getSize();
    uint8_t identifier[c_payloadIdentifierSize];
    if (remaining < sizeof(identifier) || !p_source.read(identifier, sizeof(identifier))) {
        return LoadFailure::NOT_ENOUGH_DATA;
    }
    remaining -= sizeof(identifier);
    const PayloadFormat format = zyr_getPayloadFormat(identifier);
    m_mismatch = zyr_getPayloadMismatch(format, m_deserializer->getClassName());
    if (m_mismatch != nullptr) {
        return LoadFailure::WRONG_BINARY_FORMAT;
    }
    if (format == PayloadFormat::UNKNOWN) {
        return LoadFailure::BAD_IDENTIFIER;
    }
    uint64_t hash = 0;
    uint64_t size = 0;
    for (uint64_t* number : {&hash, &size}) {
        if (remaining < sizeof(*number) || !p_source.read(number, sizeof(*number))) {
            return LoadFailure::NOT_ENOUGH_DATA;
        }
        remaining -= sizeof(*number);
    }
    size = size < remaining ? size : remaining;
    if (size == 0 || !readBytes(p_source, size)) {
        return LoadFailure::NOT_ENOUGH_DATA;
    }
    return zyr_isPayloadIntact(format, m_payload, m_payloadSize, hash) ? LoadFailure::NONE : LoadFailure::CORRUPTED;
}

LoadFailure LoadRun::run(LoadSource& p_source, const String& p_format, const String& p_directory) {
    static const String& objectKey = makePermanent<String>("fileObject");
    const LoadFailure failure = readPayload(p_source);
    if (failure != LoadFailure::NONE) {
        return failure;
    }
    m_initialized = m_deserializer->initialize(m_payload, m_payloadSize);
    if (!m_initialized) {
        return LoadFailure::NOT_INITIALIZED;
    }
    m_budget = LoadBudget::find(m_deserializer);
    copyBudget(m_nesting.getBudget(), m_budget);
    m_deserializer->setBaseDirectory(p_directory);
    IDeserializer* deserializer = zyr_getTopDeserializer(m_deserializer);
    bool_t found = 0;
    if (!deserializer->readHeaderFromFile(found, m_header) || !found) {
        return LoadFailure::NO_HEADER;
    }
    if (!p_format.isEmpty() && p_format != m_header.m_format) {
        return LoadFailure::OTHER_FORMAT;
    }
    IObject* object = nullptr;
    if (!deserializer->readSingleObject(objectKey, found, &object, String::getConstEmpty()) || !found) {
        if (object != nullptr) {
            object->release();
        }
        return LoadFailure::BAD_OBJECT;
    }
    m_object = object;
    return LoadFailure::NONE;
}

} // namespace

IObject* zyr_loadFromFile(const String& p_path, const String& p_format, const String& p_directory) {
    if (zyr_getApplicationData() == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot import file format %s from file %s", p_format.getData(),
                     p_path.getData());
        return nullptr;
    }
    const String directory = zyr_getBaseDirectoryOrCurrent(p_directory);
    const String path = zyr_resolvePath(p_path, directory);
    LoadNesting nesting(path.getData());
    if (nesting.getObstacle() != nullptr) {
        ZYR_LOG_WARN("Unable to deserialize file: %s. %s", path.getData(), nesting.getObstacle());
        return nullptr;
    }
    const String format = p_format.isEmpty() ? zyr_getFormatFromPath(path) : p_format;
    IDeserializer* deserializer = zyr_getDeserializerFromFileFormat(format.isEmpty() ? String("zbf") : format);
    if (deserializer == nullptr) {
        ZYR_LOG_WARN(NO_DESERIALIZER_TEXT, format.getData());
        return nullptr;
    }
    Ref<IInputStreamFile> stream; // Released behind the deserializer.
    LoadRun load(deserializer, nesting);
    IInputStreamFile* inputStreamFile = zyr_createObject<IInputStreamFile>();
    ZYR_ASSERT(inputStreamFile != NULL);
    stream = Ref<IInputStreamFile>::adopt(inputStreamFile);
    if (!inputStreamFile->open(path)) {
        ZYR_LOG_WARN("Unable to open file: %s for reading", path.getData());
        return nullptr;
    }
    FileSource source(inputStreamFile);
    switch (load.run(source, format, directory)) {
    case LoadFailure::NONE:
        break;
    case LoadFailure::NOT_ENOUGH_DATA:
        ZYR_LOG_WARN("Unable to deserialize file: %s. Not enough data", path.getData());
        return nullptr;
    case LoadFailure::WRONG_BINARY_FORMAT:
        ZYR_LOG_WARN("%s", load.m_mismatch);
        return nullptr;
    case LoadFailure::BAD_IDENTIFIER:
        ZYR_LOG_WARN("Unable to deserialize file: %s. Corrupted header identifier", path.getData());
        return nullptr;
    case LoadFailure::CORRUPTED:
        ZYR_LOG_WARN("Unable to deserialize file: %s. Corrupted data", path.getData());
        return nullptr;
    case LoadFailure::NOT_INITIALIZED:
        ZYR_LOG_WARN("The deserializer cannot be initialized from loaded data: bad data content");
        return nullptr;
    case LoadFailure::NO_HEADER:
        ZYR_LOG_WARN(NO_HEADER_TEXT);
        return nullptr;
    case LoadFailure::OTHER_FORMAT:
        ZYR_LOG_WARN(OTHER_FORMAT_TEXT, load.m_header.m_format.getData(), format.getData());
        return nullptr;
    case LoadFailure::BAD_OBJECT:
        ZYR_LOG_WARN("The object cannot be deserialized from loaded data: bad data format");
        return nullptr;
    }
    IObject* rtnObject = load.m_object;
    ZYR_ASSERT(rtnObject != NULL);
    return rtnObject;
}

IObject* zyr_loadFromData(const Array<unsigned char>& p_data, const String& p_format, const String& p_directory) {
    if (zyr_getApplicationData() == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot load file format %s from data", p_format.getData());
        return nullptr;
    }
    LoadNesting nesting(p_data.getSize());
    if (nesting.getObstacle() != nullptr) {
        ZYR_LOG_WARN("Unable to deserialize data. %s", nesting.getObstacle());
        return nullptr;
    }
    IDeserializer* deserializer = zyr_getDeserializerFromFileFormat(p_format.isEmpty() ? String("zbf") : p_format);
    if (deserializer == nullptr) {
        ZYR_LOG_WARN(NO_DESERIALIZER_TEXT, p_format.getData());
        return nullptr;
    }
    LoadRun load(deserializer, nesting);
    MemorySource source(p_data);
    switch (load.run(source, p_format, zyr_getBaseDirectoryOrCurrent(p_directory))) {
    case LoadFailure::NONE:
        break;
    case LoadFailure::NOT_ENOUGH_DATA:
        ZYR_LOG_WARN("Unable to deserialize data. Not enough data");
        return nullptr;
    case LoadFailure::WRONG_BINARY_FORMAT:
        ZYR_LOG_WARN("%s", load.m_mismatch);
        return nullptr;
    case LoadFailure::BAD_IDENTIFIER:
        ZYR_LOG_WARN("Unable to deserialize data. Corrupted header identifier");
        return nullptr;
    case LoadFailure::CORRUPTED:
        ZYR_LOG_WARN("Unable to deserialize data. Corrupted data");
        return nullptr;
    case LoadFailure::NOT_INITIALIZED:
        ZYR_LOG_WARN("The deserializer cannot be initialized from data: bad data content");
        return nullptr;
    case LoadFailure::NO_HEADER:
        ZYR_LOG_WARN(NO_HEADER_TEXT);
        return nullptr;
    case LoadFailure::OTHER_FORMAT:
        ZYR_LOG_WARN(OTHER_FORMAT_TEXT, load.m_header.m_format.getData(), p_format.getData());
        return nullptr;
    case LoadFailure::BAD_OBJECT:
        ZYR_LOG_WARN("The object cannot be deserialized from data: bad data format");
        return nullptr;
    }
    IObject* rtnObject = load.m_object;
    ZYR_ASSERT(rtnObject != NULL);
    return rtnObject;
}

} // namespace zyr
