/// Arrays of bytes as streams. The array belongs to the caller and has to outlive its use by the stream; it grows by
/// its own rules, so one of fixed size takes what fits. Not thread safe.
///
///     Array<unsigned char> bytes;
///     bytes.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE); // many small writes
///     Ref<IOutputStreamMemory> stream = Ref<IOutputStreamMemory>::adopt(zyr_createObject<IOutputStreamMemory>());
///     stream->open(&bytes);
///     stream->writeString("text"); // the array has 4 bytes at once: nothing waits in a buffer
///
/// Whoever changes the array while a stream is open on it closes or opens the stream anew.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/streams/zyr_access.h"
#include "zyr_common/streams/zyr_io_stream.h"

namespace zyr {

/// A place in an array.
class IMemoryStream : public IObject {
public:
    /// Starts at the first byte. Access for writing alone empties an array that can change its size. A null array
    /// closes the stream and gives false.
    virtual bool_t open(Array<unsigned char>* p_data, AccessEnum p_access) = 0;
    /// Gives the number of bytes read, fewer than p_size only at the end; 0 on a stream not open for reading.
    virtual uint64_t readBytes(void* p_data, uint64_t p_size) = 0;
    /// Replaces the text by up to p_size bytes and gives their number.
    virtual uint64_t readString(String& p_text, uint64_t p_size) = 0;
    /// Writes over what is there and grows the array at its end.
    virtual uint64_t writeBytes(const void* p_data, uint64_t p_size) = 0;
    /// Writes the bytes of the text without its terminator.
    virtual bool_t writeString(const String& p_text) = 0;
    /// The place of the next byte; -1 for a closed stream.
    virtual int64_t tell() = 0;
    /// A place behind the end is refused.
    virtual bool_t seek(int64_t p_offset, int p_origin) = 0;
    /// Forgets the array, which keeps its bytes.
    virtual bool_t close() = 0;
    /// What the stream was opened for; NONE while it is closed.
    virtual AccessEnum getAccess() const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getMemoryStreamReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(MemoryStream, IObject, "83f2b0ea-fb27-4407-ac0b-ea7f0b1c3271")

/// Forwards each operation to the MemoryStream of its module; what extends that class derives from this.
class WMemoryStream : public ObjectFacade<IMemoryStream> {
public:
    bool_t open(Array<unsigned char>* p_data, AccessEnum p_access) override {
        return m_interfaceObject->open(p_data, p_access);
    }
    uint64_t readBytes(void* p_data, uint64_t p_size) override { return m_interfaceObject->readBytes(p_data, p_size); }
    uint64_t readString(String& p_text, uint64_t p_size) override {
        return m_interfaceObject->readString(p_text, p_size);
    }
    uint64_t writeBytes(const void* p_data, uint64_t p_size) override {
        return m_interfaceObject->writeBytes(p_data, p_size);
    }
    bool_t writeString(const String& p_text) override { return m_interfaceObject->writeString(p_text); }
    int64_t tell() override { return m_interfaceObject->tell(); }
    bool_t seek(int64_t p_offset, int p_origin) override { return m_interfaceObject->seek(p_offset, p_origin); }
    bool_t close() override { return m_interfaceObject->close(); }
    AccessEnum getAccess() const override { return m_interfaceObject->getAccess(); }
    ILevelReserved* getMemoryStreamReserved() const override { return m_interfaceObject->getMemoryStreamReserved(); }
};

/// Reads an array.
class IInputStreamMemory : public IInputStream {
public:
    /// Starts at the first byte, on a memory stream of its own where none was set. False for null.
    virtual bool_t open(Array<unsigned char>* p_data) = 0;
    /// Takes a reference on the stream to read from, and gives back the one held before.
    virtual void setMemoryStream(IMemoryStream* p_stream) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getInputStreamMemoryReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(InputStreamMemory, IInputStream, "2313658f-192e-4cdf-8d74-0e73260f5c96")

/// Forwards each operation to the InputStreamMemory of its module; what extends that class derives from this.
class WInputStreamMemory : public InputStreamFacade<IInputStreamMemory> {
public:
    bool_t open(Array<unsigned char>* p_data) override { return m_interfaceObject->open(p_data); }
    void setMemoryStream(IMemoryStream* p_stream) override { m_interfaceObject->setMemoryStream(p_stream); }
    ILevelReserved* getInputStreamMemoryReserved() const override {
        return m_interfaceObject->getInputStreamMemoryReserved();
    }
};

/// Writes an array from its start.
class IOutputStreamMemory : public IOutputStream {
public:
    /// Empties the array where its size can change, and writes from its start. False for null.
    virtual bool_t open(Array<unsigned char>* p_data) = 0;
    /// Takes a reference on the stream to write to, and gives back the one held before.
    virtual void setMemoryStream(IMemoryStream* p_stream) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getOutputStreamMemoryReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(OutputStreamMemory, IOutputStream, "499064d2-5405-4cf8-ab6a-35a13542cc3c")

/// Forwards each operation to the OutputStreamMemory of its module; what extends that class derives from this.
class WOutputStreamMemory : public OutputStreamFacade<IOutputStreamMemory> {
public:
    bool_t open(Array<unsigned char>* p_data) override { return m_interfaceObject->open(p_data); }
    void setMemoryStream(IMemoryStream* p_stream) override { m_interfaceObject->setMemoryStream(p_stream); }
    ILevelReserved* getOutputStreamMemoryReserved() const override {
        return m_interfaceObject->getOutputStreamMemoryReserved();
    }
};

/// Reads and writes an array at one place.
class IIOStreamMemory : public IIOStream {
public:
    /// Keeps what the array holds; the place is its start. False for null.
    virtual bool_t open(Array<unsigned char>* p_data) = 0;
    virtual void setMemoryStream(IMemoryStream* p_stream) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getIOStreamMemoryReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(IOStreamMemory, IIOStream, "8c06c3a2-21c1-4012-81aa-79ee229dc12f")

/// Forwards each operation to the IOStreamMemory of its module; what extends that class derives from this.
class WIOStreamMemory : public IOStreamFacade<IIOStreamMemory> {
public:
    bool_t open(Array<unsigned char>* p_data) override { return m_interfaceObject->open(p_data); }
    void setMemoryStream(IMemoryStream* p_stream) override { m_interfaceObject->setMemoryStream(p_stream); }
    ILevelReserved* getIOStreamMemoryReserved() const override {
        return m_interfaceObject->getIOStreamMemoryReserved();
    }
};

} // namespace zyr
