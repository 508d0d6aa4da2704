#include "host/conform/zyr_conform_slots.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/documents/zyr_binary_reader.h"
#include "zyr_common/documents/zyr_binary_writer.h"
#include "zyr_common/documents/zyr_config_parser.h"
#include "zyr_common/documents/zyr_json_parser.h"
#include "zyr_common/documents/zyr_json_writer.h"
#include "zyr_common/documents/zyr_lexer.h"
#include "zyr_common/documents/zyr_xml_parser.h"
#include "zyr_common/documents/zyr_xml_writer.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/formats/zyr_stored_objects.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object_containers/zyr_array_of_objects.h"
#include "zyr_common/object_containers/zyr_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_hash_multi_map_of_objects.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/object_containers/zyr_sorted_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_array_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_hash_multi_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_list_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_sorted_map_of_objects.h"
#include "zyr_common/platform/zyr_version.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"
#include "zyr_common/settings/zyr_settings_handler.h"
#include "zyr_common/storage/zyr_load_save.h"
#include "zyr_common/streams/zyr_file_stream.h"
#include "zyr_common/streams/zyr_input_stream.h"
#include "zyr_common/streams/zyr_io_stream.h"
#include "zyr_common/streams/zyr_memory_stream.h"
#include "zyr_common/streams/zyr_output_stream.h"

#include <cstring>

