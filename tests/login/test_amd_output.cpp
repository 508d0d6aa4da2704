// The single output of an AMD card, on made-up cards and connectors.
#include "support/zyr_private_mounts.h"

#include "zyr_common/process/zyr_session_lookup.h"
#include "zyr_common/text/zyr_string.h"

using namespace zyr;

namespace {

const std::string DRM = "/sys/class/drm/";

class AmdOutput : public PrivateMountsTest {
protected:
    void SetUp() override {
        PrivateMountsTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        m_mounts.mountEmpty("/sys/class");
    }

    static void write(const std::string& p_path, const std::string& p_text) {
        std::filesystem::create_directories(std::filesystem::path(DRM + p_path).parent_path());
        std::ofstream(DRM + p_path) << p_text;
    }

    static void addCard(const std::string& p_name, const std::string& p_vendor) {
        write(p_name + "/device/vendor", p_vendor);
    }

    static void addConnector(const std::string& p_name, const std::string& p_status, const std::string& p_enabled) {
        write(p_name + "/status", p_status);
        write(p_name + "/enabled", p_enabled);
    }

    static void addGoodOutput() {
        addCard("card0", "0x1002\n");
        addConnector("card0-HDMI-A-1", "connected\n", "enabled\n");
    }

    static void expectOutput(const char* p_name) {
        String output("before");
        EXPECT_EQ(zyr_getSingleActiveAMDOutput(output), 1);
        EXPECT_STREQ(output.getData(), p_name);
    }

    static void expectNoOutput() {
        String output("before");
        EXPECT_EQ(zyr_getSingleActiveAMDOutput(output), 0);
        EXPECT_STREQ(output.getData(), "");
    }
};

} // namespace

TEST_F(AmdOutput, IsTheOneConnectedAndEnabledConnector) {
    addGoodOutput();
    addConnector("card0-DP-1", "disconnected\n", "disabled\n");
    addConnector("card0-DP-2", "unknown\n", "enabled\n");
    expectOutput("card0-HDMI-A-1");
}

TEST_F(AmdOutput, DoesNotExistWithoutTheDirectoryOfCards) {
    expectNoOutput();
}

TEST_F(AmdOutput, DoesNotExistWithoutConnectors) {
    addCard("card0", "0x1002\n");
    expectNoOutput();
}

TEST_F(AmdOutput, IsNotUniqueWithTwoConnectedOnOneCard) {
    addGoodOutput();
    addConnector("card0-DP-1", "connected\n", "enabled\n");
    expectNoOutput();
}

TEST_F(AmdOutput, IsNotUniqueWithTwoConnectedOnTwoAmdCards) {
    addGoodOutput();
    addCard("card1", "0x1002\n");
    addConnector("card1-HDMI-A-1", "connected\n", "enabled\n");
    expectNoOutput();
}

TEST_F(AmdOutput, IsNotUniqueBesideAConnectedButDisabledOne) {
    addGoodOutput();
    addConnector("card0-DP-1", "connected\n", "disabled\n");
    expectNoOutput();
}

TEST_F(AmdOutput, HasToBeEnabled) {
    addCard("card0", "0x1002\n");
    addConnector("card0-HDMI-A-1", "connected\n", "disabled\n");
    expectNoOutput();
}

TEST_F(AmdOutput, IsNotEnabledWithoutTheFile) {
    addCard("card0", "0x1002\n");
    write("card0-HDMI-A-1/status", "connected\n");
    expectNoOutput();
}

TEST_F(AmdOutput, IsNotEnabledByAnEmptyFile) {
    addCard("card0", "0x1002\n");
    addConnector("card0-HDMI-A-1", "connected\n", "");
    expectNoOutput();
}

TEST_F(AmdOutput, IsNotOnACardOfAnotherVendor) {
    addCard("card0", "0x8086\n");
    addConnector("card0-HDMI-A-1", "connected\n", "enabled\n");
    expectNoOutput();
}

TEST_F(AmdOutput, NeedsAVendor) {
    addConnector("card0-HDMI-A-1", "connected\n", "enabled\n");
    expectNoOutput();
    addCard("card0", "vendor\n");
    expectNoOutput();
}

TEST_F(AmdOutput, TakesTheVendorOfItsOwnCard) {
    addCard("card0", "0x8086\n");
    addCard("card11", "0x1002\n");
    addConnector("card11-eDP-1", "connected\n", "enabled\n");
    expectOutput("card11-eDP-1");
}

TEST_F(AmdOutput, ReadsTheVendorWithAndWithoutPrefix) {
    addCard("card0", "1002");
    addConnector("card0-DP-1", "connected", "enabled");
    expectOutput("card0-DP-1");
}

TEST_F(AmdOutput, ComparesOnlyTheBeginningOfStatusAndEnabled) {
    addCard("card0", "0x1002\n");
    addConnector("card0-DP-1", "connected-somehow and a text beyond thirty-one bytes\n", "enabledness\n");
    expectOutput("card0-DP-1");
}

TEST_F(AmdOutput, SkipsWhatIsNoConnector) {
    addGoodOutput();
    // Neither begins with "card" and holds a "-".
    addConnector("card1", "connected\n", "enabled\n");
    addConnector("renderD128-1", "connected\n", "enabled\n");
    addConnector("Card0-DP-1", "connected\n", "enabled\n");
    std::ofstream(DRM + "version") << "drm 1.1.0\n";
    // No status.
    write("card0-Writeback-1/enabled", "enabled\n");
    expectOutput("card0-HDMI-A-1");
}
