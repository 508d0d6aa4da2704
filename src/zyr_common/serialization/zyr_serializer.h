/// The two interfaces through which objects and value records write and read their fields, in any format.
///
/// Implementations live in the core module and are created by class name. Slot order is a contract between separately
/// built modules: a changed order is a new framework version.
///
/// Rules of use. Work on `getTLIObject()` of the serializer that is handed in, so that an override in an outer layer
/// takes effect (zyr_getTopSerializer, zyr_getTopDeserializer). A text serializer sees each object twice: attributes in
/// the first pass, elements in the second; a binary one sees it once. Records get all this from their field list (see
/// zyr_record.h); objects follow the same rules by hand.
///
/// All operations return 1 on success and 0 on failure, except the getters. One thread at a time.
#pragma once

#include "zyr_common/object/zyr_object.h"
#include "zyr_common/serialization/zyr_enumeration.h"
#include "zyr_common/zyr_types.h"

namespace zyr {

/// Markers of a declared field: what its type is.
enum HeaderFieldMarkerEnum : uint32_t {
    ZYR_HEADER_FIELD_ARRAY = 0xFFFFFFFD,  ///< an array; the third argument tells of what
    ZYR_HEADER_FIELD_RECORD = 0xFFFFFFFE, ///< a value record
    ZYR_HEADER_FIELD_OBJECT = 0xFFFFFFFF  ///< an object
};

/// The element kind of an array of value records.
#define ZYR_ARRAY_OF_RECORDS 254

/// Writes fields into an output of some format.
///
/// The functions that are no operations of the table write whole objects (see storage/). They are declared once more in
/// zyr_single_objects.h, which those who call them include.
///
///     // A level with an attribute and an element, as it is called for each pass:
///     if (p_headerPass) {
///         return serializer->declareUInt32(widthKey, m_width, p_result) &&
///                serializer->declareString(noteKey, m_note, p_result);
///     }
///     const bool_t binary = serializer->isBinaryFormat();
///     p_result = (binary || p_firstPass ? serializer->writeUInt32(widthKey, m_width, 0, 1, nullptr) : 1) &&
///                (binary || !p_firstPass ? serializer->writeString(noteKey, m_note, 0, 0) : 1);
///     return p_result;
class ISerializer : public IObject {
public:
    /// Header pass: declares the class that will stand in the stream for the object, and a field of it. Null declares
    /// the field alone. p_result takes what is returned.
    template <class T> bool_t writeHeaderSingleObject(const String& p_name, T* p_object, bool_t& p_result);
    /// Value pass: writes the object under the name, or the stand-in of one with a deferred file or a compression info.
    /// An object with a deferred file is also saved there, if this serializer writes such files and the file is not
    /// read-only. A failure leaves the object as it was.
    template <class T> bool_t writeSingleObject(const String& p_name, T* p_object);
    /// Writes everything that a saved object consists of: header section, header record, object.
    bool_t writeHeaderAndObjectToFile(FileFormatHeader& p_header, IObject* p_object);

    /// Prepares an empty output. False means a bad internal state.
    virtual bool_t initialize() = 0;
    /// Ends the use of what initialize prepared.
    virtual bool_t deinitialize() = 0;

    /// Enclose the header section.
    /// Formats without one take them and write nothing.
    virtual bool_t beginHeader() = 0;
    virtual bool_t endHeader() = 0;
    /// Enclose the declaration of a structure; declaring a name again has no effect.
    virtual bool_t beginHeaderStructure(const String& p_typeName) = 0;
    virtual bool_t endHeaderStructure() = 0;
    /// Declares a field of a structure. p_element is 0, or for an array the marker of its elements.
    virtual bool_t writeHeaderField(const String& p_name, uint32_t p_marker, uint32_t p_element,
                                    const String& p_typeName) = 0;

    /// Enclose a named group. The flag is 1 for the group of the XML header alone.
    virtual bool_t beginStructure(const String& p_name, bool_t p_formatHeader) = 0;
    virtual bool_t endStructure() = 0;
    /// Enclose an object with its identity.
    virtual bool_t beginObject(const String& p_name, const String& p_className, const String& p_guidText) = 0;
    virtual bool_t endObject() = 0;
    /// Enclose a named array of records; p_elementKind is ZYR_ARRAY_OF_RECORDS.
    virtual bool_t beginArray(const String& p_name, uint32_t p_count, uint32_t p_elementKind) = 0;
    virtual bool_t endArray() = 0;
    /// Enclose one element, which writes itself in between. An empty type name stands for a null element.
    virtual bool_t beginArrayElement(uint32_t p_index, const String& p_typeName) = 0;
    virtual bool_t endArrayElement() = 0;

