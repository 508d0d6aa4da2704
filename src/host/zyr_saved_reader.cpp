#include "host/zyr_saved_reader.h"

#include "host/zyr_framework.h"

#include "core_module/serializers/zyr_binary_reader.h"
#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/formats/zyr_stored_objects.h"
#include "zyr_common/storage/zyr_payload_wrapper.h"

#include <charconv>
#include <cstring>

namespace zyr::host {

namespace {

/// A hostile file has as many problems as it likes.
constexpr size_t MAX_PROBLEMS = 100;
constexpr uint32_t MAX_NESTING = 16;
/// What loading allows as well: no compressed block of either kind unpacks to more than this times its size.
constexpr uint64_t MAX_EXPANSION = 1032;
constexpr uint64_t MIN_ALLOWANCE = 64 << 20;

uint64_t parseCount(std::string_view p_text) {
    uint64_t number = 0;
    const auto [stop, error] = std::from_chars(p_text.data(), p_text.data() + p_text.size(), number);
    return error == std::errc() && stop == p_text.data() + p_text.size() ? number : UINT64_MAX;
}

/// A whole number, whichever format it stands in.
uint64_t getCount(const SavedTree& p_tree, uint32_t p_node) {
    if (p_node == c_noSavedNode) {
        return UINT64_MAX;
    }
    switch (p_tree.getKind(p_node)) {
    case SavedKind::UINT32:
    case SavedKind::UINT64:
        return p_tree.getNumber(p_node);
    case SavedKind::NUMBER:
    case SavedKind::TEXT:
        return parseCount(p_tree.getBytes(p_node));
    default:
        return UINT64_MAX;
    }
}

} // namespace

std::string_view nextSavedWord(std::string_view& p_numbers) {
    const auto isSeparator = [](char p) { return static_cast<unsigned char>(p) <= ' ' || p == ','; };
    size_t begin = 0;
    while (begin < p_numbers.size() && isSeparator(p_numbers[begin])) {
        begin++;
    }
    size_t end = begin;
    while (end < p_numbers.size() && !isSeparator(p_numbers[end])) {
        end++;
    }
    const std::string_view word = p_numbers.substr(begin, end - begin);
    p_numbers.remove_prefix(end);
    return word;
}

SavedReading::SavedReading(SavedTree& p_tree, std::vector<std::string>& p_problems, uint64_t p_size)
    : m_tree(p_tree), m_problems(p_problems), m_allowance(MIN_ALLOWANCE + p_size * MAX_EXPANSION) {}

void SavedReading::read(std::string_view p_bytes, const std::string& p_format, SavedTree& p_tree,
                        std::vector<std::string>& p_problems) {
    SavedReading reading(p_tree, p_problems, p_bytes.size());
    reading.m_format = p_format;
    reading.readFile(p_bytes, p_format);
    p_tree.close(0);
}

void SavedReading::report(const std::string& p_problem) {
    if (m_problems.size() < MAX_PROBLEMS) {
        m_problems.push_back(m_path.getText() + (m_path.getText().empty() ? "" : ": ") + p_problem);
    } else if (m_problems.size() == MAX_PROBLEMS) {
        m_problems.push_back("there is more that is wrong");
    }
}

void SavedReading::reportAt(const void* p_place, const std::string& p_problem) {
    report(p_problem + " (at byte " + std::to_string(static_cast<const char*>(p_place) - m_begin) + ")");
}

bool SavedReading::enter(uint32_t p_node, uint64_t p_index) {
    if (m_depth + 1 >= c_maxDepth) {
        report("it is nested too deeply");
        return false;
    }
    m_depth++;
    m_path.push(m_tree, p_node, p_index);
    return true;
}

void SavedReading::leave(uint32_t p_node) {
    static const std::string& compressed = *new std::string(toText(zyr_getInterfaceGUID<ICompressedObject>()));
    if (m_tree.getKind(p_node) == SavedKind::OBJECT && m_tree.getGUID(p_node) == compressed) {
        m_tree.close(p_node);
        unpack(p_node);
    }
    m_tree.close(p_node);
    m_path.pop();
    m_depth--;
}

void SavedReading::readFile(std::string_view p_bytes, const std::string& p_format) {
    const char* const outer = m_begin;
    m_begin = p_bytes.data();
    if (p_bytes.size() >= UINT32_MAX) {
        report("it is too large");
    } else if (p_format == "xml") {
        readSavedXml(*this, p_bytes);
    } else if (p_format == "json") {
        readSavedJson(*this, p_bytes);
    } else {
        readWrapped(p_bytes, p_format);
    }
    m_begin = outer;
}

void SavedReading::readWrapped(std::string_view p_bytes, const std::string& p_format) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(p_bytes.data());
    if (p_bytes.size() < c_payloadWrapperSize) {
        report("it ends inside the wrapper: " + std::to_string(p_bytes.size()) + " bytes of " +
               std::to_string(c_payloadWrapperSize));
        return;
    }
    const PayloadFormat format = zyr_getPayloadFormat(bytes);
    if (format != (p_format == "zbf" ? PayloadFormat::ZBF : PayloadFormat::RAW)) {
        report(format == PayloadFormat::UNKNOWN ? "the wrapper names no format"
                                                : "the wrapper is that of the other binary format");
    }
    uint64_t hash = 0;
    uint64_t size = 0;
    memcpy(&hash, bytes + c_payloadIdentifierSize, sizeof(hash));
    memcpy(&size, bytes + c_payloadIdentifierSize + sizeof(hash), sizeof(size));
    std::string_view payload = p_bytes.substr(c_payloadWrapperSize);
    if (size != payload.size()) {
        report("the wrapper tells of " + std::to_string(size) + " bytes, and " + std::to_string(payload.size()) +
               " follow");
        payload = payload.substr(0, size < payload.size() ? size : payload.size());
    }
    if (payload.empty()) {
        report("it is empty");
        return;
    }
    if (format != PayloadFormat::UNKNOWN && !zyr_isPayloadIntact(format, payload.data(), payload.size(), hash)) {
        report("the hash in the wrapper is not that of the bytes");
    }
    if (p_format == "zbf") {
        readSavedZbf(*this, payload);
    } else {
        readSavedRaw(*this, payload);
    }
}

