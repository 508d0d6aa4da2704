// The classes of the core module in the order of its table. A row is the name of a class whose source ends with
// ZYR_DEFINE_CORE_CLASS; a family of containers has the rows of its keys.
//
// The includer defines ZYR_CORE_CLASS(Name), which is undefined behind the list.

ZYR_CORE_CLASS(Object)
ZYR_CORE_CLASS(DataFormatInfo)
ZYR_CORE_CLASS(NativeFormatInfo)
ZYR_CORE_CLASS(CompressionInfo)
ZYR_CORE_CLASS(Lz4CompressionInfo)
ZYR_CORE_CLASS(ZipCompressionInfo)
ZYR_CORE_CLASS(ListOfObjects)
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
ZYR_CORE_CLASS(PluginModule)
ZYR_CORE_CLASS(PluginModulesHandler)

#undef ZYR_CORE_CLASS