    /// The payload after writing; belongs to the serializer and stays until its next change.
    virtual const void* getData() const = 0;
    /// Its bytes.
    virtual size_t getDataSize() const = 0;
    /// Whether fields are written in one pass, without attributes and elements.
    virtual bool_t isBinaryFormat() const = 0;
    /// Whether the format begins with the declarations of its classes.
    virtual bool_t hasHeaderSection() const = 0;
    /// Directory against which relative deferred files resolve.
    virtual const String& getBaseDirectory() const = 0;
    virtual bool_t setBaseDirectory(const String& p_directory) = 0;
    /// Whether objects with files of their own are saved there along the way; off where only a copy in memory is
    /// wanted.
    virtual bool_t isWritingDeferredFiles() const = 0;
    virtual bool_t setWritingDeferredFiles(bool_t p_write) = 0;

    // Header pass: declare a field. The value is a sample of its type. p_result takes what is returned.
    /// A text that may be null, which is told from an empty one.
    virtual bool_t declareStringRef(const String& p_name, const String* p_value, bool_t& p_result) = 0;
    /// An enumeration, by its number; text formats show its word.
    virtual bool_t declareEnum(const String& p_name, uint32_t p_value, bool_t& p_result) = 0;
    /// Integers and floating numbers; their types are part of the declaration, so a later version that changes one is
    /// told apart.
    virtual bool_t declareInt32(const String& p_name, int32_t p_value, bool_t& p_result) = 0;
    virtual bool_t declareUInt32(const String& p_name, uint32_t p_value, bool_t& p_result) = 0;
    virtual bool_t declareInt64(const String& p_name, int64_t p_value, bool_t& p_result) = 0;
    virtual bool_t declareUInt64(const String& p_name, uint64_t p_value, bool_t& p_result) = 0;
    virtual bool_t declareFloat(const String& p_name, float p_value, bool_t& p_result) = 0;
    virtual bool_t declareDouble(const String& p_name, double p_value, bool_t& p_result) = 0;
    virtual bool_t declareString(const String& p_name, const String& p_value, bool_t& p_result) = 0;
    /// The items are only a sample: another number of them may be written.
    virtual bool_t declareStringArray(const String& p_name, const Array<String>& p_value, bool_t& p_result) = 0;

    // Value pass. p_attribute is set for a field that a text format writes as an attribute and clear for an element.
    // p_converter, where not null, shows the number as a word in a text format. p_reserved is 0.
    virtual bool_t writeStringRef(const String& p_name, const String* p_value, bool_t p_attribute,
                                  uint32_t p_reserved) = 0;
    /// Any byte but 0 is written as 1.
    virtual bool_t writeBool(const String& p_name, bool_t p_value, bool_t p_attribute, uint32_t p_reserved) = 0;
    /// A text format writes the word that the converter knows for the number, else its digits.
    virtual bool_t writeEnum(const String& p_name, uint32_t p_value, uint32_t p_reserved, bool_t p_attribute,
                             EnumerationConverter p_converter) = 0;
    virtual bool_t writeInt32(const String& p_name, int32_t p_value, uint32_t p_reserved, bool_t p_attribute,
                              EnumerationConverter p_converter) = 0;
    virtual bool_t writeUInt32(const String& p_name, uint32_t p_value, uint32_t p_reserved, bool_t p_attribute,
                               EnumerationConverter p_converter) = 0;
    virtual bool_t writeInt64(const String& p_name, int64_t p_value, uint32_t p_reserved, bool_t p_attribute,
                              EnumerationConverter p_converter) = 0;
    virtual bool_t writeUInt64(const String& p_name, uint64_t p_value, uint32_t p_reserved, bool_t p_attribute,
                               EnumerationConverter p_converter) = 0;
    /// All bits are kept, in text too: what is read back is the same number, not-a-number and infinities included.
    virtual bool_t writeFloat(const String& p_name, float p_value, bool_t p_attribute, uint32_t p_reserved) = 0;
    virtual bool_t writeDouble(const String& p_name, double p_value, bool_t p_attribute, uint32_t p_reserved) = 0;
    /// Any bytes are kept, in text too.
    virtual bool_t writeString(const String& p_name, const String& p_value, bool_t p_attribute,
                               uint32_t p_reserved) = 0;
    /// By count and first item; null is allowed for none.
    virtual bool_t writeStringArray(const String& p_name, uint32_t p_count, const String* p_items, bool_t p_attribute,
                                    uint32_t p_reserved) = 0;
    /// What stands in the place of an object that isn't there.
    virtual bool_t writeNullObject(const String& p_name) = 0;

