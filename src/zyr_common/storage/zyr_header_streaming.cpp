// The parts of ISerializer and IDeserializer that write and read the records in front of a saved object.
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/serialization/zyr_single_objects.h"
#include "zyr_common/storage/zyr_file_format_header.h"

namespace zyr {

namespace {

const String& getXmlKey() {
    static const String& key = makePermanent<String>("xml");
    return key;
}
const String& getHeaderKey() {
    static const String& key = makePermanent<String>("fileHeader");
    return key;
}
const String& getObjectKey() {
    static const String& key = makePermanent<String>("fileObject");
    return key;
}

bool_t writeHeaderSection(ISerializer* p_serializer, FileFormatHeader& p_header, IObject* p_object) {
    bool_t result = 1;
    return p_serializer->beginHeader() && p_serializer->beginHeaderStructure(FileFormatHeader::getRecordName()) &&
           p_header.writeSerialized(p_serializer, 1, result) && p_serializer->endHeaderStructure() &&
           p_serializer->writeHeaderField(getHeaderKey(), ZYR_HEADER_FIELD_RECORD, 0,
                                          FileFormatHeader::getRecordName()) &&
           p_serializer->writeHeaderSingleObject(getObjectKey(), p_object, result) && p_serializer->endHeader();
}

template <class R>
bool_t writeRecord(ISerializer* p_serializer, const String& p_key, R& p_record, bool_t p_formatHeader) {
    bool_t result = 1;
    return p_serializer->beginStructure(p_key, p_formatHeader) && p_record.writeSerialized(p_serializer, 0, result) &&
           p_serializer->endStructure();
}

} // namespace

bool_t ISerializer::writeHeaderAndObjectToFile(FileFormatHeader& p_header, IObject* p_object) {
    if (p_object == nullptr) {
        return 0;
    }
    if (hasHeaderSection() && !writeHeaderSection(this, p_header, p_object)) {
        return 0;
    }
    XmlFormatHeader xmlHeader;
    if (getClassName() == "XmlSerializer" && !writeRecord(this, getXmlKey(), xmlHeader, 1)) {
        return 0;
    }
    return writeRecord(this, getHeaderKey(), p_header, 0) && writeSingleObject(getObjectKey(), p_object);
}

bool_t IDeserializer::readHeaderFromFile(bool_t& p_found, FileFormatHeader& p_header) {
    p_found = 0;
    bool_t inner = 0;
    if (getClassName() == "XmlDeserializer") {
        if (!enterGroup(getXmlKey(), inner)) {
            return 0;
        }
        if (!inner) {
            ZYR_LOG_WARN("Xml header not found, non standard xml format");
            return 0;
        }
        XmlFormatHeader xmlHeader;
        const bool_t done = xmlHeader.readSerialized(this);
        if (!leaveGroup() || !done) {
            return 0;
        }
    }
    if (!enterGroup(getHeaderKey(), inner)) {
        return 0;
    }
    if (!inner) {
        return 1;
    }
    const bool_t done = p_header.readSerialized(this);
    p_found = leaveGroup() && done;
    return p_found;
}

} // namespace zyr
