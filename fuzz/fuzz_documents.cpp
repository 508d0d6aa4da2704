// The parsers of documents and the binary reader on any bytes: they end, a parser gives a tree or a message, every view
// of the tree can be read, and texts are never longer than the input.
// The first byte chooses: modulo 4, 0 JSON, 1 XML, 2 configuration text, 3 binary data, whose bytes choose the calls.
#include "zyr_fuzz.h"

#include "zyr_common/documents/zyr_binary_reader.h"
#include "zyr_common/documents/zyr_config_parser.h"
#include "zyr_common/documents/zyr_json_parser.h"
#include "zyr_common/documents/zyr_xml_parser.h"

using namespace zyr;

namespace {

/// Reads every byte, so that the address sanitizer looks at it.
size_t touch(const WrappedString& p_text) {
    static volatile unsigned char last = 0;
    for (size_t i = 0; i < p_text.getSize(); i++) {
        last = static_cast<unsigned char>(p_text.getData()[i]);
    }
    return p_text.getSize() + last * 0;
}

size_t walk(const JsonElement& p_element) {
    size_t size = touch(p_element.getName()) + touch(p_element.getContent());
    for (const auto& entry : p_element.getAttributes()) {
        size += touch(entry.m_first) + touch(entry.m_second);
    }
    for (uint32_t i = 0; i < p_element.getNumOfItems(); i++) {
        size += walk(*p_element.getItem(i));
    }
    if (p_element.getNodes() != nullptr) {
        for (const auto& entry : *p_element.getNodes()) {
            size += walk(static_cast<const JsonElement&>(*entry.m_second));
        }
    }
    return size;
}

size_t walk(const XmlElement& p_element) {
    size_t size = touch(p_element.getName()) + touch(p_element.getContent());
    for (const auto& entry : p_element.getAttributes()) {
        size += touch(entry.m_first) + touch(entry.m_second);
    }
    if (p_element.getNodes() != nullptr) {
        for (const auto& entry : *p_element.getNodes()) {
            for (const auto* child : entry.m_second) {
                size += walk(static_cast<const XmlElement&>(*child));
            }
        }
    }
    return size;
}

/// Parses and gives whether there is a result.
template <class Parser> bool parse(Parser& p_parser, Array<unsigned char>& p_bytes) {
    p_parser.setInputData(&p_bytes);
    const bool done = p_parser.parse();
    zyr_fuzz::require(done == p_parser.getLogMessages().isEmpty(), "a parser gives a result or a message");
    return done;
}

void readBinary(IBinaryReader& p_reader, const Array<unsigned char>& p_bytes) {
    uint64_t numbers[16] = {};
    int64_t signedNumbers[16] = {};
    uint8_t smallNumbers[16] = {};
    uint32_t number = 0;
    for (size_t i = 0; i < p_bytes.getSize(); i++) {
        const unsigned char byte = p_bytes[i];
        const size_t count = byte >> 4;
        switch (byte & 15) {
        case 0:
            p_reader.beginGroupOfBlocks();
            break;
        case 1:
            p_reader.pushBlock(static_cast<RawTypeEnum>(count));
            break;
        case 2:
            p_reader.endGroupOfBlocks();
            break;
        case 3:
            p_reader.readFromBlockIndex(count);
            break;
        case 4:
            p_reader.popGroupOfBlocks();
            break;
        case 5:
            p_reader.readMultipleUInt64(numbers, count);
            break;
        case 6:
            p_reader.readMultipleInt64Base128(signedNumbers, count, byte & 16);
            break;
        case 7:
            p_reader.readMultipleUInt8Base128(smallNumbers, count, 0);
            break;
        case 8:
            p_reader.readSingleUInt32Ext(number);
            break;
        default:
            p_reader.readBytes(numbers, count);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* p_data, size_t p_size) {
    if (p_size == 0) {
        return 0;
    }
    zyr_fuzz::getFramework(true);
    Array<unsigned char> bytes;
    bytes.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, 1);
    bytes.pushBackRange(p_data + 1, p_size - 1);
    if (p_data[0] % 4 == 0) {
        const auto parser = Ref<IJsonParser>::adopt(zyr_createObject<IJsonParser>());
        const bool done = parse(*parser, bytes);
        zyr_fuzz::require(done == (parser->getElementTree() != nullptr), "a tree stands for a good text");
        zyr_fuzz::require(!done || walk(*parser->getElementTree()) <= bytes.getSize() * 2, "texts don't grow");
    } else if (p_data[0] % 4 == 1) {
        const auto parser = Ref<IXmlParser>::adopt(zyr_createObject<IXmlParser>());
        const bool done = parse(*parser, bytes);
        zyr_fuzz::require(done == (parser->getElementTree() != nullptr), "a tree stands for a good text");
        zyr_fuzz::require(!done || walk(*parser->getElementTree()) <= bytes.getSize(), "texts don't grow");
    } else if (p_data[0] % 4 == 2) {
        const auto parser = Ref<IConfigParser>::adopt(zyr_createObject<IConfigParser>());
        zyr_fuzz::require(parse(*parser, bytes) || parser->getSections().isEmpty(), "a fault leaves no section");
    } else {
        const auto reader = Ref<IBinaryReader>::adopt(zyr_createObject<IBinaryReader>());
        reader->setInputData(&bytes);
        readBinary(*reader, bytes);
    }
    return 0;
}