namespace zyr::host {

namespace {

struct EntryCheck {
    const char* m_typeName;
    bool (*m_isInterface)(const IObject&);
};

#define ZYR_TYPED(Name) {#Name, &isInterface<I##Name>},

/// By type name: the interfaces of which more can be asked than what every object answers.
const EntryCheck ENTRY_CHECKS[] = {
    ZYR_TYPED(DeferredFileObject) ZYR_TYPED(DataFormatInfo) ZYR_TYPED(NativeFormatInfo) ZYR_TYPED(CompressionInfo)
        ZYR_TYPED(Lz4CompressionInfo) ZYR_TYPED(ZipCompressionInfo) ZYR_TYPED(CompressedObject) ZYR_TYPED(
            ArrayOfObjects) ZYR_TYPED(TreeNodeArrayOfObjects) ZYR_TYPED(ListOfObjects) ZYR_TYPED(TreeNodeListOfObjects)
#define ZYR_KEY(type, word) {"HashMapOfObjects{" word "}", &isInterface<IHashMapOfObjects<type>>},
#define ZYR_GUID_KEY ZYR_KEY
#include "zyr_common/object/zyr_object_keys.inl"
#define ZYR_KEY(type, word) {"TreeNodeHashMapOfObjects{" word "}", &isInterface<ITreeNodeHashMapOfObjects<type>>},
#include "zyr_common/object/zyr_object_keys.inl"
#define ZYR_KEY(type, word) {"HashMultiMapOfObjects{" word "}", &isInterface<IHashMultiMapOfObjects<type>>},
#include "zyr_common/object/zyr_object_keys.inl"
#define ZYR_KEY(type, word)                                                                                            \
    {"TreeNodeHashMultiMapOfObjects{" word "}", &isInterface<ITreeNodeHashMultiMapOfObjects<type>>},
#include "zyr_common/object/zyr_object_keys.inl"
#define ZYR_KEY(type, word) {"SortedMapOfObjects{" word "}", &isInterface<ISortedMapOfObjects<type>>},
#define ZYR_GUID_KEY ZYR_KEY
#include "zyr_common/object/zyr_object_keys.inl"
#define ZYR_KEY(type, word) {"TreeNodeSortedMapOfObjects{" word "}", &isInterface<ITreeNodeSortedMapOfObjects<type>>},
#include "zyr_common/object/zyr_object_keys.inl"
            ZYR_TYPED(InputStream) ZYR_TYPED(OutputStream) ZYR_TYPED(IOStream) ZYR_TYPED(IOStreamJoin)
                ZYR_TYPED(FileStream) ZYR_TYPED(InputStreamFile) ZYR_TYPED(OutputStreamFile) ZYR_TYPED(IOStreamFile)
                    ZYR_TYPED(MemoryStream) ZYR_TYPED(InputStreamMemory) ZYR_TYPED(OutputStreamMemory)
                        ZYR_TYPED(IOStreamMemory) ZYR_TYPED(Lexer) ZYR_TYPED(Reader) ZYR_TYPED(BinaryReader)
                            ZYR_TYPED(TextParser) ZYR_TYPED(Writer) ZYR_TYPED(BinaryWriter) ZYR_TYPED(TextWriter)
                                ZYR_TYPED(ConfigParser) ZYR_TYPED(SettingsHandler) ZYR_TYPED(JsonParser)
                                    ZYR_TYPED(JsonWriter) ZYR_TYPED(XmlParser) ZYR_TYPED(XmlWriter)
                                        ZYR_TYPED(PluginModule) ZYR_TYPED(PluginModulesHandler)};

#undef ZYR_TYPED

/// The entry's object, or null.
Ref<IObject> createByEntry(ApplicationData& p_data, int p_entry) {
    const moduleEntry_FUNC entry = p_data.m_core->m_entries[p_entry];
    require(entry != nullptr, std::string("the entry of ") + coreEntryNames[p_entry] + " is empty");
    return Ref<IObject>::adopt(reinterpret_cast<objectAllocator_FUNC>(entry)());
}

void checkEntry(IObject& p_object, const char* p_typeName) {
    for (const EntryCheck& check : ENTRY_CHECKS) {
        require(strcmp(check.m_typeName, p_typeName) != 0 || check.m_isInterface(p_object),
                std::string("the entry of ") + p_typeName + " gives an object of " + toText(p_object.getClassName()));
    }
    const std::string typeName = p_typeName;
    const std::string argument = toText(p_object.getClassTemplateTypeName());
    const size_t brace = typeName.find('{');
    require(brace == std::string::npos ? argument.empty() : typeName.substr(brace) == "{" + argument + "}",
            "the entry of " + typeName + " gives an object for '" + argument + "'");
    checkObjectSlots(p_object, typeName);
    IObject* twin = zyr_createObjectFromGUIDAndTypeName(p_object.getClassGUID(), p_object.getClassTemplateTypeName());
    require(twin != nullptr && twin->getClassGUID() == p_object.getClassGUID(),
            typeName + " is not created by its GUID and type name");
    twin->release();
    IObject* named = zyr_createObjectFromName(p_object.getClassName());
    require(named != nullptr && named->getClassGUID() == p_object.getClassGUID(),
            typeName + " is not created by its name " + toText(p_object.getClassName()));
    named->release();
}

template <int First, int End> void checkTable(const ConformSubject& p_subject) {
    HostApplicationData& data = startComponent(p_subject);
    std::string missing;
    for (int entry = First; entry < End; entry++) {
        const Ref<IObject> object = createByEntry(data, entry);
        if (object) {
            checkEntry(*object, coreEntryNames[entry]);
        } else {
            missing += std::string(missing.empty() ? "" : ", ") + coreEntryNames[entry];
        }
    }
    if (!missing.empty()) {
        throw ConformSkip("it has no implementation of " + missing);
    }
}

void checkCorePrepare(const ConformSubject& p_subject) {
    checkPrepare(p_subject, "zyr_core_prepare", &ApplicationData::m_coreInitializer);
}

void checkCoreStart(const ConformSubject& p_subject) {
    HostApplicationData& data = startComponent(p_subject);
    const size_t before = data.m_objectAllocatorsByGUID.getSize();
    require(before != 0, "it registers no class");
    require(data.coreInitialize() && data.m_objectAllocatorsByGUID.getSize() == before,
            "asking for the module a second time registers classes");
}

void checkCoreVersion(const ConformSubject& p_subject) {
    HostApplicationData& data = startComponent(p_subject);
    const size_t before = data.m_objectAllocatorsByGUID.getSize();
    data.m_frameworkVersion = zyr_encodeVersion64(zyr_getMajorVersion64(data.m_frameworkVersion),
                                                  zyr_getMinorVersion64(data.m_frameworkVersion) + 1, 0);
    require(!data.m_coreInitializer(&data, 1), "its initializer accepts a host of the next minor version");
    require(data.m_objectAllocatorsByGUID.getSize() == before, "it registers classes although it refuses the host");
}

void checkFormats(const ConformSubject& p_subject) {
    startComponent(p_subject);
    for (const char* format : {"raw", "zbf", "xml", "json"}) {
        const Ref<IDataFormatInfo> object = Ref<IDataFormatInfo>::adopt(zyr_createObject<IDataFormatInfo>());
        require(bool(object), "it has no DataFormatInfo to save");
        const String name = "a <name> & \"more\" \xc3\xa9";
        object->setFormatName(name);
        Array<unsigned char> data;
        require(zyr_saveToData(object.get(), data, String(format), 0, String()),
                std::string("an object cannot be saved in ") + format);
        const Ref<IObject> loaded = Ref<IObject>::adopt(zyr_loadFromData(data, String(format), String()));
        require(loaded && loaded->getClassGUID() == object->getClassGUID(),
                std::string("an object cannot be loaded from ") + format);
        require(static_cast<IDataFormatInfo*>(loaded.get())->getFormatName() == name,
                std::string("a text comes back as another one from ") + format);
    }
}

} // namespace

std::vector<ConformCase> listCoreCases() {
    const char* entry =
        "Each entry gives a new object of the interface at its place, which answers every operation that "
        "objects have and the last one of its own, and is created by name and by GUID as well.";
    return {
        {"prepare",
         "zyr_core_prepare leaves the initializer in the application data and touches nothing else.",
         {},
         checkCorePrepare},
        {"initialize",
         "The module starts, registers its classes once, and is there for everybody who asks again.",
         {"prepare"},
         checkCoreStart},
        {"initialize-version",
         "A host of another minor version is refused and nothing is registered.",
         {"initialize"},
         checkCoreVersion},
        {"table-objects", entry, {"initialize"}, checkTable<0, 8>},
        {"table-containers", entry, {"initialize"}, checkTable<8, 80>},
        {"table-transports", entry, {"initialize"}, checkTable<80, 85>},
        {"table-streams", entry, {"initialize"}, checkTable<85, 97>},
        {"table-documents", entry, {"initialize"}, checkTable<97, 110>},
        {"table-resources", entry, {"initialize"}, checkTable<110, 114>},
        {"table-plugins", entry, {"initialize"}, checkTable<114, 116>},
        {"formats",
         "Objects are saved and loaded in the four formats, and texts come back as they are.",
         {"table-objects"},
         checkFormats},
    };
}

} // namespace zyr::host
