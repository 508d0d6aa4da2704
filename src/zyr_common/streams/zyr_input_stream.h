/// A source of bytes.
///
///     IInputStreamFile* stream = zyr_createObject<IInputStreamFile>();
///     String line;
///     while (stream->readLine(line)) { ... }
///     stream->release();
///
/// Streams are made by the core module. Not thread safe. A copy of a stream is a new, closed one.
#pragma once

#include "zyr_common/object/zyr_object.h"

namespace zyr {

/// On its own a source without bytes; what derives from it has some.
class IInputStream : public IObject {
public:
    /// Gives the number of bytes read. Fewer than p_size only at the end or after an error.
    virtual uint64_t readBytes(void* p_data, uint64_t p_size) = 0;
    /// Replaces the text by up to p_size bytes and gives their number.
    virtual uint64_t readString(String& p_text, uint64_t p_size) = 0;
    /// Replaces the text by the next line without its end, which is LF or CRLF. False when no byte is left.
    virtual bool_t readLine(String& p_line) = 0;
    /// The place of the next byte, -1 where there is none.
    virtual int64_t tell() = 0;
    /// p_origin is SEEK_SET, SEEK_CUR or SEEK_END. False, with the place unchanged, where that is not possible.
    virtual bool_t seek(int64_t p_offset, int p_origin) = 0;
    /// Whether seek can work: not on pipes, and not while nothing is open.
    virtual bool_t isSeekAvailable() const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getInputStreamReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(InputStream, IObject, "dd9c4f7b-22fa-4ca4-a5da-0b8927530c40")

/// Forwards each operation to the InputStream of its module; what extends that class derives from this.
template <class Interface> class InputStreamFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    uint64_t readBytes(void* p_data, uint64_t p_size) override { return m_interfaceObject->readBytes(p_data, p_size); }
    uint64_t readString(String& p_text, uint64_t p_size) override {
        return m_interfaceObject->readString(p_text, p_size);
    }
    bool_t readLine(String& p_line) override { return m_interfaceObject->readLine(p_line); }
    int64_t tell() override { return m_interfaceObject->tell(); }
    bool_t seek(int64_t p_offset, int p_origin) override { return m_interfaceObject->seek(p_offset, p_origin); }
    bool_t isSeekAvailable() const override { return m_interfaceObject->isSeekAvailable(); }
    ILevelReserved* getInputStreamReserved() const override { return m_interfaceObject->getInputStreamReserved(); }
};

using WInputStream = InputStreamFacade<IInputStream>;

} // namespace zyr
