// Tables and keys in what runs at the end of the process.
#include "zyr_common/geometry/zyr_vector.h"
#include "zyr_common/variable/zyr_variable_descriptor.h"
#include "zyr_common/variable/zyr_variable_reference.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace zyr;

namespace {

constexpr int ANSWERED = 42;

bool lookUp() {
    String word("DOUBLE");
    uint32_t type = 0;
    Vector2<double> vector(3, 4);
    VariableReference* reference = vector.getVariableReferenceByPath("y");
    const bool found = reference != nullptr && reference->getPointer() == &vector.y;
    if (reference != nullptr) {
        reference->release();
    }
    return zyr_convertEnumeration<VariableTypeEnum>(word, type, 1) && type == ZYR_VARIABLE_DOUBLE && found &&
           VariableDescriptor().getClassName() == "VariableDescriptor" && String::getConstNull() == "null";
}

/// The handler is older than the tables, so all that the tables' own making has registered runs before it.
void lookUpAtExit() {
    atexit([] { _exit(lookUp() ? ANSWERED : 1); });
    exit(lookUp() ? 0 : 2);
}

} // namespace

TEST(TablesDeathTest, AnswerUntilTheProcessEnds) {
    // In a process of its own, where nothing has made the tables yet.
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(lookUpAtExit(), testing::ExitedWithCode(ANSWERED), "");
}
