/// The signatures under which compressors, decompressors, importers and exporters are registered.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// Compresses p_size bytes into p_output, which takes at least the compressed size, and exactly that with p_trim. Gives
/// the compressed size, 0 on failure.
typedef size_t (*compressData_FUNC)(const void* p_data, size_t p_size, Array<unsigned char>& p_output, bool_t p_trim);

/// Decompresses p_size bytes into p_output, which has room for p_outputSize bytes. Gives the decompressed size, 0 on
/// failure.
typedef size_t (*decompressData_FUNC)(const void* p_data, size_t p_size, void* p_output, size_t p_outputSize);

/// Makes an object from data in the given format. The caller takes the object; null on failure.
typedef IObject* (*importFromData_FUNC)(VariableTypeEnum p_type, const Array<unsigned char>& p_data,
                                        const String& p_format, IDataFormatInfo* p_formatInfo);

/// Writes an object as data in the given format.
typedef bool_t (*exportToData_FUNC)(IObject* p_object, Array<unsigned char>& p_data, const String& p_format,
                                    const IDataFormatInfo* p_formatInfo);

/// Makes an object from a file, whose path is absolute. The caller takes the object; null on failure.
typedef IObject* (*importFromFile_FUNC)(VariableTypeEnum p_type, const String& p_path, const String& p_format,
                                        IDataFormatInfo* p_formatInfo);

/// Writes an object to a file, whose path is absolute.
typedef bool_t (*exportToFile_FUNC)(IObject* p_object, const String& p_path, const String& p_format,
                                    const IDataFormatInfo* p_formatInfo);

} // namespace zyr
