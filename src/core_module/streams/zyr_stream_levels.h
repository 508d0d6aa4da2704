/// The levels of the three kinds of streams. On their own they hold nothing; what derives from them overrides the
/// operations on bytes and places.
#pragma once

#include "core_module/streams/zyr_stream_text.h"
#include "core_module/zyr_outer_layer.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/streams/zyr_io_stream.h"

namespace zyr {

template <class Interface> class InputStreamLevel : public UnstoredLevel<ObjectLevel<Interface>, IInputStream> {
public:
    uint64_t readBytes(void*, uint64_t) override { return 0; }
    uint64_t readString(String& p_text, uint64_t p_size) override {
        return readStreamString(getOuterLayer<IInputStream>(this), p_text, p_size);
    }
    bool_t readLine(String& p_line) override { return readStreamLine(getOuterLayer<IInputStream>(this), p_line); }
    int64_t tell() override { return -1; }
    bool_t seek(int64_t, int) override { return 0; }
    bool_t isSeekAvailable() const override { return 0; }
    ILevelReserved* getInputStreamReserved() const override { return &m_inputStreamReserved; }

    void init_This() {}
    void release_This() {}
    void copy_This(const IInputStream*) {}

private:
    mutable LevelReserved<InputStreamLevel> m_inputStreamReserved{this};
};

template <class Interface> class OutputStreamLevel : public UnstoredLevel<ObjectLevel<Interface>, IOutputStream> {
public:
    uint64_t writeBytes(const void*, uint64_t) override { return 0; }
    bool_t writeString(const String& p_text) override {
        return writeStreamString(getOuterLayer<IOutputStream>(this), p_text);
    }
    bool_t writeLine(const String& p_line) override {
        return writeStreamLine(getOuterLayer<IOutputStream>(this), p_line);
    }
    int64_t tell() override { return -1; }
    bool_t seek(int64_t, int) override { return 0; }
    bool_t isSeekAvailable() const override { return 0; }
    bool_t flush() override { return 0; }
    ILevelReserved* getOutputStreamReserved() const override { return &m_outputStreamReserved; }

    void init_This() {}
    void release_This() {}
    void copy_This(const IOutputStream*) {}

private:
    mutable LevelReserved<OutputStreamLevel> m_outputStreamReserved{this};
};

template <class Interface> class IOStreamLevel : public UnstoredLevel<ObjectLevel<Interface>, IIOStream> {
public:
    uint64_t readBytes(void*, uint64_t) override { return 0; }
    uint64_t readString(String& p_text, uint64_t p_size) override {
        return readStreamString(getOuterLayer<IIOStream>(this), p_text, p_size);
    }
    bool_t readLine(String& p_line) override { return readStreamLine(getOuterLayer<IIOStream>(this), p_line); }
    uint64_t writeBytes(const void*, uint64_t) override { return 0; }
    bool_t writeString(const String& p_text) override {
        return writeStreamString(getOuterLayer<IIOStream>(this), p_text);
    }
    bool_t writeLine(const String& p_line) override { return writeStreamLine(getOuterLayer<IIOStream>(this), p_line); }
    int64_t tell() override { return -1; }
    bool_t seek(int64_t, int) override { return 0; }
    bool_t isSeekAvailable() const override { return 0; }
    bool_t flush() override { return 0; }
    IInputStream* getInputStream() const override { return nullptr; }
    IOutputStream* getOutputStream() const override { return nullptr; }
    ILevelReserved* getIOStreamReserved() const override { return &m_ioStreamReserved; }

    void init_This() {}
    void release_This() {}
    void copy_This(const IIOStream*) {}

private:
    mutable LevelReserved<IOStreamLevel> m_ioStreamReserved{this};
};

} // namespace zyr
