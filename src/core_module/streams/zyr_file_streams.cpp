// The streams over a file stream.
#include "core_module/streams/zyr_stream_levels.h"
#include "core_module/zyr_core_class.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/streams/zyr_file_stream.h"

namespace zyr {

namespace {

/// The file stream behind a stream, made when the first file is opened. Without one there is nothing to read or write.
class FileBehind {
public:
    void set(IFileStream* p_stream) { m_stream = Ref<IFileStream>::share(p_stream); }
    bool_t open(const String& p_path, AccessEnum p_access, bool_t p_truncate) {
        if (!m_stream) {
            m_stream = Ref<IFileStream>::adopt(zyr_createObject<IFileStream>());
        }
        return m_stream && m_stream->open(p_path, p_access, p_truncate);
    }
    uint64_t read(void* p_data, uint64_t p_size) { return m_stream ? m_stream->readBytes(p_data, p_size) : 0; }
    uint64_t write(const void* p_data, uint64_t p_size) { return m_stream ? m_stream->writeBytes(p_data, p_size) : 0; }
    int64_t tell() { return m_stream ? m_stream->tell() : -1; }
    bool_t seek(int64_t p_offset, int p_origin) { return m_stream && m_stream->seek(p_offset, p_origin); }
    bool_t isSeekable() const { return m_stream && m_stream->seek(0, SEEK_CUR); }
    bool_t flush() { return m_stream && m_stream->flush(); }
    uint64_t getSize() const { return m_stream ? m_stream->getSize() : 0; }

private:
    Ref<IFileStream> m_stream;
};

class InputStreamFileLevel : public UnstoredLevel<InputStreamLevel<IInputStreamFile>, IInputStreamFile> {
public:
    uint64_t readBytes(void* p_data, uint64_t p_size) override { return m_file.read(p_data, p_size); }
    int64_t tell() override { return m_file.tell(); }
    bool_t seek(int64_t p_offset, int p_origin) override { return m_file.seek(p_offset, p_origin); }
    bool_t isSeekAvailable() const override { return m_file.isSeekable(); }
    bool_t open(const String& p_path) override { return m_file.open(p_path, ZYR_ACCESS_READ, 0); }
    uint64_t getFileSize() const override { return m_file.getSize(); }
    void setFileStream(IFileStream* p_stream) override { m_file.set(p_stream); }
    ILevelReserved* getInputStreamFileReserved() const override { return &m_inputStreamFileReserved; }

    void init_This() {}
    void release_This() { m_file.set(nullptr); }
    void copy_This(const IInputStreamFile*) {}

private:
    FileBehind m_file;
    mutable LevelReserved<InputStreamFileLevel> m_inputStreamFileReserved{this};
};

class OutputStreamFileLevel : public UnstoredLevel<OutputStreamLevel<IOutputStreamFile>, IOutputStreamFile> {
public:
    uint64_t writeBytes(const void* p_data, uint64_t p_size) override { return m_file.write(p_data, p_size); }
    int64_t tell() override { return m_file.tell(); }
    bool_t seek(int64_t p_offset, int p_origin) override { return m_file.seek(p_offset, p_origin); }
    bool_t isSeekAvailable() const override { return m_file.isSeekable(); }
    bool_t flush() override { return m_file.flush(); }
    bool_t open(const String& p_path) override { return m_file.open(p_path, ZYR_ACCESS_WRITE, 1); }
    void setFileStream(IFileStream* p_stream) override { m_file.set(p_stream); }
    ILevelReserved* getOutputStreamFileReserved() const override { return &m_outputStreamFileReserved; }

    void init_This() {}
    void release_This() { m_file.set(nullptr); }
    void copy_This(const IOutputStreamFile*) {}

private:
    FileBehind m_file;
    mutable LevelReserved<OutputStreamFileLevel> m_outputStreamFileReserved{this};
};

class IOStreamFileLevel : public UnstoredLevel<IOStreamLevel<IIOStreamFile>, IIOStreamFile> {
public:
    uint64_t readBytes(void* p_data, uint64_t p_size) override { return m_file.read(p_data, p_size); }
    uint64_t writeBytes(const void* p_data, uint64_t p_size) override { return m_file.write(p_data, p_size); }
    int64_t tell() override { return m_file.tell(); }
    bool_t seek(int64_t p_offset, int p_origin) override { return m_file.seek(p_offset, p_origin); }
    bool_t isSeekAvailable() const override { return m_file.isSeekable(); }
    bool_t flush() override { return m_file.flush(); }
    bool_t open(const String& p_path, bool_t p_truncate) override {
        return m_file.open(p_path, ZYR_ACCESS_READ_WRITE, p_truncate);
    }
    void setFileStream(IFileStream* p_stream) override { m_file.set(p_stream); }
    ILevelReserved* getIOStreamFileReserved() const override { return &m_ioStreamFileReserved; }

    void init_This() {}
    void release_This() { m_file.set(nullptr); }
    void copy_This(const IIOStreamFile*) {}

private:
    FileBehind m_file;
    mutable LevelReserved<IOStreamFileLevel> m_ioStreamFileReserved{this};
};

} // namespace

using InputStreamFile = Implementation<InputStreamFileLevel>;
using OutputStreamFile = Implementation<OutputStreamFileLevel>;
using IOStreamFile = Implementation<IOStreamFileLevel>;

ZYR_DEFINE_CORE_CLASS(InputStreamFile)
ZYR_DEFINE_CORE_CLASS(OutputStreamFile)
ZYR_DEFINE_CORE_CLASS(IOStreamFile)

} // namespace zyr
