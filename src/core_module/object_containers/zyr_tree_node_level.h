/// What the nodes of all trees of objects share.
#pragma once

#include "zyr_common/implementation/zyr_container_level.h"

namespace zyr {

/// A node over the plain container of its children. `Interface` has getParent, setParent and getNodes.
template <class Interface, class Container> class TreeNodeLevel : public ContainerLevel<Interface, Container> {
    using Base = ContainerLevel<Interface, Container>;

public:
    using LevelBase = typename Base::LevelBase;
    using LevelInterface = Interface;

    ~TreeNodeLevel() override { TreeNodeLevel::release_This(); }

    void setItems(const Interface* p_src, bool_t p_share) override {
        ZYR_ASSERT(p_src != NULL);
        // The source may be this node.
        Container items;
        const Container& nodes = p_src->getNodes();
        this->copyItems(items, nodes.begin(), nodes.end(), p_share);
        this->useItems(items);
        for (const auto& item : m_items) {
            visitItem(item, [&](const Key&, IObject* p_node) {
                // A shared root that stands above would make the way up endless.
                if (!p_share || (asNode(p_node)->getParent(0) == nullptr && !standsAbove(p_node))) {
                    adopt(p_node);
                }
            });
        }
    }
    Interface* getParent(uint32_t p_level) const override {
        Interface* parent = m_parent;
        for (; p_level > 0 && parent != nullptr; p_level--) {
            parent = parent->getParent(0);
        }
        return parent;
    }
    void setParent(Interface* p_parent) override { m_parent = p_parent; }
    const Container& getNodes() const override { return m_items; }
    void clearNodes() override { this->release_This(); }

    void copy_This(const Interface* p_src) { setItems(p_src, 0); }

protected:
    using Key = typename Base::Key;
    using Base::m_items;

    /// Only nodes of the interface get in.
    static Interface* asNode(IObject* p_object) { return static_cast<Interface*>(p_object); }
    Interface* getTopNode() const { return asNode(this->getTLIObject()); }

    /// Whether the node may become a child; a line tells why it may not.
    bool_t checkNode(const Interface* p_node) const {
        if (p_node == nullptr) {
            ZYR_LOG_WARN("Unable to add NULL node to the tree");
            return 0;
        }
        if (standsAbove(p_node)) {
            ZYR_LOG_WARN("Unable to add node to the tree: it is the parent itself or stands above it");
            return 0;
        }
        return 1;
    }
    /// Whether the node is this one or stands above it.
    bool standsAbove(const IObject* p_node) const {
        const IObject* top = p_node->getTLIObject();
        const Interface* node = getTopNode();
        while (node != nullptr && node->getTLIObject() != top) {
            node = node->getParent(0);
        }
        return node != nullptr;
    }
    void adopt(IObject* p_node) { asNode(p_node)->setParent(getTopNode()); }

    Interface* findBelow(const GUID_t& p_guid, bool_t p_deep) const {
        Interface* found = nullptr;
        for (const auto& item : m_items) {
            visitItem(item, [&](const Key&, IObject* p_node) {
                if (found == nullptr && p_node->getGUID() == p_guid) {
                    found = asNode(p_node);
                }
            });
        }
        if (found == nullptr && p_deep) {
            found = findDeeper(p_guid);
        }
        return found;
    }

    /// A node that leaves has no parent, unless it has become another one's child.
    void letGo(IObject* p_element) override {
        if (p_element != nullptr) {
            const Interface* parent = asNode(p_element)->getParent(0);
            if (parent != nullptr && parent->getTLIObject() == this->getTLIObject()) {
                asNode(p_element)->setParent(nullptr);
            }
            p_element->release();
        }
    }
    bool_t acceptElement(const Container&, const Key&, IObject* p_element) override {
        if (p_element == nullptr || !p_element->findClassGUID(zyr_getInterfaceGUID<Interface>()) ||
            p_element->getClassTemplateTypeName() != this->getClassTemplateTypeName()) {
            return 0;
        }
        adopt(p_element);
        return 1;
    }

private:
    /// Only interfaces with the operation are searched below their children.
    Interface* findDeeper(const GUID_t& p_guid) const {
        Interface* found = nullptr;
        const ContainerVisit visit(&this->getClassName());
        if constexpr (requires(const Interface* p_node) { p_node->findNodeByGUID(p_guid, bool_t()); }) {
            for (const auto& item : m_items) {
                visitItem(item, [&](const Key&, IObject* p_node) {
                    if (found == nullptr && !visit.isGivenUp()) {
                        found = asNode(p_node)->findNodeByGUID(p_guid, 1);
                    }
                });
            }
        }
        return found;
    }

    /// Not counted: the parent holds this node.
    Interface* m_parent = nullptr;
};

} // namespace zyr
