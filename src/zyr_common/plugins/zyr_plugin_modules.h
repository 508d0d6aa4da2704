/// Plug-in modules as the host sees them: shared objects that export the zyr_plugin_ functions.
///
/// These objects are made by the core module. Loading and initializing belong to the host's main thread; the getters
/// may be called from any thread once that is done.
///
///     IPluginModulesHandler* handler = zyr_createObject<IPluginModulesHandler>();
///     handler->loadFromDirectory(directory);
///     handler->initializePluginModules(applicationData);
///     for (IObject* module : *handler->getPluginModules(0)) { ... }
///
/// A module stays loaded as long as its object lives, and objects of its classes must be gone before it.
#pragma once

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/object/zyr_object.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// One loaded module. Each of the first ten operations is an exported function of the module; without a library they
/// give empty results and false.
class IPluginModule : public IObject {
public:
    /// The text operations replace the text and return whether the module answered.
    virtual bool_t getName(String& p_name) const = 0;
    /// Packed as zyr_encodeVersion64 does.
    virtual uint64_t getVersion() const = 0;
    virtual bool_t getLongName(String& p_longName) const = 0;
    virtual bool_t getPluginGUID(GUID_t& p_guid) const = 0;
    virtual bool_t getDescription(String& p_description) const = 0;
    virtual bool_t getNamespace(String& p_namespace) const = 0;
    /// Words of the component modules that the module needs ("common", "core", ...), appended to the list.
    virtual bool_t getDependenciesComponentModules(List<String>& p_modules) const = 0;
    /// GUIDs of the plug-in modules that have to be initialized before it, appended to the list.
    virtual bool_t getDependenciesPluginModules(List<GUID_t>& p_modules) const = 0;
    /// Runs the module's own start. False when it refuses.
    virtual bool_t initialize(ApplicationData* p_applicationData) = 0;
    /// Runs the module's own end; its objects must be gone by then.
    virtual void deinitialize() = 0;
    /// Whether the module offers the extension, and in which version; p_version may be null.
    virtual bool_t isPluginExtensionSupported(const String& p_extension, int* p_version) = 0;
    /// An entry point by name, as far as the module offers one.
    virtual void* getProcAddress(const String& p_name) = 0;
    /// New objects of the module's classes that derive from the class with that GUID; the caller owns the list.
    virtual IListOfObjects* enumPublicObjects(const GUID_t& p_parent) = 0;
    /// Handle of the dynamic loader, null without a library.
    virtual void* getLibraryHandle() const = 0;
    /// Takes over a loaded library, which is closed with this object, and looks up its entry points. False, with a line
    /// in the log and without taking the library over, if one is missing.
    virtual bool_t initLibrary(void* p_handle) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getPluginModuleReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(PluginModule, IObject, "1fca19b8-4651-4781-95fc-84983edad084")

/// Forwards each operation to the PluginModule of its module; what extends that class derives from this.
template <class Interface> class PluginModuleFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    bool_t getName(String& p_name) const override { return m_interfaceObject->getName(p_name); }
    uint64_t getVersion() const override { return m_interfaceObject->getVersion(); }
    bool_t getLongName(String& p_longName) const override { return m_interfaceObject->getLongName(p_longName); }
    bool_t getPluginGUID(GUID_t& p_guid) const override { return m_interfaceObject->getPluginGUID(p_guid); }
    bool_t getDescription(String& p_description) const override {
        return m_interfaceObject->getDescription(p_description);
    }
    bool_t getNamespace(String& p_namespace) const override { return m_interfaceObject->getNamespace(p_namespace); }
    bool_t getDependenciesComponentModules(List<String>& p_modules) const override {
        return m_interfaceObject->getDependenciesComponentModules(p_modules);
    }
    bool_t getDependenciesPluginModules(List<GUID_t>& p_modules) const override {
        return m_interfaceObject->getDependenciesPluginModules(p_modules);
    }
    bool_t initialize(ApplicationData* p_applicationData) override {
        return m_interfaceObject->initialize(p_applicationData);
    }
    void deinitialize() override { m_interfaceObject->deinitialize(); }
    bool_t isPluginExtensionSupported(const String& p_extension, int* p_version) override {
        return m_interfaceObject->isPluginExtensionSupported(p_extension, p_version);
    }
    void* getProcAddress(const String& p_name) override { return m_interfaceObject->getProcAddress(p_name); }
    IListOfObjects* enumPublicObjects(const GUID_t& p_parent) override {
        return m_interfaceObject->enumPublicObjects(p_parent);
    }
    void* getLibraryHandle() const override { return m_interfaceObject->getLibraryHandle(); }
    bool_t initLibrary(void* p_handle) override { return m_interfaceObject->initLibrary(p_handle); }
    ILevelReserved* getPluginModuleReserved() const override { return m_interfaceObject->getPluginModuleReserved(); }
};

using WPluginModule = PluginModuleFacade<IPluginModule>;

/// The plug-in modules of the process. ApplicationData::pluginModulesInitialize drives it.
class IPluginModulesHandler : public IObject {
public:
    /// Loads every usable module of the directory. What is no module, lacks an entry point, has another framework
    /// version or ends its process when it is tried is reported in the log and left out. False only if the directory
    /// cannot be read.
    virtual bool_t loadFromDirectory(const String& p_directory) = 0;
    /// Initializes the loaded modules, each behind those that it depends on. False if one of them could not be
    /// initialized; the others are.
    virtual bool_t initializePluginModules(ApplicationData* p_applicationData) = 0;
    /// The loaded modules in the order of their initialization; with the flag set the caller gets a reference.
    virtual IListOfObjects* getPluginModules(bool_t p_addReference) const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getPluginModulesHandlerReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(PluginModulesHandler, IObject, "179a34a3-9130-4c11-877d-c5701c6933bd")

/// Forwards each operation to the PluginModulesHandler of its module; what extends that class derives from this.
template <class Interface> class PluginModulesHandlerFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    bool_t loadFromDirectory(const String& p_directory) override {
        return m_interfaceObject->loadFromDirectory(p_directory);
    }
    bool_t initializePluginModules(ApplicationData* p_applicationData) override {
        return m_interfaceObject->initializePluginModules(p_applicationData);
    }
    IListOfObjects* getPluginModules(bool_t p_addReference) const override {
        return m_interfaceObject->getPluginModules(p_addReference);
    }
    ILevelReserved* getPluginModulesHandlerReserved() const override {
        return m_interfaceObject->getPluginModulesHandlerReserved();
    }
};

using WPluginModulesHandler = PluginModulesHandlerFacade<IPluginModulesHandler>;

} // namespace zyr
