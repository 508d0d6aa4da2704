/// The two records with which every saved object begins.
#pragma once

#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

#pragma pack(push, 1)

/// What a saved object says about its file. Stored as "format", "version" and, as an element, "info". The order of the
/// virtual operations is a contract between separately built modules.
class FileFormatHeader : public Record<FileFormatHeader> {
public:
    /// The format word under which the object was saved.
    String m_format;
    /// Of the format; 100 at first. Nothing is refused by it.
    uint32_t m_version;
    /// Free text.
    String m_info;

    /// Without a format; the version is 100.
    FileFormatHeader() { init_This(); }
    FileFormatHeader(const FileFormatHeader&) = default;
    FileFormatHeader& operator=(const FileFormatHeader&) = default;
    virtual ~FileFormatHeader() = default;

    /// Read and write the fields in their order. 0 when the stream fails; what was read until then stays.
    virtual bool_t readSerialized(IDeserializer* p_deserializer) { return Record::readSerialized(p_deserializer); }
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return Record::writeSerialized(p_serializer, p_headerPass, p_result);
    }

    static constexpr const char* c_typeName = "FileFormatHeader";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("format", &FileFormatHeader::m_format),
                          zyr_field("version", &FileFormatHeader::m_version).withDefault(100),
                          zyr_field("info", &FileFormatHeader::m_info).asElement());
    }
};

/// The declaration of an XML file. Stored as "version" and "encoding".
class XmlFormatHeader : public Record<XmlFormatHeader> {
public:
    /// of XML
    String m_version;
    /// of the text behind it
    String m_encoding;

    /// What this library writes.
    XmlFormatHeader() { init_This(); }
    XmlFormatHeader(const XmlFormatHeader&) = default;
    XmlFormatHeader& operator=(const XmlFormatHeader&) = default;
    virtual ~XmlFormatHeader() = default;

    /// Read and write the fields in their order. 0 when the stream fails; what was read until then stays.
    virtual bool_t readSerialized(IDeserializer* p_deserializer) { return Record::readSerialized(p_deserializer); }
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return Record::writeSerialized(p_serializer, p_headerPass, p_result);
    }

    /// "1.0" and "utf-8".
    void init_This();

    static constexpr const char* c_typeName = "XmlFormatHeader";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("version", &XmlFormatHeader::m_version),
                          zyr_field("encoding", &XmlFormatHeader::m_encoding));
    }
};

#pragma pack(pop)

static_assert(sizeof(FileFormatHeader) == 236 && sizeof(XmlFormatHeader) == 232);

} // namespace zyr
