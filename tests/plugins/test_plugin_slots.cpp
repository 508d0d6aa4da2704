#include "support/zyr_slot_spy.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"

#include <gtest/gtest.h>

namespace zyr {

TEST(PluginModuleFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WPluginModule* facade = spy.makeFacade<WPluginModule>();
    IPluginModule* module = facade;
    spy.expectForwarded(module, &IPluginModule::getName, 43);
    spy.expectForwarded(module, &IPluginModule::getVersion, 44);
    spy.expectForwarded(module, &IPluginModule::getLongName, 45);
    spy.expectForwarded(module, &IPluginModule::getPluginGUID, 46);
    spy.expectForwarded(module, &IPluginModule::getDescription, 47);
    spy.expectForwarded(module, &IPluginModule::getNamespace, 48);
    spy.expectForwarded(module, &IPluginModule::getDependenciesComponentModules, 49);
    spy.expectForwarded(module, &IPluginModule::getDependenciesPluginModules, 50);
    spy.expectForwarded(module, &IPluginModule::initialize, 51);
    spy.expectForwarded(module, &IPluginModule::deinitialize, 52);
    spy.expectForwarded(module, &IPluginModule::isPluginExtensionSupported, 53);
    spy.expectForwarded(module, &IPluginModule::getProcAddress, 54);
    spy.expectForwarded(module, &IPluginModule::enumPublicObjects, 55);
    spy.expectForwarded(module, &IPluginModule::getLibraryHandle, 56);
    spy.expectForwarded(module, &IPluginModule::initLibrary, 57);
    spy.expectForwarded(module, &IPluginModule::getPluginModuleReserved, 58);
    facade->release();
}

TEST(PluginModulesHandlerFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WPluginModulesHandler* facade = spy.makeFacade<WPluginModulesHandler>();
    IPluginModulesHandler* handler = facade;
    spy.expectForwarded(handler, &IPluginModulesHandler::loadFromDirectory, 43);
    spy.expectForwarded(handler, &IPluginModulesHandler::initializePluginModules, 44);
    spy.expectForwarded(handler, &IPluginModulesHandler::getPluginModules, 45);
    spy.expectForwarded(handler, &IPluginModulesHandler::getPluginModulesHandlerReserved, 46);
    facade->release();
}

} // namespace zyr
