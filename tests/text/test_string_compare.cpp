#include "support/zyr_print_text.h"
#include "zyr_common/text/zyr_string.h"

#include <gmock/gmock.h>

using namespace zyr;

namespace {

/// All six operators for a left text that is smaller, equal or greater than the right one.
template <typename A, typename B> void expectOrder(const A& p_a, const B& p_b, int p_order) {
    EXPECT_EQ(p_a == p_b, p_order == 0);
    EXPECT_EQ(p_a != p_b, p_order != 0);
    EXPECT_EQ(p_a < p_b, p_order < 0);
    EXPECT_EQ(p_a <= p_b, p_order <= 0);
    EXPECT_EQ(p_a > p_b, p_order > 0);
    EXPECT_EQ(p_a >= p_b, p_order >= 0);
}

struct Case {
    const char* m_a;
    const char* m_b;
    int m_order;
};

const Case CASES[] = {{"b", "aa", -1}, {"aa", "ab", -1}, {"ab", "ab", 0},       {"", "", 0},   {"", "a", -1},
                      {"aa", "b", 1},  {"ab", "aa", 1},  {"\xC3\xA4", "zz", 1}, {"a", "A", 1}, {"zzz", "aaaa", -1}};

} // namespace

TEST(StringOrder, StringsByLengthThenBytes) {
    for (const Case& item : CASES) {
        expectOrder(String(item.m_a), String(item.m_b), item.m_order);
    }
}

TEST(StringOrder, PlainText) {
    for (const Case& item : CASES) {
        expectOrder(String(item.m_a), item.m_b, item.m_order);
    }
    expectOrder(String(), static_cast<const char*>(nullptr), 0);
    expectOrder(String("a"), static_cast<const char*>(nullptr), 1);
}

TEST(StringOrder, WideTextIsConvertedFirst) {
    const short units[] = {0xE4, 0};
    expectOrder(String("\xC3\xA4"), units, 0);
    expectOrder(String("z"), units, -1);
    expectOrder(String("zz"), units, -1);
    expectOrder(String("\xC3\xA4"), L"\u00E4", 0);
    expectOrder(String("z"), L"\u00E4", -1);
    expectOrder(String("abc"), L"\u00E4", 1);
}

TEST(StringOrder, WrappedTextOnBothSides) {
    for (const Case& item : CASES) {
        WrappedString a(item.m_a);
        WrappedString b(item.m_b);
        expectOrder(a, b, item.m_order);
        expectOrder(String(item.m_a), b, item.m_order);
        expectOrder(a, String(item.m_b), item.m_order);
        expectOrder(a, item.m_b, item.m_order);
        expectOrder(item.m_a, b, item.m_order);
    }
}

TEST(StringOrder, WrappedTextNeedsNoTerminator) {
    expectOrder(WrappedString("abc", 2), String("ab"), 0);
    expectOrder(String("ab"), WrappedString("abc", 2), 0);
    expectOrder(WrappedString(), String(), 0);
}
