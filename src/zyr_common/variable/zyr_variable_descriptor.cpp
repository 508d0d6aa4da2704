#include "zyr_common/variable/zyr_variable_descriptor.h"

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<VariableDescriptor>;

VariableDescriptor::VariableDescriptor(VariableTypeEnum p_type, VariableCategoryEnum p_category, bool_t p_temporary) {
    ZYR_ASSERT(p_type != ZYR_VARIABLE_NONE);
    init_This();
    m_type = p_type;
    m_category = p_category;
    m_temporary = p_temporary;
}

VariableDescriptor* VariableDescriptor::addRef() {
    RefCountedData::addRef();
    return this;
}

void VariableDescriptor::release() {
    RefCountedData::release();
}

void VariableDescriptor::clear() {
    release_This();
    init_This();
}

void VariableDescriptor::init_This() {
    m_name.clear();
    m_type = ZYR_VARIABLE_NONE;
    m_category = ZYR_VARIABLE_CATEGORY_UNKNOWN;
    m_temporary = 0;
}

void VariableDescriptor::release_This() {
    m_name.clear();
    m_propagationPaths.clear();
}

} // namespace zyr
