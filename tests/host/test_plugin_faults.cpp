// Plug-ins that crash or hand out what nobody can use, under the real host program.

#include "zyr_program_run.h"

#include "support/zyr_temporary_directory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>

namespace zyr {

namespace {

using testing::HasSubstr;
using testing::Not;

class PluginFaults : public testing::Test {
protected:
    void SetUp() override {
        // What a plug-in held when it crashed is leaked: nobody touches it again.
        const char* options = getenv("ASAN_OPTIONS");
        setenv("ASAN_OPTIONS", (std::string(options != nullptr ? options : "") + ":detect_leaks=0").c_str(), 1);
    }
    ~PluginFaults() override { unsetenv("ZYR_FAULT"); }

    ProgramRun run(const char* p_fault, std::vector<std::string> p_arguments) const {
        setenv("ZYR_FAULT", p_fault, 1);
        for (const char* argument : {"--no-default-plugins", "--plugins", ZYR_FAULTY_PLUGINS, "--log-dir"}) {
            p_arguments.push_back(argument);
        }
        p_arguments.push_back(m_directory.getPath());
        return runProgram(ZYR_HOST_PROGRAM, p_arguments);
    }
    ProgramRun inspect(const char* p_fault) const { return run(p_fault, {"inspect", "--json"}); }
    ProgramRun stream(const char* p_fault) const {
        return run(p_fault, {"stream", "generate:64x48@25:30", "--pictures", getPictures(), "--no-progress"});
    }

    std::string getPictures() const { return m_directory.getPath() + "pictures.y4m"; }
    /// The frames of the file with the pictures, which must be whole: each a word and 64x48 samples of 4:4:4 or 4:2:0.
    size_t countPictures() const {
        std::string text;
        FILE* file = fopen(getPictures().c_str(), "rb");
        if (file == nullptr) {
            return 0;
        }
        char buffer[65536];
        for (size_t count; (count = fread(buffer, 1, sizeof(buffer), file)) != 0;) {
            text.append(buffer, count);
        }
        fclose(file);
        const size_t head = text.find('\n') + 1;
        const size_t size = 6 + 64 * 48 * (text.find("C444") < head ? 3 : 3 / 2.0);
        EXPECT_EQ((text.size() - head) % size, 0u);
        return (text.size() - head) / size;
    }

    TemporaryDirectory m_directory;
};

} // namespace

TEST_F(PluginFaults, AreNoneWithoutAFault) {
    const ProgramRun run = stream("");
    EXPECT_EQ(run.m_exitCode, 0) << run.m_err;
    EXPECT_EQ(countPictures(), 30u);
}

TEST_F(PluginFaults, BeforeTheFirstFrameAreFoundInAChildAndNamed) {
    for (const auto& [fault, call] : {std::pair("initialize", "initialize"),
                                      std::pair("constructor", "initialize"), // Registration makes an object.
                                      std::pair("getCodecProposals", "getCodecProposals of LosslessFrameEncoder"),
                                      std::pair("getCodecRequests", "getCodecRequests of LosslessFrameDecoder")}) {
        const ProgramRun run = inspect(fault);
        EXPECT_EQ(run.m_exitCode, 0) << run.m_err;
        const nlohmann::json all = nlohmann::json::parse(run.m_out);
        ASSERT_EQ(all["refused"].size(), 1u) << fault;
        EXPECT_THAT(all["refused"][0].get<std::string>(),
                    HasSubstr("lossless.so: it crashed in " + std::string(call) + " (SIGSEGV)"));
        EXPECT_TRUE(all["plugins"].empty());
    }
}

TEST_F(PluginFaults, InTheStreamAreNamedAndLeaveCompleteFiles) {
    for (const auto& [fault, text, done] :
         {std::tuple("encode:17", "zyr-host: plug-in lossless.so crashed in encode of frame 17 (SIGSEGV)", 16u),
          std::tuple("decode:5", "zyr-host: plug-in lossless.so crashed in decode of frame 5 (SIGSEGV)", 4u),
          std::tuple("abort:3", "zyr-host: plug-in lossless.so crashed in encode of frame 3 (SIGABRT)", 2u),
          std::tuple("thread:4", "zyr-host: plug-in lossless.so crashed in encode of frame 4 (SIGSEGV)", 3u)}) {
        const ProgramRun run = stream(fault);
        EXPECT_EQ(run.m_exitCode, 1) << fault;
        EXPECT_THAT(run.m_err, HasSubstr(text)) << fault;
        EXPECT_EQ(countPictures(), done) << fault;
    }
}

TEST_F(PluginFaults, OfRecordsAreNamed) {
    for (const auto& [fault, text] :
         {std::pair("null_proposal", "handed out a proposal that is NULL in getCodecProposals"),
          std::pair("rating", "handed out a proposal for lossless with the rating 77 in getCodecProposals"),
          std::pair("proposal_type",
                    "handed out a proposal for lossless with a feature of the type 9 in getCodecProposals"),
          std::pair("request_type",
                    "handed out a request for lossless with a feature of the type 35 in getCodecRequests")}) {
        const ProgramRun run = stream(fault);
        EXPECT_EQ(run.m_exitCode, 3) << fault << ": " << run.m_err;
        EXPECT_THAT(run.m_err, HasSubstr("plug-in lossless.so " + std::string(text))) << fault;
    }
}

TEST_F(PluginFaults, OfFramesAreNamed) {
    for (const auto& [fault, text] :
         {std::pair("packet_size:3", "handed out a packet of 16x48 for a picture of 64x48 in encode of frame 3"),
          std::pair("no_picture:3", "handed out a frame without a picture in decode of frame 3"),
          std::pair("small_picture:3", "handed out a picture of 32x24 for a packet of 64x48 in decode of frame 3"),
          std::pair("grey_picture:3", "handed out a picture with 8 bits per pixel in place of 32 in decode of frame 3"),
          std::pair("no_context", "handed out no context in createFrameEncoderContext")}) {
        const ProgramRun run = stream(fault);
        EXPECT_EQ(run.m_exitCode, 1) << fault;
        EXPECT_THAT(run.m_err, HasSubstr("plug-in lossless.so " + std::string(text))) << fault;
        EXPECT_THAT(run.m_out + run.m_err, Not(HasSubstr("128"))) << fault;
    }
}

} // namespace zyr
