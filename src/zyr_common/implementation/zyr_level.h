/// The levels of an implementation, walked one after the other, and the reserved object that gives a facade's subclass
/// access to one of them.
///
/// A level names its base level (LevelBase, void for the first one) and the interface that it implements
/// (LevelInterface), and defines init_This, release_This, copy_This, readSerialized_This and writeSerialized_This for
/// its own members. See zyr_implementation.h for how they are put together.
#pragma once

#include "zyr_common/object/zyr_object.h"

#include <type_traits>

namespace zyr {

/// Runs release_This from the last level to the first and init_This from the first to the last.
template <class LevelType> void clearLevels(LevelType& p_level) {
    p_level.LevelType::release_This();
    if constexpr (!std::is_void_v<typename LevelType::LevelBase>) {
        clearLevels<typename LevelType::LevelBase>(p_level);
    }
    p_level.LevelType::init_This();
}

/// Runs copy_This from the first level to the last.
template <class LevelType> void copyLevels(LevelType& p_level, const typename LevelType::LevelInterface* p_src) {
    if constexpr (!std::is_void_v<typename LevelType::LevelBase>) {
        copyLevels<typename LevelType::LevelBase>(p_level, p_src);
    }
    p_level.LevelType::copy_This(p_src);
}

/// Runs readSerialized_This from the first level to the last, up to the first failure.
template <class LevelType> bool_t readLevels(LevelType& p_level, IDeserializer* p_deserializer) {
    if constexpr (!std::is_void_v<typename LevelType::LevelBase>) {
        if (!readLevels<typename LevelType::LevelBase>(p_level, p_deserializer)) {
            return 0;
        }
    }
    return p_level.LevelType::readSerialized_This(p_deserializer);
}

/// Runs writeSerialized_This from the first level to the last, up to the first failure.
template <class LevelType>
bool_t writeLevels(LevelType& p_level, ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                   bool_t& p_result) {
    if constexpr (!std::is_void_v<typename LevelType::LevelBase>) {
        if (!writeLevels<typename LevelType::LevelBase>(p_level, p_serializer, p_firstPass, p_headerPass, p_result)) {
            return 0;
        }
    }
    return p_level.LevelType::writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result);
}

/// The reserved object of a level, which is a member of it. `Reserved` is the class that the interface declares; one
/// with setters in front derives from this and adds them.
template <class LevelType, class Reserved = ILevelReserved> class LevelReserved : public Reserved {
public:
    /// Belongs to the level that is handed in, as a member of it.
    explicit LevelReserved(LevelType* p_level) : m_level(p_level) {}
    LevelReserved(const LevelReserved&) = delete;
    LevelReserved& operator=(const LevelReserved&) = delete;

    /// This level alone; the levels below have reserved objects of their own.
    void init_This() override { m_level->LevelType::init_This(); }
    void release_This() override { m_level->LevelType::release_This(); }
    // Those of these that `Reserved` declares are its virtual operations; the others are never called.
    // NOLINTBEGIN(modernize-use-override)
    void copy_Backwards(const IObject* p_src) {
        copyLevels(*m_level, static_cast<const typename LevelType::LevelInterface*>(p_src));
    }
    bool_t readSerialized_Backwards(IDeserializer* p_deserializer) { return readLevels(*m_level, p_deserializer); }
    bool_t writeSerialized_Backwards(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                     bool_t& p_result) {
        return writeLevels(*m_level, p_serializer, p_firstPass, p_headerPass, p_result);
    }
    // The names of the object level.
    void copy_This(const IObject* p_src) { m_level->LevelType::copy_This(p_src); }
    bool_t readSerialized_This(IDeserializer* p_deserializer) {
        return m_level->LevelType::readSerialized_This(p_deserializer);
    }
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result) {
        return m_level->LevelType::writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result);
    }
    // NOLINTEND(modernize-use-override)

protected:
    /// the level that this is a member of
    LevelType* m_level;
};

/// What a level without stored fields brings: nothing is read and nothing written. `Base` is the level below.
template <class Base, class LevelInterfaceType> class UnstoredLevel : public Base {
public:
    using LevelBase = Base;
    using LevelInterface = LevelInterfaceType;

    bool_t readSerialized_This(IDeserializer*) { return 1; }
    bool_t writeSerialized_This(ISerializer*, bool_t, bool_t, bool_t& p_result) {
        p_result = 1;
        return 1;
    }
};

/// A level whose members are the fields of a record. It brings everything but the operations and copy_This.
template <class Base, class LevelInterfaceType, class State> class StateLevel : public Base {
public:
    using LevelBase = Base;
    using LevelInterface = LevelInterfaceType;

    /// The words of the record first, then those of the levels below.
    VariableReference* getVariableReferenceByPath(const String& p_path) override {
        VariableReference* reference = m_state.getVariableReferenceByPath(p_path);
        return reference != nullptr ? reference : Base::getVariableReferenceByPath(p_path);
    }

    void init_This() { m_state.init_This(); }
    void release_This() { m_state.release_This(); }
    bool_t readSerialized_This(IDeserializer* p_deserializer) { return m_state.readSerialized_This(p_deserializer); }
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result) {
        return m_state.writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result);
    }

protected:
    /// one record, whose field list says how it is stored
    State m_state;
};

} // namespace zyr
