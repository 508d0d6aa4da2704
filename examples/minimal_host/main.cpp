// The least that a host does: start the framework, load the plug-ins of a directory, let an encoder and a decoder
// agree, and send a few pictures through them.
//
//   minimal_host MODULE-DIRECTORY PLUGIN-DIRECTORY [CODEC]
//
// Prints a line for each frame; ends with 1 when something is missing, and says what.

#include "picture/zyr_picture.h"
#include "zyr_common/zyr_common.h"

#include <cstdio>

using namespace zyr;

/// A component module leaves its initializer in the application data when it is prepared.
static bool prepareModule(ApplicationData& p_data, const String& p_path, const char* p_prepareName) {
    void* library = zyr_loadLibrary(p_path, 0, 0, 0, 0);
    void (*prepare)(ApplicationData*) =
        library == nullptr ? nullptr
                           : reinterpret_cast<void (*)(ApplicationData*)>(zyr_getProcAddress(library, p_prepareName));
    if (prepare == nullptr) {
        fprintf(stderr, "%s cannot be used (see the log)\n", p_path.getData());
        return false;
    }
    prepare(&p_data);
    return true;
}

static bool startFramework(ApplicationData& p_data, const String& p_modules, const String& p_plugins) {
    p_data.prepareAndSetEssentialDirectories();
    // The user's configuration directory, minimal_host/log/ in it.
    p_data.prepareAndSetLogDirectory("", "", "minimal_host", ZYR_DIRECTORY_PERMISSION_PRIVATE);
    List<String> directories;
    directories.pushBack(p_plugins);
    return p_data.commonInitialize() && prepareModule(p_data, p_modules + "zyr_core.so", "zyr_core_prepare") &&
           p_data.coreInitialize() && prepareModule(p_data, p_modules + "zyr_picture.so", "zyr_picture_prepare") &&
           p_data.pictureInitialize() && p_data.pluginModulesInitialize(directories);
}

/// An encoder and a decoder that are set to the same codec.
struct Codec {
    IFrameEncoder* m_encoder = nullptr;
    IFrameDecoder* m_decoder = nullptr;
};

/// Takes the first proposal of the encoder that goes with a request of the decoder.
static bool agree(IFrameEncoder& p_encoder, IFrameDecoder& p_decoder, const String& p_codecName) {
    List<FrameCodecProposal*> proposals;
    List<FrameCodecRequest*> requests;
    p_encoder.getCodecProposals(proposals);
    p_decoder.getCodecRequests(requests);
    bool agreed = false;
    for (FrameCodecProposal* proposal : proposals) {
        for (FrameCodecRequest* request : requests) {
            FrameCodecInfo info;
            if (agreed || (!p_codecName.isEmpty() && proposal->codecName != p_codecName) ||
                !proposal->matchWithCodecRequest(*request, info)) {
                continue;
            }
            FrameCodecInfo decoderInfo(info);
            decoderInfo.codecImplementation = request->codecImplementation;
            decoderInfo.codecOptions = request->codecOptions;
            decoderInfo.hardwareDeviceName = request->hardwareDeviceName;
            agreed = p_encoder.initialize(info) && p_decoder.initialize(decoderInfo);
        }
    }
    for (FrameCodecProposal* proposal : proposals) {
        proposal->release();
    }
    for (FrameCodecRequest* request : requests) {
        request->release();
    }
    return agreed;
}

static Codec findCodec(const String& p_codecName) {
    Codec codec;
    IListOfObjects* encoders = zyr_createObjectsFromParentGUID(zyr_getInterfaceGUID<IFrameEncoder>());
    IListOfObjects* decoders = zyr_createObjectsFromParentGUID(zyr_getInterfaceGUID<IFrameDecoder>());
    for (List<IObject*>::iterator e = encoders->begin(); e != encoders->end(); ++e) {
        for (List<IObject*>::iterator d = decoders->begin(); codec.m_encoder == nullptr && d != decoders->end(); ++d) {
            IFrameEncoder* encoder = static_cast<IFrameEncoder*>(*e);
            IFrameDecoder* decoder = static_cast<IFrameDecoder*>(*d);
            if (agree(*encoder, *decoder, p_codecName)) {
                codec.m_encoder = static_cast<IFrameEncoder*>(encoder->addRef());
                codec.m_decoder = static_cast<IFrameDecoder*>(decoder->addRef());
            }
        }
    }
    encoders->release();
    decoders->release();
    return codec;
}

