/// Which entry of the core module's table (ApplicationData::m_core) creates which interface. The order is a contract
/// between separately built modules.
#pragma once

#include "zyr_common/object/zyr_type_names.h"

namespace zyr {

/// Type names of the interfaces in the order of the entries. The eight entries behind them are not used. Keys of the
/// containers stand in the order of zyr_object_keys.inl; the containers of trees and of several values have no GUID
/// keys.
inline constexpr const char* coreEntryNames[] = {
    // 0 to 7
    "Object",
    "DeferredFileObject",
    "DataFormatInfo",
    "NativeFormatInfo",
    "CompressionInfo",
    "Lz4CompressionInfo",
    "ZipCompressionInfo",
    "CompressedObject",
    // 8 to 11
    "ArrayOfObjects",
    "TreeNodeArrayOfObjects",
    "ListOfObjects",
    "TreeNodeListOfObjects",
// 12 to 23
#define ZYR_KEY(type, word) "HashMapOfObjects{" word "}",
#define ZYR_GUID_KEY ZYR_KEY
#include "zyr_common/object/zyr_object_keys.inl"
// 24 to 34
#define ZYR_KEY(type, word) "TreeNodeHashMapOfObjects{" word "}",
#include "zyr_common/object/zyr_object_keys.inl"
// 35 to 45
#define ZYR_KEY(type, word) "HashMultiMapOfObjects{" word "}",
#include "zyr_common/object/zyr_object_keys.inl"
// 46 to 56
#define ZYR_KEY(type, word) "TreeNodeHashMultiMapOfObjects{" word "}",
#include "zyr_common/object/zyr_object_keys.inl"
// 57 to 68
#define ZYR_KEY(type, word) "SortedMapOfObjects{" word "}",
#define ZYR_GUID_KEY ZYR_KEY
#include "zyr_common/object/zyr_object_keys.inl"
// 69 to 79
#define ZYR_KEY(type, word) "TreeNodeSortedMapOfObjects{" word "}",
#include "zyr_common/object/zyr_object_keys.inl"
    // 80 to 84
    "Transport",
    "ServerTransport",
    "ClientTransport",
    "CertificatesHandler",
    "AgentDescription",
    // 85 to 96
    "InputStream",
    "OutputStream",
    "IOStream",
    "IOStreamJoin",
    "FileStream",
    "InputStreamFile",
    "OutputStreamFile",
    "IOStreamFile",
    "MemoryStream",
    "InputStreamMemory",
    "OutputStreamMemory",
    "IOStreamMemory",
    // 97 to 109
    "Lexer",
    "Reader",
    "BinaryReader",
    "TextParser",
    "Writer",
    "BinaryWriter",
    "TextWriter",
    "ConfigParser",
    "SettingsHandler",
    "JsonParser",
    "JsonWriter",
    "XmlParser",
    "XmlWriter",
    // 110 to 115
    "Resource",
    "DynamicResource",
    "ResourcesCategory",
    "ResourcesPack",
    "PluginModule",
    "PluginModulesHandler",
};
/// The entries that are used.
inline constexpr int32_t NUM_OF_CORE_ENTRY_NAMES = sizeof(coreEntryNames) / sizeof(coreEntryNames[0]);
static_assert(NUM_OF_CORE_ENTRY_NAMES == 116);

/// Gives what follows the prefix in the text; null if the text begins otherwise.
constexpr const char* skipPrefix(const char* p_text, const char* p_prefix) {
    for (; *p_prefix != 0; p_text++, p_prefix++) {
        if (*p_text != *p_prefix) {
            return nullptr;
        }
    }
    return p_text;
}

/// Gives whether the type name is the name followed by the word in braces, or by nothing where the word is null.
constexpr bool isTypeName(const char* p_typeName, const char* p_name, const char* p_argumentWord) {
    const char* rest = skipPrefix(p_typeName, p_name);
    if (rest == nullptr || p_argumentWord == nullptr) {
        return rest != nullptr && *rest == 0;
    }
    rest = *rest == '{' ? skipPrefix(rest + 1, p_argumentWord) : nullptr;
    return rest != nullptr && rest[0] == '}' && rest[1] == 0;
}

/// The entry of a type, by its name and the word of its argument, null for a type without one; -1 where no entry
/// creates it. At compile time in the factories.
constexpr int32_t findCoreEntry(const char* p_name, const char* p_argumentWord) {
    for (int32_t i = 0; i < NUM_OF_CORE_ENTRY_NAMES; i++) {
        if (isTypeName(coreEntryNames[i], p_name, p_argumentWord)) {
            return i;
        }
    }
    return -1;
}

/// How the factories call the entry in their lines: its name, but for GUID keys with underscores around the word.
String getCoreEntryWord(int32_t p_entry);

/// The entry of `Interface`; -1 for an interface without one, whose objects are created by GUID.
template <class Interface>
inline constexpr int32_t coreTableEntry = findCoreEntry(InterfaceTraits<Interface>::c_typeName,
                                                        templateArgumentWord<Interface>);

} // namespace zyr
