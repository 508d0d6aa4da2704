// The numbers of which binary data consist: suffix of the operations for one, suffix of those for many, type.
//
// ZYR_RAW_NUMBER gives all eleven, ZYR_BASE128_NUMBER the six that a writer writes in variable length. The includer
// defines one of them or both, and ZYR_RAW_BOOLEAN where the first row differs from the others; all are undefined behind
// the list.
#ifndef ZYR_RAW_NUMBER
#define ZYR_RAW_NUMBER(suffix, many, type)
#endif
#ifndef ZYR_RAW_BOOLEAN
#define ZYR_RAW_BOOLEAN(suffix, many, type) ZYR_RAW_NUMBER(suffix, many, type)
#endif
#ifndef ZYR_BASE128_NUMBER
#define ZYR_BASE128_NUMBER(suffix, type)
#endif

ZYR_RAW_BOOLEAN(Boolean, Booleans, bool_t)
ZYR_RAW_NUMBER(Int8, Int8, int8_t)
ZYR_RAW_NUMBER(UInt8, UInt8, uint8_t)
ZYR_RAW_NUMBER(Int16, Int16, int16_t)
ZYR_RAW_NUMBER(UInt16, UInt16, uint16_t)
ZYR_RAW_NUMBER(Int32, Int32, int32_t)
ZYR_RAW_NUMBER(UInt32, UInt32, uint32_t)
ZYR_RAW_NUMBER(Int64, Int64, int64_t)
ZYR_RAW_NUMBER(UInt64, UInt64, uint64_t)
ZYR_RAW_NUMBER(Float, Float, float)
ZYR_RAW_NUMBER(Double, Double, double)

ZYR_BASE128_NUMBER(Int16, int16_t)
ZYR_BASE128_NUMBER(UInt16, uint16_t)
ZYR_BASE128_NUMBER(Int32, int32_t)
ZYR_BASE128_NUMBER(UInt32, uint32_t)
ZYR_BASE128_NUMBER(Int64, int64_t)
ZYR_BASE128_NUMBER(UInt64, uint64_t)

#undef ZYR_RAW_NUMBER
#undef ZYR_RAW_BOOLEAN
#undef ZYR_BASE128_NUMBER