/// A picture in B, G, R, A with a bar that moves with its number.
static IUnpackedFrameData* makeFrame(uint32_t p_width, uint32_t p_height, uint32_t p_number) {
    IImage* image = zyr_createInterfaceObject<IImage>();
    image->init(p_width, p_height, 0, ZYR_PIXEL_FORMAT_BGRA_8, ZYR_COLOR_SPACE_RGB, ZYR_PIXEL_FORMAT_NONE, 0);
    for (uint32_t y = 0; y < p_height; y++) {
        uint8_t* pixel = static_cast<uint8_t*>(image->getData()) + size_t(y) * image->getPitch();
        for (uint32_t x = 0; x < p_width; x++, pixel += 4) {
            const bool isBar = x / 16 == p_number % (p_width / 16);
            pixel[0] = isBar ? 255 : 32;
            pixel[1] = static_cast<uint8_t>(y);
            pixel[2] = 64;
            pixel[3] = 255;
        }
    }
    IUnpackedFrameData* frame = zyr_createInterfaceObject<IUnpackedFrameData>();
    IUnpackedFrameDataReserved* fill = frame->getUnpackedFrameDataReserved();
    fill->setWidth(p_width);
    fill->setHeight(p_height);
    fill->setSystemMemory(image);
    image->release();
    return frame;
}

/// The mean difference of a channel between a source in B, G, R, A and a result in R, G, B, A.
static double compare(IUnpackedFrameData& p_source, IUnpackedFrameData& p_result) {
    const IImage* source = p_source.getSystemMemory(0, 1);
    const IImage* result = p_result.getSystemMemory(0, 1);
    uint64_t sum = 0;
    for (uint32_t y = 0; y < source->getHeight(); y++) {
        const uint8_t* a = static_cast<const uint8_t*>(source->getData()) + size_t(y) * source->getPitch();
        const uint8_t* b = static_cast<const uint8_t*>(result->getData()) + size_t(y) * result->getPitch();
        for (uint32_t x = 0; x < source->getWidth(); x++, a += 4, b += 4) {
            for (int channel = 0; channel < 3; channel++) {
                sum += static_cast<uint64_t>(a[channel] > b[2 - channel] ? a[channel] - b[2 - channel]
                                                                         : b[2 - channel] - a[channel]);
            }
        }
    }
    return double(sum) / (3.0 * source->getWidth() * source->getHeight());
}

static bool runStream(const Codec& p_codec) {
    IFrameEncoderContext* encoding = p_codec.m_encoder->createFrameEncoderContext();
    IFrameDecoderContext* decoding = p_codec.m_decoder->createFrameDecoderContext();
    bool done = true;
    for (uint32_t number = 0; done && number < 5; number++) {
        IUnpackedFrameData* frame = makeFrame(320, 240, number);
        IPackedFrameData* packed = encoding->encode(frame);
        IUnpackedFrameData* picture = packed != nullptr ? decoding->decode(packed) : nullptr;
        done = picture != nullptr;
        if (done) {
            printf("frame %u: %zu bytes, difference %.2f\n", number, packed->getPackedData()->getSize(),
                   compare(*frame, *picture));
            picture->release();
        } else {
            fprintf(stderr, "frame %u could not be %s (see the log)\n", number,
                    packed == nullptr ? "encoded" : "decoded");
        }
        if (packed != nullptr) {
            packed->release();
        }
        frame->release();
    }
    encoding->release();
    decoding->release();
    return done;
}

int main(int p_argc, char** p_argv) {
    if (p_argc < 3 || p_argc > 4) {
        fprintf(stderr, "usage: minimal_host MODULE-DIRECTORY PLUGIN-DIRECTORY [CODEC]\n");
        return 2;
    }
    String modules(p_argv[1]);
    String plugins(p_argv[2]);
    modules.normalizeDirectoryPath();
    plugins.normalizeDirectoryPath();
    // Modules keep their pointer to it, so it lives until the process ends.
    ApplicationData* data = new ApplicationData(1, 0);
    if (!startFramework(*data, modules, plugins)) {
        fprintf(stderr, "the framework did not start (see the log)\n");
        return 1;
    }
    const Codec codec = findCodec(String(p_argc == 4 ? p_argv[3] : ""));
    bool done = false;
    if (codec.m_encoder == nullptr) {
        fprintf(stderr, "no encoder and decoder agree\n");
    } else {
        printf("codec %s\n", codec.m_encoder->getCodecName().getData());
        done = runStream(codec);
        codec.m_encoder->release();
        codec.m_decoder->release();
    }
    data->deinitialize();
    return done ? 0 : 1;
}
