// The parts of ISerializer and IDeserializer that write and read whole objects.
#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/formats/zyr_stored_objects.h"
#include "zyr_common/memory/zyr_memory.h"
#include "zyr_common/serialization/zyr_single_objects.h"
#include "zyr_common/storage/zyr_load_nesting.h"
#include "zyr_common/storage/zyr_load_save.h"
#include "zyr_common/storage/zyr_stored_path.h"

namespace zyr {

namespace {

template <class Interface> bool isA(const IObject* p_object) {
    return p_object->findClassGUID(zyr_getInterfaceGUID<Interface>());
}

/// The format word of a serializer or deserializer by its class name.
String getFormatWord(const String& p_className) {
    static constexpr struct {
        const char* m_prefix;
        const char* m_word;
    } FORMATS[] = {{"Raw", "raw"}, {"Zbf", "zbf"}, {"Xml", "xml"}, {"Json", "json"}};
    for (const auto& format : FORMATS) {
        const String prefix(format.m_prefix);
        if (p_className == prefix + "Serializer" || p_className == prefix + "Deserializer") {
            return format.m_word;
        }
    }
    return String();
}

/// The word of the template argument in a type name.
String getBracedPart(const String& p_typeName) {
    return p_typeName.parseBracketsString('{', '}', nullptr);
}

/// An object while it is written on this thread. One that holds itself, without a container that would count, would
/// be written for ever.
class WrittenObject {
public:
    explicit WrittenObject(const IObject* p_object);
    ~WrittenObject();
    WrittenObject(const WrittenObject&) = delete;
    WrittenObject& operator=(const WrittenObject&) = delete;

    /// False after a line, when the object is inside itself. Looked at only where objects are nested deeply.
    bool_t isFirst() const { return m_isFirst; }

private:
    static constexpr uint32_t USUAL_DEPTH = 64;

