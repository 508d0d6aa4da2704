/// Packets sent to an address of the network by libavformat's protocols.
#pragma once

#include "host/zyr_packet_file.h"

#include <functional>
#include <memory>
#include <string>

namespace zyr::host {

struct NetworkOutputOptions {
    std::string m_address; ///< scheme://...
    std::string m_format;  ///< libavformat's name; empty: by scheme and codec.
    std::string m_sdpPath; ///< Where the description for receivers of rtp:// goes; empty: nowhere.
    bool m_isPaced = true; ///< Live protocols get each packet at its time.
    /// True once the program is to end, when nothing is waited for any longer than a moment. Asked on the thread that
    /// uses the output.
    std::function<bool()> m_isEnding;
};

/// True for what begins with a scheme and "://", which no output takes for the name of a file.
bool isNetworkAddress(const std::string& p_path);

/// An address without the secrets that may stand in it: user, password and what follows "?". A path is as it was.
std::string withoutSecrets(const std::string& p_address);

/// Throws UsageError for a scheme that nothing is known of, and for options that do not fit it.
void checkNetworkOutput(const NetworkOutputOptions& p_options);

/// The same, and throws RunError for a codec that cannot be sent so, or not by the FFmpeg that is in use.
void checkNetworkFormat(const NetworkOutputOptions& p_options, const std::string& p_codec);

/// Connects; where the protocol tells the receiver about the stream first, in begin(). Whoever takes nothing for ten
/// seconds is given up. The options have been checked. Throws RunError, as all operations of the result do.
std::unique_ptr<PacketFile> openNetworkOutput(const NetworkOutputOptions& p_options, const std::string& p_codec);

} // namespace zyr::host
