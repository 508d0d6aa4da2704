#include "zyr_common/application/zyr_application_data.h"

#include "support/zyr_logged_application.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace zyr;
using testing::ElementsAre;

struct Module {
    bool_t (ApplicationData::*initialize)();
    moduleInitializer_FUNC ApplicationData::*initializer;
    uint32_t ApplicationData::*state;
    const char* function;
    const char* label;
};

static void PrintTo(const Module& p_module, std::ostream* p_stream) {
    *p_stream << p_module.label;
}

static const Module MODULES[] = {
    {&ApplicationData::coreInitialize, &ApplicationData::m_coreInitializer, &ApplicationData::m_coreState,
     "coreInitialize", "module:core"},
    {&ApplicationData::geometryInitialize, &ApplicationData::m_geometryInitializer, &ApplicationData::m_geometryState,
     "geometryInitialize", "module:geometry"},
    {&ApplicationData::pictureInitialize, &ApplicationData::m_pictureInitializer, &ApplicationData::m_pictureState,
     "pictureInitialize", "module:picture"},
    {&ApplicationData::sampleInitialize, &ApplicationData::m_sampleInitializer, &ApplicationData::m_sampleState,
     "sampleInitialize", "module:sample"},
    {&ApplicationData::systemInitialize, &ApplicationData::m_systemInitializer, &ApplicationData::m_systemState,
     "systemInitialize", "module:system"},
    {&ApplicationData::projectInitialize, &ApplicationData::m_projectInitializer, &ApplicationData::m_projectState,
     "projectInitialize", "module:project"},
    {&ApplicationData::engineInitialize, &ApplicationData::m_engineInitializer, &ApplicationData::m_engineState,
     "engineInitialize", "module:engine"},
    {&ApplicationData::audioInitialize, &ApplicationData::m_audioInitializer, &ApplicationData::m_audioState,
     "audioInitialize", "module:audio"},
    {&ApplicationData::graphicsInitialize, &ApplicationData::m_graphicsInitializer, &ApplicationData::m_graphicsState,
     "graphicsInitialize", "module:graphics"},
    {&ApplicationData::physicsInitialize, &ApplicationData::m_physicsInitializer, &ApplicationData::m_physicsState,
     "physicsInitialize", "module:physics"},
    {&ApplicationData::libCairoInitialize, &ApplicationData::m_cairoInitializer, &ApplicationData::m_cairoState,
     "libCairoInitialize", "lib module:cairo"},
    {&ApplicationData::libD3D11Initialize, &ApplicationData::m_d3d11Initializer, &ApplicationData::m_d3d11State,
     "libD3D11Initialize", "lib module:D3D11"},
    {&ApplicationData::libVulkanInitialize, &ApplicationData::m_vulkanInitializer, &ApplicationData::m_vulkanState,
     "libVulkanInitialize", "lib module:vulkan"},
    {&ApplicationData::libOpenGLInitialize, &ApplicationData::m_openGLInitializer, &ApplicationData::m_openGLState,
     "libOpenGLInitialize", "lib module:OpenGL"},
    {&ApplicationData::libShadercInitialize, &ApplicationData::m_shadercInitializer, &ApplicationData::m_shadercState,
     "libShadercInitialize", "lib module:Shaderc"},
    {&ApplicationData::libOpenALInitialize, &ApplicationData::m_openALInitializer, &ApplicationData::m_openALState,
     "libOpenALInitialize", "lib module:OpenAL"},
    {&ApplicationData::libOggVorbisInitialize, &ApplicationData::m_oggVorbisInitializer,
     &ApplicationData::m_oggVorbisState, "libOggVorbisInitialize", "lib module:OggVorbis"},
    {&ApplicationData::libOpenSSLInitialize, &ApplicationData::m_openSSLInitializer, &ApplicationData::m_openSSLState,
     "libOpenSSLInitialize", "lib module:OpenSSL"},
    {&ApplicationData::guiInitialize, &ApplicationData::m_guiInitializer, &ApplicationData::m_guiState, "guiInitialize",
     "module:gui"},
    {&ApplicationData::languageInitialize, &ApplicationData::m_languageInitializer, &ApplicationData::m_languageState,
     "languageInitialize", "module:language"},
    {&ApplicationData::remoteInitialize, &ApplicationData::m_remoteInitializer, &ApplicationData::m_remoteState,
     "remoteInitialize", "module:remote"},
};

