/// Graphics processors and their VA drivers.
#pragma once

#include "host/doctor/zyr_finding.h"

#include <cstdint>
#include <string>

namespace zyr::host {

/// Where the kernel and the distribution keep what they know of devices.
struct GraphicsPlaces {
    std::string m_devices = "/dev/dri";
    std::string m_classes = "/sys/class/drm";
    std::string m_pciNames = "/usr/share/misc/pci.ids";
};

/// Names each render node, its processor and kernel driver, and opens it with its VA driver in a child process. Gives
/// the number of nodes that work.
unsigned checkGraphics(const GraphicsPlaces& p_places, FindingList& p_findings);

/// "Vendor Device" of a PCI device by the numbers in hexadecimal digits ("8086", "3e92"); the numbers themselves where
/// the list does not have them.
std::string findPciName(const std::string& p_list, const std::string& p_vendor, const std::string& p_device);

/// An account as commands take it: its name, or its number where it has none.
std::string accountOf(uint32_t p_user);

} // namespace zyr::host
