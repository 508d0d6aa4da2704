#include "zyr_common/application/zyr_format_registries.h"

#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_base_path.h"

namespace zyr {

namespace {

const String& makeKey(const String& p_format) {
    return p_format;
}

Pair<GUID_t, String> makeKey(const GUID_t& p_guid, const String& p_format) {
    return Pair<GUID_t, String>(p_guid, p_format);
}

// Puts the callback in front of the list of each word. The key of a word is made of p_guid, if there is one, and the
// word.
template <typename Map, typename Callback, typename... GUID>
void addCallback(ApplicationData* p_data, Map& p_map, const String& p_formats, Callback p_callback,
                 const GUID&... p_guid) {
    List<String> formats;
    p_formats.parseCsvString(',', formats);
    const ScopedWriteLock lock(p_data->m_formatLock);
    for (const String& format : formats) {
        List<Callback>* callbacks = nullptr;
        auto it = p_map.find(makeKey(p_guid..., format));
        if (it != p_map.end()) {
            callbacks = it->m_second;
        } else {
            callbacks = new List<Callback>();
            p_map.pushFront(makeKey(p_guid..., format), callbacks, nullptr);
        }
        callbacks->pushFront(p_callback);
    }
}

// Gives the callback in use; false when there is none.
template <typename Map, typename Key, typename Callback>
bool_t findCallback(ApplicationData* p_data, const Map& p_map, const Key& p_key, Callback& p_callback) {
    const ScopedReadLock lock(p_data->m_formatLock);
    auto it = p_map.findConst(p_key);
    bool_t found = it != p_map.endConst() && !it->m_second->isEmpty();
    if (found) {
        p_callback = it->m_second->front();
    }
    return found;
}

String makeAbsolutePath(const String& p_path) {
    return zyr_resolvePath(p_path, p_path.isAbsolutePath() ? String() : zyr_getBaseDirectoryOrCurrent(String()));
}

} // namespace

void zyr_addCompressDataCallback(const String& p_formats, compressData_FUNC p_callback) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot add compressData callback for formats: %s", p_formats.getData());
        return;
    }
    addCallback(data, data->m_compressDataCallbacks, p_formats, p_callback);
}

void zyr_addDecompressDataCallback(const String& p_formats, decompressData_FUNC p_callback) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot add decompressData callback for formats: %s",
                     p_formats.getData());
        return;
    }
    addCallback(data, data->m_decompressDataCallbacks, p_formats, p_callback);
}

void zyr_addImportFromDataCallback(const GUID_t& p_guid, const String& p_formats, importFromData_FUNC p_callback) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot add loadFromData callback for formats: %s", p_formats.getData());
        return;
    }
    addCallback(data, data->m_importFromDataCallbacks, p_formats, p_callback, p_guid);
}

void zyr_addExportToDataCallback(const GUID_t& p_guid, const String& p_formats, exportToData_FUNC p_callback) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot add saveToData callback for formats: %s", p_formats.getData());
        return;
    }
    addCallback(data, data->m_exportToDataCallbacks, p_formats, p_callback, p_guid);
}

void zyr_addImportFromFileCallback(const GUID_t& p_guid, const String& p_formats, importFromFile_FUNC p_callback) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot add loadFromFile callback for formats: %s", p_formats.getData());
        return;
    }
    addCallback(data, data->m_importFromFileCallbacks, p_formats, p_callback, p_guid);
}

void zyr_addExportToFileCallback(const GUID_t& p_guid, const String& p_formats, exportToFile_FUNC p_callback) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot add SaveToFile callback for formats: %s", p_formats.getData());
        return;
    }
    addCallback(data, data->m_exportToFileCallbacks, p_formats, p_callback, p_guid);
}

void zyr_addSerializerFileFormat(const String& p_format, const String& p_serializer) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot add serializer %s for file format: %s", p_serializer.getData(),
                     p_format.getData());
        return;
    }
    const ScopedWriteLock lock(data->m_formatLock);
    data->m_serializerFileFormats.pushBack(p_format, p_serializer, nullptr);
}

