/// A file descriptor with a buffer.
#pragma once

#include "zyr_common/streams/zyr_access.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// Goes on after short reads and writes and after interrupted calls. A write that fails is remembered until the file is
/// closed: flush and close tell it. What can't be seeked, such as a pipe, is read and written in order.
class ByteFile {
public:
    ByteFile() = default;
    ~ByteFile();
    ByteFile(const ByteFile&) = delete;
    ByteFile& operator=(const ByteFile&) = delete;

    bool open(const char* p_path, AccessEnum p_access, bool p_truncate);
    bool close();
    bool isOpen() const { return m_file >= 0; }
    AccessEnum getAccess() const { return m_access; }

    uint64_t read(void* p_data, uint64_t p_size);
    uint64_t write(const void* p_data, uint64_t p_size);
    bool flush();
    int64_t tell();
    bool seek(int64_t p_offset, int p_origin);
    bool isSeekable() const;
    uint64_t getSize() const;

private:
    uint64_t readDirectly(uint8_t* p_data, uint64_t p_size);
    bool writeDirectly(const uint8_t* p_data, uint64_t p_size);
    bool writePending();
    /// Forgets what was read ahead; the descriptor stands where the reader is then.
    bool dropReadAhead();

    int m_file = -1;
    AccessEnum m_access = ZYR_ACCESS_NONE;
    bool m_failed = false;
    /// Holds either bytes read ahead, from m_begin to m_end, or bytes to be written, from 0 to m_end.
    uint8_t* m_buffer = nullptr;
    uint32_t m_begin = 0;
    uint32_t m_end = 0;
    bool m_writing = false;
};

} // namespace zyr
