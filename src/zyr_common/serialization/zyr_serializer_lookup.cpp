// The part of the format registries that makes objects: serializers and deserializers are classes of the core module.
#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/serialization/zyr_serializer.h"

namespace zyr {

namespace {

struct SerializerClass {
    const char* m_word;
    const char* m_serializerClass;
    const char* m_deserializerClass;
};

constexpr SerializerClass SERIALIZER_CLASSES[] = {
    {"raw", "RawSerializer", "RawDeserializer"},
    {"zbf", "ZbfSerializer", "ZbfDeserializer"},
    {"xml", "XmlSerializer", "XmlDeserializer"},
    {"json", "JsonSerializer", "JsonDeserializer"},
};

const SerializerClass* findSerializerClass(const String& p_word) {
    for (const SerializerClass& serializerClass : SERIALIZER_CLASSES) {
        if (p_word == serializerClass.m_word) {
            return &serializerClass;
        }
    }
    return nullptr;
}

} // namespace

ISerializer* zyr_getSerializerFromFileFormat(const String& p_format) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot get serializer from file format: %s", p_format.getData());
        return nullptr;
    }
    ISerializer* serializer = nullptr;
    const ScopedReadLock lock(data->m_formatLock);
    auto it = data->m_serializerFileFormats.find(p_format);
    if (it == data->m_serializerFileFormats.end()) {
        ZYR_LOG_WARN("Serializer not found for file format: %s", p_format.getData());
    } else if (const SerializerClass* serializerClass = findSerializerClass(it->m_second)) {
        serializer = static_cast<ISerializer*>(zyr_createObjectFromName(serializerClass->m_serializerClass));
    } else {
        ZYR_LOG_WARN("Unable to find serializer (%s) for format: %s", it->m_second.getData(), p_format.getData());
    }
    return serializer;
}

IDeserializer* zyr_getDeserializerFromFileFormat(const String& p_format) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot get deserializer from file format: %s", p_format.getData());
        return nullptr;
    }
    IDeserializer* deserializer = nullptr;
    const ScopedReadLock lock(data->m_formatLock);
    auto it = data->m_serializerFileFormats.find(p_format);
    if (it == data->m_serializerFileFormats.end()) {
        ZYR_LOG_WARN("Deserializer not found for file format: %s", p_format.getData());
    } else if (const SerializerClass* serializerClass = findSerializerClass(it->m_second)) {
        deserializer = static_cast<IDeserializer*>(zyr_createObjectFromName(serializerClass->m_deserializerClass));
    } else {
        ZYR_LOG_WARN("Unable to find deserializer (%s) for format: %s", it->m_second.getData(), p_format.getData());
    }
    return deserializer;
}

} // namespace zyr
