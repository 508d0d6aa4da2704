/// The framework with the plug-in under test, inside of a case's process.
#pragma once

#include "core_module/plugins/zyr_plugin_exports.h"
#include "host/conform/zyr_conform_case.h"
#include "host/conform/zyr_conform_child.h"
#include "host/zyr_plugin_guard.h"
#include "zyr_common/memory/zyr_ref.h"

#include <string>
#include <vector>

namespace zyr::host {

/// A class as the registry has it.
struct RegisteredClass {
    std::string m_name;
    GUID_t m_guid;
    String m_templateName;
};

/// Loads the module, starts the framework and initializes the module, each when it is asked for. Each case makes one
/// and leaves it to the end of the process.
class PluginBench {
public:
    explicit PluginBench(const ConformSubject& p_subject) : m_subject(p_subject) {}

    /// Loads the library and looks its entry points up. Throws ConformFailure.
    void load();
    /// Starts core, picture and the plug-ins of the directories.
    void startFramework();
    /// All of it, with the module initialized.
    void start();

    /// Makes a call into the module. Throws PluginError when it crashes or throws.
    template <typename Work>
    auto call(const std::string& p_class, const char* p_call, uint64_t p_frame, Work&& p_work) {
        noteConformStep(std::string(p_call) + (p_class.empty() ? "" : " of " + p_class) +
                        (p_frame != 0 ? ", frame " + std::to_string(p_frame) : ""));
        decltype(p_work()) result{};
        callPlugin({m_subject.m_name.c_str(), p_class.c_str(), p_call, p_frame}, [&] { result = p_work(); });
        noteConformStep("");
        return result;
    }
    /// The same on an object, named by its class, about no frame.
    template <typename Work> auto call(const IObject& p_object, const char* p_call, Work&& p_work) {
        return call(toText(p_object.getClassName()), p_call, 0, p_work);
    }

    /// Runs the module's initialize function. Gives its result.
    bool initialize(void* p_applicationData);

    /// The classes that stand in the registry, in the order of registration.
    std::vector<RegisteredClass> listClasses() const;
    /// Those that came with the module. Only after start().
    const std::vector<RegisteredClass>& getClasses() const { return m_classes; }
    /// A new object of one of them. Throws ConformFailure.
    Ref<IObject> create(const RegisteredClass& p_class);
    /// A new object of each class that extends an interface.
    std::vector<Ref<IObject>> createAll(const GUID_t& p_interface);

    /// The last warning that was logged since the last call of this function, in brackets and with a blank in front;
    /// empty without one.
    std::string takeWarning();

    const ConformSubject& getSubject() const { return m_subject; }
    void* getHandle() const { return m_handle; }
    const PluginExports& getExports() const { return m_exports; }
    HostApplicationData& getData() { return m_framework->getApplicationData(); }

private:
    const ConformSubject& m_subject;
    void* m_handle = nullptr;
    PluginExports m_exports;
    Framework* m_framework = nullptr; ///< Never deleted.
    std::vector<RegisteredClass> m_classes;
};

} // namespace zyr::host
