/// What an object tells about one of its variables: enough for a tool to show and edit it without knowing the class.
#pragma once

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/memory/zyr_ref_counted_data.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/text/zyr_string.h"
#include "zyr_common/variable/zyr_variable_types.h"

namespace zyr {

#pragma pack(push, 1)

/// Name, type and category of a variable, without its value. An object publishes a list of these; its values travel as
/// VariableValue of the same name and type. One owner at a time; only the count is safe on any thread.
///
/// Stored as "name", "type", "category", "temporary" and the list "propagationPaths". The order of the virtual
/// operations and of the members is a contract between separately built modules.
///
///     VariableDescriptor* quality = new VariableDescriptor(ZYR_VARIABLE_UINT8, ZYR_VARIABLE_CATEGORY_SCALAR, 0);
///     quality->setName("quality");
class VariableDescriptor : public Record<VariableDescriptor, RefCountedData> {
public:
    /// Without a name and a type.
    VariableDescriptor() { init_This(); }
    /// p_type must not be ZYR_VARIABLE_NONE: that ends the process.
    VariableDescriptor(VariableTypeEnum p_type, VariableCategoryEnum p_category, bool_t p_temporary);
    VariableDescriptor(const VariableDescriptor& p_src) : Record() { copy_Backwards(p_src); }
    VariableDescriptor& operator=(const VariableDescriptor& p_src) {
        copy_Backwards(p_src);
        return *this;
    }

    /// A copy with a count of its own, which the caller owns.
    VariableDescriptor* clone() const override { return new VariableDescriptor(*this); }
    VariableDescriptor* addRef() override;
    void release() override;
    /// Back to the state of a new descriptor, without a type.
    virtual void clear();
    /// Read and write all fields. 0 when the stream fails; what was read until then stays.
    virtual bool_t readSerialized(IDeserializer* p_deserializer) { return Record::readSerialized(p_deserializer); }
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return Record::writeSerialized(p_serializer, p_headerPass, p_result);
    }
    /// The word by which paths and values name the variable.
    virtual const String& getName() const { return m_name; }
    /// Copies the text; that it is unique in its object is the object's matter.
    virtual void setName(const String& p_name) { m_name = p_name; }
    /// Fixed by the constructor or by reading.
    virtual VariableTypeEnum getType() const { return m_type; }
    /// Bytes of a value of the type; 0 for texts and pointers.
    virtual size_t getTypeSize() const { return zyr_getVariableTypeSize(m_type); }
    /// For editors; independent of the type.
    virtual VariableCategoryEnum getCategory() const { return m_category; }
    /// Where changes of the variable go on to, in the order in which they were added; what that does is the host's.
    virtual const List<String>& getPropagationPaths() const { return m_propagationPaths; }
    /// The owner doesn't store the value of a temporary variable.
    virtual bool_t isTemporary() const { return m_temporary; }
    virtual void setTemporary(bool_t p_temporary) { m_temporary = p_temporary; }
    /// Adds a path, also one that is there already.
    virtual void pushBackPropagationPath(const String& p_path) { m_propagationPaths.pushBack(p_path); }
    /// Forgets all paths.
    virtual void clearPropagationPaths() { m_propagationPaths.clear(); }

    /// The defaults of all members but the paths.
    void init_This();
    /// Empties name and paths.
    void release_This();

    static constexpr const char* c_typeName = "VariableDescriptor";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("name", &VariableDescriptor::m_name),
                          zyr_field("type", &VariableDescriptor::m_type),
                          zyr_field("category", &VariableDescriptor::m_category).withoutAttributeMark(),
                          zyr_field("temporary", &VariableDescriptor::m_temporary).withoutDeclaration(),
                          zyr_field("propagationPaths", &VariableDescriptor::m_propagationPaths));
    }

private:
    String m_name;
    VariableTypeEnum m_type;
    VariableCategoryEnum m_category;
    bool_t m_temporary;
    /// words joined by periods, from the object that publishes the variable on
    List<String> m_propagationPaths;
};

#pragma pack(pop)

static_assert(sizeof(VariableDescriptor) == 193 && alignof(VariableDescriptor) == 1);

} // namespace zyr
