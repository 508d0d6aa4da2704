/// Both directions in one object. Made by the core module. Not thread safe. A copy of a stream is a new, closed one.
#pragma once

#include "zyr_common/streams/zyr_input_stream.h"
#include "zyr_common/streams/zyr_output_stream.h"

namespace zyr {

/// The operations of both directions; see IInputStream and IOutputStream.
class IIOStream : public IObject {
public:
    /// Up to so many bytes from the place of the input; gives how many came.
    virtual uint64_t readBytes(void* p_data, uint64_t p_size) = 0;
    /// The same into a text.
    virtual uint64_t readString(String& p_text, uint64_t p_size) = 0;
    /// One line without its end; false behind the last one.
    virtual bool_t readLine(String& p_line) = 0;
    /// Gives how many bytes were taken.
    virtual uint64_t writeBytes(const void* p_data, uint64_t p_size) = 0;
    virtual bool_t writeString(const String& p_text) = 0;
    virtual bool_t writeLine(const String& p_line) = 0;
    /// One place serves both directions, unless two streams were joined.
    virtual int64_t tell() = 0;
    /// From SEEK_SET, SEEK_CUR or SEEK_END, in bytes. False, with the place kept, where it can't be done.
    virtual bool_t seek(int64_t p_offset, int p_origin) = 0;
    virtual bool_t isSeekAvailable() const = 0;
    /// As in IOutputStream: false if any byte written so far got lost.
    virtual bool_t flush() = 0;
    /// The two halves, not counted; null where the stream is not made of two.
    virtual IInputStream* getInputStream() const = 0;
    virtual IOutputStream* getOutputStream() const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getIOStreamReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(IOStream, IObject, "8df80952-8134-4438-be36-58123b47b1fe")

/// Forwards each operation to the IOStream of its module; what extends that class derives from this.
template <class Interface> class IOStreamFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    uint64_t readBytes(void* p_data, uint64_t p_size) override { return m_interfaceObject->readBytes(p_data, p_size); }
    uint64_t readString(String& p_text, uint64_t p_size) override {
        return m_interfaceObject->readString(p_text, p_size);
    }
    bool_t readLine(String& p_line) override { return m_interfaceObject->readLine(p_line); }
    uint64_t writeBytes(const void* p_data, uint64_t p_size) override {
        return m_interfaceObject->writeBytes(p_data, p_size);
    }
    bool_t writeString(const String& p_text) override { return m_interfaceObject->writeString(p_text); }
    bool_t writeLine(const String& p_line) override { return m_interfaceObject->writeLine(p_line); }
    int64_t tell() override { return m_interfaceObject->tell(); }
    bool_t seek(int64_t p_offset, int p_origin) override { return m_interfaceObject->seek(p_offset, p_origin); }
    bool_t isSeekAvailable() const override { return m_interfaceObject->isSeekAvailable(); }
    bool_t flush() override { return m_interfaceObject->flush(); }
    IInputStream* getInputStream() const override { return m_interfaceObject->getInputStream(); }
    IOutputStream* getOutputStream() const override { return m_interfaceObject->getOutputStream(); }
    ILevelReserved* getIOStreamReserved() const override { return m_interfaceObject->getIOStreamReserved(); }
};

using WIOStream = IOStreamFacade<IIOStream>;

/// Reads from one stream and writes to another. The place is that of the input where there is one.
class IIOStreamJoin : public IIOStream {
public:
    /// Takes a reference on each, and gives back those held before. Null takes a direction away.
    virtual void setInputOutputStreams(IInputStream* p_input, IOutputStream* p_output) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getIOStreamJoinReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(IOStreamJoin, IIOStream, "5c7b3c53-0133-4416-80b1-d64fed52202e")

/// Forwards each operation to the IOStreamJoin of its module; what extends that class derives from this.
class WIOStreamJoin : public IOStreamFacade<IIOStreamJoin> {
public:
    void setInputOutputStreams(IInputStream* p_input, IOutputStream* p_output) override {
        m_interfaceObject->setInputOutputStreams(p_input, p_output);
    }
    ILevelReserved* getIOStreamJoinReserved() const override { return m_interfaceObject->getIOStreamJoinReserved(); }
};

} // namespace zyr