    /// A truth value, which is stored as one byte.
    virtual bool_t declareBool(const String& p_name, bool_t p_value, bool_t& p_result) = 0;
    // Arrays of numbers and of enumerations, by count and first item. p_rowLength is the number of items that a text
    // format puts on a line, 0 for no lines.
    virtual bool_t declareFloatArray(const String& p_name, uint32_t p_count, const float* p_items,
                                     bool_t& p_result) = 0;
    virtual bool_t declareDoubleArray(const String& p_name, uint32_t p_count, const double* p_items,
                                      bool_t& p_result) = 0;
    virtual bool_t declareUInt32Array(const String& p_name, uint32_t p_count, const uint32_t* p_items,
                                      bool_t& p_result) = 0;
    virtual bool_t declareEnumArray(const String& p_name, uint32_t p_count, const uint32_t* p_items,
                                    bool_t& p_result) = 0;
    virtual bool_t writeFloatArray(const String& p_name, uint32_t p_count, const float* p_items, bool_t p_attribute,
                                   uint32_t p_rowLength) = 0;
    virtual bool_t writeDoubleArray(const String& p_name, uint32_t p_count, const double* p_items, bool_t p_attribute,
                                    uint32_t p_rowLength) = 0;
    virtual bool_t writeUInt32Array(const String& p_name, uint32_t p_count, const uint32_t* p_items, bool_t p_attribute,
                                    uint32_t p_rowLength) = 0;
    virtual bool_t writeEnumArray(const String& p_name, uint32_t p_count, const uint32_t* p_items, bool_t p_attribute,
                                  EnumerationConverter p_converter) = 0;

    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getSerializerReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(Serializer, IObject, "4156bdfe-538f-4a31-af54-2a527f566795")

/// Reads fields from data of some format.
///
/// A read takes the key, the cache word of the call site (a static that starts at 0 and belongs to the deserializer: it
/// remembers where the key was found last; access it atomically, since a site may run on several threads), and the
/// value. A key that isn't there leaves the value as it is and is no failure. A String* that is read is the caller's.
///
/// The functions that are no operations of the table read whole objects (see storage/). They are declared once more in
/// zyr_single_objects.h, which those who call them include.
class IDeserializer : public IObject {
public:
    /// Reads the object under the name into a new one, which the caller releases, also where the result is false: then
    /// it is as far as it came, or null. A class that is not registered is replaced by p_defaultTypeName, and without
    /// one skipped as if it wasn't there. Stand-ins are replaced by what they stand for.
    template <class T>
    bool_t readSingleObject(const String& p_name, bool_t& p_found, T** p_object, const String& p_defaultTypeName);
    /// Reads the header record at the start. Without one p_found is 0, which is no failure.
    bool_t readHeaderFromFile(bool_t& p_found, FileFormatHeader& p_header);

    /// Reads from p_data, which must stay until deinitialize.
    virtual bool_t initialize(const void* p_data, size_t p_size) = 0;
    /// Forgets the data, which the caller may then free.
    virtual bool_t deinitialize() = 0;

