#include "zyr_common/storage/zyr_load_nesting.h"

#include "zyr_common/text/zyr_string.h"

#include <sys/stat.h>

namespace zyr {

namespace {

constexpr uint32_t MAX_DEPTH = 64;
/// Objects around a load. As many as one stream may have, which then has so many again.
constexpr uint32_t MAX_NUM_OF_OBJECTS = 1023;
/// A chain of files of which each names the next one twice doubles at every step.
constexpr uint32_t MAX_NUM_OF_FILES = 65536;
/// No block of "lz4" or "zip" unpacks to more than this times its size.
constexpr uint64_t MAX_EXPANSION = 1032;
constexpr uint64_t MIN_ALLOWANCE = 64 << 20;

thread_local LoadNesting* innermostLoad = nullptr;
thread_local uint32_t numOfOpenObjects = 0;

} // namespace

LoadNesting::LoadNesting()
    : m_outer(innermostLoad),
      m_outermost(m_outer != nullptr ? m_outer->m_outermost : this),
      m_depth(m_outer != nullptr ? m_outer->m_depth + 1 : 0) {
    innermostLoad = this;
    if (m_depth >= MAX_DEPTH) {
        m_obstacle = "Too many loads inside each other";
    } else if (numOfOpenObjects > MAX_NUM_OF_OBJECTS) {
        m_obstacle = "Too many objects inside each other";
    }
}

LoadNesting::LoadNesting(uint64_t p_size) : LoadNesting() {
    if (m_outer == nullptr) {
        m_allowance = MIN_ALLOWANCE + p_size * MAX_EXPANSION;
    }
}

LoadNesting::LoadNesting(const char* p_path) : LoadNesting() {
    struct stat status;
    const bool known = ::stat(p_path, &status) == 0;
    m_outermost->m_allowance += MIN_ALLOWANCE + (known ? static_cast<uint64_t>(status.st_size) * MAX_EXPANSION : 0);
    if (known && m_obstacle == nullptr) {
        enterFile(status.st_dev, status.st_ino);
    }
}

void LoadNesting::enterFile(uint64_t p_device, uint64_t p_file) {
    m_device = p_device;
    m_file = p_file;
    if (++m_outermost->m_numOfFiles > MAX_NUM_OF_FILES) {
        m_obstacle = "Too many deferred files";
    }
    for (const LoadNesting* outer = m_outer; outer != nullptr; outer = outer->m_outer) {
        if (outer->m_device == p_device && outer->m_file == p_file) {
            m_obstacle = "It contains itself";
        }
    }
}

LoadNesting::~LoadNesting() {
    innermostLoad = m_outer;
}

bool_t LoadNesting::takeDecompressedSize(const String& p_format, uint64_t p_packedSize, uint64_t p_size) {
    if ((p_format == "lz4" || p_format == "zip") && p_size / MAX_EXPANSION > p_packedSize) {
        return 0;
    }
    if (innermostLoad == nullptr) {
        return 1;
    }
    uint64_t& allowance = innermostLoad->m_outermost->m_allowance;
    if (p_size > allowance) {
        return 0;
    }
    allowance -= p_size;
    return 1;
}

ObjectNesting::ObjectNesting() {
    ++numOfOpenObjects;
}

ObjectNesting::~ObjectNesting() {
    --numOfOpenObjects;
}

} // namespace zyr