/// The bytes of an array of numbers: their count, and then four in each.
bool SavedReading::getPackedBytes(uint32_t p_node, std::string& p_bytes) {
    const SavedKind kind = m_tree.getKind(p_node);
    std::string_view words = m_tree.getBytes(p_node);
    if (kind == SavedKind::UINT32S) {
        p_bytes = words;
    } else if (kind == SavedKind::NUMBERS || kind == SavedKind::TEXT) {
        for (std::string_view word; !(word = nextSavedWord(words)).empty();) {
            const uint64_t number = parseCount(word);
            if (number > UINT32_MAX) {
                return false;
            }
            const auto part = static_cast<uint32_t>(number);
            p_bytes.append(reinterpret_cast<const char*>(&part), sizeof(part));
        }
    }
    uint32_t size = 0;
    if (p_bytes.size() < sizeof(size)) {
        return false;
    }
    memcpy(&size, p_bytes.data(), sizeof(size));
    p_bytes.erase(0, sizeof(size));
    const bool fits = size <= p_bytes.size() && p_bytes.size() - size < sizeof(size);
    p_bytes.resize(fits ? size : 0);
    return fits;
}

void SavedReading::unpack(uint32_t p_object) {
    const uint32_t info = m_tree.findChild(p_object, "compressionInfo");
    const uint32_t data = m_tree.findChild(p_object, "compressedData");
    std::string packed;
    if (info == c_noSavedNode || data == c_noSavedNode || !m_tree.isGroup(info) || !getPackedBytes(data, packed)) {
        report("it holds no compressed bytes");
        return;
    }
    const uint32_t name = m_tree.findChild(info, "formatName");
    const uint64_t size = getCount(m_tree, m_tree.findChild(info, "decompressSize"));
    if (name == c_noSavedNode || m_tree.getKind(name) != SavedKind::TEXT || size == UINT64_MAX) {
        report("it does not tell how it is compressed");
        return;
    }
    if (m_nesting >= MAX_NESTING || size > m_allowance || size > MIN_ALLOWANCE / 64 + packed.size() * MAX_EXPANSION) {
        report("its bytes cannot unpack to " + std::to_string(size));
        return;
    }
    std::string contents(size, 0);
    const std::string word(m_tree.getBytes(name));
    if (size == 0 || zyr_decompressData(String(word), packed.data(), packed.size(), contents.data(), size) != size) {
        report("its bytes cannot be unpacked");
        return;
    }
    m_allowance -= size;
    if (m_tree.getNext(data) == m_tree.getSize()) {
        m_tree.cut(data);
    }
    const uint32_t node = m_tree.add(SavedKind::CONTENTS, "compressedData");
    const std::string& bytes = m_tree.keep(std::move(contents));
    if (node != c_noSavedNode && enter(node, UINT64_MAX)) {
        m_nesting++;
        readFile(bytes, m_format);
        m_nesting--;
        leave(node);
    }
}

} // namespace zyr::host
