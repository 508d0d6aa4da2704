#include "zyr_common/storage/zyr_load_nesting.h"

#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/serialization/zyr_serializer.h"
#include "zyr_common/variable/zyr_variable_reference.h"

#include <sys/stat.h>

namespace zyr {

namespace {

constexpr uint32_t MAX_DEPTH = 64;
/// Objects around a load. As many as one stream may have, which then has so many again.
constexpr uint32_t MAX_NUM_OF_OBJECTS = 1023;
/// A chain of files of which each names the next one twice doubles at every step.
constexpr uint64_t MAX_NUM_OF_FILES = 65536;
/// No block of "lz4" or "zip" unpacks to more than this times its size.
constexpr uint64_t MAX_EXPANSION = 1032;
constexpr uint64_t MIN_ALLOWANCE = 64 << 20;

thread_local LoadNesting* innermostLoad = nullptr;
thread_local LoadBudget sharedBudget;
thread_local uint32_t numOfOpenObjects = 0;

uint64_t* findNumber(IDeserializer* p_deserializer, const String& p_path) {
    VariableReference* reference = p_deserializer->getVariableReferenceByPath(p_path);
    if (reference == nullptr) {
        return nullptr;
    }
    void* place = reference->getType() == ZYR_VARIABLE_UINT64 ? reference->getPointer() : nullptr;
    reference->release();
    return static_cast<uint64_t*>(place);
}

} // namespace

LoadNesting::LoadNesting()
    : m_outer(innermostLoad),
      m_budget(sharedBudget),
      m_ownFiles(MAX_NUM_OF_FILES),
      m_depth(m_outer != nullptr ? m_outer->m_depth + 1 : 0) {
    if (m_budget.m_bytes == nullptr) {
        m_budget = m_outer != nullptr ? m_outer->m_budget : LoadBudget{&m_ownBytes, &m_ownFiles};
    }
    innermostLoad = this;
    if (m_depth >= MAX_DEPTH) {
        m_obstacle = "Too many loads inside each other";
    } else if (numOfOpenObjects > MAX_NUM_OF_OBJECTS) {
        m_obstacle = "Too many objects inside each other";
    }
}

LoadNesting::LoadNesting(uint64_t p_size) : LoadNesting() {
    if (m_budget.m_bytes == &m_ownBytes) {
        m_ownBytes = MIN_ALLOWANCE + p_size * MAX_EXPANSION;
    }
}

LoadNesting::LoadNesting(const char* p_path) : LoadNesting() {
    struct stat status;
    const bool known = ::stat(p_path, &status) == 0;
    const uint64_t more = MIN_ALLOWANCE + (known ? static_cast<uint64_t>(status.st_size) * MAX_EXPANSION : 0);
    uint64_t& bytes = *m_budget.m_bytes;
    bytes = bytes > UINT64_MAX - more ? UINT64_MAX : bytes + more;
    if (known && m_obstacle == nullptr) {
        enterFile(status.st_dev, status.st_ino);
    }
}

void LoadNesting::enterFile(uint64_t p_device, uint64_t p_file) {
    m_device = p_device;
    m_file = p_file;
    if (*m_budget.m_files == 0) {
        m_obstacle = "Too many deferred files";
    } else {
        --*m_budget.m_files;
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
    uint64_t* bytes = sharedBudget.m_bytes;
    if (bytes == nullptr && innermostLoad != nullptr) {
        bytes = innermostLoad->m_budget.m_bytes;
    }
    if (bytes == nullptr) {
        return 1;
    }
    if (p_size > *bytes) {
        return 0;
    }
    *bytes -= p_size;
    return 1;
}

LoadBudget LoadBudget::find(IDeserializer* p_deserializer) {
    static const String& bytesPath = makePermanent<String>("bytesToUnpack");
    static const String& filesPath = makePermanent<String>("filesToOpen");
    const LoadBudget budget = {findNumber(p_deserializer, bytesPath), findNumber(p_deserializer, filesPath)};
    return budget.m_bytes != nullptr && budget.m_files != nullptr ? budget : LoadBudget();
}

SharedBudget::SharedBudget(IDeserializer* p_deserializer) : m_outer(sharedBudget) {
    const LoadBudget budget = LoadBudget::find(p_deserializer);
    if (budget.m_bytes != nullptr) {
        sharedBudget = budget;
    }
}

SharedBudget::~SharedBudget() {
    sharedBudget = m_outer;
}

ObjectNesting::ObjectNesting() {
    ++numOfOpenObjects;
}

ObjectNesting::~ObjectNesting() {
    --numOfOpenObjects;
}

} // namespace zyr
