#include "host/zyr_known_options.h"

#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/opt.h>
}

namespace zyr::host {

namespace {

/// Values with names of their own stand among the options of a class, and are none.
bool isOption(const AVOption& p_option, int p_flags) {
    return p_option.type != AV_OPT_TYPE_CONST && (p_option.flags & p_flags) == p_flags;
}

bool has(const AVClass* p_class, const std::string& p_name) {
    return p_class != nullptr && av_opt_find(&p_class, p_name.c_str(), nullptr, 0, AV_OPT_SEARCH_FAKE_OBJ) != nullptr;
}

std::string listOptions(const AVClass* p_class) {
    std::string text;
    const AVOption* option = nullptr;
    while (p_class != nullptr && (option = av_opt_next(&p_class, option)) != nullptr) {
        if (isOption(*option, AV_OPT_FLAG_ENCODING_PARAM | AV_OPT_FLAG_VIDEO_PARAM)) {
            text += (text.empty() ? "" : " ") + std::string(option->name);
        }
    }
    return text.empty() ? "none" : text;
}

} // namespace

void refuseUnknownOptions(const EncoderOptions& p_options, const std::string& p_implementation) {
    const AVCodec* const encoder = avcodec_find_encoder_by_name(p_implementation.c_str());
    if (encoder == nullptr) {
        return;
    }
    for (const std::string& name : p_options.getKeys()) {
        if (!has(encoder->priv_class, name) && !has(avcodec_get_class(), name)) {
            throw UsageError("the encoder " + p_implementation + " has no option '" + maskControls(name) +
                             "'; its own: " + listOptions(encoder->priv_class) +
                             "; those of every encoder: " + listOptions(avcodec_get_class()));
        }
    }
}

} // namespace zyr::host
