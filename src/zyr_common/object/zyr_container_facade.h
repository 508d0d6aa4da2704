/// What the interfaces and facades of all containers of objects share.
#pragma once

#include "zyr_common/object/zyr_object.h"

namespace zyr {

/// Access to the level of a container. With the flag of the copy set the elements are shared by further references,
/// else they are cloned.
class IContainerReserved {
public:
    virtual ~IContainerReserved() = default;
    /// The empty state. Frees nothing.
    virtual void init_This() = 0;
    /// Gives back the references on all elements.
    virtual void release_This() = 0;
    /// Replaces the elements by those of a source of the same class, on the levels below too.
    virtual void copy_Backwards(const IObject* p_src, bool_t p_share) = 0;
    /// Read and write the levels below and then the elements. 0 when the stream fails; what was read until then stays.
    virtual bool_t readSerialized_Backwards(IDeserializer* p_deserializer) = 0;
    virtual bool_t writeSerialized_Backwards(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                             bool_t& p_result) = 0;
};

/// The base of the containers' facades.
template <class Interface> class ContainerFacade : public ObjectFacade<Interface> {
public:
    /// Copies the elements of the source, which must not be null: with the flag set as further references on them,
    /// otherwise as clones.
    void copy_Backwards(const ContainerFacade* p_src, bool_t p_share) {
        ZYR_ASSERT(p_src != NULL);
        InterfaceTraits<Interface>::reserved(this->m_interfaceObject)
            ->copy_Backwards(p_src->m_interfaceObject, p_share);
    }
    /// The same with clones.
    void copy_Backwards(const ContainerFacade* p_src) {
        ZYR_ASSERT(p_src != NULL);
        copy_Backwards(p_src, 0);
    }
};

} // namespace zyr
