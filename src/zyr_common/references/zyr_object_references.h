/// How objects refer to each other in files: by name or by GUID, never by pointer.
///
/// A reference record holds the key of an object and, while it is resolved, the object itself with one reference. The
/// key alone is stored; whoever owns the record fills in the object after loading:
///
///     ObjectGUIDReference reference;
///     reference.readSerialized(deserializer);
///     reference.refObject(findObject(reference.getGUID()), GUID_t()); // resolved under the key that was read
///
/// A record that is copied gives its key and not its object. One owner at a time. The order of the virtual operations
/// and of the members is a contract between separately built modules.
#pragma once

#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

#pragma pack(push, 1)

/// A reference by name. Stored as "nameRef".
class ObjectNameReference : public Record<ObjectNameReference> {
public:
    ObjectNameReference() { init_This(); }
    /// Takes over the name; see copy_This.
    ObjectNameReference(const ObjectNameReference& p_src) : Record() {
        init_This();
        copy_This(p_src);
    }
    ObjectNameReference& operator=(const ObjectNameReference& p_src) {
        copy_This(p_src);
        return *this;
    }
    virtual ~ObjectNameReference() { release_This(); }

    /// Releases the object and empties the name; dirty, like a new record.
    virtual void clear() { Record::clear(); }
    /// Read and write the key. Reading changes neither the object that is held nor the flag.
    virtual bool_t readSerialized(IDeserializer* p_deserializer) { return Record::readSerialized(p_deserializer); }
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return Record::writeSerialized(p_serializer, p_headerPass, p_result);
    }
    /// Holds p_object, which may be null, instead of the present one, and stores the name. With an object, an empty
    /// name keeps the present one. Sets dirty; gives 1.
    virtual bool_t refObject(IObject* p_object, const String& p_name);
    /// The object, without a reference for the caller; null while unresolved.
    virtual IObject* getObject() const { return m_object; }
    /// The key; empty in a new record.
    virtual const String& getName() const { return m_name; }
    /// Set as long as the key may have changed since whoever looks at the flag has seen it. Nothing here clears it.
    virtual void setDirty(bool_t p_dirty) { m_dirty = p_dirty; }
    virtual bool_t isDirty() { return m_dirty; }

    /// The state of a new record: unresolved and dirty. Frees nothing.
    void init_This();
    /// Releases the object and empties the name. The pointer stays as it is: init_This has to follow.
    void release_This();
    /// Takes over the name alone: the result is unresolved and dirty.
    void copy_This(const ObjectNameReference& p_src);

    static constexpr const char* c_typeName = "ObjectNameReference";
    static constexpr auto fields() { return zyr_fields(zyr_field("nameRef", &ObjectNameReference::m_name)); }
    /// The object and the flag are not stored.
    static constexpr size_t c_unlistedSize = sizeof(IObject*) + sizeof(bool_t);

private:
    /// one reference of its own; null while unresolved
    IObject* m_object;
    String m_name;
    bool_t m_dirty;
};

/// A reference by GUID. Stored as "guidRef".
class ObjectGUIDReference : public Record<ObjectGUIDReference> {
public:
    ObjectGUIDReference() { init_This(); }
    /// Takes over the GUID; see copy_This.
    ObjectGUIDReference(const ObjectGUIDReference& p_src) : Record() {
        init_This();
        copy_This(p_src);
    }
    ObjectGUIDReference& operator=(const ObjectGUIDReference& p_src) {
        copy_This(p_src);
        return *this;
    }
    virtual ~ObjectGUIDReference() { release_This(); }

    /// Releases the object and zeroes the GUID; dirty, like a new record.
    virtual void clear() { Record::clear(); }
    /// See ObjectNameReference.
    virtual bool_t readSerialized(IDeserializer* p_deserializer) { return Record::readSerialized(p_deserializer); }
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return Record::writeSerialized(p_serializer, p_headerPass, p_result);
    }
    /// Holds p_object, which may be null, instead of the present one, and stores the GUID. With an object, the null
    /// GUID keeps the present one. Sets dirty; gives 1.
    virtual bool_t refObject(IObject* p_object, const GUID_t& p_guid);
    /// The object, without a reference for the caller; null while unresolved.
    virtual IObject* getObject() const { return m_object; }
    virtual const GUID_t& getGUID() const { return m_guid; }
    /// Stores the GUID and marks the record dirty; the object stays.
    virtual void setGUID(const GUID_t& p_guid);
    virtual void setDirty(bool_t p_dirty) { m_dirty = p_dirty; }
    virtual bool_t isDirty() const { return m_dirty; }

    void init_This();
    /// Releases the object and zeroes the GUID. The pointer stays as it is: init_This has to follow.
    void release_This();
    /// Takes over the GUID alone: the result is unresolved and dirty.
    void copy_This(const ObjectGUIDReference& p_src);

    static constexpr const char* c_typeName = "ObjectGUIDReference";
    static constexpr auto fields() { return zyr_fields(zyr_field("guidRef", &ObjectGUIDReference::m_guid)); }
    /// The object and the flag are not stored.
    static constexpr size_t c_unlistedSize = sizeof(IObject*) + sizeof(bool_t);

private:
    IObject* m_object;
    GUID_t m_guid;
    bool_t m_dirty;
};

/// A reference to one input of an object. Stored as "guidRef" and "inputIndex".
class ObjectInputGUIDReference : public Record<ObjectInputGUIDReference, ObjectGUIDReference> {
public:
    ObjectInputGUIDReference() { init_This(); }

    /// refObject, and then the index; gives what refObject gives.
    virtual bool_t refObjectInputIndex(IObject* p_object, const GUID_t& p_guid, uint32_t p_inputIndex);
    virtual uint32_t getInputIndex() const { return m_inputIndex; }

    static constexpr const char* c_typeName = "ObjectInputGUIDReference";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("inputIndex", &ObjectInputGUIDReference::m_inputIndex));
    }
    static constexpr size_t c_unlistedSize = 0;

private:
    uint32_t m_inputIndex;
};

#pragma pack(pop)

static_assert(sizeof(ObjectNameReference) == 129 && alignof(ObjectNameReference) == 1);
static_assert(sizeof(ObjectGUIDReference) == 33 && alignof(ObjectGUIDReference) == 1);
static_assert(sizeof(ObjectInputGUIDReference) == 37 && alignof(ObjectInputGUIDReference) == 1);

} // namespace zyr
