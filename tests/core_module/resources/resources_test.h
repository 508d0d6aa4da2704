/// What the tests of resources share.
#pragma once

#include "core_module/core_module_test.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object_containers/zyr_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/resources/zyr_resources_pack.h"
#include "zyr_common/storage/zyr_load_save.h"

#include <gmock/gmock.h>

namespace zyr {

class ResourcesTest : public CoreModuleUpTest {
protected:
    static constexpr const char* c_formats[] = {"raw", "zbf", "xml", "json"};

    template <class Interface> static Ref<Interface> make() {
        return Ref<Interface>::adopt(zyr_createObject<Interface>());
    }
    /// A GUID that differs by the number alone.
    static GUID_t guid(uint8_t p_number) {
        GUID_t result;
        result.m_data[0] = 1;
        result.m_data[15] = p_number;
        return result;
    }
    static void setGUID(IObject* p_object, const GUID_t& p_guid) {
        HashMap<GUID_t, GUID_t> replacement;
        replacement.pushBack(p_object->getGUID(), p_guid, nullptr);
        p_object->replaceGUIDsWhereAvailable(0, replacement);
    }
    static Ref<IResource> makeResource(const char* p_name, uint8_t p_guid) {
        Ref<IResource> resource = make<IResource>();
        resource->setName(p_name);
        setGUID(resource.get(), guid(p_guid));
        return resource;
    }
    static void refer(IResource* p_resource, const char* p_word, uint8_t p_guid) {
        p_resource->getMutableThumbnailResourceIDs()->pushBack(p_word, ResourceID(guid(p_guid), 3), nullptr);
    }
    static Ref<IDynamicResource> makePacked(IResource* p_resource) {
        Ref<IDynamicResource> holder = make<IDynamicResource>();
        holder->setName("holder");
        holder->setUnpackedResource(p_resource);
        EXPECT_TRUE(holder->packResourceToPackedData());
        holder->setUnpackedResource(nullptr);
        return holder;
    }
    static Ref<IResourcesCategory> makeCategory(const char* p_name, std::initializer_list<IResource*> p_resources) {
        Ref<IResourcesCategory> category = make<IResourcesCategory>();
        category->setName(p_name);
        for (IResource* resource : p_resources) {
            EXPECT_TRUE(category->pushBackResource(resource));
        }
        return category;
    }
    static Array<unsigned char> bytes(const std::string& p_text) {
        Array<unsigned char> data;
        data.pushBackRange(p_text.data(), p_text.size());
        return data;
    }
    static Array<unsigned char> save(IObject* p_object, const char* p_format) {
        Array<unsigned char> data;
        EXPECT_TRUE(zyr_saveToData(p_object, data, p_format, 0, ""));
        return data;
    }
    /// What comes back of a saved object; the test must know its class.
    template <class Interface> static Ref<Interface> saveAndLoad(IObject* p_object, const char* p_format) {
        IObject* loaded = zyr_loadFromData(save(p_object, p_format), p_format, "");
        if (loaded == nullptr) {
            ADD_FAILURE() << "nothing was loaded";
            return make<Interface>();
        }
        EXPECT_EQ(loaded->getClassName(), p_object->getClassName());
        return Ref<Interface>::adopt(static_cast<Interface*>(loaded));
    }
    static std::vector<GUID_t> collectGUIDs(const IObject* p_object, bool_t p_deep) {
        List<GUID_t> guids;
        p_object->collectGUIDsWhereAvailable(p_deep, guids);
        std::vector<GUID_t> collected;
        for (const GUID_t& collectedGUID : guids) {
            collected.push_back(collectedGUID);
        }
        return collected;
    }
    /// "category:number" for each reference, the number as in guid().
    static std::vector<std::string> textsOf(const HashMultiSet<String, GUID_t>& p_references) {
        std::vector<std::string> texts;
        for (const auto& category : p_references) {
            for (const auto& entry : category.m_second) {
                texts.push_back(std::string(category.m_first.getData()) + ":" +
                                std::to_string(entry.m_first.m_data[15]));
            }
        }
        return texts;
    }
    static std::vector<std::string> collectReferences(const IObject* p_object, bool_t p_deep) {
        HashMultiSet<String, GUID_t> references;
        p_object->collectResourceGUIDReferences(p_deep, references);
        return textsOf(references);
    }
    /// The last line in the log.
    std::string lastLine() const {
        const std::vector<std::string> lines = m_application->getMessages();
        return lines.empty() ? "" : lines.back();
    }
};

} // namespace zyr