static int s_numOfCalls = 0;
static ApplicationData* s_data = nullptr;
static uint32_t s_flag = 99;
static bool_t s_result = 1;

static bool_t initializer(ApplicationData* p_data, uint32_t p_flag) {
    s_numOfCalls++;
    s_data = p_data;
    s_flag = p_flag;
    return s_result;
}

class ModuleInitialization : public testing::TestWithParam<Module> {
protected:
    ModuleInitialization() {
        s_numOfCalls = 0;
        s_data = nullptr;
        s_flag = 99;
        s_result = 1;
    }

    bool_t initialize() { return (m_application.getData()->*GetParam().initialize)(); }
    uint32_t& getState() { return m_application.getData()->*GetParam().state; }
    void prepare() { m_application.getData()->*GetParam().initializer = &initializer; }
    static bool isD3D11() { return std::string(GetParam().label) == "lib module:D3D11"; }

    LoggedApplication m_application;
};

TEST_P(ModuleInitialization, BeforeThePrepareCallIsLoggedAndLeavesTheState) {
    EXPECT_FALSE(initialize());
    std::vector<std::string> bodies = m_application.getBodies();
    ASSERT_EQ(bodies.size(), 1u);
    EXPECT_THAT(bodies[0],
                testing::EndsWith(std::string("] WARN  common bool_t zyr::ApplicationData::") + GetParam().function +
                                  "() - Cannot initialize " + GetParam().label + " before prepare call"));
    EXPECT_EQ(getState(), 0u);
    prepare();
    EXPECT_TRUE(initialize());
    EXPECT_EQ(s_numOfCalls, 1);
}

TEST_P(ModuleInitialization, CallsTheInitializerOnceAndRemembersSuccess) {
    prepare();
    EXPECT_TRUE(initialize());
    EXPECT_TRUE(initialize());
    EXPECT_EQ(s_numOfCalls, 1);
    EXPECT_EQ(s_data, m_application.getData());
    EXPECT_EQ(s_flag, isD3D11() ? 0u : 1u);
    EXPECT_EQ(getState(), 1u);
}

TEST_P(ModuleInitialization, FailureIsStickyExceptForD3D11) {
    prepare();
    s_result = 0;
    EXPECT_FALSE(initialize());
    EXPECT_EQ(getState(), isD3D11() ? 0u : 2u);
    s_result = 1;
    EXPECT_EQ(initialize(), isD3D11() ? 1 : 0);
    EXPECT_EQ(s_numOfCalls, isD3D11() ? 2 : 1);
}

TEST_P(ModuleInitialization, StateFailedNeverCallsTheInitializer) {
    prepare();
    getState() = 2;
    EXPECT_FALSE(initialize());
    EXPECT_EQ(s_numOfCalls, 0);
    EXPECT_EQ(getState(), 2u);
}

TEST_P(ModuleInitialization, TouchesNoOtherState) {
    prepare();
    initialize();
    for (const Module& module : MODULES) {
        bool own = module.state == GetParam().state;
        EXPECT_EQ(m_application.getData()->*module.state, own ? 1u : 0u) << module.label;
    }
    EXPECT_EQ(m_application->m_commonState, 0u);
}

INSTANTIATE_TEST_SUITE_P(Modules, ModuleInitialization, testing::ValuesIn(MODULES),
                         [](const auto& p_info) { return std::string(p_info.param.function); });

TEST(ModuleReset, DeinitializeKeepsAudioLanguageAndRemote) {
    LoggedApplication application;
    application->m_commonState = 1;
    for (const Module& module : MODULES) {
        application.getData()->*module.initializer = &initializer;
        application.getData()->*module.state = 1;
    }
    application->deinitialize();
    EXPECT_EQ(application->m_commonState, 0u);
    for (const Module& module : MODULES) {
        std::string label = module.label;
        bool kept = label == "module:audio" || label == "module:language" || label == "module:remote";
        EXPECT_EQ(application.getData()->*module.state, kept ? 1u : 0u) << label;
        EXPECT_EQ(application.getData()->*module.initializer, kept ? &initializer : nullptr) << label;
    }
    s_numOfCalls = 0;
    EXPECT_TRUE(application->audioInitialize());
    EXPECT_EQ(s_numOfCalls, 0);
}
