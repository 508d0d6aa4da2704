#include "zyr_object_files.h"

#include "zyr_common/digest/zyr_compression.h"

#include <cstring>
#include <fstream>
#include <sstream>

namespace zyr {

namespace {

std::string makeFile(const std::string& p_object) {
    return "{\"fileHeader\": {\"format\": \"json\", \"version\": 100, \"info\": \"\"},\n\"fileObject\": " + p_object +
           "}\n";
}

std::string makePicture(const std::string& p_formatName) {
    return "{\"_class\": \"NativeFormatInfo\", \"_guid\": \"5861cb51-81f9-48f5-a3b8-e64e50b77913\", \"formatName\": "
           "\"" +
           p_formatName +
           "\", \"accessType\": \"FILE\", \"filePath\": \"a/b\", \"readOnly\": true, \"originalFile\": [5, 67305985, "
           "7]}";
}

/// A document in compressed form, as a field.
std::string makeCompressed(const std::string& p_document) {
    Array<unsigned char> packed;
    packed.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 0);
    const size_t size = zyr_compressZIP(p_document.data(), p_document.size(), packed, 1);
    std::string words = std::to_string(size);
    for (size_t i = 0; i < size; i += 4) {
        uint32_t word = 0;
        memcpy(&word, packed.getData() + i, size - i < 4 ? size - i : 4);
        words += ", " + std::to_string(word);
    }
    return "{\"_class\": \"CompressedObject\", \"_guid\": \"83582bd1-560c-4772-b68e-12b81a8d53cf\", "
           "\"compressionInfo\": {\"_class\": \"ZipCompressionInfo\", \"formatName\": \"zip\", \"decompressSize\": " +
           std::to_string(p_document.size()) + "}, \"compressedData\": [" + words + "]}";
}

} // namespace

void ObjectFiles::SetUp() {
    setenv("XDG_STATE_HOME", (m_directory.getPath() + "state").c_str(), 1);
}

std::string ObjectFiles::getPath(const std::string& p_name) const {
    return m_directory.getPath() + p_name;
}

ProgramRun ObjectFiles::run(const std::vector<std::string>& p_arguments) const {
    std::vector<std::string> arguments = {"object"};
    arguments.insert(arguments.end(), p_arguments.begin(), p_arguments.end());
    for (const char* argument : {"--no-default-plugins", "--modules", ZYR_MODULE_DIRECTORY}) {
        arguments.push_back(argument);
    }
    return runProgram(ZYR_HOST_PROGRAM, arguments);
}

void ObjectFiles::write(const std::string& p_name, const std::string& p_text) const {
    std::ofstream(getPath(p_name), std::ios::binary) << p_text;
}

std::string ObjectFiles::read(const std::string& p_name) const {
    std::ostringstream text;
    text << std::ifstream(getPath(p_name), std::ios::binary).rdbuf();
    return text.str();
}

void ObjectFiles::writeObject(const std::string& p_name, const std::string& p_object) const {
    write(p_name, makeFile(p_object));
}

void ObjectFiles::writePicture(const std::string& p_name, const std::string& p_formatName) const {
    writeObject(p_name, makePicture(p_formatName));
}

void ObjectFiles::writeList(const std::string& p_name) const {
    writeObject(p_name, "{\"_class\": \"ArrayOfObjects\", \"_guid\": \"\", \"items\": [{\"_type\": \"ObjectItem\", "
                        "\"object\": " +
                            makePicture("one") + "}, {\"object\": " + makeCompressed(makeFile(makePicture("two"))) +
                            "}, null]}");
}

void ObjectFiles::writeDeferred(const std::string& p_name, const std::string& p_path) const {
    writeObject(p_name, "{\"_class\": \"DeferredFileObject\", \"_guid\": \"a03b5026-7714-4049-a21b-f4d78362fd25\", "
                        "\"filePath\": \"" +
                            p_path + "\", \"readOnly\": false}");
}

} // namespace zyr
