#include "host/doctor/zyr_checked_graphics.h"

#include "host/doctor/zyr_child_question.h"
#include "host/zyr_ffmpeg_handles.h"

extern "C" {
#include <libavutil/hwcontext.h>
}

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr::host {

namespace {

namespace fs = std::filesystem;

constexpr unsigned DRIVER_SECONDS = 20;
constexpr const char* SECTION = "graphics";

/// The number in a file of /sys, such as "0x8086", without its prefix.
std::string readNumber(const fs::path& p_file) {
    std::string text;
    std::ifstream(p_file) >> text;
    return text.starts_with("0x") ? text.substr(2) : text;
}

/// The package with the VA driver for a vendor's processors.
std::string packageOf(const std::string& p_vendor) {
    return p_vendor == "8086"   ? "intel-media-va-driver"
           : p_vendor == "10de" ? "nvidia-vaapi-driver"
                                : "mesa-va-drivers";
}

std::string chosenDriver() {
    const char* name = getenv("LIBVA_DRIVER_NAME");
    return name != nullptr ? name : "";
}

Finding describeRefusal(const std::string& p_node, Finding p_finding) {
    const int error = errno;
    p_finding.m_state = FindingState::NO;
    p_finding.m_text += "; it cannot be opened: " + std::string(strerror(error));
    if (error != EACCES && error != EPERM) {
        p_finding.m_cure = "dmesg | grep -i drm, which tells what the kernel's driver lacks";
        return p_finding;
    }
    struct stat status {};
    const bool known = stat(p_node.c_str(), &status) == 0;
    const group* owner = known ? getgrgid(status.st_gid) : nullptr;
    p_finding.m_text += known ? " (group " +
                                    (owner != nullptr ? std::string(owner->gr_name) : std::to_string(status.st_gid)) +
                                    ", mode " + std::to_string((status.st_mode >> 6) & 7) +
                                    std::to_string((status.st_mode >> 3) & 7) + std::to_string(status.st_mode & 7) + ")"
                              : "";
    const bool groupMay = known && (status.st_mode & (S_IRGRP | S_IWGRP)) == (S_IRGRP | S_IWGRP) && status.st_gid != 0;
    p_finding.m_cure = groupMay ? "usermod -aG " + (owner != nullptr ? owner->gr_name : std::to_string(status.st_gid)) +
                                      " " + accountOf(geteuid()) + ", and a new login"
                                : "chgrp render " + p_node + " && chmod 660 " + p_node + ", and usermod -aG render " +
                                      accountOf(geteuid());
    return p_finding;
}

/// Opens the device as the codecs do. Gives what FFmpeg answers.
int openDevice(const std::string& p_node) {
    AVBufferRef* device = nullptr;
    const int result = av_hwdevice_ctx_create(&device, AV_HWDEVICE_TYPE_VAAPI, p_node.c_str(), nullptr, 0);
    av_buffer_unref(&device);
    return result;
}

Finding checkDriver(const std::string& p_node, const std::string& p_vendor, Finding p_finding) {
    const std::string driver = chosenDriver();
    const std::string named = driver.empty() ? "" : " (LIBVA_DRIVER_NAME names " + driver + ")";
    const ChildAnswer answer = askChild(DRIVER_SECONDS, [&] { return std::to_string(openDevice(p_node)); });
    if (!answer.m_isGiven) {
        p_finding.m_state = FindingState::NO;
        p_finding.m_text += "; opening its VA driver" + named + ": " + answer.m_reason;
        p_finding.m_cure = driver.empty() ? "apt-get install --reinstall " + packageOf(p_vendor) +
                                                "; software alone meanwhile: export LIBVA_DRIVER_NAME=none"
                                          : "unset LIBVA_DRIVER_NAME, so that libva finds the driver itself";
        return p_finding;
    }
    const int result = atoi(answer.m_text.c_str());
    if (result < 0) {
        p_finding.m_state = FindingState::NO;
        p_finding.m_text += "; libva finds no driver that works with it" + named + ": " + errorText(result);
        p_finding.m_cure = driver.empty() ? "apt-get install " + packageOf(p_vendor)
                                          : "unset LIBVA_DRIVER_NAME, so that libva finds the driver itself";
        return p_finding;
    }
    p_finding.m_text += "; its VA driver works" + named;
    return p_finding;
}

std::vector<std::string> listNodes(const std::string& p_directory) {
    std::vector<std::string> nodes;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(p_directory, error)) {
        if (entry.path().filename().string().starts_with("renderD")) {
            nodes.push_back(entry.path());
        }
    }
    std::sort(nodes.begin(), nodes.end());
    return nodes;
}

} // namespace

std::string accountOf(uint32_t p_user) {
    const passwd* record = getpwuid(p_user);
    return record != nullptr ? record->pw_name : std::to_string(p_user);
}

std::string findPciName(const std::string& p_list, const std::string& p_vendor, const std::string& p_device) {
    std::ifstream file(p_list);
    std::string vendor;
    // A vendor's line begins with its number, and those of its devices follow behind a tab.
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(p_vendor + "  ")) {
            vendor = line.substr(p_vendor.size() + 2);
        } else if (!vendor.empty() && !line.empty() && line[0] != '\t' && line[0] != '#') {
            break;
        } else if (!vendor.empty() && line.starts_with("\t" + p_device + "  ")) {
            return vendor + " " + line.substr(p_device.size() + 3);
        }
    }
    return (vendor.empty() ? "PCI " + p_vendor : vendor + " PCI " + p_vendor) + ":" + p_device;
}

unsigned checkGraphics(const GraphicsPlaces& p_places, FindingList& p_findings) {
    const std::vector<std::string> nodes = listNodes(p_places.m_devices);
    if (nodes.empty()) {
        p_findings.push_back({SECTION, "render nodes", FindingState::NO,
                              "there is no render node in " + p_places.m_devices,
                              "a graphics processor with its kernel driver; for a container: --device /dev/dri"});
        return 0;
    }
    unsigned working = 0;
    for (const std::string& node : nodes) {
        const fs::path device = fs::path(p_places.m_classes) / fs::path(node).filename() / "device";
        const std::string vendor = readNumber(device / "vendor");
        std::error_code error;
        const std::string kernelDriver = fs::read_symlink(device / "driver", error).filename();
        Finding finding{SECTION, node, FindingState::OK, "", ""};
        finding.m_text = vendor.empty() ? std::string("no PCI device")
                                        : findPciName(p_places.m_pciNames, vendor, readNumber(device / "device"));
        finding.m_text += kernelDriver.empty() ? "" : ", kernel driver " + kernelDriver;
        const int file = open(node.c_str(), O_RDWR | O_CLOEXEC);
        if (file < 0) {
            finding = describeRefusal(node, finding);
        } else {
            close(file);
            finding = checkDriver(node, vendor, finding);
        }
        working += finding.m_state == FindingState::OK ? 1 : 0;
        p_findings.push_back(finding);
    }
    return working;
}

} // namespace zyr::host