    const IObject* m_object;
    const WrittenObject* m_outer;
    uint32_t m_depth;
    bool_t m_isFirst = 1;
};

// Not a member: another unit would reach it through a symbol that modules share.
thread_local const WrittenObject* s_innermost = nullptr;

WrittenObject::WrittenObject(const IObject* p_object)
    : m_object(p_object), m_outer(s_innermost), m_depth(m_outer == nullptr ? 1 : m_outer->m_depth + 1) {
    s_innermost = this;
    const WrittenObject* outer = m_depth > USUAL_DEPTH ? m_outer : nullptr;
    while (outer != nullptr && outer->m_object != p_object) {
        outer = outer->m_outer;
    }
    if (outer != nullptr) {
        m_isFirst = 0;
        ZYR_LOG_WARN("Unable to write %s: it holds itself", p_object->getClassName().getData());
    }
}

WrittenObject::~WrittenObject() {
    s_innermost = m_outer;
}

bool_t declareObject(ISerializer* p_serializer, IObject* p_object) {
    const WrittenObject written(p_object);
    if (!written.isFirst()) {
        return 0;
    }
    bool_t result = 1;
    return p_serializer->beginHeaderStructure(p_object->getClassName()) &&
           p_object->writeSerialized(p_serializer, 1, result) && p_serializer->endHeaderStructure();
}

/// Saves the object where its deferred file says. It has no deferred file for the time of the call.
bool_t saveDeferredObject(const ISerializer* p_serializer, IObject* p_object, const String& p_deferredFile) {
    p_object->setDeferredFile(String::getConstEmpty());
    const String path = zyr_resolvePath(p_deferredFile, p_serializer->getBaseDirectory());
    const bool_t saved = zyr_saveToFile(p_object, path, String(), 1, path.getDirectoryPath());
    p_object->setDeferredFile(p_deferredFile);
    return saved;
}

/// Fills the stand-in with the object's own bytes in the serializer's format. The object has no compression info for
/// the time of the call.
bool_t compressObject(const ISerializer* p_serializer, IObject* p_object, ICompressionInfo* p_info,
                      ICompressedObject* p_compressed) {
    p_object->setCompressionInfo(nullptr);
    Array<unsigned char> data;
    data.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE);
    const bool_t saved = zyr_saveToData(p_object, data, getFormatWord(p_serializer->getClassName()),
                                        p_serializer->isWritingDeferredFiles(), p_serializer->getBaseDirectory()) &&
                         zyr_compressData(p_info->getFormatName(), data.getData(), data.getSize(),
                                          *p_compressed->getMutableCompressedData(), 1) != 0;
    if (saved) {
        p_info->setDecompressSize(data.getSize());
        p_compressed->setCompressionInfo(p_info);
    }
    p_object->setCompressionInfo(p_info);
    return saved;
}

/// Creates the object that the entered one asks for; null if its class is not known.
IObject* createStoredObject(const IDeserializer* p_deserializer, const String& p_defaultTypeName) {
    IObject* object = nullptr;
    const String& typeName = p_deserializer->getCurrentObjectTypeName();
    const String& guidText = p_deserializer->getCurrentObjectGUIDText();
    if (!guidText.isEmpty()) {
        const GUID_t guid = GUID_t_fromString(guidText.getData());
        const String argument = getBracedPart(typeName);
        object = zyr_createObjectFromGUIDAndTypeName(guid, argument);
        if (object == nullptr && !p_defaultTypeName.isEmpty()) {
            const String defaultArgument = getBracedPart(p_defaultTypeName);
            if (defaultArgument != argument) {
                object = zyr_createObjectFromGUIDAndTypeName(guid, defaultArgument);
            }
        }
    }
    if (object == nullptr && !typeName.isEmpty()) {
        object = zyr_createObjectFromName(typeName);
    }
    if (object != nullptr && !isA<IDeferredFileObject>(object) && !isA<ICompressedObject>(object) &&
        !isA<IObject>(object)) {
        object->release();
        object = nullptr;
    }
    return object;
}

/// Replaces a stand-in by the object in its file. Null on failure.
bool_t loadDeferredObject(const IDeserializer* p_deserializer, IObject** p_object) {
    IDeferredFileObject* standIn = static_cast<IDeferredFileObject*>(*p_object);
    const String path = zyr_resolvePath(standIn->getFilePath(), p_deserializer->getBaseDirectory());
    IObject* loaded = zyr_loadFromFile(path, String(), path.getDirectoryPath());
    if (loaded != nullptr && !isA<IObject>(loaded)) {
        loaded->release();
        loaded = nullptr;
    }
    if (loaded != nullptr) {
        loaded->setDeferredFile(standIn->getFilePath());
        loaded->setDeferredFileReadOnly(standIn->isReadOnly());
    }
    standIn->release();
    *p_object = loaded;
    return loaded != nullptr;
}

/// Unpacks into a block that the caller frees, which is null for a size of 0: the compressor has the say then, too.
/// False on failure. A size that the packed bytes can't have come from is refused before anything is allocated.
bool_t decompress(const ICompressedObject* p_standIn, const ICompressionInfo* p_info, size_t p_size, uint8_t*& p_data) {
    const Array<unsigned char>* packed = p_standIn->getCompressedData();
    if (!LoadNesting::takeDecompressedSize(p_info->getFormatName(), packed->getSize(), p_size)) {
        return 0;
    }
    p_data = p_size != 0 ? static_cast<uint8_t*>(zyr_tryMalloc(p_size)) : nullptr;
    if (p_data == nullptr && p_size != 0) {
        return 0;
    }
    if (zyr_decompressData(p_info->getFormatName(), packed->getData(), packed->getSize(), p_data, p_size) != p_size) {
        zyr_free(p_data);
        return 0;
    }
    return 1;
}

} // namespace

template <> bool_t ISerializer::writeHeaderSingleObject(const String& p_name, IObject* p_object, bool_t& p_result) {
    p_result = 1;
    if (p_object != nullptr) {
        ICompressionInfo* info = p_object->getCompressionInfo(1);
        if (p_object->getDeferredFile() != nullptr && !isA<IDeferredFileObject>(p_object)) {
            IDeferredFileObject* deferredFileObject = zyr_createObject<IDeferredFileObject>();
            ZYR_ASSERT(deferredFileObject != NULL);
            p_result = declareObject(this, deferredFileObject);
            deferredFileObject->release();
        } else if (info != nullptr && !isA<ICompressedObject>(p_object)) {
            ICompressedObject* compressedObject = zyr_createObject<ICompressedObject>();
            ZYR_ASSERT(compressedObject != NULL);
            compressedObject->setCompressionInfo(info);
            p_result = declareObject(this, compressedObject);
            compressedObject->setCompressionInfo(nullptr);
            compressedObject->release();
        } else {
            p_result = declareObject(this, p_object);
        }
        if (info != nullptr) {
            info->release();
        }
    }
    p_result = p_result && writeHeaderField(p_name, ZYR_HEADER_FIELD_OBJECT, 0, String::getConstEmpty());
    return p_result;
}

