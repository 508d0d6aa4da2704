/// Files as streams. Paths are UTF-8; pipes and devices work, without seeking. Not thread safe.
///
///     Ref<IFileStream> file = Ref<IFileStream>::adopt(zyr_createObject<IFileStream>());
///     if (file->open("out.bin", ZYR_ACCESS_WRITE, 1)) {
///         file->writeBytes(data, size);
///         if (!file->close()) { report("out.bin is not complete"); }
///     }
///
/// IFileStream is the file itself. The three classes behind it give it the shape of a stream for one direction or both,
/// so that code which takes an IInputStream or IOutputStream works on files.
#pragma once

#include "zyr_common/streams/zyr_access.h"
#include "zyr_common/streams/zyr_io_stream.h"

namespace zyr {

/// A file. Short reads and interrupted calls are gone on with, and writes are collected. Releasing the last reference
/// closes the file; whoever has to know that everything was written calls flush or close before.
class IFileStream : public IObject {
public:
    /// Closes what is open and opens the path. A file to be written to is created where it is missing; p_truncate
    /// empties one that is there. On failure the stream is closed.
    virtual bool_t open(const String& p_path, AccessEnum p_access, bool_t p_truncate) = 0;
    /// Gives the number of bytes read. Fewer than p_size only at the end or after an error; 0 on a stream not open for
    /// reading.
    virtual uint64_t readBytes(void* p_data, uint64_t p_size) = 0;
    /// Replaces the text by up to p_size bytes and gives their number.
    virtual uint64_t readString(String& p_text, uint64_t p_size) = 0;
    /// Gives the number of bytes taken, most of which wait in a buffer: errors of the disk show in flush or close.
    virtual uint64_t writeBytes(const void* p_data, uint64_t p_size) = 0;
    /// Writes the bytes of the text without its terminator.
    virtual bool_t writeString(const String& p_text) = 0;
    /// The place of the next byte, counted from the start; -1 for a closed stream and where there is no place.
    virtual int64_t tell() = 0;
    /// p_origin is SEEK_SET, SEEK_CUR or SEEK_END. False, with the place unchanged, where that is not possible.
    virtual bool_t seek(int64_t p_offset, int p_origin) = 0;
    /// Hands on what waits in the buffer. False if any byte written so far got lost.
    virtual bool_t flush() = 0;
    /// False if any byte written got lost. True on a closed stream.
    virtual bool_t close() = 0;
    /// Bytes in the file, those that wait in the buffer included; 0 for a closed stream and for pipes.
    virtual uint64_t getSize() const = 0;
    /// What the stream was opened for; NONE while it is closed.
    virtual AccessEnum getAccess() const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getFileStreamReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(FileStream, IObject, "adec7726-70b7-4dde-b0a4-e6883e4576f5")

/// Forwards each operation to the FileStream of its module; what extends that class derives from this.
class WFileStream : public ObjectFacade<IFileStream> {
public:
    bool_t open(const String& p_path, AccessEnum p_access, bool_t p_truncate) override {
        return m_interfaceObject->open(p_path, p_access, p_truncate);
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
    bool_t flush() override { return m_interfaceObject->flush(); }
    bool_t close() override { return m_interfaceObject->close(); }
    uint64_t getSize() const override { return m_interfaceObject->getSize(); }
    AccessEnum getAccess() const override { return m_interfaceObject->getAccess(); }
    ILevelReserved* getFileStreamReserved() const override { return m_interfaceObject->getFileStreamReserved(); }
};

/// Reads a file from its start.
class IInputStreamFile : public IInputStream {
public:
    /// Opens the file for reading, on a file stream of its own where none was set.
    virtual bool_t open(const String& p_path) = 0;
    /// Bytes in the file; 0 without an open file.
    virtual uint64_t getFileSize() const = 0;
    /// Takes a reference on the stream to read from, and gives back the one held before.
    virtual void setFileStream(IFileStream* p_stream) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getInputStreamFileReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(InputStreamFile, IInputStream, "9e0dc2e5-1706-4c17-9be4-8103ce49e1d4")

/// Forwards each operation to the InputStreamFile of its module; what extends that class derives from this.
class WInputStreamFile : public InputStreamFacade<IInputStreamFile> {
public:
    bool_t open(const String& p_path) override { return m_interfaceObject->open(p_path); }
    uint64_t getFileSize() const override { return m_interfaceObject->getFileSize(); }
    void setFileStream(IFileStream* p_stream) override { m_interfaceObject->setFileStream(p_stream); }
    ILevelReserved* getInputStreamFileReserved() const override {
        return m_interfaceObject->getInputStreamFileReserved();
    }
};

/// Writes a file from its start.
class IOutputStreamFile : public IOutputStream {
public:
    /// Creates the file, or empties it, on a file stream of its own where none was set.
    virtual bool_t open(const String& p_path) = 0;
    /// Takes a reference on the stream to write to, and gives back the one held before.
    virtual void setFileStream(IFileStream* p_stream) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getOutputStreamFileReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(OutputStreamFile, IOutputStream, "96ba5f12-063b-44b2-b307-913d57bbdbc8")

/// Forwards each operation to the OutputStreamFile of its module; what extends that class derives from this.
class WOutputStreamFile : public OutputStreamFacade<IOutputStreamFile> {
public:
    bool_t open(const String& p_path) override { return m_interfaceObject->open(p_path); }
    void setFileStream(IFileStream* p_stream) override { m_interfaceObject->setFileStream(p_stream); }
    ILevelReserved* getOutputStreamFileReserved() const override {
        return m_interfaceObject->getOutputStreamFileReserved();
    }
};

/// Reads and writes a file at one place.
class IIOStreamFile : public IIOStream {
public:
    /// Opens the file for both; p_truncate empties it.
    virtual bool_t open(const String& p_path, bool_t p_truncate) = 0;
    /// Takes a reference on the stream to use, and gives back the one held before.
    virtual void setFileStream(IFileStream* p_stream) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getIOStreamFileReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(IOStreamFile, IIOStream, "a2436e13-8efc-4b5a-a93f-b34c177597a0")

/// Forwards each operation to the IOStreamFile of its module; what extends that class derives from this.
class WIOStreamFile : public IOStreamFacade<IIOStreamFile> {
public:
    bool_t open(const String& p_path, bool_t p_truncate) override {
        return m_interfaceObject->open(p_path, p_truncate);
    }
    void setFileStream(IFileStream* p_stream) override { m_interfaceObject->setFileStream(p_stream); }
    ILevelReserved* getIOStreamFileReserved() const override { return m_interfaceObject->getIOStreamFileReserved(); }
};

} // namespace zyr
