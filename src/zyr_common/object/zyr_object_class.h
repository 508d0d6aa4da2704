/// The shape of a class that extends a facade.
#pragma once

#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/object/zyr_object.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// Name and GUID of `Class`, which derives from this with the facade that it extends. All other operations stay with
/// the facade: this is the base of a class without copy semantics.
///
///     class Reader : public ObjectIdentity<Reader, WReader> {
///     public:
///         static constexpr const char* c_className = "Reader";
///         static constexpr const char* c_classGUIDText = "...";
///         Reader() { initObjectInterface(); }
///     };
template <class Class, class Facade> class ObjectIdentity : public Facade {
public:
    static const GUID_t& getStaticClassGUID() {
        static const GUID_t guid = GUID_t_fromString(Class::c_classGUIDText);
        return guid;
    }

    const String& getClassName() const override {
        static const String& name = makePermanent<String>(Class::c_className);
        return name;
    }
    const GUID_t& getClassGUID() const override { return getStaticClassGUID(); }
    bool_t findClassGUID(const GUID_t& p_classGUID) const override {
        return p_classGUID == getStaticClassGUID() ? 1 : Facade::findClassGUID(p_classGUID);
    }
    IObject* findInterfaceObjectByClassGUID(const GUID_t& p_classGUID) const override {
        if (p_classGUID == getStaticClassGUID()) {
            return const_cast<ObjectIdentity*>(this);
        }
        return Facade::findInterfaceObjectByClassGUID(p_classGUID);
    }
};

/// Class identity, clear, copy and clone of `Class`, which derives from this with the facade that it extends:
///
///     class Counter : public ObjectClass<Counter, WObject> {
///     public:
///         static constexpr const char* c_className = "Counter";
///         static constexpr const char* c_classGUIDText = "...";
///         Counter() { initObjectInterface(); init_This(); }
///         ~Counter() override { release_This(); }
///         void init_This();                        // own members to their defaults
///         void release_This();                     // frees what this level owns
///         void copy_This(const Counter* p_src);    // own members only
///     };
template <class Class, class Facade> class ObjectClass : public ObjectIdentity<Class, Facade> {
public:
    void clear() override {
        self()->release_This();
        Facade::clear();
        self()->init_This();
    }
    /// The source may be a layer around an object of this class.
    void copyUnsafe(const IObject* p_src) override {
        clear();
        const GUID_t& classGUID = ObjectIdentity<Class, Facade>::getStaticClassGUID();
        copy_Backwards(p_src != nullptr ? static_cast<const Class*>(p_src->findInterfaceObjectByClassGUID(classGUID))
                                        : nullptr);
    }
    IObject* clone() const override {
        Class* object = new Class;
        object->copyUnsafe(this);
        return object;
    }

    /// Copies the base levels, then this one. A null source ends the process.
    void copy_Backwards(const Class* p_src) {
        ZYR_ASSERT(p_src != NULL);
        if constexpr (requires { Facade::copy_Backwards(p_src); }) {
            Facade::copy_Backwards(p_src);
        } else {
            Facade::copy_This(p_src);
        }
        self()->copy_This(p_src);
    }

private:
    Class* self() { return static_cast<Class*>(this); }
};

} // namespace zyr
