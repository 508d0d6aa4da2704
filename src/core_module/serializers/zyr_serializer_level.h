/// What the four serializers and the four deserializers have in common.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/serialization/zyr_serializer_reserved.h"
#include "zyr_common/variable/zyr_variable_reference.h"

namespace zyr {

/// The identity of a class that implements an interface which several classes share.
#define ZYR_SERIALIZER_CLASS(Name, BaseInterface, guidText)                                                            \
    class I##Name : public BaseInterface {};                                                                           \
    template <> struct InterfaceTraits<I##Name> {                                                                      \
        using Base = BaseInterface;                                                                                    \
        static constexpr const char* c_typeName = #Name;                                                               \
        static constexpr const char* c_createdText = "interface" #Name " != NULL";                                     \
        static constexpr const char* c_guidText = guidText;                                                            \
        static auto* reserved(const I##Name* p_object) { return InterfaceTraits<BaseInterface>::reserved(p_object); }  \
    };

/// Sets the size of an array with its usual model without the slots that this would add. False without memory.
template <typename T> bool resizeExactly(Array<T>& p_array, size_t p_size) {
    if (p_array.getAllocCondition() != ZYR_ALLOC_CONDITION_ON_RESIZE ||
        p_array.getAllocStep() != ZYR_ALLOC_STEP_POWER_OF_TWO) {
        return p_array.resize(p_size);
    }
    p_array.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, 1);
    const bool done = p_array.resize(p_size);
    p_array.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, ZYR_ALLOC_STEP_POWER_OF_TWO);
    return done;
}

/// Puts the end behind what was written; it goes again when more is. Without memory for it there is no output.
template <class Output> void completeOutput(Output& p_output) {
    auto& buffer = p_output.m_buffer;
    if (buffer.isSealed()) {
        return;
    }
    const size_t size = buffer.getSize();
    if (!p_output.complete()) {
        buffer.close();
    } else if (buffer.getSize() != size) {
        buffer.seal(size);
    }
}

/// The directory against which deferred files resolve. A copy of a serializer has its settings and no output.
template <class Interface, class LevelInterfaceType>
class DirectoryLevel : public UnstoredLevel<ObjectLevel<Interface>, LevelInterfaceType> {
public:
    const String& getBaseDirectory() const override { return m_baseDirectory; }
    bool_t setBaseDirectory(const String& p_directory) override {
        m_baseDirectory = p_directory;
        return 1;
    }

    void init_This() {}
    void release_This() { m_baseDirectory.clear(); }
    void copy_This(const LevelInterfaceType* p_src) { m_baseDirectory = p_src->getBaseDirectory(); }

protected:
    String m_baseDirectory;
};

template <class Interface> class SerializerLevel : public DirectoryLevel<Interface, ISerializer> {
    using Base = DirectoryLevel<Interface, ISerializer>;

    class Reserved final : public LevelReserved<SerializerLevel, ISerializerReserved> {
    public:
        using LevelReserved<SerializerLevel, ISerializerReserved>::LevelReserved;
        size_t writeFields(const FieldRow* p_rows, const void* const* p_values, size_t p_count) override {
            // An outer layer may have operations of its own.
            return this->m_level->getTLIObject() == this->m_level ? this->m_level->writeRows(p_rows, p_values, p_count)
                                                                  : 0;
        }
        void* giveOutput(const void* p_data, size_t p_front, size_t p_capacity) override {
            return this->m_level->giveBuffer(p_data, p_front, p_capacity);
        }
    };

public:
    bool_t isWritingDeferredFiles() const override { return m_writingDeferredFiles; }
    bool_t setWritingDeferredFiles(bool_t p_write) override {
        m_writingDeferredFiles = p_write;
        return 1;
    }
    ILevelReserved* getSerializerReserved() const override { return &m_serializerReserved; }
    IObject* findInterfaceObjectByClassGUID(const GUID_t& p_classGUID) const override {
        return p_classGUID == zyr_getFieldRowsGUID() ? const_cast<SerializerLevel*>(this)
                                                     : Base::findInterfaceObjectByClassGUID(p_classGUID);
    }

    void release_This() {
        Base::release_This();
        m_writingDeferredFiles = 0;
    }
    void copy_This(const ISerializer* p_src) {
        Base::copy_This(p_src);
        m_writingDeferredFiles = p_src->isWritingDeferredFiles();
    }

private:
    // What the reserved object does; see there.
    virtual size_t writeRows(const FieldRow*, const void* const*, size_t) { return 0; }
    virtual void* giveBuffer(const void* p_data, size_t p_front, size_t p_capacity) = 0;

    bool_t m_writingDeferredFiles = 0;
    mutable Reserved m_serializerReserved{this};
};

template <class Interface> class DeserializerLevel : public DirectoryLevel<Interface, IDeserializer> {
    using Base = DirectoryLevel<Interface, IDeserializer>;

    class Reserved final : public LevelReserved<DeserializerLevel, IDeserializerReserved> {
    public:
        using LevelReserved<DeserializerLevel, IDeserializerReserved>::LevelReserved;
        size_t readFields(const FieldRow* p_rows, void* const* p_values, size_t p_count) override {
            return this->m_level->getTLIObject() == this->m_level ? this->m_level->readRows(p_rows, p_values, p_count)
                                                                  : 0;
        }
    };

public:
    /// "bytesToUnpack" and "filesToOpen": what the load that uses the deserializer may still do, together with those
    /// inside it, in whichever module.
    VariableReference* getVariableReferenceByPath(const String& p_path) override {
        if (p_path == "bytesToUnpack") {
            return new VariableReference(ZYR_VARIABLE_UINT64, &m_bytesToUnpack);
        }
        if (p_path == "filesToOpen") {
            return new VariableReference(ZYR_VARIABLE_UINT64, &m_filesToOpen);
        }
        return Base::getVariableReferenceByPath(p_path);
    }
    ILevelReserved* getDeserializerReserved() const override { return &m_deserializerReserved; }
    IObject* findInterfaceObjectByClassGUID(const GUID_t& p_classGUID) const override {
        return p_classGUID == zyr_getFieldRowsGUID() ? const_cast<DeserializerLevel*>(this)
                                                     : Base::findInterfaceObjectByClassGUID(p_classGUID);
    }

private:
    virtual size_t readRows(const FieldRow*, void* const*, size_t) { return 0; }

    // Without a load nothing is limited.
    uint64_t m_bytesToUnpack = UINT64_MAX;
    uint64_t m_filesToOpen = UINT64_MAX;
    mutable Reserved m_deserializerReserved{this};
};

} // namespace zyr
