/// How objects of the core module's classes get values that are not their defaults.
#pragma once

#include "zyr_common/object/zyr_object.h"

#include <string>
#include <vector>

namespace zyr::test {

struct ObjectFill {
    std::string m_className;
    void (*m_fill)(IObject* p_object);
};

/// One for each class that stores something of its own. What stands for another object is not among them.
std::vector<ObjectFill> getObjectFills();

/// Those of transports.
void addTransportFills(std::vector<ObjectFill>& p_fills);
/// Those of resources and agents.
void addResourceFills(std::vector<ObjectFill>& p_fills);

} // namespace zyr::test
