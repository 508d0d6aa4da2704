#include "zyr_common/streams/zyr_file_stream.h"

#include "core_module/streams/zyr_byte_file.h"
#include "core_module/streams/zyr_stream_text.h"
#include "core_module/zyr_core_class.h"
#include "core_module/zyr_outer_layer.h"
#include "zyr_common/implementation/zyr_implementation.h"

namespace zyr {

namespace {

class FileStreamLevel : public UnstoredLevel<ObjectLevel<IFileStream>, IFileStream> {
public:
    bool_t open(const String& p_path, AccessEnum p_access, bool_t p_truncate) override {
        return m_file.open(p_path.getData(), p_access, p_truncate != 0);
    }
    uint64_t readBytes(void* p_data, uint64_t p_size) override { return m_file.read(p_data, p_size); }
    uint64_t readString(String& p_text, uint64_t p_size) override {
        return readStreamString(getOuterLayer<IFileStream>(this), p_text, p_size);
    }
    uint64_t writeBytes(const void* p_data, uint64_t p_size) override { return m_file.write(p_data, p_size); }
    bool_t writeString(const String& p_text) override {
        return writeStreamString(getOuterLayer<IFileStream>(this), p_text);
    }
    int64_t tell() override { return m_file.tell(); }
    bool_t seek(int64_t p_offset, int p_origin) override { return m_file.seek(p_offset, p_origin); }
    bool_t flush() override { return m_file.flush(); }
    bool_t close() override { return m_file.close(); }
    uint64_t getSize() const override { return m_file.getSize(); }
    AccessEnum getAccess() const override { return m_file.getAccess(); }
    ILevelReserved* getFileStreamReserved() const override { return &m_fileStreamReserved; }

    void init_This() {}
    void release_This() { m_file.close(); }
    void copy_This(const IFileStream*) {}

private:
    ByteFile m_file;
    mutable LevelReserved<FileStreamLevel> m_fileStreamReserved{this};
};

} // namespace

using FileStream = Implementation<FileStreamLevel>;

ZYR_DEFINE_CORE_CLASS(FileStream)

} // namespace zyr
