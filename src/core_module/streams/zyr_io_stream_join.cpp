#include "core_module/streams/zyr_stream_levels.h"
#include "core_module/zyr_core_class.h"
#include "zyr_common/memory/zyr_ref.h"

namespace zyr {

namespace {

class IOStreamJoinLevel : public UnstoredLevel<IOStreamLevel<IIOStreamJoin>, IIOStreamJoin> {
public:
    uint64_t readBytes(void* p_data, uint64_t p_size) override {
        return m_input ? m_input->readBytes(p_data, p_size) : 0;
    }
    bool_t readLine(String& p_line) override { return m_input && m_input->readLine(p_line); }
    uint64_t writeBytes(const void* p_data, uint64_t p_size) override {
        return m_output ? m_output->writeBytes(p_data, p_size) : 0;
    }
    bool_t writeLine(const String& p_line) override { return m_output && m_output->writeLine(p_line); }
    int64_t tell() override { return m_input ? m_input->tell() : m_output ? m_output->tell() : -1; }
    bool_t seek(int64_t p_offset, int p_origin) override {
        return m_input ? m_input->seek(p_offset, p_origin) : m_output && m_output->seek(p_offset, p_origin);
    }
    bool_t isSeekAvailable() const override {
        return m_input ? m_input->isSeekAvailable() : m_output && m_output->isSeekAvailable();
    }
    bool_t flush() override { return m_output && m_output->flush(); }
    IInputStream* getInputStream() const override { return m_input.get(); }
    IOutputStream* getOutputStream() const override { return m_output.get(); }
    void setInputOutputStreams(IInputStream* p_input, IOutputStream* p_output) override {
        m_input = Ref<IInputStream>::share(p_input);
        m_output = Ref<IOutputStream>::share(p_output);
    }
    ILevelReserved* getIOStreamJoinReserved() const override { return &m_ioStreamJoinReserved; }

    void init_This() {}
    void release_This() { setInputOutputStreams(nullptr, nullptr); }
    void copy_This(const IIOStreamJoin*) {}

private:
    Ref<IInputStream> m_input;
    Ref<IOutputStream> m_output;
    mutable LevelReserved<IOStreamJoinLevel> m_ioStreamJoinReserved{this};
};

} // namespace

using IOStreamJoin = Implementation<IOStreamJoinLevel>;

ZYR_DEFINE_CORE_CLASS(IOStreamJoin)

} // namespace zyr
