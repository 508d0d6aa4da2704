// A codec with one fault at a time fails the case of that fault.

#include "zyr_conform_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace zyr {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ConformFaults : public testing::Test {
protected:
    ~ConformFaults() override { unsetenv("ZYR_FAULT"); }
    ConformReport conformWith(const char* p_fault, const std::vector<std::string>& p_arguments) const {
        setenv("ZYR_FAULT", p_fault, 1);
        return conform(ZYR_FAULTY_CODEC, p_arguments);
    }
};

} // namespace

TEST_F(ConformFaults, AreNoneInTheExample) {
    const ConformReport report = conformWith("", listQuickCases());
    EXPECT_EQ(report.m_exitCode, 0);
    EXPECT_EQ(report.list("passed").size(), report.m_results.size()) << report.describe();
}

TEST_F(ConformFaults, FailExactlyTheirCase) {
    const std::vector<std::string> cases = listQuickCases();
    for (const auto& [fault, name, reason] :
         {std::tuple("initialize", "initialize", "plug-in lossless.so crashed in zyr_plugin_initialize (SIGSEGV)"),
          std::tuple("constructor", "initialize", "plug-in lossless.so crashed in zyr_plugin_initialize (SIGSEGV)"),
          std::tuple("getCodecProposals", "proposals", "crashed in getCodecProposals (SIGSEGV), class Lossless"),
          std::tuple("null_proposal", "proposals", "LosslessFrameEncoder hands out a proposal that is NULL"),
          std::tuple("rating", "proposals", "hands out a proposal for lossless with the rating 77"),
          std::tuple("proposal_type", "proposals", "a proposal for lossless with a feature of the type 9"),
          std::tuple("getCodecRequests", "requests", "crashed in getCodecRequests (SIGSEGV), class Lossless"),
          std::tuple("request_type", "requests", "a request for lossless with a feature of the type 35"),
          std::tuple("no_context", "negotiation", "lossless: lz4 to lz4: the encoder gives no context"),
          std::tuple("encode:17", "packet-per-frame", "crashed in encode of frame 17 (SIGSEGV)"),
          std::tuple("abort:3", "packet-per-frame", "crashed in encode of frame 3 (SIGABRT)"),
          std::tuple("thread:4", "packet-per-frame", "crashed in encode of frame 4 (SIGSEGV)"),
          std::tuple("packet_size:3", "packet-per-frame", "the encoder gives a packet of 16x64 for a picture of 96x64"),
          std::tuple("decode:5", "picture-per-packet", "crashed in decode of frame 5 (SIGSEGV)"),
          std::tuple("no_picture:3", "picture-per-packet", "the decoder gives a frame without a picture"),
          std::tuple("small_picture:3", "picture-per-packet", "a picture of 48x32 for a packet of 96x64"),
          std::tuple("grey_picture:3", "picture-per-packet", "a picture with 8 bits per pixel in place of 32"),
          std::tuple("null_frame", "null-frames", "crashed in encode of frame 1 (SIGSEGV)"),
          std::tuple("process_end", "process-end", "a process that has used it crashes at its end (SIGSEGV)"),
          std::tuple("damaged_packet", "damaged-packets", "crashed in decode of frame")}) {
        const ConformReport report = conformWith(fault, cases);
        EXPECT_EQ(report.m_exitCode, 1) << fault;
        std::vector<std::string> wanted = {name};
        if (std::string(fault) == "damaged_packet") {
            wanted.push_back("empty-packets");
        }
        ASSERT_EQ(report.list("failed"), wanted) << fault << ": " << report.describe();
        EXPECT_THAT(report.m_reasons.at(name), HasSubstr(reason)) << fault;
    }
}

TEST_F(ConformFaults, OfLargePicturesFailTheSizes) {
    const ConformReport report = conformWith("large_frame", {"--only", "sizes"});
    EXPECT_THAT(report.list("failed"), ElementsAre("sizes")) << report.describe();
}

TEST_F(ConformFaults, ThatLoseSomethingFailTheThousandOpenings) {
    const std::vector<std::string> arguments = {"--only", "thousand-openings"};
    EXPECT_THAT(conformWith("", arguments).list("failed"), IsEmpty());
    ConformReport report = conformWith("descriptor", arguments);
    EXPECT_THAT(report.list("failed"), ElementsAre("thousand-openings"));
    EXPECT_THAT(report.m_reasons.at("thousand-openings"), HasSubstr("descriptors grow from"));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    // The sanitizers' heap does not tell what is in use.
    report = conformWith("leak", arguments);
    EXPECT_THAT(report.list("failed"), ElementsAre("thousand-openings"));
    EXPECT_THAT(report.m_reasons.at("thousand-openings"), HasSubstr("memory grows in each round of 250 openings, by "));
#endif
}

} // namespace zyr
