/// What bounds loads inside loads: deferred files that contain each other, compressed objects inside compressed
/// objects, and the depth of all their objects together.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

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

    /// Bytes that the outermost load of this thread may still unpack.
    uint64_t& getAllowance() { return *m_allowance; }
    /// Where a deserializer keeps that number for the time of its load; null for one that has no place for it. Each
    /// module has loads of its own: what an object of another module reads knows of them only by the deserializer.
    static uint64_t* findAllowance(IDeserializer* p_deserializer);

    /// Takes p_size bytes from what may still be unpacked. False when that is used up, and for a size that packed bytes
    /// of the format can't have come from. Without a load nothing is used up.
    static bool_t takeDecompressedSize(const String& p_format, uint64_t p_packedSize, uint64_t p_size);

private:
    LoadNesting();
    void enterFile(uint64_t p_device, uint64_t p_file);

    LoadNesting* m_outer;
    LoadNesting* m_outermost;
    /// Identity of the file; 0 for a load from memory.
    uint64_t m_device = 0;
    uint64_t m_file = 0;
    uint64_t m_ownAllowance = 0;
    uint64_t* m_allowance;
    /// Of the outermost load: files opened inside it.
    uint32_t m_numOfFiles = 0;
    uint32_t m_depth;
    const char* m_obstacle = nullptr;
};

/// Lives on the stack while a stand-in is replaced: loads inside it share the allowance of the deserializer.
class LoadAllowance {
public:
    explicit LoadAllowance(IDeserializer* p_deserializer);
    ~LoadAllowance();
    LoadAllowance(const LoadAllowance&) = delete;
    LoadAllowance& operator=(const LoadAllowance&) = delete;

private:
    uint64_t* m_outer;
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
