#include "support/zyr_slot_spy.h"
#include "zyr_common/services/zyr_format_info.h"
#include "zyr_common/services/zyr_lexer.h"
#include "zyr_common/services/zyr_list_of_objects.h"
#include "zyr_common/services/zyr_plugin_modules.h"
#include "zyr_common/services/zyr_stored_objects.h"

#include <gtest/gtest.h>

namespace zyr {

TEST(DataFormatInfoFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WDataFormatInfo* facade = spy.makeFacade<WDataFormatInfo>();
    IDataFormatInfo* info = facade;
    spy.expectForwarded(info, &IDataFormatInfo::getFormatName, 43);
    spy.expectForwarded(info, &IDataFormatInfo::setFormatName, 44);
    spy.expectForwarded(info, &IDataFormatInfo::getDataFormatInfoReserved, 45);
    facade->release();
}

TEST(NativeFormatInfoFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WNativeFormatInfo* facade = spy.makeFacade<WNativeFormatInfo>();
    INativeFormatInfo* info = facade;
    spy.expectForwarded<IDataFormatInfo>(info, &IDataFormatInfo::getFormatName, 43);
    spy.expectForwarded<IDataFormatInfo>(info, &IDataFormatInfo::getDataFormatInfoReserved, 45);
    spy.expectForwarded(info, &INativeFormatInfo::getAccessType, 46);
    spy.expectForwarded(info, &INativeFormatInfo::setAccessType, 47);
    spy.expectForwarded(info, &INativeFormatInfo::getFilePath, 48);
    spy.expectForwarded(info, &INativeFormatInfo::setFilePath, 49);
    spy.expectForwarded(info, &INativeFormatInfo::isReadOnly, 50);
    spy.expectForwarded(info, &INativeFormatInfo::setReadOnly, 51);
    spy.expectForwarded(info, &INativeFormatInfo::getOriginalFile, 52);
    spy.expectForwarded(info, &INativeFormatInfo::getMutableOriginalFile, 53);
    spy.expectForwarded(info, &INativeFormatInfo::setOriginalFile, 54);
    spy.expectForwarded(info, &INativeFormatInfo::getNativeFormatInfoReserved, 55);
    facade->release();
}

TEST(CompressionInfoFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WCompressionInfo* facade = spy.makeFacade<WCompressionInfo>();
    ICompressionInfo* info = facade;
    spy.expectForwarded(info, &ICompressionInfo::getDecompressSize, 46);
    spy.expectForwarded(info, &ICompressionInfo::setDecompressSize, 47);
    spy.expectForwarded(info, &ICompressionInfo::getCompressionInfoReserved, 48);
    facade->release();
}

TEST(Lz4CompressionInfoFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WLz4CompressionInfo* facade = spy.makeFacade<WLz4CompressionInfo>();
    ILz4CompressionInfo* info = facade;
    spy.expectForwarded<ICompressionInfo>(info, &ICompressionInfo::getDecompressSize, 46);
    spy.expectForwarded(info, &ILz4CompressionInfo::getAcceleration, 49);
    spy.expectForwarded(info, &ILz4CompressionInfo::setAcceleration, 50);
    spy.expectForwarded(info, &ILz4CompressionInfo::getLz4CompressionInfoReserved, 51);
    facade->release();
}

TEST(ZipCompressionInfoFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WZipCompressionInfo* facade = spy.makeFacade<WZipCompressionInfo>();
    IZipCompressionInfo* info = facade;
    spy.expectForwarded(info, &IZipCompressionInfo::getLevel, 49);
    spy.expectForwarded(info, &IZipCompressionInfo::setLevel, 50);
    spy.expectForwarded(info, &IZipCompressionInfo::getZipCompressionInfoReserved, 51);
    facade->release();
}

TEST(LexerFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WLexer* facade = spy.makeFacade<WLexer>();
    ILexer* lexer = facade;
    spy.expectForwarded(lexer, &ILexer::getKeywords, 43);
    spy.expectForwarded(lexer, &ILexer::pushBackKeywords, 44);
    spy.expectForwarded(lexer, &ILexer::setKeywords, 45);
    spy.expectForwarded(lexer, &ILexer::clearKeywords, 46);
    spy.expectForwarded(lexer, &ILexer::getPunctuators, 47);
    spy.expectForwarded(lexer, &ILexer::pushBackPunctuators, 48);
    spy.expectForwarded(lexer, &ILexer::setPunctuators, 49);
    spy.expectForwarded(lexer, &ILexer::clearPunctuators, 50);
    spy.expectForwarded(lexer, &ILexer::getFillers, 51);
    spy.expectForwarded(lexer, &ILexer::pushBackFiller, 52);
    spy.expectForwarded(lexer, &ILexer::setFillers, 53);
    spy.expectForwarded(lexer, &ILexer::clearFillers, 54);
    spy.expectForwarded(lexer, &ILexer::getInlineCommentWord, 55);
    spy.expectForwarded(lexer, &ILexer::setInlineCommentWord, 56);
    spy.expectForwarded(lexer, &ILexer::getBeginCommentWord, 57);
    spy.expectForwarded(lexer, &ILexer::setBeginCommentWord, 58);
    spy.expectForwarded(lexer, &ILexer::getEndCommentWord, 59);
    spy.expectForwarded(lexer, &ILexer::setEndCommentWord, 60);
    spy.expectForwarded(lexer, &ILexer::getInputData, 61);
    spy.expectForwarded(lexer, &ILexer::setInputData, 62);
    spy.expectForwarded(lexer, &ILexer::pushBackLiteralType, 63);
    spy.expectForwarded(lexer, &ILexer::clearLiteralTypes, 64);
    spy.expectForwarded(lexer, &ILexer::readToken, 65);
    spy.expectForwarded(lexer, &ILexer::getLexerReserved, 66);
    facade->release();
}

TEST(DeferredFileObjectFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WDeferredFileObject* facade = spy.makeFacade<WDeferredFileObject>();
    IDeferredFileObject* object = facade;
    spy.expectForwarded(object, &IDeferredFileObject::getFilePath, 43);
    spy.expectForwarded(object, &IDeferredFileObject::setFilePath, 44);
    spy.expectForwarded(object, &IDeferredFileObject::isReadOnly, 45);
    spy.expectForwarded(object, &IDeferredFileObject::setReadOnly, 46);
    spy.expectForwarded(object, &IDeferredFileObject::getDeferredFileObjectReserved, 47);
    facade->release();
}

TEST(CompressedObjectFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WCompressedObject* facade = spy.makeFacade<WCompressedObject>();
    ICompressedObject* object = facade;
    spy.expectForwarded(object, &ICompressedObject::getCompressedData, 43);
    spy.expectForwarded(object, &ICompressedObject::getMutableCompressedData, 44);
    spy.expectForwarded(object, &ICompressedObject::setCompressedData, 45);
    spy.expectForwarded(object, &ICompressedObject::getCompressedObjectReserved, 46);
    facade->release();
}

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

TEST(ListOfObjectsFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WListOfObjects* facade = spy.makeFacade<WListOfObjects>();
    IListOfObjects* list = facade;
    spy.expectForwarded(list, &IListOfObjects::setItems, 43);
    spy.expectForwarded(list, &IListOfObjects::isEmpty, 48);
    spy.expectForwarded(list, &IListOfObjects::getSize, 49);
    spy.expectForwarded(list, &IListOfObjects::front, 50);
    spy.expectForwarded(list, &IListOfObjects::frontConst, 51);
    spy.expectForwarded(list, &IListOfObjects::back, 52);
    spy.expectForwarded(list, &IListOfObjects::backConst, 53);
    spy.expectForwarded(list, &IListOfObjects::pushFront, 54);
    spy.expectForwarded(list, &IListOfObjects::popFront, 55);
    spy.expectForwarded(list, &IListOfObjects::pushBack, 56);
    spy.expectForwarded(list, &IListOfObjects::popBack, 57);
    spy.expectForwarded(list, &IListOfObjects::insert, 58);
    spy.expectForwarded(list, &IListOfObjects::remove, 59);
    spy.expectForwarded(list, &IListOfObjects::removeRange, 60);
    spy.expectForwarded(list, &IListOfObjects::swap, 61);
    spy.expectForwarded(list, &IListOfObjects::count, 64);
    spy.expectForwarded(list, &IListOfObjects::getListOfObjectsReserved, 65);
    facade->release();
}

// Iterators come back by value, in memory that the caller names, so the spy cannot stand behind these.
TEST(ListOfObjectsFacade, HasItsIteratorsInTheirSlots) {
    EXPECT_EQ(getSlot(&IListOfObjects::begin), 44u);
    EXPECT_EQ(getSlot(&IListOfObjects::beginConst), 45u);
    EXPECT_EQ(getSlot(&IListOfObjects::end), 46u);
    EXPECT_EQ(getSlot(&IListOfObjects::endConst), 47u);
    EXPECT_EQ(getSlot(&IListOfObjects::find), 62u);
    EXPECT_EQ(getSlot(&IListOfObjects::findConst), 63u);
}

TEST(ListOfObjectsReserved, HasItsOperationsBehindTheDestructors) {
    EXPECT_EQ(getSlot(&IListOfObjectsReserved::init_This), 2u);
    EXPECT_EQ(getSlot(&IListOfObjectsReserved::release_This), 3u);
    EXPECT_EQ(getSlot(&IListOfObjectsReserved::copy_Backwards), 4u);
    EXPECT_EQ(getSlot(&IListOfObjectsReserved::readSerialized_Backwards), 5u);
    EXPECT_EQ(getSlot(&IListOfObjectsReserved::writeSerialized_Backwards), 6u);
}

} // namespace zyr
