// What stands in a stream for an object that has a file of its own.
#include "core_module/zyr_core_class.h"
#include "zyr_common/formats/zyr_stored_objects.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

#pragma pack(push, 1)
class DeferredFileObjectState : public Record<DeferredFileObjectState> {
public:
    String m_filePath;
    bool_t m_readOnly = 0;

    static constexpr const char* c_typeName = "DeferredFileObjectState";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("filePath", &DeferredFileObjectState::m_filePath),
                          zyr_field("readOnly", &DeferredFileObjectState::m_readOnly));
    }
};
#pragma pack(pop)

template class RecordWalker<DeferredFileObjectState>;

namespace {

class DeferredFileObjectLevel
    : public StateLevel<ObjectLevel<IDeferredFileObject>, IDeferredFileObject, DeferredFileObjectState> {
public:
    const String& getFilePath() const override { return m_state.m_filePath; }
    void setFilePath(const String& p_filePath) override { m_state.m_filePath = p_filePath; }
    bool_t isReadOnly() const override { return m_state.m_readOnly; }
    void setReadOnly(bool_t p_readOnly) override { m_state.m_readOnly = p_readOnly; }
    ILevelReserved* getDeferredFileObjectReserved() const override { return &m_deferredFileObjectReserved; }

    void copy_This(const IDeferredFileObject* p_src) {
        setFilePath(p_src->getFilePath());
        setReadOnly(p_src->isReadOnly());
    }

private:
    mutable LevelReserved<DeferredFileObjectLevel> m_deferredFileObjectReserved{this};
};

} // namespace

using DeferredFileObject = Implementation<DeferredFileObjectLevel>;

ZYR_DEFINE_CORE_CLASS(DeferredFileObject)

} // namespace zyr