template <> bool_t ISerializer::writeSingleObject(const String& p_name, IObject* p_object) {
    if (p_object == nullptr) {
        return writeNullObject(p_name);
    }
    if (p_object->getDeferredFile() != nullptr && !isA<IDeferredFileObject>(p_object)) {
        // A copy: an object may keep its text and only empty it.
        const String deferredFile(*p_object->getDeferredFile());
        IDeferredFileObject* deferredFileObject = zyr_createObject<IDeferredFileObject>();
        ZYR_ASSERT(deferredFileObject != NULL);
        deferredFileObject->setFilePath(deferredFile);
        deferredFileObject->setReadOnly(p_object->isDeferredFileReadOnly());
        const bool_t written = writeSingleObject<IDeferredFileObject>(p_name, deferredFileObject);
        deferredFileObject->release();
        if (!written || !isWritingDeferredFiles() || p_object->isDeferredFileReadOnly()) {
            return written;
        }
        return saveDeferredObject(this, p_object, deferredFile);
    }
    ICompressionInfo* info = p_object->getCompressionInfo(1);
    if (info != nullptr && !isA<ICompressedObject>(p_object)) {
        ICompressedObject* compressedObject = zyr_createObject<ICompressedObject>();
        ZYR_ASSERT(compressedObject != NULL);
        const bool_t written = compressObject(this, p_object, info, compressedObject) &&
                               writeSingleObject<ICompressedObject>(p_name, compressedObject);
        compressedObject->release();
        info->release();
        return written;
    }
    if (info != nullptr) {
        info->release();
    }
    const WrittenObject written(p_object);
    if (!written.isFirst()) {
        return 0;
    }
    bool_t result = 1;
    if (!beginObject(p_name, p_object->getClassName(), String::newFromGUID(p_object->getClassGUID()))) {
        return 0;
    }
    result = p_object->writeSerialized(this, 0, result);
    return endObject() && result;
}

template <>
bool_t IDeserializer::readSingleObject(const String& p_name, bool_t& p_found, IObject** p_object,
                                       const String& p_defaultTypeName) {
    *p_object = nullptr;
    if (!enterObject(p_name, p_found)) {
        return 0;
    }
    if (!p_found) {
        return 1;
    }
    IObject* object = createStoredObject(this, p_defaultTypeName);
    if (object == nullptr && p_defaultTypeName.isEmpty()) {
        p_found = 0;
        return leaveObject();
    }
    if (object == nullptr) {
        object = zyr_createObjectFromName(p_defaultTypeName);
        ZYR_ASSERT(object != NULL);
    }
    *p_object = object;
    const ObjectNesting nesting;
    const bool_t done = object->readSerialized(this);
    if (!leaveObject() || !done) {
        return 0;
    }
    if (!isA<IDeferredFileObject>(object) && !isA<ICompressedObject>(object)) {
        return 1;
    }
    const SharedBudget budget(this);
    if (isA<IDeferredFileObject>(object)) {
        p_found = loadDeferredObject(this, p_object);
        return p_found;
    }
    ICompressedObject* standIn = static_cast<ICompressedObject*>(object);
    *p_object = nullptr;
    p_found = 0;
    ICompressionInfo* info = standIn->getCompressionInfo(0);
    if (info == nullptr) {
        standIn->release();
        return 0;
    }
    const size_t size = info->getDecompressSize();
    uint8_t* data = nullptr;
    if (!decompress(standIn, info, size, data)) {
        ZYR_LOG_WARN("The object cannot be deserialized from data in %s: unable to decompress data",
                     info->getFormatName().getData());
        standIn->release();
        return 0;
    }
    Array<unsigned char> bytes;
    if (size != 0) {
        bytes.bindFixedSizeData(data, size);
    }
    IObject* loaded = zyr_loadFromData(bytes, getFormatWord(getClassName()), getBaseDirectory());
    zyr_free(data);
    if (loaded != nullptr && !isA<IObject>(loaded)) {
        loaded->release();
        loaded = nullptr;
    }
    if (loaded == nullptr) {
        ZYR_LOG_WARN("The object cannot be deserialized from data in %s: file object is null",
                     info->getFormatName().getData());
    } else {
        loaded->setCompressionInfo(info);
    }
    standIn->release();
    *p_object = loaded;
    p_found = loaded != nullptr;
    return p_found;
}

} // namespace zyr
