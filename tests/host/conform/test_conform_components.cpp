// The conformance kit on component modules.

#include "zyr_conform_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace zyr {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ConformComponents : public testing::Test {
protected:
    ~ConformComponents() override { unsetenv("ZYR_FAULT"); }
    ConformReport conformWith(const char* p_kind, const char* p_fault) const {
        setenv("ZYR_FAULT", p_fault, 1);
        return conform(ZYR_FAULTY_COMPONENT, {"--kind", p_kind});
    }
};

} // namespace

TEST_F(ConformComponents, PassTheCoreModule) {
    const ConformReport report = conform(ZYR_CORE_MODULE, {"--kind", "core"});
    EXPECT_EQ(report.m_exitCode, 0);
    EXPECT_THAT(report.list("failed"), IsEmpty()) << report.describe();
    EXPECT_THAT(report.list("blocked"), IsEmpty());
    for (const char* name : {"table-objects", "table-containers", "table-streams", "table-documents", "table-plugins",
                             "formats", "initialize-version"}) {
        EXPECT_EQ(report.m_results.at(name), "passed") << name;
    }
}

TEST_F(ConformComponents, PassThePictureModule) {
    const ConformReport report = conform(ZYR_PICTURE_MODULE, {"--kind", "picture"});
    EXPECT_EQ(report.m_exitCode, 0);
    EXPECT_EQ(report.list("passed").size(), report.m_results.size()) << report.describe();
}

TEST_F(ConformComponents, OfAnotherKindLackTheExport) {
    const ConformReport report = conform(ZYR_PICTURE_MODULE, {"--kind", "core"});
    EXPECT_EQ(report.m_exitCode, 1);
    EXPECT_THAT(report.list("failed"), ElementsAre("prepare"));
    EXPECT_EQ(report.m_reasons.at("prepare"), "it lacks the export zyr_core_prepare");
}

TEST_F(ConformComponents, WithoutAFaultPassBehindAnotherFile) {
    for (const char* kind : {"core", "picture"}) {
        const ConformReport report = conformWith(kind, "");
        EXPECT_EQ(report.m_exitCode, 0) << report.describe();
    }
}

TEST_F(ConformComponents, OfTheCoreFailTheCasesOfTheirFault) {
    ConformReport report = conformWith("core", "swapped");
    EXPECT_THAT(report.list("failed"), ElementsAre("table-streams"));
    EXPECT_THAT(report.m_reasons.at("table-streams"),
                HasSubstr("the entry of InputStream gives an object of OutputStream"));
    report = conformWith("core", "empty");
    EXPECT_THAT(report.list("failed"), ElementsAre("table-documents"));
    EXPECT_EQ(report.m_reasons.at("table-documents"), "the entry of BinaryReader is empty");
    report = conformWith("core", "hasty");
    EXPECT_THAT(report.list("failed"), ElementsAre("prepare"));
}

TEST_F(ConformComponents, OfThePictureFailTheCasesOfTheirFault) {
    const ConformReport report = conformWith("picture", "empty");
    EXPECT_THAT(report.list("failed"), ElementsAre("table-conversions"));
    EXPECT_EQ(report.m_reasons.at("table-conversions"), "an entry of the table is empty");
}

} // namespace zyr
