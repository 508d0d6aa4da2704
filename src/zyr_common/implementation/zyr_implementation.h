/// How a module implements an interface of the object model.
///
/// An implementation is a chain of levels, one for each interface of the chain. The first, ObjectLevel, has the state
/// of the object model; a further level derives from the level of its base interface and adds the operations of its own
/// interface. A class that no other level derives from is concrete, with its bodies in its source:
///
///     class LexerLevel : public UnstoredLevel<ObjectLevel<ILexer>, ILexer> {
///     public:
///         void clearKeywords() override;
///         ...
///         ILevelReserved* getLexerReserved() const override { return &m_lexerReserved; }
///
///         void init_This();
///         void release_This();
///         void copy_This(const ILexer* p_src);
///     private:
///         mutable LevelReserved<LexerLevel> m_lexerReserved{this};
///     };
///
///     using Lexer = Implementation<LexerLevel>;      // the class that is registered
///
/// A level that others derive from is a template over the most derived interface:
///
///     template <class Interface>
///     class CompressionInfoLevel : public StateLevel<DataFormatInfoLevel<Interface>, ICompressionInfo,
///     CompressionInfoState> { ... };
///
/// Base of a level: StateLevel where the members are fields of a record, UnstoredLevel where nothing is stored,
/// ContainerLevel (zyr_container_level.h) for containers of objects; otherwise the base level itself, and then the
/// level names LevelBase and LevelInterface and reads and writes its members itself.
///
/// A source of a copy may be another module's implementation or a facade, so copy_This reads it through its interface.
/// The class GUID and the class name of an implementation are those of its interface. Objects are not thread safe apart
/// from their count.
#pragma once

#include "zyr_common/implementation/zyr_level.h"
#include "zyr_common/implementation/zyr_object_level.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/serialization/zyr_serializer.h"

namespace zyr {

/// The class of an implementation, on top of its last level.
template <class LevelType> class Implementation final : public LevelType {
public:
    /// What factories give the object as.
    using Interface = typename LevelType::ImplementedInterface;

    /// The source may be a layer around an object of this class.
    void copyUnsafe(const IObject* p_src) override {
        ZYR_ASSERT(p_src != NULL);
        const Interface* source = zyr_findLayer<Interface>(p_src);
        ZYR_ASSERT(source != NULL);
        clear();
        copyLevels<LevelType>(*this, source);
    }
    /// A new object of this class with the levels of this one copied; a facade around this one is not.
    IObject* clone() const override {
        Implementation* object = new Implementation;
        object->copyUnsafe(this);
        return object;
    }
    /// All levels give back what they hold, the last one first, and begin anew.
    void clear() override { clearLevels<LevelType>(*this); }

    /// All levels through the outermost layer of the deserializer, up to the first failure.
    bool_t readSerialized(IDeserializer* p_deserializer) override {
        return readLevels<LevelType>(*this, zyr_getTopDeserializer(p_deserializer));
    }
    /// All levels through the outermost layer of the serializer: once for a binary format, twice for a text format.
    bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) override {
        ISerializer* serializer = zyr_getTopSerializer(p_serializer);
        const bool_t firstPass = !serializer->isBinaryFormat();
        p_result = writeLevels<LevelType>(*this, serializer, firstPass, p_headerPass, p_result);
        if (p_result && firstPass) {
            p_result = writeLevels<LevelType>(*this, serializer, 0, p_headerPass, p_result);
        }
        return p_result;
    }
};

} // namespace zyr
