/// The list of objects.
#pragma once

#include "zyr_common/implementation/zyr_container_level.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"

namespace zyr {

/// See IListOfObjects for the operations. A copy holds clones of the elements, unless it asks for shared ones. Null is
/// refused with a line.
class ListOfObjectsLevel : public ContainerLevel<IListOfObjects, List<IObject*>> {
    using iterator = List<IObject*>::iterator;
    using const_iterator = List<IObject*>::const_iterator;

public:
    void setItems(const IListOfObjects* p_src, bool_t p_share) override;
    iterator begin() override { return m_items.begin(); }
    const_iterator beginConst() const override { return m_items.beginConst(); }
    iterator end() override { return m_items.end(); }
    const_iterator endConst() const override { return m_items.endConst(); }
    bool_t isEmpty() const override { return m_items.isEmpty(); }
    uint64_t getSize() const override { return m_items.getSize(); }
    IObject* front() override { return m_items.isEmpty() ? nullptr : m_items.front(); }
    const IObject* frontConst() const override { return m_items.isEmpty() ? nullptr : m_items.frontConst(); }
    IObject* back() override { return m_items.isEmpty() ? nullptr : m_items.back(); }
    const IObject* backConst() const override { return m_items.isEmpty() ? nullptr : m_items.backConst(); }
    void pushFront(IObject* p_object) override;
    void popFront() override;
    void pushBack(IObject* p_object) override;
    void popBack() override;
    void insert(iterator& p_position, bool_t p_after, IObject* p_object) override;
    void remove(iterator& p_position) override;
    void removeRange(iterator& p_first, iterator& p_last) override;
    /// The other list may be another module's, so the elements are exchanged through its operations.
    void swap(IListOfObjects* p_other) override;
    iterator find(IObject* p_object) override;
    const_iterator findConst(IObject* p_object) const override;
    uint64_t count(IObject* p_object) const override;
    IContainerReserved* getListOfObjectsReserved() const override { return &m_listOfObjectsReserved; }

    void copy_This(const IListOfObjects* p_src) { setItems(p_src, 0); }

private:
    bool_t acceptElement(const List<IObject*>&, const NoKey&, IObject* p_element) override {
        return p_element != nullptr;
    }

    mutable ContainerReserved<ListOfObjectsLevel> m_listOfObjectsReserved{this};
};

using ListOfObjects = Implementation<ListOfObjectsLevel>;

} // namespace zyr
