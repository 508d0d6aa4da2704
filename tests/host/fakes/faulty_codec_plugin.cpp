// The lossless example with one fault, which ZYR_FAULT names: "CALL" or "CALL:FRAME".

#include "lossless_codec.h"

#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/object/zyr_factories.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <pthread.h>
#include <unistd.h>

#define zyr_plugin_initialize initializeWithoutFault
#include "lossless_plugin.cpp"
#undef zyr_plugin_initialize

using namespace zyr;

namespace {

bool hasFault(const char* p_name) {
    const char* fault = getenv("ZYR_FAULT");
    return fault != nullptr && strcmp(fault, p_name) == 0;
}

bool hasFaultAt(const char* p_call, uint64_t p_frame) {
    const char* fault = getenv("ZYR_FAULT");
    const size_t size = strlen(p_call);
    return fault != nullptr && strncmp(fault, p_call, size) == 0 && fault[size] == ':' &&
           strtoull(fault + size + 1, nullptr, 10) == p_frame;
}

void crash() {
    // Not null, which a sanitizer would tell in its own way.
    volatile uintptr_t nowhere = 64;
    *reinterpret_cast<volatile int*>(nowhere) = 1;
}

void crashIf(const char* p_name) {
    if (hasFault(p_name)) {
        crash();
    }
}

struct ProcessEnd {
    ~ProcessEnd() { crashIf("process_end"); }
} g_processEnd;

class FaultyEncoderContext : public LosslessFrameEncoderContext {
public:
    FaultyEncoderContext() {
        if (hasFault("leak")) {
            void* volatile lost = malloc(64);
            static_cast<void>(lost);
        }
        if (hasFault("descriptor")) {
            dup(STDIN_FILENO);
        }
    }
    IPackedFrameData* encode(IUnpackedFrameData* p_frame) override {
        m_frame++;
        if (p_frame == nullptr) {
            crashIf("null_frame");
        } else if (p_frame->getWidth() > 1000) {
            crashIf("large_frame");
        }
        if (hasFaultAt("encode", m_frame)) {
            crash();
        }
        if (hasFaultAt("abort", m_frame)) {
            abort();
        }
        if (hasFaultAt("thread", m_frame)) {
            pthread_t thread;
            const auto run = [](void*) -> void* {
                crash();
                return nullptr;
            };
            pthread_create(&thread, nullptr, run, nullptr);
            pthread_join(thread, nullptr);
        }
        IPackedFrameData* packed = LosslessFrameEncoderContext::encode(p_frame);
        if (packed != nullptr && hasFaultAt("packet_size", m_frame)) {
            packed->getPackedFrameDataReserved()->setWidth(16);
        }
        return packed;
    }

private:
    uint64_t m_frame = 0;
};

class FaultyEncoder : public LosslessFrameEncoder {
public:
    FaultyEncoder() { crashIf("constructor"); }
    void getCodecProposals(List<FrameCodecProposal*>& p_proposals) override {
        crashIf("getCodecProposals");
        if (hasFault("null_proposal")) {
            p_proposals.pushBack(nullptr);
            return;
        }
        LosslessFrameEncoder::getCodecProposals(p_proposals);
        if (hasFault("rating")) {
            p_proposals.back()->rating = static_cast<CodecRatingEnum>(77);
        }
        if (hasFault("proposal_type")) {
            p_proposals.back()->planesModelSingle = static_cast<ProposalTypeEnum>(9);
        }
    }
    IFrameEncoderContext* createFrameEncoderContext() override {
        if (hasFault("no_context")) {
            return nullptr;
        }
        FaultyEncoderContext* context = new FaultyEncoderContext;
        context->initialize(static_cast<IFrameEncoder*>(getTLIObject()));
        return context;
    }
};

class FaultyDecoderContext : public LosslessFrameDecoderContext {
public:
    IUnpackedFrameData* decode(IPackedFrameData* p_packet) override {
        m_frame++;
        if (hasFaultAt("decode", m_frame)) {
            crash();
        }
        IUnpackedFrameData* result = LosslessFrameDecoderContext::decode(p_packet);
        if (result == nullptr) {
            if (p_packet != nullptr) {
                crashIf("damaged_packet");
            }
            return nullptr;
        }
        IUnpackedFrameDataReserved* fill = result->getUnpackedFrameDataReserved();
        if (hasFaultAt("no_picture", m_frame)) {
            fill->setSystemMemory(nullptr);
        }
        if (hasFaultAt("small_picture", m_frame)) {
            result->getSystemMemory(0, 1)->changeSize(p_packet->getWidth() / 2, p_packet->getHeight() / 2, 0,
                                                      static_cast<InterpolationEnum>(0), ZYR_SUBSAMPLING_NONE);
        }
        if (hasFaultAt("grey_picture", m_frame)) {
            IImage* grey = zyr_createInterfaceObject<IImage>();
            grey->init(p_packet->getWidth(), p_packet->getHeight(), 0, static_cast<PixelFormatEnum>(53),
                       ZYR_COLOR_SPACE_RGB, ZYR_PIXEL_FORMAT_NONE, 0);
            fill->setSystemMemory(grey);
            grey->release();
        }
        return result;
    }

private:
    uint64_t m_frame = 0;
};

class FaultyDecoder : public LosslessFrameDecoder {
public:
    void getCodecRequests(List<FrameCodecRequest*>& p_requests) override {
        crashIf("getCodecRequests");
        LosslessFrameDecoder::getCodecRequests(p_requests);
        if (hasFault("request_type")) {
            p_requests.back()->planesModelSingle = static_cast<RequestTypeEnum>(35);
        }
    }
    IFrameDecoderContext* createFrameDecoderContext() override {
        FaultyDecoderContext* context = new FaultyDecoderContext;
        context->initialize(static_cast<IFrameDecoder*>(getTLIObject()));
        return context;
    }
};

} // namespace

extern "C" ZYR_API uint8_t zyr_plugin_initialize(void* p_applicationData) {
    crashIf("initialize");
    PluginDescription description = DESCRIPTION;
    description.m_register = &registerPluginClasses<FaultyEncoder, FaultyDecoder>;
    return startPlugin(description, p_applicationData, ZYR_MODULE_WORD, __PRETTY_FUNCTION__);
}
