/// Objects saved to files and memory, and loaded back, in any registered format.
///
///     zyr_saveToFile(object, "scene.zbf", "", 1, "");
///     IObject* again = zyr_loadFromFile("scene.zbf", "", "");
///     ...
///     again->release();
///
/// p_format is a format word ("raw", "zbf", "xml", "json" or one of zyr_addSerializerFileFormat). p_directory is the
/// base of relative paths: of the file's own and of those of deferred files; empty stands for the current working
/// directory.
///
/// All failures give null or false and one line in the log. The functions are safe on any thread for different objects
/// and files.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// Loads a file. An empty format takes what follows the last period of the path, and "zbf" where that is empty too. A
/// format that differs from the one under which the file was saved is refused. The caller releases the object.
ZYR_API IObject* zyr_loadFromFile(const String& p_path, const String& p_format, const String& p_directory);

/// The same for bytes in memory. An empty format stands for "zbf".
ZYR_API IObject* zyr_loadFromData(const Array<unsigned char>& p_data, const String& p_format,
                                  const String& p_directory);

/// Saves a file; an empty format takes what follows the last period of the path. Objects with a deferred file of their
/// own are saved there if p_writeDeferredFiles is set. The new file takes the place of an old one only when it is
/// whole: whatever fails before leaves the old one.
ZYR_API bool_t zyr_saveToFile(IObject* p_object, const String& p_path, const String& p_format,
                              bool_t p_writeDeferredFiles, const String& p_directory);

/// Appends the bytes of a saved object to p_data.
ZYR_API bool_t zyr_saveToData(IObject* p_object, Array<unsigned char>& p_data, const String& p_format,
                              bool_t p_writeDeferredFiles, const String& p_directory);

} // namespace zyr
