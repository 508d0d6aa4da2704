// What stands in a stream for an object that is stored in compressed form: how it is compressed, and the bytes.
#include "core_module/zyr_core_class.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/formats/zyr_stored_objects.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/serialization/zyr_byte_stream.h"
#include "zyr_common/serialization/zyr_single_objects.h"

namespace zyr {

namespace {

const String& getInfoKey() {
    static const String& key = makePermanent<String>("compressionInfo");
    return key;
}
const String& getDataKey() {
    static const String& key = makePermanent<String>("compressedData");
    return key;
}

class CompressedObjectLevel : public ObjectLevel<ICompressedObject> {
public:
    using LevelBase = ObjectLevel<ICompressedObject>;
    using LevelInterface = ICompressedObject;

    const Array<unsigned char>* getCompressedData() const override { return &m_data; }
    Array<unsigned char>* getMutableCompressedData() override { return &m_data; }
    void setCompressedData(const Array<unsigned char>& p_data) override { m_data = p_data; }
    ILevelReserved* getCompressedObjectReserved() const override { return &m_compressedObjectReserved; }

    void init_This() {}
    void release_This() { m_data.clear(); }
    void copy_This(const ICompressedObject* p_src) { m_data = *p_src->getCompressedData(); }
    bool_t readSerialized_This(IDeserializer* p_deserializer);
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result);

private:
    Array<unsigned char> m_data;
    mutable LevelReserved<CompressedObjectLevel> m_compressedObjectReserved{this};
};

bool_t CompressedObjectLevel::readSerialized_This(IDeserializer* p_deserializer) {
    static uint32_t cache = 0;
    bool_t found = 0;
    IObject* info = nullptr;
    const bool_t done = p_deserializer->readSingleObject(getInfoKey(), found, &info, String::getConstEmpty());
    if (info != nullptr) {
        if (info->findClassGUID(zyr_getInterfaceGUID<ICompressionInfo>())) {
            setCompressionInfo(static_cast<ICompressionInfo*>(info));
        }
        info->release();
    }
    return done && readBytes(p_deserializer, getDataKey(), cache, m_data);
}

bool_t CompressedObjectLevel::writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                                   bool_t& p_result) {
    IObject* info = getCompressionInfo(0);
    p_result = 1;
    if (p_headerPass) {
        p_serializer->writeHeaderSingleObject(getInfoKey(), info, p_result);
    } else if (!p_firstPass || p_serializer->isBinaryFormat()) {
        p_result = p_serializer->writeSingleObject(getInfoKey(), info);
    }
    p_result = p_result &&
               writeBytes(p_serializer, getDataKey(), p_firstPass, p_headerPass, m_data.getData(), m_data.getSize());
    return p_result;
}

} // namespace

using CompressedObject = Implementation<CompressedObjectLevel>;

ZYR_DEFINE_CORE_CLASS(CompressedObject)

} // namespace zyr
