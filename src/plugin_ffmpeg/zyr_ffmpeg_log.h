/// The way of FFmpeg's messages into the framework's log.
#pragma once

#include <cstdarg>

namespace zyr {

/// For av_log_set_callback. Warnings and worse become DEBUG lines, everything else is dropped, whatever level
/// av_log_set_level was given. Called on any thread of FFmpeg's.
void customFFmpegLogCallback(void* p_context, int p_level, const char* p_format, va_list p_arguments);

} // namespace zyr
