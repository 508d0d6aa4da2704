/// Counted records that tell by a number of which class they are: the roots of shapes and of path commands.
///
///     template <typename T> class Shape2D : public NumberedRecord<Shape2D<T>> { ... };
///     template <typename T> class Circle : public Record<Circle<T>, Shape2D<T>> {
///     public:
///         Circle* clone() const override { return new Circle(*this); }
///         uint32_t getID() const override { return 3; }
///         ...
///     };
///
/// Whoever holds such a record by its root switches on getID and casts.
#pragma once

#include "zyr_common/memory/zyr_ref_counted_data.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

#pragma pack(push, 1)

/// The level of a root, with the operations that each class's list of fields overrides. The order of the slots is a
/// contract between separately built modules.
template <class Self> class NumberedRecord : public Record<Self, RefCountedData> {
    using Level = Record<Self, RefCountedData>;

public:
    /// Back to the defaults of the class; the count stays.
    virtual void clear() { Level::clear(); }
    /// With the type of number, as in "Shape2D{float}". Lives as long as the process.
    virtual const String& getClassName() const { return Level::getClassName(); }
    /// The number of the class; 0 for the root itself. A class that extends another one has a number of its own, and is
    /// still an object of the other.
    virtual uint32_t getID() const { return 0; }
    /// A reference to the field of this path, which the caller owns ("origin.x"); null for paths that the class doesn't
    /// have.
    virtual VariableReference* getVariableReferenceByPath(const String& p_path) {
        return Level::getVariableReferenceByPath(p_path);
    }
    /// Read and write the fields, those of the base first. 0 when the stream fails; what was read until then stays.
    virtual bool_t readSerialized(IDeserializer* p_deserializer) { return Level::readSerialized(p_deserializer); }
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return Level::writeSerialized(p_serializer, p_headerPass, p_result);
    }
};

#pragma pack(pop)

} // namespace zyr
