/// The program's own packet file, for codecs that no container knows. docs/formats.md has its bytes.
#pragma once

#include "host/zyr_negotiation.h"
#include "host/zyr_packet_file.h"

#include <memory>
#include <string>

namespace zyr::host {

class InputFile;

constexpr const char* STORED_STREAM_FORMAT = "zyrs";
constexpr const char* STORED_STREAM_EXTENSION = ".zyrs";

/// Creates a stored stream. Throws RunError.
std::unique_ptr<PacketFile> createStoredStream(const std::string& p_path);

/// True when the file is a stored stream; what was looked at stays to be read.
bool isStoredStream(InputFile& p_file);

/// Reads a stored stream through a decoder of the framework's own: of those that decode its codec the one by which it
/// was tried when it was written, else the first. Throws RunError when no decoder knows the codec.
std::unique_ptr<VideoSource> openStoredStream(std::unique_ptr<InputFile> p_file, Framework& p_framework,
                                              const Market& p_market);

} // namespace zyr::host
