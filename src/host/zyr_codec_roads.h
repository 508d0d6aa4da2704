/// Why a codec works on this machine or not, road by road.
#pragma once

#include "host/zyr_negotiation.h"

#include <string>
#include <vector>

namespace zyr::host {

/// One way of encoding or decoding.
struct CodecRoad {
    bool m_isEncoder = false;
    std::string m_codec;
    std::string m_implementation;
    std::string m_hardware; ///< Empty: software.
    bool m_usable = false;
    std::string m_tried;  ///< What the plug-in does to find out.
    std::string m_failed; ///< Empty where it is usable.
    std::string m_cure;   ///< Package, group, device node or driver. Empty where there is none.
};

/// The roads that FFmpeg's plug-in knows, in its order, judged by what the market offers; each that is not offered is
/// tried again step by step. Behind them what other plug-ins offer. Render nodes are looked for in `p_devices`.
std::vector<CodecRoad> explainRoads(const Market& p_market, const std::string& p_devices = "/dev/dri");

} // namespace zyr::host
