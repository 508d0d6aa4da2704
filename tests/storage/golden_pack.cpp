#include "storage/golden_pack.h"

#include "support/zyr_temporary_directory.h"

namespace zyr::test {

GoldenPack readGoldenPack(const std::string& p_format) {
    const std::string text = TemporaryDirectory::readFile(ZYR_TEST_DATA "/objects/golden." + p_format + ".pack");
    GoldenPack pack;
    for (size_t place = 0; place < text.size();) {
        const size_t end = text.find('\n', place);
        const size_t blank = text.rfind(' ', end);
        const size_t size = std::stoul(text.substr(blank + 1, end - blank - 1));
        pack.emplace_back(text.substr(place, blank - place), text.substr(end + 1, size));
        place = end + 1 + size + 1;
    }
    return pack;
}

std::string joinPack(const GoldenPack& p_pack) {
    std::string text;
    for (const auto& [name, bytes] : p_pack) {
        text += name + " " + std::to_string(bytes.size()) + "\n" + bytes + "\n";
    }
    return text;
}

} // namespace zyr::test
