/// Which entry of the core module's table (ApplicationData::m_core) creates which interface. The order is a contract
/// between separately built modules.
#pragma once

#include "zyr_common/object/zyr_type_names.h"

namespace zyr {

/// Type names of the interfaces in the order of the entries. The eight entries behind them are not used.
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
    "HashMapOfObjects{int32}",
    "HashMapOfObjects{int64}",
    "HashMapOfObjects{uint32}",
    "HashMapOfObjects{uint64}",
    "HashMapOfObjects{float}",
    "HashMapOfObjects{double}",
    "HashMapOfObjects{String}",
    "HashMapOfObjects{WrappedString}",
    "HashMapOfObjects{guid}",
    "HashMapOfObjects{uint8 *}",
    "HashMapOfObjects{String *}",
    "HashMapOfObjects{Object *}",
    // 24 to 34
    "TreeNodeHashMapOfObjects{int32}",
    "TreeNodeHashMapOfObjects{int64}",
    "TreeNodeHashMapOfObjects{uint32}",
    "TreeNodeHashMapOfObjects{uint64}",
    "TreeNodeHashMapOfObjects{float}",
    "TreeNodeHashMapOfObjects{double}",
    "TreeNodeHashMapOfObjects{String}",
    "TreeNodeHashMapOfObjects{WrappedString}",
    "TreeNodeHashMapOfObjects{uint8 *}",
    "TreeNodeHashMapOfObjects{String *}",
    "TreeNodeHashMapOfObjects{Object *}",
    // 35 to 45
    "HashMultiMapOfObjects{int32}",
    "HashMultiMapOfObjects{int64}",
    "HashMultiMapOfObjects{uint32}",
    "HashMultiMapOfObjects{uint64}",
    "HashMultiMapOfObjects{float}",
    "HashMultiMapOfObjects{double}",
    "HashMultiMapOfObjects{String}",
    "HashMultiMapOfObjects{WrappedString}",
    "HashMultiMapOfObjects{uint8 *}",
    "HashMultiMapOfObjects{String *}",
    "HashMultiMapOfObjects{Object *}",
    // 46 to 56
    "TreeNodeHashMultiMapOfObjects{int32}",
    "TreeNodeHashMultiMapOfObjects{int64}",
    "TreeNodeHashMultiMapOfObjects{uint32}",
    "TreeNodeHashMultiMapOfObjects{uint64}",
    "TreeNodeHashMultiMapOfObjects{float}",
    "TreeNodeHashMultiMapOfObjects{double}",
    "TreeNodeHashMultiMapOfObjects{String}",
    "TreeNodeHashMultiMapOfObjects{WrappedString}",
    "TreeNodeHashMultiMapOfObjects{uint8 *}",
    "TreeNodeHashMultiMapOfObjects{String *}",
    "TreeNodeHashMultiMapOfObjects{Object *}",
    // 57 to 68
    "SortedMapOfObjects{int32}",
    "SortedMapOfObjects{int64}",
    "SortedMapOfObjects{uint32}",
    "SortedMapOfObjects{uint64}",
    "SortedMapOfObjects{float}",
    "SortedMapOfObjects{double}",
    "SortedMapOfObjects{String}",
    "SortedMapOfObjects{WrappedString}",
    "SortedMapOfObjects{guid}",
    "SortedMapOfObjects{uint8 *}",
    "SortedMapOfObjects{String *}",
    "SortedMapOfObjects{Object *}",
    // 69 to 79
    "TreeNodeSortedMapOfObjects{int32}",
    "TreeNodeSortedMapOfObjects{int64}",
    "TreeNodeSortedMapOfObjects{uint32}",
    "TreeNodeSortedMapOfObjects{uint64}",
    "TreeNodeSortedMapOfObjects{float}",
    "TreeNodeSortedMapOfObjects{double}",
    "TreeNodeSortedMapOfObjects{String}",
    "TreeNodeSortedMapOfObjects{WrappedString}",
    "TreeNodeSortedMapOfObjects{uint8 *}",
    "TreeNodeSortedMapOfObjects{String *}",
    "TreeNodeSortedMapOfObjects{Object *}",
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

constexpr int32_t findCoreEntry(const char* p_name, const char* p_argumentWord) {
    for (int32_t i = 0; i < NUM_OF_CORE_ENTRY_NAMES; i++) {
        if (isTypeName(coreEntryNames[i], p_name, p_argumentWord)) {
            return i;
        }
    }
    return -1;
}

/// The entry of `Interface`; -1 for an interface without one, whose objects are created by GUID.
template <class Interface>
inline constexpr int32_t coreTableEntry = findCoreEntry(InterfaceTraits<Interface>::c_typeName,
                                                        templateArgumentWord<Interface>);

} // namespace zyr
