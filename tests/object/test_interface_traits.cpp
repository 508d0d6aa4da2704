#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/formats/zyr_stored_objects.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace zyr {

template <typename K> class IHashMapOfObjects;
template <typename K> class ISortedMapOfObjects;
template <typename K> class ITreeNodeHashMultiMapOfObjects;
template <typename K> struct InterfaceTraits<IHashMapOfObjects<K>> {
    static constexpr const char* c_typeName = "HashMapOfObjects";
};
template <typename K> struct InterfaceTraits<ISortedMapOfObjects<K>> {
    static constexpr const char* c_typeName = "SortedMapOfObjects";
};
template <typename K> struct InterfaceTraits<ITreeNodeHashMultiMapOfObjects<K>> {
    static constexpr const char* c_typeName = "TreeNodeHashMultiMapOfObjects";
};
class IUnlisted;
template <> struct InterfaceTraits<IUnlisted> { static constexpr const char* c_typeName = "Unlisted"; };
struct PlainRecord {
    static constexpr const char* c_typeName = "PlainRecord";
};
template <typename T> struct CommandRecord { static constexpr const char* c_typeName = "CommandRecord"; };

namespace {

template <typename T> std::string nameOf() {
    return zyr_getNameAssociatedToType(static_cast<const T*>(nullptr)).getData();
}

TEST(TypeName, OfAnInterfaceHasNoLeadingI) {
    EXPECT_EQ(nameOf<IObject>(), "Object");
    EXPECT_EQ(nameOf<IDeferredFileObject>(), "DeferredFileObject");
    EXPECT_EQ(nameOf<IListOfObjects>(), "ListOfObjects");
}

TEST(TypeName, OfAnObjectPointerIsAWordOfItsOwn) {
    EXPECT_EQ(nameOf<IObject*>(), "ObjectPtr");
}

TEST(TypeName, OfARecordIsItsClassName) {
    EXPECT_EQ(nameOf<PlainRecord>(), "PlainRecord");
}

TEST(TypeName, OfATemplateHasItsArgumentInBraces) {
    EXPECT_EQ(nameOf<CommandRecord<float>>(), "CommandRecord{float}");
    EXPECT_EQ(nameOf<CommandRecord<double>>(), "CommandRecord{double}");
    EXPECT_EQ(nameOf<CommandRecord<int32_t>>(), "CommandRecord{int32}");
    EXPECT_EQ(nameOf<IHashMapOfObjects<int64_t>>(), "HashMapOfObjects{int64}");
    EXPECT_EQ(nameOf<IHashMapOfObjects<uint32_t>>(), "HashMapOfObjects{uint32}");
    EXPECT_EQ(nameOf<IHashMapOfObjects<uint64_t>>(), "HashMapOfObjects{uint64}");
    EXPECT_EQ(nameOf<IHashMapOfObjects<String>>(), "HashMapOfObjects{String}");
    EXPECT_EQ(nameOf<IHashMapOfObjects<WrappedString>>(), "HashMapOfObjects{WrappedString}");
    EXPECT_EQ(nameOf<ISortedMapOfObjects<GUID_t>>(), "SortedMapOfObjects{guid}");
    EXPECT_EQ(nameOf<IHashMapOfObjects<unsigned char*>>(), "HashMapOfObjects{uint8 *}");
    EXPECT_EQ(nameOf<ITreeNodeHashMultiMapOfObjects<String*>>(), "TreeNodeHashMultiMapOfObjects{String *}");
    EXPECT_EQ(nameOf<IHashMapOfObjects<IObject*>>(), "HashMapOfObjects{Object *}");
}

TEST(TypeName, TemplateArgumentAloneIsItsWord) {
    EXPECT_EQ(zyr_getTemplateTypeName<IHashMapOfObjects<String*>>(), "String *");
    EXPECT_EQ(zyr_getTemplateTypeName<IObject>(), "");
}

TEST(TypeName, InLinesOfTheFactoryHasUnderscoresAroundTheGUIDWordAlone) {
    EXPECT_EQ(getCoreEntryWord(coreTableEntry<IHashMapOfObjects<GUID_t>>), "HashMapOfObjects_guid_");
    EXPECT_EQ(getCoreEntryWord(coreTableEntry<ISortedMapOfObjects<GUID_t>>), "SortedMapOfObjects_guid_");
    EXPECT_EQ(getCoreEntryWord(coreTableEntry<IHashMapOfObjects<int32_t>>), "HashMapOfObjects{int32}");
    EXPECT_EQ(getCoreEntryWord(coreTableEntry<IObject>), "Object");
}

TEST(TypeName, IsOneTextPerType) {
    const PlainRecord record;
    EXPECT_EQ(&zyr_getNameAssociatedToType(&record),
              &zyr_getNameAssociatedToType(static_cast<const PlainRecord*>(nullptr)));
}

TEST(CoreEntry, FollowsTheOrderOfTheTable) {
    EXPECT_EQ(coreTableEntry<IObject>, 0);
    EXPECT_EQ(coreTableEntry<IDeferredFileObject>, 1);
    EXPECT_EQ(coreTableEntry<IDataFormatInfo>, 2);
    EXPECT_EQ(coreTableEntry<INativeFormatInfo>, 3);
    EXPECT_EQ(coreTableEntry<ICompressionInfo>, 4);
    EXPECT_EQ(coreTableEntry<ILz4CompressionInfo>, 5);
    EXPECT_EQ(coreTableEntry<IZipCompressionInfo>, 6);
    EXPECT_EQ(coreTableEntry<ICompressedObject>, 7);
    EXPECT_EQ(coreTableEntry<IListOfObjects>, 10);
    EXPECT_EQ(coreTableEntry<IPluginModule>, 114);
    EXPECT_EQ(coreTableEntry<IPluginModulesHandler>, 115);
}

TEST(CoreEntry, TellsKeysOfOneContainerApart) {
    EXPECT_EQ(coreTableEntry<IHashMapOfObjects<int32_t>>, 12);
    EXPECT_EQ(coreTableEntry<IHashMapOfObjects<GUID_t>>, 20);
    EXPECT_EQ(coreTableEntry<IHashMapOfObjects<IObject*>>, 23);
    EXPECT_EQ(coreTableEntry<ITreeNodeHashMultiMapOfObjects<int32_t>>, 46);
    EXPECT_EQ(coreTableEntry<ITreeNodeHashMultiMapOfObjects<unsigned char*>>, 54);
    EXPECT_EQ(coreTableEntry<ITreeNodeHashMultiMapOfObjects<GUID_t>>, -1);
    EXPECT_EQ(coreTableEntry<ISortedMapOfObjects<int32_t>>, 57);
    EXPECT_EQ(coreTableEntry<ISortedMapOfObjects<GUID_t>>, 65);
}

TEST(CoreEntry, IsNoneForOtherInterfaces) {
    EXPECT_EQ(coreTableEntry<IUnlisted>, -1);
}

TEST(CoreEntry, KnowsTheFirstAndLastOfEachGroup) {
    const std::pair<int, const char*> rows[] = {
        {8, "ArrayOfObjects"},
        {9, "TreeNodeArrayOfObjects"},
        {11, "TreeNodeListOfObjects"},
        {24, "TreeNodeHashMapOfObjects{int32}"},
        {34, "TreeNodeHashMapOfObjects{Object *}"},
        {35, "HashMultiMapOfObjects{int32}"},
        {45, "HashMultiMapOfObjects{Object *}"},
        {56, "TreeNodeHashMultiMapOfObjects{Object *}"},
        {68, "SortedMapOfObjects{Object *}"},
        {69, "TreeNodeSortedMapOfObjects{int32}"},
        {79, "TreeNodeSortedMapOfObjects{Object *}"},
        {80, "Transport"},
        {84, "AgentDescription"},
        {85, "InputStream"},
        {96, "IOStreamMemory"},
        {97, "Lexer"},
        {109, "XmlWriter"},
        {110, "Resource"},
        {113, "ResourcesPack"},
    };
    for (const auto& [entry, name] : rows) {
        EXPECT_STREQ(coreEntryNames[entry], name) << entry;
    }
}

TEST(CoreEntry, NamesAreUnique) {
    std::set<std::string> names;
    for (const char* name : coreEntryNames) {
        EXPECT_TRUE(names.insert(name).second) << name;
    }
}

TEST(InterfaceGUID, HasThePermanentValues) {
    EXPECT_EQ(zyr_getInterfaceGUID<IObject>(), GUID_t_fromString("98880ce6-8e7d-4d88-89a8-8a97997c03b1"));
    EXPECT_EQ(zyr_getInterfaceGUID<IDeferredFileObject>(), GUID_t_fromString("a03b5026-7714-4049-a21b-f4d78362fd25"));
    EXPECT_EQ(zyr_getInterfaceGUID<ICompressedObject>(), GUID_t_fromString("83582bd1-560c-4772-b68e-12b81a8d53cf"));
    EXPECT_EQ(zyr_getInterfaceGUID<IDataFormatInfo>(), GUID_t_fromString("89253d17-6b06-49d9-ab08-d107ef4e3d09"));
    EXPECT_EQ(zyr_getInterfaceGUID<INativeFormatInfo>(), GUID_t_fromString("5861cb51-81f9-48f5-a3b8-e64e50b77913"));
    EXPECT_EQ(zyr_getInterfaceGUID<ICompressionInfo>(), GUID_t_fromString("eb8d2003-199c-4ac4-978f-e495d17eb7e4"));
    EXPECT_EQ(zyr_getInterfaceGUID<ILz4CompressionInfo>(), GUID_t_fromString("f92896ec-afc0-4a47-8177-d03978de096a"));
    EXPECT_EQ(zyr_getInterfaceGUID<IZipCompressionInfo>(), GUID_t_fromString("1e257197-55a6-434c-9f18-64d2e2e06e73"));
    EXPECT_EQ(zyr_getInterfaceGUID<IListOfObjects>(), GUID_t_fromString("b5707be0-03a5-4d7b-9b3d-fc2ecd6947fd"));
    EXPECT_EQ(zyr_getInterfaceGUID<IPluginModule>(), GUID_t_fromString("1fca19b8-4651-4781-95fc-84983edad084"));
    EXPECT_EQ(zyr_getInterfaceGUID<IPluginModulesHandler>(), GUID_t_fromString("179a34a3-9130-4c11-877d-c5701c6933bd"));
}

TEST(InterfaceTraits, NameTheInvariantOfTheCreation) {
    EXPECT_STREQ(InterfaceTraits<IObject>::c_createdText, "m_interfaceObject != NULL");
    EXPECT_STREQ(InterfaceTraits<IDataFormatInfo>::c_createdText, "interfaceDataFormatInfo != NULL");
    EXPECT_STREQ(InterfaceTraits<IListOfObjects>::c_createdText, "interfaceListOfObjects != NULL");
}

} // namespace
} // namespace zyr
