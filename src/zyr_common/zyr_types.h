/// Plain types and forward declarations that every other header may use.
#pragma once

#include <cstddef>
#include <cstdint>

/// The framework's truth value: one unsigned byte, 0 or 1. It stands at global scope so that the signature texts in
/// log lines read "bool_t" without a prefix.
typedef uint8_t bool_t;

/// Marks a free function that a module offers by its C++ name to whoever loads it. Its signature is a contract: it
/// stays.
#define ZYR_API __attribute__((visibility("default")))

namespace zyr {

// Forward declarations of what signatures name; their own headers hold the classes.
/// The process-wide context, records, containers and interfaces of objects.
class ApplicationData;
class FileFormatHeader;
class IDataFormatInfo;
class ICompressionInfo;
class IListOfObjects;
class IPluginModulesHandler;
class IDeserializer;
class IObject;
class ISerializer;
class RefCountedData;
class String;
class VariableReference;
class VariableValue;
class WrappedString;
struct GUID_t;
template <typename T> class Array;
template <typename T> class List;
template <typename K, typename V> class HashMap;
template <typename K> class HashSet;
template <typename K, typename V> class HashMultiMap;
template <typename K, typename V> class HashMultiSet;
template <typename K, typename V> class SortedMap;
template <class Interface> class ObjectFacade;

/// The facade of an object; see object/zyr_object.h.
using WObject = ObjectFacade<IObject>;

// Enumerations that tables of lower floors name in their signatures; their own headers hold the values.
enum VariableTypeEnum : uint32_t;
enum PixelPlanesModelEnum : uint32_t;
enum ColorSpaceEnum : uint32_t;

/// Severity of a log message. A message passes when its level is not above the threshold of the application data.
enum LogLevelEnum : int32_t {
    /// something that was asked for didn't happen, or a condition of the program is broken
    ZYR_LOG_LEVEL_ERROR = 1,
    /// something is wrong, and the work goes on
    ZYR_LOG_LEVEL_WARN = 2,
    /// what an operator wants to see once: starts, ends, choices
    ZYR_LOG_LEVEL_INFO = 3,
    /// what a developer wants to see; rare enough to be left on
    ZYR_LOG_LEVEL_DEBUG = 4,
    /// each step, also many times a second
    ZYR_LOG_LEVEL_TRACE = 5
};

} // namespace zyr
