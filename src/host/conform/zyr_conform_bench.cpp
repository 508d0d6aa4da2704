#include "host/conform/zyr_conform_bench.h"

#include "zyr_common/object/zyr_factories.h"

#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <fstream>

namespace zyr::host {

namespace {

#if defined(__aarch64__)
constexpr Elf64_Half OWN_MACHINE = EM_AARCH64;
#else
constexpr Elf64_Half OWN_MACHINE = EM_X86_64;
#endif

/// The loader passes over files for another machine as if they were not there.
bool isForAnotherMachine(const std::string& p_path) {
    Elf64_Ehdr head{};
    std::ifstream file(p_path, std::ios::binary);
    return file.read(reinterpret_cast<char*>(&head), sizeof(head)) && memcmp(head.e_ident, ELFMAG, SELFMAG) == 0 &&
           head.e_ident[EI_CLASS] == ELFCLASS64 && head.e_machine != OWN_MACHINE;
}

} // namespace

void PluginBench::load() {
    if (m_handle != nullptr) {
        return;
    }
    noteConformStep("the loader");
    m_handle = dlopen(m_subject.m_path.c_str(), RTLD_NOW | RTLD_LOCAL);
    noteConformStep("");
    if (m_handle == nullptr) {
        const char* error = dlerror();
        require(!isForAnotherMachine(m_subject.m_path), "it is built for another kind of processor");
        throw ConformFailure(error != nullptr ? error : "the loader gives no reason");
    }
    String reason;
    m_exports.lookUp(m_handle, reason);
}

void PluginBench::startFramework() {
    if (m_framework == nullptr) {
        m_framework = new Framework(m_subject.m_framework);
        getData().startListening();
    }
}

void PluginBench::start() {
    startFramework();
    load();
    const size_t before = listClasses().size();
    const bool started = initialize(&getData());
    require(started, "zyr_plugin_initialize gives 0" + takeWarning());
    m_classes = listClasses();
    m_classes.erase(m_classes.begin(), m_classes.begin() + ptrdiff_t(before));
}

bool PluginBench::initialize(void* p_applicationData) {
    return call("", "zyr_plugin_initialize", 0, [&] { return m_exports.m_initialize(p_applicationData); });
}

std::vector<RegisteredClass> PluginBench::listClasses() const {
    const ApplicationData& data = m_framework->getApplicationData();
    std::vector<RegisteredClass> classes;
    for (auto it = data.m_objectAllocatorsByGUID.beginConst(); it != data.m_objectAllocatorsByGUID.endConst(); ++it) {
        std::string name;
        const auto end = data.m_objectAllocatorsByName.endConst();
        for (auto named = data.m_objectAllocatorsByName.beginConst(); named != end && name.empty(); ++named) {
            if (named->m_second == it->m_second) {
                name = toText(named->m_first);
            }
        }
        classes.push_back({name, it->m_first.m_first, it->m_first.m_second});
    }
    return classes;
}

Ref<IObject> PluginBench::create(const RegisteredClass& p_class) {
    IObject* object = call(p_class.m_name, "the constructor", 0,
                           [&] { return zyr_createObjectFromGUIDAndTypeName(p_class.m_guid, p_class.m_templateName); });
    require(object != nullptr, "no object of class " + p_class.m_name);
    return Ref<IObject>::adopt(object);
}

std::vector<Ref<IObject>> PluginBench::createAll(const GUID_t& p_interface) {
    std::vector<Ref<IObject>> objects;
    for (const RegisteredClass& entry : m_classes) {
        Ref<IObject> object = create(entry);
        if (object->findClassGUID(p_interface)) {
            objects.push_back(std::move(object));
        }
    }
    return objects;
}

std::string PluginBench::takeWarning() {
    std::string warning;
    for (const std::string& line : getData().stopListening()) {
        LogLine parts;
        if (parseLogLine(line, parts) && (parts.m_level == "WARN" || parts.m_level == "ERROR")) {
            warning = " (" + parts.m_message + ")";
        }
    }
    getData().startListening();
    return warning;
}

} // namespace zyr::host
