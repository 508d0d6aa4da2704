/// Formats that modules add at run time: compressors, decompressors, importers and exporters by format word, and the
/// serializer word of a file format.
///
///     zyr_addCompressDataCallback("lz4", &compressLZ4);
///     ...
///     Array<unsigned char> packed;
///     size_t size = zyr_compressData("lz4", data, dataSize, packed, 1);
///
/// Callers ask by word and don't know who serves them. The latest registration of a word is the one in use; it isn't
/// followed by earlier ones when it fails. Importers and exporters are told apart by the class GUID of the kind of
/// object that they serve, too.
///
/// A list of words is split at commas. One blank behind a comma is dropped; any other blank belongs to its word.
///
/// All functions need the application data: without it they log a line and do nothing, or give 0, false or null. They
/// are safe on any thread. A callback runs outside the registries' lock and may itself register or look up; the
/// allocators of serializers run under its read side and may not register.
#pragma once

#include "zyr_common/application/zyr_format_callbacks.h"
#include "zyr_common/zyr_types.h"

namespace zyr {

ZYR_API void zyr_addCompressDataCallback(const String& p_formats, compressData_FUNC p_callback);
ZYR_API void zyr_addDecompressDataCallback(const String& p_formats, decompressData_FUNC p_callback);
ZYR_API void zyr_addImportFromDataCallback(const GUID_t& p_guid, const String& p_formats,
                                           importFromData_FUNC p_callback);
ZYR_API void zyr_addExportToDataCallback(const GUID_t& p_guid, const String& p_formats, exportToData_FUNC p_callback);
ZYR_API void zyr_addImportFromFileCallback(const GUID_t& p_guid, const String& p_formats,
                                           importFromFile_FUNC p_callback);
ZYR_API void zyr_addExportToFileCallback(const GUID_t& p_guid, const String& p_formats, exportToFile_FUNC p_callback);

/// Registers the serializer word ("raw", "zbf", "xml" or "json") of one file format. A format that is registered keeps
/// its word.
ZYR_API void zyr_addSerializerFileFormat(const String& p_format, const String& p_serializer);

/// Gives the compressed size, 0 on failure and, in silence, for an unknown format. See compressData_FUNC.
ZYR_API size_t zyr_compressData(const String& p_format, const void* p_data, size_t p_size,
                                Array<unsigned char>& p_output, bool_t p_trim);

/// Gives the decompressed size, 0 on failure and, in silence, for an unknown format. See decompressData_FUNC.
ZYR_API size_t zyr_decompressData(const String& p_format, const void* p_data, size_t p_size, void* p_output,
                                  size_t p_outputSize);

// Import and export. An unknown pair of GUID and format gives null or false in silence. A relative path is taken
// against the working directory, and its backslashes as slashes. The caller takes the object that it gets.

ZYR_API IObject* zyr_importFromData(const GUID_t& p_guid, VariableTypeEnum p_type, const Array<unsigned char>& p_data,
                                    const String& p_format, IDataFormatInfo* p_formatInfo);
ZYR_API bool_t zyr_exportToData(const GUID_t& p_guid, IObject* p_object, Array<unsigned char>& p_data,
                                const String& p_format, const IDataFormatInfo* p_formatInfo);
ZYR_API IObject* zyr_importFromFile(const GUID_t& p_guid, VariableTypeEnum p_type, const String& p_path,
                                    const String& p_format, IDataFormatInfo* p_formatInfo);
ZYR_API bool_t zyr_exportToFile(const GUID_t& p_guid, IObject* p_object, const String& p_path, const String& p_format,
                                const IDataFormatInfo* p_formatInfo);

/// Make a new serializer or deserializer for a file format, which the caller takes. A format or a serializer word that
/// isn't known is logged and gives null.
ZYR_API ISerializer* zyr_getSerializerFromFileFormat(const String& p_format);
ZYR_API IDeserializer* zyr_getDeserializerFromFileFormat(const String& p_format);

} // namespace zyr
