// The key types of the containers of objects, each with its word in type names, in the order of the core module's
// table. The includer defines
//
//     ZYR_KEY(type, word)         every type but GUID_t
//     ZYR_GUID_KEY(type, word)    GUID_t, which not every family has; nothing unless it is defined
//
// and both are undefined behind the list.

#ifndef ZYR_GUID_KEY
#define ZYR_GUID_KEY(type, word)
#endif

ZYR_KEY(int32_t, "int32")
ZYR_KEY(int64_t, "int64")
ZYR_KEY(uint32_t, "uint32")
ZYR_KEY(uint64_t, "uint64")
ZYR_KEY(float, "float")
ZYR_KEY(double, "double")
ZYR_KEY(String, "String")
ZYR_KEY(WrappedString, "WrappedString")
ZYR_GUID_KEY(GUID_t, "guid")
ZYR_KEY(unsigned char*, "uint8 *")
ZYR_KEY(String*, "String *")
ZYR_KEY(IObject*, "Object *")

#undef ZYR_KEY
#undef ZYR_GUID_KEY
