#include "support/zyr_slot_spy.h"
#include "zyr_common/documents/zyr_binary_reader.h"
#include "zyr_common/documents/zyr_binary_writer.h"
#include "zyr_common/documents/zyr_config_parser.h"
#include "zyr_common/documents/zyr_json_parser.h"
#include "zyr_common/documents/zyr_json_writer.h"
#include "zyr_common/documents/zyr_xml_parser.h"
#include "zyr_common/documents/zyr_xml_writer.h"

#include <gtest/gtest.h>

namespace zyr {

TEST(ReaderFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WReader* facade = spy.makeFacade<WReader>();
    IReader* object = facade;
    spy.expectForwarded(object, &IReader::getInputData, 43);
    spy.expectForwarded(object, &IReader::setInputData, 44);
    spy.expectForwarded(object, &IReader::getReaderReserved, 45);
    facade->release();
}

TEST(TextParserFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WTextParser* facade = spy.makeFacade<WTextParser>();
    ITextParser* object = facade;
    spy.expectForwarded(object, &ITextParser::parse, 46);
    spy.expectForwarded(object, &ITextParser::getLexer, 47);
    spy.expectForwarded(object, &ITextParser::setLexer, 48);
    spy.expectForwarded(object, &ITextParser::initializeLexer, 49);
    spy.expectForwarded(object, &ITextParser::getLineTerminators, 50);
    spy.expectForwarded(object, &ITextParser::isLineTerminator, 51);
    spy.expectForwarded(object, &ITextParser::pushBackLineTerminator, 52);
    spy.expectForwarded(object, &ITextParser::clearLineTerminators, 53);
    spy.expectForwarded(object, &ITextParser::getLogMessages, 54);
    spy.expectForwarded(object, &ITextParser::pushBackLogMessage, 55);
    spy.expectForwarded(object, &ITextParser::clearLogMessages, 56);
    spy.expectForwarded(object, &ITextParser::getCurrentTokenPos, 57);
    spy.expectForwarded(object, &ITextParser::getMutableCurrentTokenPos, 58);
    spy.expectForwarded(object, &ITextParser::setCurrentTokenPos, 59);
    spy.expectForwarded(object, &ITextParser::skipLine, 60);
    spy.expectForwarded(object, &ITextParser::getTokens, 61);
    spy.expectForwarded(object, &ITextParser::getTokenByPosition, 62);
    spy.expectForwarded(object, &ITextParser::getCurrentToken, 63);
    spy.expectForwarded(object, &ITextParser::initialize, 64);
    spy.expectForwarded(object, &ITextParser::isInitialized, 65);
    spy.expectForwarded(object, &ITextParser::deinitialize, 66);
    spy.expectForwarded(object, &ITextParser::getTextParserReserved, 67);
    facade->release();
}

TEST(ConfigParserFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WConfigParser* facade = spy.makeFacade<WConfigParser>();
    IConfigParser* object = facade;
    spy.expectForwarded(object, &IConfigParser::getSections, 68);
    spy.expectForwarded(object, &IConfigParser::getConfigParserReserved, 69);
    facade->release();
}

TEST(JsonParserFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WJsonParser* facade = spy.makeFacade<WJsonParser>();
    IJsonParser* object = facade;
    spy.expectForwarded(object, &IJsonParser::getElementTree, 68);
    spy.expectForwarded(object, &IJsonParser::getJsonParserReserved, 69);
    facade->release();
}

TEST(XmlParserFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WXmlParser* facade = spy.makeFacade<WXmlParser>();
    IXmlParser* object = facade;
    spy.expectForwarded(object, &IXmlParser::getElementTree, 68);
    spy.expectForwarded(object, &IXmlParser::getXmlParserReserved, 69);
    facade->release();
}

TEST(BinaryReaderFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WBinaryReader* facade = spy.makeFacade<WBinaryReader>();
    IBinaryReader* object = facade;
    spy.expectForwarded(object, &IBinaryReader::readBytes, 46);
    spy.expectForwarded(object, &IBinaryReader::readSingleBoolean, 47);
    spy.expectForwarded(object, &IBinaryReader::readSingleInt8, 48);
    spy.expectForwarded(object, &IBinaryReader::readSingleUInt8, 49);
    spy.expectForwarded(object, &IBinaryReader::readSingleInt16, 50);
    spy.expectForwarded(object, &IBinaryReader::readSingleUInt16, 51);
    spy.expectForwarded(object, &IBinaryReader::readSingleInt32, 52);
    spy.expectForwarded(object, &IBinaryReader::readSingleUInt32, 53);
    spy.expectForwarded(object, &IBinaryReader::readSingleInt64, 54);
    spy.expectForwarded(object, &IBinaryReader::readSingleUInt64, 55);
    spy.expectForwarded(object, &IBinaryReader::readSingleFloat, 56);
    spy.expectForwarded(object, &IBinaryReader::readSingleDouble, 57);
    spy.expectForwarded(object, &IBinaryReader::readSingleBooleanBase128, 58);
    spy.expectForwarded(object, &IBinaryReader::readSingleInt8Base128, 59);
    spy.expectForwarded(object, &IBinaryReader::readSingleUInt8Base128, 60);
    spy.expectForwarded(object, &IBinaryReader::readSingleInt16Base128, 61);
    spy.expectForwarded(object, &IBinaryReader::readSingleUInt16Base128, 62);
    spy.expectForwarded(object, &IBinaryReader::readSingleInt32Base128, 63);
    spy.expectForwarded(object, &IBinaryReader::readSingleUInt32Base128, 64);
    spy.expectForwarded(object, &IBinaryReader::readSingleInt64Base128, 65);
    spy.expectForwarded(object, &IBinaryReader::readSingleUInt64Base128, 66);
    spy.expectForwarded(object, &IBinaryReader::readSingleFloatBase128, 67);
    spy.expectForwarded(object, &IBinaryReader::readSingleDoubleBase128, 68);
    spy.expectForwarded(object, &IBinaryReader::readSingleInt32Ext, 69);
    spy.expectForwarded(object, &IBinaryReader::readSingleUInt32Ext, 70);
    spy.expectForwarded(object, &IBinaryReader::readMultipleBooleans, 71);
    spy.expectForwarded(object, &IBinaryReader::readMultipleInt8, 72);
    spy.expectForwarded(object, &IBinaryReader::readMultipleUInt8, 73);
    spy.expectForwarded(object, &IBinaryReader::readMultipleInt16, 74);
    spy.expectForwarded(object, &IBinaryReader::readMultipleUInt16, 75);
    spy.expectForwarded(object, &IBinaryReader::readMultipleInt32, 76);
    spy.expectForwarded(object, &IBinaryReader::readMultipleUInt32, 77);
    spy.expectForwarded(object, &IBinaryReader::readMultipleInt64, 78);
    spy.expectForwarded(object, &IBinaryReader::readMultipleUInt64, 79);
    spy.expectForwarded(object, &IBinaryReader::readMultipleFloat, 80);
    spy.expectForwarded(object, &IBinaryReader::readMultipleDouble, 81);
    spy.expectForwarded(object, &IBinaryReader::readMultipleBooleansBase128, 82);
    spy.expectForwarded(object, &IBinaryReader::readMultipleInt8Base128, 83);
    spy.expectForwarded(object, &IBinaryReader::readMultipleUInt8Base128, 84);
    spy.expectForwarded(object, &IBinaryReader::readMultipleInt16Base128, 85);
    spy.expectForwarded(object, &IBinaryReader::readMultipleUInt16Base128, 86);
    spy.expectForwarded(object, &IBinaryReader::readMultipleInt32Base128, 87);
    spy.expectForwarded(object, &IBinaryReader::readMultipleUInt32Base128, 88);
    spy.expectForwarded(object, &IBinaryReader::readMultipleInt64Base128, 89);
    spy.expectForwarded(object, &IBinaryReader::readMultipleUInt64Base128, 90);
    spy.expectForwarded(object, &IBinaryReader::readMultipleFloatBase128, 91);
    spy.expectForwarded(object, &IBinaryReader::readMultipleDoubleBase128, 92);
    spy.expectForwarded(object, &IBinaryReader::beginGroupOfBlocks, 93);
    spy.expectForwarded(object, &IBinaryReader::pushBlock, 94);
    spy.expectForwarded(object, &IBinaryReader::endGroupOfBlocks, 95);
    spy.expectForwarded(object, &IBinaryReader::readFromBlockIndex, 96);
    spy.expectForwarded(object, &IBinaryReader::popGroupOfBlocks, 97);
    spy.expectForwarded(object, &IBinaryReader::getBinaryReaderReserved, 98);
    facade->release();
}

TEST(WriterFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WWriter* facade = spy.makeFacade<WWriter>();
    IWriter* object = facade;
    spy.expectForwarded(object, &IWriter::getOutputData, 43);
    spy.expectForwarded(object, &IWriter::setOutputData, 44);
    spy.expectForwarded(object, &IWriter::getWriterReserved, 45);
    facade->release();
}

TEST(BinaryWriterFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WBinaryWriter* facade = spy.makeFacade<WBinaryWriter>();
    IBinaryWriter* object = facade;
    spy.expectForwarded(object, &IBinaryWriter::writeBytes, 46);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleBoolean, 47);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleInt8, 48);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleUInt8, 49);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleInt16, 50);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleUInt16, 51);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleInt32, 52);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleUInt32, 53);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleInt64, 54);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleUInt64, 55);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleFloat, 56);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleDouble, 57);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleInt16Base128, 58);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleUInt16Base128, 59);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleInt32Base128, 60);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleUInt32Base128, 61);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleInt64Base128, 62);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleUInt64Base128, 63);
    spy.expectForwarded(object, &IBinaryWriter::getSizeSingleUInt32Ext, 64);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleInt32Ext, 65);
    spy.expectForwarded(object, &IBinaryWriter::writeSingleUInt32Ext, 66);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleBooleans, 67);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleInt8, 68);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleUInt8, 69);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleInt16, 70);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleUInt16, 71);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleInt32, 72);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleUInt32, 73);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleInt64, 74);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleUInt64, 75);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleFloat, 76);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleDouble, 77);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleInt16Base128, 78);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleUInt16Base128, 79);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleInt32Base128, 80);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleUInt32Base128, 81);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleInt64Base128, 82);
    spy.expectForwarded(object, &IBinaryWriter::writeMultipleUInt64Base128, 83);
    spy.expectForwarded(object, &IBinaryWriter::beginBlock, 84);
    spy.expectForwarded(object, &IBinaryWriter::endBlock, 85);
    spy.expectForwarded(object, &IBinaryWriter::getBinaryWriterReserved, 86);
    facade->release();
}

