#include "host/conform/zyr_conform_bench.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/storage/zyr_load_save.h"

#include <cstring>

namespace zyr::host {

namespace {

std::vector<RegisteredClass> startWithClasses(PluginBench& p_bench) {
    p_bench.start();
    if (p_bench.getClasses().empty()) {
        throw ConformSkip("it registers no class");
    }
    return p_bench.getClasses();
}

/// A new object by name agrees with one by GUID.
void checkClass(PluginBench& p_bench, const RegisteredClass& p_class) {
    const std::string guid = toText(p_class.m_guid);
    require(!p_class.m_name.empty(), "class " + guid + " has the name of another class");
    const Ref<IObject> object = p_bench.create(p_class);
    require(toText(object->getClassName()) == p_class.m_name,
            "an object of " + p_class.m_name + " calls itself " + toText(object->getClassName()));
    require(object->getClassGUID() == p_class.m_guid,
            p_class.m_name + " was registered under a GUID that is not its own");
    require(object->findClassGUID(p_class.m_guid) && object->findClassGUID(zyr_getInterfaceGUID<IObject>()),
            p_class.m_name + " does not answer to its own GUID and that of objects");
    IObject* layer = object->findInterfaceObjectByClassGUID(p_class.m_guid);
    require(layer != nullptr && layer->getClassGUID() == p_class.m_guid,
            p_class.m_name + " does not find its own layer by its GUID");
    require(object->getRefCount() == 0, "a new object of " + p_class.m_name + " has more than one owner");
    p_bench.call(*object, "addRef and release", [&] {
        object->addRef();
        object->release();
        return 0;
    });
    require(object->getRefCount() == 0, "references of " + p_class.m_name + " are not counted");
    IObject* byName = p_bench.call(p_class.m_name, "the constructor", 0,
                                   [&] { return zyr_createObjectFromName(String(p_class.m_name)); });
    require(byName != nullptr && byName->getClassGUID() == p_class.m_guid,
            p_class.m_name + " by its name is of another class than by its GUID");
    const Ref<IObject> owner = Ref<IObject>::adopt(byName);
}

void checkRegistration(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    for (const RegisteredClass& entry : startWithClasses(bench)) {
        checkClass(bench, entry);
    }
}

void checkClashes(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    const std::vector<RegisteredClass> classes = startWithClasses(bench);
    const ApplicationData& data = bench.getData();
    // Who comes second is not registered: what a module has by one key and lacks by the other shows it.
    require(data.m_objectAllocatorsByName.getSize() == data.m_objectAllocatorsByGUID.getSize(),
            "it registers " + std::to_string(classes.size()) + " classes, of which another module has names or GUIDs");
    GUID_t own;
    own.fromString(bench.getExports().m_getGUID());
    for (const RegisteredClass& entry : classes) {
        require(own != entry.m_guid, entry.m_name + " has the GUID of its module");
        require(entry.m_guid != GUID_t(), entry.m_name + " has a GUID that is all zero");
    }
}

/// Classes of streams and frames have no copies.
bool isCopied(const IObject& p_object) {
    return !p_object.findClassGUID(zyr_getInterfaceGUID<IFrameEncoderContext>()) &&
           !p_object.findClassGUID(zyr_getInterfaceGUID<IFrameDecoderContext>());
}

void checkCopies(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    for (const RegisteredClass& entry : startWithClasses(bench)) {
        const Ref<IObject> object = bench.create(entry);
        if (!isCopied(*object)) {
            continue;
        }
        IObject* clone = bench.call(*object, "clone", [&] { return object->clone(); });
        require(clone != nullptr, "clone of " + entry.m_name + " gives NULL");
        const Ref<IObject> owner = Ref<IObject>::adopt(clone);
        require(clone != object.get() && clone->getClassGUID() == entry.m_guid,
                "clone of " + entry.m_name + " gives an object of class " + toText(clone->getClassName()));
        require(clone->getRefCount() == 0, "a clone of " + entry.m_name + " has more than one owner");
        bench.call(*object, "copyUnsafe", [&] {
            clone->copyUnsafe(object.get());
            return 0;
        });
        bench.call(*object, "clear", [&] {
            object->clear();
            return 0;
        });
        require(object->getClassGUID() == entry.m_guid, entry.m_name + " is of another class behind clear");
    }
}

void checkStorage(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    for (const RegisteredClass& entry : startWithClasses(bench)) {
        const Ref<IObject> object = bench.create(entry);
        for (const char* format : {"raw", "zbf", "xml", "json"}) {
            const std::string where = entry.m_name + " in " + format;
            Array<unsigned char> saved;
            Array<unsigned char> again;
            const bool_t done = bench.call(*object, "writeSerialized", [&] {
                return zyr_saveToData(object.get(), saved, String(format), 0, String());
            });
            require(done, where + " cannot be saved" + bench.takeWarning());
            IObject* loaded = bench.call(*object, "readSerialized",
                                         [&] { return zyr_loadFromData(saved, String(format), String()); });
            require(loaded != nullptr, where + " cannot be loaded" + bench.takeWarning());
            const Ref<IObject> owner = Ref<IObject>::adopt(loaded);
            require(loaded->getClassGUID() == entry.m_guid, where + " comes back as " + toText(loaded->getClassName()));
            bench.call(*object, "writeSerialized",
                       [&] { return zyr_saveToData(loaded, again, String(format), 0, String()); });
            require(saved.getSize() == again.getSize() &&
                        memcmp(saved.getData(), again.getData(), saved.getSize()) == 0,
                    where + " gives other bytes once it was loaded");
        }
    }
}

} // namespace

std::vector<ConformCase> listClassCases() {
    return {
        {"registration",
         "Each class is created by name and by GUID; a new object is of that class, knows its layers and has one "
         "owner.",
         {"initialize"},
         checkRegistration},
        {"class-clashes",
         "Names and GUIDs of classes are their own: whoever registers one second is not reached by it.",
         {"initialize"},
         checkClashes},
        {"copies",
         "A clone is of the class of the module and not of the facade below it, and can be copied and cleared.",
         {"registration"},
         checkCopies},
        {"storage",
         "An object of each class survives saving and loading in all four formats, and gives the same bytes again.",
         {"registration"},
         checkStorage},
    };
}

} // namespace zyr::host
