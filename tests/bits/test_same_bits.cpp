// What the library calculates has the same bits on every platform: a large table of results for each subject, one sum
// for each table and one over all, which every run prints. The expected sums were taken on x86-64 and are compared on
// the target as well; bit_table.h tells what no sum covers.
#include "bits/bit_table.h"
#include "core_module/core_module_test.h"
#include "support/log_capture.h"

#include <cinttypes>

namespace zyr {

namespace {

struct TableCase {
    const char* m_name;
    void (*m_fill)(BitTable& p_table);
    uint64_t m_digest;
};

const TableCase c_tables[] = {
    {"FloatMatrices", &zyr_fillFloatMatrices, 0x5C15A4357E0A9011},
    {"DoubleMatrices", &zyr_fillDoubleMatrices, 0x1F56183A8D81F649},
    {"Projections", &zyr_fillProjections, 0x76D0EB4C2505DC8B},
    {"Quaternions", &zyr_fillQuaternions, 0xFC48D9B4ECD701D6},
    {"Vectors", &zyr_fillVectors, 0xD144ADBC5828A567},
    {"ComplexNumbers", &zyr_fillComplexNumbers, 0xAD174B6232F05347},
    {"Rectangles", &zyr_fillRectangles, 0xF681159F8718F660},
    {"AnchoredRectangles", &zyr_fillAnchoredRectangles, 0x4C2354E9174B8B6A},
    {"AnchoredBoxes", &zyr_fillAnchoredBoxes, 0xE08085D8F0C4308B},
    {"Transforms", &zyr_fillTransforms, 0xACD62A5B4A89168B},
    {"Shapes", &zyr_fillShapes, 0xDC5BFAB5A60B1A69},
    {"Paths", &zyr_fillPaths, 0x362645DA30290700},
    {"Noise", &zyr_fillNoise, 0x43137AD94096EC3B},
    {"EscapeCounts", &zyr_fillEscapeCounts, 0x001D3E04AD1E26FD},
    {"NumberTexts", &zyr_fillNumberTexts, 0xD0A6440B68697D19},
    {"TextNumbers", &zyr_fillTextNumbers, 0x950A3D1C501E9080},
    {"Conversions", &zyr_fillConversions, 0x61C39B2BCC935C41},
    {"Colours", &zyr_fillColours, 0x78789A45810D191E},
};
constexpr uint64_t c_digestOverAll = 0xDBC15E3CAA09E5F2;

void PrintTo(const TableCase& p_case, std::ostream* p_stream) {
    *p_stream << p_case.m_name;
}

BitTable fill(const TableCase& p_case) {
    const LogCapture refusals; // Anchors that don't exist are logged.
    BitTable table;
    p_case.m_fill(table);
    return table;
}

} // namespace

/// Paths need the lexer of the core module.
class SameBits : public CoreModuleUpTest, public testing::WithParamInterface<TableCase> {};

TEST_P(SameBits, AsOnEveryPlatform) {
    const BitTable table = fill(GetParam());
    printf("same bits: %s 0x%016" PRIX64 " over %u results\n", GetParam().m_name, table.getDigest(), table.getCount());
    EXPECT_EQ(table.getDigest(), GetParam().m_digest);
    EXPECT_GE(table.getCount(), 5000u);
}

INSTANTIATE_TEST_SUITE_P(Tables, SameBits, testing::ValuesIn(c_tables),
                         [](const auto& p_info) { return std::string(p_info.param.m_name); });

class SameBitsOverAll : public CoreModuleUpTest {};

// The test scripts show this line and compare it between platforms.
TEST_F(SameBitsOverAll, GiveOneDigest) {
    BitTable sums;
    uint32_t count = 0;
    for (const TableCase& one : c_tables) {
        const BitTable table = fill(one);
        sums.add(table.getDigest());
        count += table.getCount();
    }
    printf("same bits: digest 0x%016" PRIX64 " over %u results in %zu tables\n", sums.getDigest(), count,
           std::size(c_tables));
    EXPECT_EQ(sums.getDigest(), c_digestOverAll);
    EXPECT_GE(count, 100000u);
}

} // namespace zyr
