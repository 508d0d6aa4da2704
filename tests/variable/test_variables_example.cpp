#include "support/zyr_stub_object.h"
#include "zyr_common/references/zyr_object_references.h"
#include "zyr_common/variable/zyr_variable_factories.h"
#include "zyr_common/variable/zyr_variable_reference.h"

#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace zyr {
namespace {

// Example: these functions stand in docs/variables.md, letter by letter.

/// Sets a number of an object of any class. Gives 0 when there is no such field, or none that takes a number.
bool_t setNumber(IObject* p_object, const VariableDescriptor& p_descriptor, double p_number) {
    VariableValue* value = zyr_createVariableValue<double>(p_descriptor.getName(), p_number);
    bool_t done = p_object->setVariableValueByPath(value->getName(), value);
    value->release();
    return done;
}

/// The number of lines of text that an object says it has; 0 without such a field.
uint32_t getLines(IObject* p_object) {
    VariableReference* reference = p_object->getVariableReferenceByPath("text.lines");
    if (reference == nullptr) {
        return 0;
    }
    uint32_t lines = 0;
    if (reference->getType() == ZYR_VARIABLE_UINT32) {
        memcpy(&lines, reference->getPointer(), sizeof(lines)); // Fields of packed records are not aligned.
    }
    reference->release();
    return lines;
}

/// Points a reference that was read at the object that it means.
void resolve(ObjectGUIDReference& p_reference, IObject* p_object) {
    p_reference.refObject(p_object, GUID_t()); // The null GUID keeps the key that was read.
}

// The example ends.

/// An object with one field.
class Page : public test::StubObject<IObject> {
public:
    VariableReference* getVariableReferenceByPath(const String& p_path) override {
        return p_path == "text.lines" ? new VariableReference(m_type, &m_lines) : nullptr;
    }
    bool_t setVariableValueByPath(const String& p_path, VariableValue* p_value) override {
        return zyr_applyVariableValue(p_value, getVariableReferenceByPath(p_path));
    }

    VariableTypeEnum m_type = ZYR_VARIABLE_UINT32;
    uint32_t m_lines = 3;
};

VariableDescriptor makeDescriptor(const char* p_name) {
    VariableDescriptor descriptor(ZYR_VARIABLE_UINT32, ZYR_VARIABLE_CATEGORY_SCALAR, 0);
    descriptor.setName(p_name);
    return descriptor;
}

std::string readText(const std::string& p_path) {
    std::ifstream stream(p_path);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

} // namespace

TEST(VariablesExample, SetsANumberAndReadsItBack) {
    Page page;
    EXPECT_EQ(setNumber(&page, makeDescriptor("text.lines"), 12.0), 1);
    EXPECT_EQ(getLines(&page), 12u);
    EXPECT_EQ(setNumber(&page, makeDescriptor("text"), 1), 0);
    page.m_type = ZYR_VARIABLE_INT32;
    EXPECT_EQ(getLines(&page), 0u);
}

TEST(VariablesExample, ResolvesAReferenceUnderItsKey) {
    const GUID_t guid = GUID_t_fromString("10000000-0000-4000-8000-000000000001");
    Page page;
    ObjectGUIDReference reference;
    reference.setGUID(guid);
    resolve(reference, &page);
    EXPECT_EQ(reference.getObject(), &page);
    EXPECT_EQ(reference.getGUID(), guid);
}

TEST(VariablesExample, StandsInTheDocumentation) {
    const std::string document = readText(ZYR_TEST_DOCS "/variables.md");
    const std::string source = readText(ZYR_TEST_SOURCE);
    size_t start = source.find("// Example:");
    start = source.find("///", start);
    const size_t end = source.find("// The example ends.", start);
    ASSERT_NE(end, std::string::npos);
    size_t functions = 0;
    while (start < end) {
        const size_t next = source.find("\n}\n", start) + 3;
        EXPECT_NE(document.find("```cpp\n" + source.substr(start, next - start) + "```"), std::string::npos)
            << source.substr(start, next - start);
        functions++;
        start = source.find("//", next);
    }
    EXPECT_EQ(functions, 3u);
}

} // namespace zyr
