/// The state of the object model behind every implementation: count, instance GUID, flags, deferred file, compression
/// info and the link to the outermost layer.
#pragma once

#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/zyr_types.h"

namespace zyr {

/// What ObjectLevel forwards to. It knows nothing of the interface, so that it is compiled once. `p_self` is always the
/// object that holds the state. Not thread safe apart from the count.
class ObjectState {
public:
    /// A new object's state: one owner, no GUID, not dirty.
    ObjectState();
    ObjectState(const ObjectState&) = delete;
    ObjectState& operator=(const ObjectState&) = delete;
    /// Gives back what the state holds.
    ~ObjectState();

    /// The link to the outermost layer, or the object itself where there is no outer one.
    IObject* getTLIObject(const IObject* p_self) const {
        return m_tliObject != nullptr ? m_tliObject : const_cast<IObject*>(p_self);
    }
    /// Copies a source of the class of the outermost layer or of one derived from it.
    static bool_t copy(IObject* p_self, const IObject* p_src);
    /// The four operations of IObject that need the object itself; see there.
    static bool_t queryInterfaceObject(const IObject* p_self, const GUID_t& p_classGUID, IObject** p_object);
    static bool_t setVariableValue(IObject* p_self, const String& p_name, VariableValue* p_value);
    static bool_t setVariableValueByPath(IObject* p_self, const String& p_path, VariableValue* p_value);

    /// Appends the GUID unless it is all zero.
    void collectGUIDs(List<GUID_t>& p_guids) const;
    /// Puts the replacement in the place of the GUID where there is one.
    void replaceGUID(HashMap<GUID_t, GUID_t>& p_replacements);
    /// Counts upward behind the first half of the class GUID, over all objects of the module.
    void setFakeCounterGUID(const IObject* p_self);

    uint32_t getRefCount() const;
    /// Safe on any thread, like release.
    void addRef();
    /// Gives true when this was the last reference.
    bool_t release();

    String* getDeferredFile() const { return m_deferredFile.get(); }
    /// A new text; an empty path takes the file away.
    void setDeferredFile(const String& p_path);
    /// Takes a reference of its own; null removes it.
    void setCompressionInfo(ICompressionInfo* p_compressionInfo);
    ICompressionInfo* getCompressionInfo(bool_t p_addReference) const;

    /// Everything but the count and the link, as in a new object.
    void init();
    /// Gives the text and the compression info back.
    void releaseOwned();
    /// Takes over everything but the count, the delete-pending flag and the link.
    void copyFrom(const IObject* p_src);

    /// Not owned: the outer layer outlives this one.
    IObject* m_tliObject = nullptr;
    /// all zero for none
    GUID_t m_guid;
    /// three marks, which nothing here looks at
    bool_t m_dirty = 0;
    bool_t m_deletePending = 0;
    bool_t m_deferredFileReadOnly = 0;

private:
    /// A counted text of its own, so that a caller can hold it over a change.
    Ref<String> m_deferredFile;
    /// null where the object is not to be compressed
    Ref<ICompressionInfo> m_compressionInfo;
    /// owners beyond the first
    volatile uint32_t m_refCount = 0;
};

} // namespace zyr
