/// What bounds loads inside loads: deferred files that contain each other, compressed objects inside compressed
/// objects, and the depth of all their objects together.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// What the outermost load of a thread and all inside it may still do together.
struct LoadBudget {
    /// bytes to be unpacked
    uint64_t* m_bytes = nullptr;
    /// files to be opened
    uint64_t* m_files = nullptr;

    /// Where a deserializer keeps the numbers for the time of its load; none for one that has no place for them. Each
    /// module has loads of its own: what an object of another module reads knows of them only by the deserializer.
    static LoadBudget find(IDeserializer* p_deserializer);
};

/// Lives on the stack for the time of one load. The loads of a thread form a chain.
class LoadNesting {
public:
    /// For a load from p_size bytes in memory.
    explicit LoadNesting(uint64_t p_size);
    /// For a load from a file.
    explicit LoadNesting(const char* p_path);
    ~LoadNesting();
    LoadNesting(const LoadNesting&) = delete;
    LoadNesting& operator=(const LoadNesting&) = delete;

    /// What forbids this load, as a sentence; null if nothing does.
    const char* getObstacle() const { return m_obstacle; }

    const LoadBudget& getBudget() const { return m_budget; }

    /// Takes p_size bytes from what may still be unpacked. False when that is used up, and for a size that packed bytes
    /// of the format can't have come from. Without a load nothing is used up.
    static bool_t takeDecompressedSize(const String& p_format, uint64_t p_packedSize, uint64_t p_size);

private:
    LoadNesting();
    void enterFile(uint64_t p_device, uint64_t p_file);

    LoadNesting* m_outer;
    /// Identity of the file; 0 for a load from memory.
    uint64_t m_device = 0;
    uint64_t m_file = 0;
    LoadBudget m_budget;
    // Of an outermost load.
    uint64_t m_ownBytes = 0;
    uint64_t m_ownFiles;
    uint32_t m_depth;
    const char* m_obstacle = nullptr;
};

/// Lives on the stack while a stand-in is replaced: loads inside it share the budget of the deserializer.
class SharedBudget {
public:
    explicit SharedBudget(IDeserializer* p_deserializer);
    ~SharedBudget();
    SharedBudget(const SharedBudget&) = delete;
    SharedBudget& operator=(const SharedBudget&) = delete;

private:
    LoadBudget m_outer;
};

/// Lives on the stack while an object is read. A stream limits its own depth; what it cannot see are the objects around
/// a load inside it, whose calls lie on the same stack.
class ObjectNesting {
public:
    ObjectNesting();
    ~ObjectNesting();
    ObjectNesting(const ObjectNesting&) = delete;
    ObjectNesting& operator=(const ObjectNesting&) = delete;
};

} // namespace zyr
