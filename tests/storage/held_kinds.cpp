// The kinds of records that a holder can hold: all that list their fields, and those that store more than their list.
#include "storage/odd_values.h"
#include "storage/record_holder.h"
#include "support/records/zyr_record_list.h"
#include "zyr_common/geometry/zyr_path2d.h"
#include "zyr_common/variable/zyr_variable_reference.h"
#include "zyr_common/variable/zyr_variable_value.h"

namespace zyr::test {

namespace {

void addListed(std::vector<HeldKind>& p_kinds, const std::vector<RecordKind>& p_records) {
    for (const RecordKind& record : p_records) {
        HeldKind kind = {};
        kind.m_name = record.m_name;
        kind.m_create = [](const HeldKind& p_kind) {
            return static_cast<const RecordKind*>(p_kind.m_description)->m_create();
        };
        kind.m_destroy = record.m_destroy;
        kind.m_fill = [](const HeldKind& p_kind, void* p_record) {
            uint32_t number = 1;
            for (const RecordLeaf& leaf : static_cast<const RecordKind*>(p_kind.m_description)->m_leaves) {
                leaf.m_kind->m_makeDifferent(leaf.at(p_record), number++);
            }
        };
        kind.m_read = record.m_read;
        kind.m_write = record.m_write;
        kind.m_description = &record;
        p_kinds.push_back(kind);
    }
}

template <class R> HeldKind makeKind(void (*p_fill)(const HeldKind&, void*)) {
    HeldKind kind = {};
    kind.m_name = R::getRecordName().getData();
    kind.m_create = [](const HeldKind&) { return static_cast<void*>(new R); };
    kind.m_destroy = [](void* p_record) { delete static_cast<R*>(p_record); };
    kind.m_fill = p_fill;
    kind.m_read = [](void* p_record, IDeserializer* p_deserializer) {
        return static_cast<R*>(p_record)->readSerialized(p_deserializer);
    };
    kind.m_write = [](void* p_record, ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return static_cast<R*>(p_record)->writeSerialized(p_serializer, p_headerPass, p_result);
    };
    return kind;
}

/// Paths store every command under the name of the base, which is relied upon: only commands without points come back.
template <typename T> void fillPath(const HeldKind&, void* p_record) {
    Path2D<T>& path = *static_cast<Path2D<T>*>(p_record);
    path.origin = ExtVector2<T>(Vector2<T>(1, 2), ZYR_POSITION_X_RIGHT, ZYR_POSITION_Y_CENTER);
    path.width = 640;
    path.height = 480;
    path.close();
    path.close();
}

/// A value of the number's type; a number as value where it can hold one.
HeldKind makeVariable(uint32_t p_type) {
    HeldKind kind = {};
    kind.m_name = "VariableValue of type " + std::to_string(p_type);
    kind.m_create = [](const HeldKind& p_kind) {
        return static_cast<void*>(new VariableValue(static_cast<VariableTypeEnum>(p_kind.m_number)));
    };
    kind.m_destroy = [](void* p_record) { static_cast<VariableValue*>(p_record)->release(); };
    kind.m_fill = [](const HeldKind&, void* p_record) {
        VariableValue* value = static_cast<VariableValue*>(p_record);
        value->setName("the name");
        VariableReference* reference = value->getVariableReference();
        if (reference != nullptr) {
            reference->changeValueInt32(1);
            reference->release();
        }
    };
    kind.m_read = [](void* p_record, IDeserializer* p_deserializer) {
        return static_cast<VariableValue*>(p_record)->readSerialized(p_deserializer);
    };
    kind.m_write = [](void* p_record, ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return static_cast<VariableValue*>(p_record)->writeSerialized(p_serializer, p_headerPass, p_result);
    };
    kind.m_number = p_type;
    return kind;
}

std::vector<HeldKind> makeHeldKinds() {
    static const std::vector<RecordKind> lists[] = {describeGeometryRecords(), describeShapeRecords(),
                                                    describeOtherRecords()};
    std::vector<HeldKind> kinds;
    for (const std::vector<RecordKind>& list : lists) {
        addListed(kinds, list);
    }
    kinds.push_back(makeKind<Path2D<float>>(&fillPath<float>));
    kinds.push_back(makeKind<Path2D<double>>(&fillPath<double>));
    for (uint32_t type = ZYR_VARIABLE_NONE + 1; type <= ZYR_VARIABLE_ENUM; type++) {
        kinds.push_back(makeVariable(type));
    }
    kinds.push_back(
        makeKind<OddValues>([](const HeldKind&, void* p_record) { static_cast<OddValues*>(p_record)->fillOddly(); }));
    return kinds;
}

} // namespace

const std::vector<HeldKind>& getHeldKinds() {
    static const std::vector<HeldKind> kinds = makeHeldKinds();
    return kinds;
}

} // namespace zyr::test