size_t zyr_compressData(const String& p_format, const void* p_data, size_t p_size, Array<unsigned char>& p_output,
                        bool_t p_trim) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot compress data with format %s", p_format.getData());
        return 0;
    }
    compressData_FUNC compressDataCallback = nullptr;
    if (!findCallback(data, data->m_compressDataCallbacks, p_format, compressDataCallback)) {
        return 0;
    }
    ZYR_ASSERT(compressDataCallback != NULL);
    return compressDataCallback(p_data, p_size, p_output, p_trim);
}

size_t zyr_decompressData(const String& p_format, const void* p_data, size_t p_size, void* p_output,
                          size_t p_outputSize) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot decompress data with format %s", p_format.getData());
        return 0;
    }
    decompressData_FUNC decompressDataCallback = nullptr;
    if (!findCallback(data, data->m_decompressDataCallbacks, p_format, decompressDataCallback)) {
        return 0;
    }
    ZYR_ASSERT(decompressDataCallback != NULL);
    return decompressDataCallback(p_data, p_size, p_output, p_outputSize);
}

IObject* zyr_importFromData(const GUID_t& p_guid, VariableTypeEnum p_type, const Array<unsigned char>& p_data,
                            const String& p_format, IDataFormatInfo* p_formatInfo) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot import file format %s from data", p_format.getData());
        return nullptr;
    }
    importFromData_FUNC importFromDataCallback = nullptr;
    if (!findCallback(data, data->m_importFromDataCallbacks, makeKey(p_guid, p_format), importFromDataCallback)) {
        return nullptr;
    }
    ZYR_ASSERT(importFromDataCallback != NULL);
    return importFromDataCallback(p_type, p_data, p_format, p_formatInfo);
}

bool_t zyr_exportToData(const GUID_t& p_guid, IObject* p_object, Array<unsigned char>& p_data, const String& p_format,
                        const IDataFormatInfo* p_formatInfo) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot export file format %s to data", p_format.getData());
        return 0;
    }
    exportToData_FUNC exportToDataCallback = nullptr;
    if (!findCallback(data, data->m_exportToDataCallbacks, makeKey(p_guid, p_format), exportToDataCallback)) {
        return 0;
    }
    ZYR_ASSERT(exportToDataCallback != NULL);
    return exportToDataCallback(p_object, p_data, p_format, p_formatInfo);
}

IObject* zyr_importFromFile(const GUID_t& p_guid, VariableTypeEnum p_type, const String& p_path, const String& p_format,
                            IDataFormatInfo* p_formatInfo) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot import file format %s from file %s", p_format.getData(),
                     p_path.getData());
        return nullptr;
    }
    const String path = makeAbsolutePath(p_path);
    importFromFile_FUNC importFromFileCallback = nullptr;
    if (!findCallback(data, data->m_importFromFileCallbacks, makeKey(p_guid, p_format), importFromFileCallback)) {
        return nullptr;
    }
    ZYR_ASSERT(importFromFileCallback != NULL);
    return importFromFileCallback(p_type, path, p_format, p_formatInfo);
}

bool_t zyr_exportToFile(const GUID_t& p_guid, IObject* p_object, const String& p_path, const String& p_format,
                        const IDataFormatInfo* p_formatInfo) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot export file format %s to file %s", p_format.getData(),
                     p_path.getData());
        return 0;
    }
    const String path = makeAbsolutePath(p_path);
    exportToFile_FUNC exportToFileCallback = nullptr;
    if (!findCallback(data, data->m_exportToFileCallbacks, makeKey(p_guid, p_format), exportToFileCallback)) {
        return 0;
    }
    ZYR_ASSERT(exportToFileCallback != NULL);
    return exportToFileCallback(p_object, path, p_format, p_formatInfo);
}

} // namespace zyr
