/// Calls into plug-ins that may crash, and checks of what they hand out.
#pragma once

#include "picture/zyr_picture.h"

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

namespace zyr::host {

/// A plug-in did what no caller can work with: exit code 1. The text names plug-in, class and call.
class PluginError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One call. The texts must outlive it.
struct PluginCall {
    const char* m_plugin; ///< File name of the module, without its directory.
    const char* m_class;  ///< Name of the object's class.
    const char* m_call;   ///< Name of the operation.
    uint64_t m_frame = 0; ///< Number of the frame, from 1; 0 for calls that are about none.
};

/// For its lifetime crashes inside of callPlugin() are caught. One at a time, made before the calling threads.
class PluginGuard {
public:
    PluginGuard();
    ~PluginGuard();
    PluginGuard(const PluginGuard&) = delete;
    PluginGuard& operator=(const PluginGuard&) = delete;
};

/// Makes a call. When the plug-in crashes, in this thread or in one of its own meanwhile, or throws, this throws
/// PluginError: what the call had begun stays as it is, so that the plug-in must not be used again, and the rest of the
/// program can complete its files. A second crash, or a completion that takes longer than ten seconds, ends the process
/// with exit code 1. Outside of a PluginGuard a crash ends the process as ever.
void callPlugin(const PluginCall& p_call, const std::function<void()>& p_work);

/// Why a record or a picture that a plug-in handed out cannot be used; empty when it can. None of them reads behind
/// what the object itself says it holds.
std::string checkProposal(const FrameCodecProposal* p_proposal);
std::string checkRequest(const FrameCodecRequest* p_request);
/// The frame must be of the size of the picture that was encoded. Bytes may be missing: the encoder keeps a frame back.
std::string checkPackedFrame(const IPackedFrameData* p_frame, uint32_t p_width, uint32_t p_height);
/// The frame must hold a picture with four bytes per pixel, of the size of its packet.
std::string checkUnpackedFrame(const IUnpackedFrameData* p_frame, uint32_t p_width, uint32_t p_height);

/// The text of an error about something that was handed out.
std::string describeFault(const PluginCall& p_call, const std::string& p_reason);

} // namespace zyr::host
