#include "storage/stored_sample.h"

#include "core_module/object_containers/object_containers_test.h"
#include "storage/object_fills.h"
#include "storage/record_holder.h"
#include "storage/shaped_object.h"
#include "zyr_common/formats/zyr_stored_objects.h"
#include "zyr_common/object_containers/zyr_array_of_objects.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"

#include <set>

namespace zyr::test {

namespace {

using Samples = std::vector<StoredSample>;

template <class Interface> Ref<Interface> create() {
    return Ref<Interface>::adopt(zyr_createObject<Interface>());
}

void append(Samples& p_samples, const Samples& p_more) {
    p_samples.insert(p_samples.end(), p_more.begin(), p_more.end());
}

/// What stands for another object can't be loaded while it is empty.
bool standsForAnother(const std::string& p_class) {
    return p_class == "DeferredFileObject" || p_class == "CompressedObject";
}

Ref<IObject> makeHolder(const HeldKind& p_kind, bool p_fill) {
    RecordHolder* holder = new RecordHolder;
    holder->hold(&p_kind);
    if (p_fill) {
        holder->fill();
    }
    return Ref<IObject>::adopt(holder);
}

/// Lists inside a list, the same element twice, and none.
Ref<IObject> makeNested() {
    const auto outer = create<IListOfObjects>();
    const auto inner = create<IArrayOfObjects>();
    const auto element = create<IDataFormatInfo>();
    element->setFormatName("twice");
    inner->pushBack(element.get());
    inner->pushBack(nullptr);
    inner->pushBack(create<IListOfObjects>().get());
    outer->pushBack(inner.get());
    outer->pushBack(nullptr);
    outer->pushBack(element.get());
    outer->pushBack(inner.get());
    return Ref<IObject>::share(outer.get());
}

Ref<IObject> makeDeferred() {
    const auto element = create<IDataFormatInfo>();
    element->setFormatName("in a file of its own");
    element->setDeferredFile("part.json");
    element->setDeferredFileReadOnly(1);
    const auto list = create<IListOfObjects>();
    list->pushBack(element.get());
    return Ref<IObject>::share(list.get());
}

Ref<IObject> makeRepetitive() {
    const auto info = create<INativeFormatInfo>();
    info->setFormatName("packed");
    for (int i = 0; i < 300; i++) {
        info->getMutableOriginalFile()->pushBack(static_cast<unsigned char>(i / 50));
    }
    return Ref<IObject>::share(info.get());
}

} // namespace

Ref<IObject> StoredSample::make() const {
    Ref<IObject> object = m_make();
    if (m_compression != nullptr) {
        const auto info = Ref<IObject>::adopt(zyr_createObjectFromName(m_compression));
        object->setCompressionInfo(static_cast<ICompressionInfo*>(info.get()));
    }
    return object;
}

void registerSampleClasses() {
    zyr_addObjectAllocator<RecordHolder>();
    zyr_addObjectAllocator<ShapedObject>();
}

Samples makeDefaultObjects() {
    Samples samples;
    const auto& allocators = zyr_getApplicationData()->m_objectAllocatorsByName;
    for (auto it = allocators.begin(); it != allocators.end(); ++it) {
        const std::string name = it->m_first.getData();
        if (name != RecordHolder::c_className && name != ShapedObject::c_className && !standsForAnother(name)) {
            samples.push_back(
                {"class/" + name, [name] { return Ref<IObject>::adopt(zyr_createObjectFromName(name.c_str())); }});
        }
    }
    return samples;
}

Samples makeFilledObjects() {
    Samples samples;
    for (const ObjectFill& fill : getObjectFills()) {
        samples.push_back({"filled/" + fill.m_className, [fill] {
                               auto object = Ref<IObject>::adopt(zyr_createObjectFromName(fill.m_className.c_str()));
                               fill.m_fill(object.get());
                               return object;
                           }});
    }
    return samples;
}

Samples makeRecords(bool p_withDefaults) {
    Samples samples;
    for (const HeldKind& kind : getHeldKinds()) {
        samples.push_back({"record/" + kind.m_name, [&kind] { return makeHolder(kind, true); }});
        if (p_withDefaults) {
            samples.push_back({"default/" + kind.m_name, [&kind] { return makeHolder(kind, false); }});
        }
    }
    return samples;
}

Samples makeOddObjects() {
    return {
        {"odd/nested", &makeNested},
        {"odd/deferred", &makeDeferred},
        {"odd/zip", &makeRepetitive, "ZipCompressionInfo"},
        {"odd/lz4", &makeRepetitive, "Lz4CompressionInfo"},
    };
}

Samples makeGoldenSamples() {
    Samples samples = makeDefaultObjects();
    append(samples, makeFilledObjects());
    append(samples, makeOddObjects());
    std::set<std::string> templates;
    for (const StoredSample& sample : makeRecords(false)) {
        const std::string name = sample.m_name.substr(0, sample.m_name.find('{'));
        if (templates.insert(name).second) {
            samples.push_back(sample);
        }
    }
    return samples;
}

Samples makeAllSamples() {
    Samples samples = makeDefaultObjects();
    append(samples, makeFilledObjects());
    append(samples, makeOddObjects());
    append(samples, makeRecords(true));
    return samples;
}

} // namespace zyr::test