    /// Enter a named group. Without such a group p_found is 0, which is no failure, and nothing is to be left.
    virtual bool_t enterGroup(const String& p_name, bool_t& p_found) = 0;
    /// Back to where the matching enter began; what was not read there is skipped.
    virtual bool_t leaveGroup() = 0;
    /// The same for an object, whose class and identity can then be asked for.
    virtual bool_t enterObject(const String& p_name, bool_t& p_found) = 0;
    virtual bool_t leaveObject() = 0;
    /// The same for an array of records, whose count can then be asked for.
    virtual bool_t enterArray(const String& p_name, bool_t& p_found, uint32_t p_reserved) = 0;
    /// p_marker is ZYR_HEADER_FIELD_RECORD.
    virtual bool_t leaveArray(uint32_t p_marker) = 0;
    /// Enters one element and gives the type name with which it was stored, empty for a null element.
    virtual bool_t enterArrayElement(uint32_t p_index, String& p_typeName) = 0;
    virtual bool_t leaveArrayElement() = 0;

    /// Of the object entered.
    virtual const String& getCurrentObjectTypeName() const = 0;
    virtual const String& getCurrentObjectGUIDText() const = 0;
    /// Number of elements of the array entered.
    virtual uint32_t getArraySize() const = 0;
    /// As that of the serializer which wrote the data.
    virtual bool_t isBinaryFormat() const = 0;
    /// Directory against which relative deferred files resolve.
    virtual const String& getBaseDirectory() const = 0;
    virtual bool_t setBaseDirectory(const String& p_directory) = 0;

    /// Gives a new text that the caller releases, or null where null was stored.
    virtual bool_t readStringRef(const String& p_name, uint32_t& p_cache, String*& p_value, uint32_t p_reserved) = 0;
    virtual bool_t readBool(const String& p_name, uint32_t& p_cache, bool_t& p_value, uint32_t p_reserved) = 0;
    /// The items replace those of the array.
    virtual bool_t readStringArray(const String& p_name, uint32_t& p_cache, Array<String>& p_value,
                                   uint32_t p_reserved) = 0;
    /// A text format takes a word that the converter knows, or digits.
    virtual bool_t readEnum(const String& p_name, uint32_t& p_cache, uint32_t& p_value,
                            EnumerationConverter p_converter) = 0;
    /// A number that doesn't fit into the type that is asked for fails, with a line in the log: it is never cut.
    virtual bool_t readInt32(const String& p_name, uint32_t& p_cache, int32_t& p_value,
                             EnumerationConverter p_converter) = 0;
    virtual bool_t readUInt32(const String& p_name, uint32_t& p_cache, uint32_t& p_value,
                              EnumerationConverter p_converter) = 0;
    virtual bool_t readInt64(const String& p_name, uint32_t& p_cache, int64_t& p_value,
                             EnumerationConverter p_converter) = 0;
    virtual bool_t readUInt64(const String& p_name, uint32_t& p_cache, uint64_t& p_value,
                              EnumerationConverter p_converter) = 0;
    /// Gives the bits that were written.
    virtual bool_t readFloat(const String& p_name, uint32_t& p_cache, float& p_value,
                             EnumerationConverter p_converter) = 0;
    virtual bool_t readDouble(const String& p_name, uint32_t& p_cache, double& p_value,
                              EnumerationConverter p_converter) = 0;
    virtual bool_t readString(const String& p_name, uint32_t& p_cache, String& p_value,
                              EnumerationConverter p_converter) = 0;

    // Arrays: the items replace what p_value holds.
    virtual bool_t readFloatArray(const String& p_name, uint32_t& p_cache, Array<float>& p_value,
                                  uint32_t p_reserved) = 0;
    virtual bool_t readDoubleArray(const String& p_name, uint32_t& p_cache, Array<double>& p_value,
                                   uint32_t p_reserved) = 0;
    virtual bool_t readUInt32Array(const String& p_name, uint32_t& p_cache, Array<uint32_t>& p_value,
                                   uint32_t p_reserved) = 0;
    virtual bool_t readEnumArray(const String& p_name, uint32_t& p_cache, Array<uint32_t>& p_value,
                                 EnumerationConverter p_converter) = 0;

    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getDeserializerReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(Deserializer, IObject, "83fc6853-e492-49e2-8d30-4c4226c9c948")

/// The outermost layer of a serializer: the one to call.
inline ISerializer* zyr_getTopSerializer(ISerializer* p_serializer) {
    return static_cast<ISerializer*>(p_serializer->getTLIObject());
}

/// The same for reading.
inline IDeserializer* zyr_getTopDeserializer(IDeserializer* p_deserializer) {
    return static_cast<IDeserializer*>(p_deserializer->getTLIObject());
}

} // namespace zyr
