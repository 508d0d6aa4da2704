#include "zyr_common/streams/zyr_memory_stream.h"

#include "core_module/streams/zyr_stream_text.h"
#include "core_module/zyr_core_class.h"
#include "core_module/zyr_outer_layer.h"
#include "zyr_common/implementation/zyr_implementation.h"

#include <cstdio>

namespace zyr {

namespace {

class MemoryStreamLevel : public UnstoredLevel<ObjectLevel<IMemoryStream>, IMemoryStream> {
public:
    bool_t open(Array<unsigned char>* p_data, AccessEnum p_access) override;
    uint64_t readBytes(void* p_data, uint64_t p_size) override;
    uint64_t readString(String& p_text, uint64_t p_size) override {
        return readStreamString(getOuterLayer<IMemoryStream>(this), p_text, p_size);
    }
    uint64_t writeBytes(const void* p_data, uint64_t p_size) override;
    bool_t writeString(const String& p_text) override {
        return writeStreamString(getOuterLayer<IMemoryStream>(this), p_text);
    }
    int64_t tell() override { return m_data != nullptr ? static_cast<int64_t>(m_place) : -1; }
    bool_t seek(int64_t p_offset, int p_origin) override;
    bool_t close() override;
    AccessEnum getAccess() const override { return m_access; }
    ILevelReserved* getMemoryStreamReserved() const override { return &m_memoryStreamReserved; }

    void init_This() {}
    void release_This() { close(); }
    void copy_This(const IMemoryStream*) {}

private:
    /// Not owned.
    Array<unsigned char>* m_data = nullptr;
    AccessEnum m_access = ZYR_ACCESS_NONE;
    uint64_t m_place = 0;
    mutable LevelReserved<MemoryStreamLevel> m_memoryStreamReserved{this};
};

bool_t MemoryStreamLevel::open(Array<unsigned char>* p_data, AccessEnum p_access) {
    close();
    if (p_data == nullptr || p_access == ZYR_ACCESS_NONE || p_access > ZYR_ACCESS_READ_WRITE) {
        return 0;
    }
    m_data = p_data;
    m_access = p_access;
    if (p_access == ZYR_ACCESS_WRITE) {
        m_data->resize(0);
    }
    return 1;
}

bool_t MemoryStreamLevel::close() {
    m_data = nullptr;
    m_access = ZYR_ACCESS_NONE;
    m_place = 0;
    return 1;
}

uint64_t MemoryStreamLevel::readBytes(void* p_data, uint64_t p_size) {
    if ((m_access & ZYR_ACCESS_READ) == 0 || p_size == 0 || m_place >= m_data->getSize()) {
        return 0;
    }
    const uint64_t remaining = m_data->getSize() - m_place;
    const uint64_t size = p_size < remaining ? p_size : remaining;
    memmove(p_data, m_data->getData() + m_place, size); // Also to another place in the array.
    m_place += size;
    return size;
}

uint64_t MemoryStreamLevel::writeBytes(const void* p_data, uint64_t p_size) {
    if ((m_access & ZYR_ACCESS_WRITE) == 0) {
        return 0;
    }
    // Nothing where the owner made the array shorter than the place.
    const uint64_t size = m_data->replace(p_data, m_place, p_size, false);
    m_place += size;
    return size;
}

bool_t MemoryStreamLevel::seek(int64_t p_offset, int p_origin) {
    if (m_data == nullptr || p_origin < SEEK_SET || p_origin > SEEK_END) {
        return 0;
    }
    const int64_t size = static_cast<int64_t>(m_data->getSize());
    const int64_t base = p_origin == SEEK_SET ? 0 : p_origin == SEEK_CUR ? static_cast<int64_t>(m_place) : size;
    int64_t place = 0;
    if (__builtin_add_overflow(base, p_offset, &place) || place < 0 || place > size) {
        return 0;
    }
    m_place = static_cast<uint64_t>(place);
    return 1;
}

} // namespace

using MemoryStream = Implementation<MemoryStreamLevel>;

ZYR_DEFINE_CORE_CLASS(MemoryStream)

} // namespace zyr
