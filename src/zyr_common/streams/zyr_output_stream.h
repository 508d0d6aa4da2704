/// A sink of bytes.
///
/// Whoever writes looks at the result of flush at the end, not at that of each call: bytes may be lost behind a call
/// that took them all. Streams are made by the core module. Not thread safe. A copy of a stream is a new, closed one.
#pragma once

#include "zyr_common/object/zyr_object.h"

namespace zyr {

/// On its own a sink that takes nothing; what derives from it keeps the bytes.
class IOutputStream : public IObject {
public:
    /// Gives the number of bytes taken; fewer than p_size after an error. What is taken may wait in a buffer: an error
    /// that comes later is told by flush at the latest.
    virtual uint64_t writeBytes(const void* p_data, uint64_t p_size) = 0;
    /// Writes the bytes of the text without its terminator.
    virtual bool_t writeString(const String& p_text) = 0;
    /// Writes the text and LF.
    virtual bool_t writeLine(const String& p_line) = 0;
    /// The place of the next byte, -1 where there is none.
    virtual int64_t tell() = 0;
    /// p_origin is SEEK_SET, SEEK_CUR or SEEK_END. False, with the place unchanged, where that is not possible.
    virtual bool_t seek(int64_t p_offset, int p_origin) = 0;
    /// Whether seek can work: not on pipes, and not while nothing is open.
    virtual bool_t isSeekAvailable() const = 0;
    /// Hands on what waits in a buffer. False if any byte written so far got lost.
    virtual bool_t flush() = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getOutputStreamReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(OutputStream, IObject, "5d5c4dc7-0320-4a69-8a11-ab7eda62f025")

/// Forwards each operation to the OutputStream of its module; what extends that class derives from this.
template <class Interface> class OutputStreamFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    uint64_t writeBytes(const void* p_data, uint64_t p_size) override {
        return m_interfaceObject->writeBytes(p_data, p_size);
    }
    bool_t writeString(const String& p_text) override { return m_interfaceObject->writeString(p_text); }
    bool_t writeLine(const String& p_line) override { return m_interfaceObject->writeLine(p_line); }
    int64_t tell() override { return m_interfaceObject->tell(); }
    bool_t seek(int64_t p_offset, int p_origin) override { return m_interfaceObject->seek(p_offset, p_origin); }
    bool_t isSeekAvailable() const override { return m_interfaceObject->isSeekAvailable(); }
    bool_t flush() override { return m_interfaceObject->flush(); }
    ILevelReserved* getOutputStreamReserved() const override { return m_interfaceObject->getOutputStreamReserved(); }
};

using WOutputStream = OutputStreamFacade<IOutputStream>;

} // namespace zyr
