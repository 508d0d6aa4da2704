// The streams over a memory stream.
#include "core_module/streams/zyr_stream_levels.h"
#include "core_module/zyr_core_class.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/streams/zyr_memory_stream.h"

namespace zyr {

namespace {

/// The memory stream behind a stream, made when the first array is opened.
class MemoryBehind {
public:
    void set(IMemoryStream* p_stream) { m_stream = Ref<IMemoryStream>::share(p_stream); }
    bool_t open(Array<unsigned char>* p_data, AccessEnum p_access) {
        if (!m_stream) {
            m_stream = Ref<IMemoryStream>::adopt(zyr_createObject<IMemoryStream>());
        }
        return m_stream && m_stream->open(p_data, p_access);
    }
    uint64_t read(void* p_data, uint64_t p_size) { return m_stream ? m_stream->readBytes(p_data, p_size) : 0; }
    uint64_t write(const void* p_data, uint64_t p_size) { return m_stream ? m_stream->writeBytes(p_data, p_size) : 0; }
    int64_t tell() { return m_stream ? m_stream->tell() : -1; }
    bool_t seek(int64_t p_offset, int p_origin) { return m_stream && m_stream->seek(p_offset, p_origin); }
    bool_t isOpen() const { return m_stream && m_stream->getAccess() != ZYR_ACCESS_NONE; }

private:
    Ref<IMemoryStream> m_stream;
};

class InputStreamMemoryLevel : public UnstoredLevel<InputStreamLevel<IInputStreamMemory>, IInputStreamMemory> {
public:
    uint64_t readBytes(void* p_data, uint64_t p_size) override { return m_memory.read(p_data, p_size); }
    int64_t tell() override { return m_memory.tell(); }
    bool_t seek(int64_t p_offset, int p_origin) override { return m_memory.seek(p_offset, p_origin); }
    bool_t isSeekAvailable() const override { return m_memory.isOpen(); }
    bool_t open(Array<unsigned char>* p_data) override { return m_memory.open(p_data, ZYR_ACCESS_READ); }
    void setMemoryStream(IMemoryStream* p_stream) override { m_memory.set(p_stream); }
    ILevelReserved* getInputStreamMemoryReserved() const override { return &m_inputStreamMemoryReserved; }

    void init_This() {}
    void release_This() { m_memory.set(nullptr); }
    void copy_This(const IInputStreamMemory*) {}

private:
    MemoryBehind m_memory;
    mutable LevelReserved<InputStreamMemoryLevel> m_inputStreamMemoryReserved{this};
};

class OutputStreamMemoryLevel : public UnstoredLevel<OutputStreamLevel<IOutputStreamMemory>, IOutputStreamMemory> {
public:
    uint64_t writeBytes(const void* p_data, uint64_t p_size) override { return m_memory.write(p_data, p_size); }
    int64_t tell() override { return m_memory.tell(); }
    bool_t seek(int64_t p_offset, int p_origin) override { return m_memory.seek(p_offset, p_origin); }
    bool_t isSeekAvailable() const override { return m_memory.isOpen(); }
    bool_t flush() override { return m_memory.isOpen(); }
    bool_t open(Array<unsigned char>* p_data) override { return m_memory.open(p_data, ZYR_ACCESS_WRITE); }
    void setMemoryStream(IMemoryStream* p_stream) override { m_memory.set(p_stream); }
    ILevelReserved* getOutputStreamMemoryReserved() const override { return &m_outputStreamMemoryReserved; }

    void init_This() {}
    void release_This() { m_memory.set(nullptr); }
    void copy_This(const IOutputStreamMemory*) {}

private:
    MemoryBehind m_memory;
    mutable LevelReserved<OutputStreamMemoryLevel> m_outputStreamMemoryReserved{this};
};

class IOStreamMemoryLevel : public UnstoredLevel<IOStreamLevel<IIOStreamMemory>, IIOStreamMemory> {
public:
    uint64_t readBytes(void* p_data, uint64_t p_size) override { return m_memory.read(p_data, p_size); }
    uint64_t writeBytes(const void* p_data, uint64_t p_size) override { return m_memory.write(p_data, p_size); }
    int64_t tell() override { return m_memory.tell(); }
    bool_t seek(int64_t p_offset, int p_origin) override { return m_memory.seek(p_offset, p_origin); }
    bool_t isSeekAvailable() const override { return m_memory.isOpen(); }
    bool_t flush() override { return m_memory.isOpen(); }
    bool_t open(Array<unsigned char>* p_data) override { return m_memory.open(p_data, ZYR_ACCESS_READ_WRITE); }
    void setMemoryStream(IMemoryStream* p_stream) override { m_memory.set(p_stream); }
    ILevelReserved* getIOStreamMemoryReserved() const override { return &m_ioStreamMemoryReserved; }

    void init_This() {}
    void release_This() { m_memory.set(nullptr); }
    void copy_This(const IIOStreamMemory*) {}

private:
    MemoryBehind m_memory;
    mutable LevelReserved<IOStreamMemoryLevel> m_ioStreamMemoryReserved{this};
};

} // namespace

using InputStreamMemory = Implementation<InputStreamMemoryLevel>;
using OutputStreamMemory = Implementation<OutputStreamMemoryLevel>;
using IOStreamMemory = Implementation<IOStreamMemoryLevel>;

ZYR_DEFINE_CORE_CLASS(InputStreamMemory)
ZYR_DEFINE_CORE_CLASS(OutputStreamMemory)
ZYR_DEFINE_CORE_CLASS(IOStreamMemory)

} // namespace zyr
