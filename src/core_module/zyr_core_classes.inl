// The classes of the core module in the order of its table. A row is the name of a class whose source ends with
// ZYR_DEFINE_CORE_CLASS; a family of containers has the rows of its keys.
//
// The includer defines
//
//     ZYR_CORE_CLASS(Name)                  a class
//     ZYR_CORE_FAMILY(Name)                 a family, in front of the rows of its keys; nothing unless it is defined
//     ZYR_CORE_CLASS_FOR(Name, key, word)   the class of one key; nothing unless it is defined
//     ZYR_NAMED_CORE_CLASS(Name)            a class without an entry in the table, which is created by name; nothing
//                                           unless it is defined
//
// and all are undefined behind the list.

#ifndef ZYR_CORE_FAMILY
#define ZYR_CORE_FAMILY(Name)
#endif
#ifndef ZYR_CORE_CLASS_FOR
#define ZYR_CORE_CLASS_FOR(Name, key, word)
#endif
#ifndef ZYR_NAMED_CORE_CLASS
#define ZYR_NAMED_CORE_CLASS(Name)
#endif

ZYR_CORE_CLASS(Object)
ZYR_CORE_CLASS(DeferredFileObject)
ZYR_CORE_CLASS(DataFormatInfo)
ZYR_CORE_CLASS(NativeFormatInfo)
ZYR_CORE_CLASS(CompressionInfo)
ZYR_CORE_CLASS(Lz4CompressionInfo)
ZYR_CORE_CLASS(ZipCompressionInfo)
ZYR_CORE_CLASS(CompressedObject)
ZYR_CORE_CLASS(ArrayOfObjects)
ZYR_CORE_CLASS(TreeNodeArrayOfObjects)
ZYR_CORE_CLASS(ListOfObjects)
ZYR_CORE_CLASS(TreeNodeListOfObjects)
ZYR_CORE_FAMILY(HashMapOfObjects)
#define ZYR_KEY(type, word) ZYR_CORE_CLASS_FOR(HashMapOfObjects, type, word)
#define ZYR_GUID_KEY ZYR_KEY
#include "zyr_common/object/zyr_object_keys.inl"
ZYR_CORE_FAMILY(TreeNodeHashMapOfObjects)
#define ZYR_KEY(type, word) ZYR_CORE_CLASS_FOR(TreeNodeHashMapOfObjects, type, word)
#include "zyr_common/object/zyr_object_keys.inl"
ZYR_CORE_FAMILY(HashMultiMapOfObjects)
#define ZYR_KEY(type, word) ZYR_CORE_CLASS_FOR(HashMultiMapOfObjects, type, word)
#include "zyr_common/object/zyr_object_keys.inl"
ZYR_CORE_FAMILY(TreeNodeHashMultiMapOfObjects)
#define ZYR_KEY(type, word) ZYR_CORE_CLASS_FOR(TreeNodeHashMultiMapOfObjects, type, word)
#include "zyr_common/object/zyr_object_keys.inl"
ZYR_CORE_FAMILY(SortedMapOfObjects)
#define ZYR_KEY(type, word) ZYR_CORE_CLASS_FOR(SortedMapOfObjects, type, word)
#define ZYR_GUID_KEY ZYR_KEY
#include "zyr_common/object/zyr_object_keys.inl"
ZYR_CORE_FAMILY(TreeNodeSortedMapOfObjects)
#define ZYR_KEY(type, word) ZYR_CORE_CLASS_FOR(TreeNodeSortedMapOfObjects, type, word)
#include "zyr_common/object/zyr_object_keys.inl"
ZYR_CORE_CLASS(Transport)
ZYR_CORE_CLASS(ServerTransport)
ZYR_CORE_CLASS(ClientTransport)
ZYR_CORE_CLASS(CertificatesHandler)
ZYR_CORE_CLASS(AgentDescription)
ZYR_CORE_CLASS(InputStream)
ZYR_CORE_CLASS(OutputStream)
ZYR_CORE_CLASS(IOStream)
ZYR_CORE_CLASS(IOStreamJoin)
ZYR_CORE_CLASS(FileStream)
ZYR_CORE_CLASS(InputStreamFile)
ZYR_CORE_CLASS(OutputStreamFile)
ZYR_CORE_CLASS(IOStreamFile)
ZYR_CORE_CLASS(MemoryStream)
ZYR_CORE_CLASS(InputStreamMemory)
ZYR_CORE_CLASS(OutputStreamMemory)
ZYR_CORE_CLASS(IOStreamMemory)
ZYR_CORE_CLASS(Lexer)
ZYR_CORE_CLASS(Reader)
ZYR_CORE_CLASS(BinaryReader)
ZYR_CORE_CLASS(TextParser)
ZYR_CORE_CLASS(Writer)
ZYR_CORE_CLASS(BinaryWriter)
ZYR_CORE_CLASS(TextWriter)
ZYR_CORE_CLASS(ConfigParser)
ZYR_CORE_CLASS(SettingsHandler)
ZYR_CORE_CLASS(JsonParser)
ZYR_CORE_CLASS(JsonWriter)
ZYR_CORE_CLASS(XmlParser)
ZYR_CORE_CLASS(XmlWriter)
ZYR_CORE_CLASS(Resource)
ZYR_CORE_CLASS(DynamicResource)
ZYR_CORE_CLASS(ResourcesCategory)
ZYR_CORE_CLASS(ResourcesPack)
ZYR_CORE_CLASS(PluginModule)
ZYR_CORE_CLASS(PluginModulesHandler)

ZYR_NAMED_CORE_CLASS(RawSerializer)
ZYR_NAMED_CORE_CLASS(RawDeserializer)
ZYR_NAMED_CORE_CLASS(ZbfSerializer)
ZYR_NAMED_CORE_CLASS(ZbfDeserializer)
ZYR_NAMED_CORE_CLASS(XmlSerializer)
ZYR_NAMED_CORE_CLASS(XmlDeserializer)
ZYR_NAMED_CORE_CLASS(JsonSerializer)
ZYR_NAMED_CORE_CLASS(JsonDeserializer)

#undef ZYR_CORE_CLASS
#undef ZYR_CORE_FAMILY
#undef ZYR_CORE_CLASS_FOR
#undef ZYR_NAMED_CORE_CLASS