TEST(TextWriterFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WTextWriter* facade = spy.makeFacade<WTextWriter>();
    ITextWriter* object = facade;
    spy.expectForwarded(object, &ITextWriter::getTextWriterReserved, 46);
    facade->release();
}

TEST(JsonWriterFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WJsonWriter* facade = spy.makeFacade<WJsonWriter>();
    IJsonWriter* object = facade;
    spy.expectForwarded(object, &IJsonWriter::beginTag, 47);
    spy.expectForwarded(object, &IJsonWriter::endTag, 48);
    spy.expectForwarded(object, &IJsonWriter::addProperty, 49);
    spy.expectForwarded(object, &IJsonWriter::addContent, 50);
    spy.expectForwarded(object, &IJsonWriter::addSpecialCharacters, 51);
    spy.expectForwarded(object, &IJsonWriter::getJsonWriterReserved, 52);
    facade->release();
}

TEST(XmlWriterFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WXmlWriter* facade = spy.makeFacade<WXmlWriter>();
    IXmlWriter* object = facade;
    spy.expectForwarded(object, &IXmlWriter::beginTag, 47);
    spy.expectForwarded(object, &IXmlWriter::addProperty, 48);
    spy.expectForwarded(object, &IXmlWriter::addNumberContent, 49);
    spy.expectForwarded(object, &IXmlWriter::addStringContent, 50);
    spy.expectForwarded(object, &IXmlWriter::addSpecialCharacters, 51);
    spy.expectForwarded(object, &IXmlWriter::endTag, 52);
    spy.expectForwarded(object, &IXmlWriter::getXmlWriterReserved, 53);
    facade->release();
}

} // namespace zyr
