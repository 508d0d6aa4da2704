#include "plugin_ffmpeg/zyr_plugin_host.h"

#include "support/render_node/zyr_render_node.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/object/zyr_factories.h"

#include <cmath>
#include <cstring>

using namespace zyr;

namespace zyr_test {

namespace {

/// "<time> [pid:tid] LEVEL module function - text\n"; the text may hold line feeds.
LogMessage parseLine(const std::string& p_line) {
    LogMessage message;
    size_t level = p_line.find("] ") + 2;
    message.level = p_line.substr(level, 5);
    message.level.erase(message.level.find_last_not_of(' ') + 1);
    size_t module = level + 6;
    size_t function = p_line.find(' ', module) + 1;
    size_t text = p_line.find(" - ", function) + 3;
    message.module = p_line.substr(module, function - module - 1);
    message.function = p_line.substr(function, text - 3 - function);
    message.text = p_line.substr(text, p_line.size() - text - 1);
    return message;
}

} // namespace

void RecordingApplicationData::printStringOnLogFile(const String& p_text) {
    // Each message counts for itself: the next one is never a repetition.
    m_logMutex.lock();
    m_lastLogLine.clear();
    m_logMutex.unlock();
    std::lock_guard lock(m_mutex);
    m_lines.push_back(p_text.getData());
}

std::vector<LogMessage> RecordingApplicationData::takeMessages() {
    std::lock_guard lock(m_mutex);
    std::vector<LogMessage> messages;
    for (const std::string& line : m_lines) {
        messages.push_back(parseLine(line));
    }
    m_lines.clear();
    return messages;
}

RecordingApplicationData& hostData() {
    static RecordingApplicationData* const data = [] {
        RecordingApplicationData* created = new RecordingApplicationData;
        created->setLogLevel(ZYR_LOG_LEVEL_TRACE);
        created->commonInitialize();
        prepareModules(*created);
        const uint8_t isInitialized = loadPlugin().initialize(created);
        EXPECT_EQ(1, isInitialized);
        return created;
    }();
    return *data;
}

FrameCodecInfo makeCodecInfo(const char* p_codecName, const char* p_implementation, const char* p_options,
                             const char* p_hardwareDevice, ColorSpaceEnum p_colorSpace) {
    FrameCodecInfo info;
    info.codecName = p_codecName;
    info.codecImplementation = p_implementation;
    info.codecOptions = p_options;
    info.hardwareDeviceName = p_hardwareDevice;
    info.colorSpaces.pushBack(p_colorSpace, nullptr);
    info.planesModels.pushBack(ZYR_PLANES_MODEL_I420, nullptr);
    return info;
}

Held<IUnpackedFrameData> makeFrame(uint32_t p_width, uint32_t p_height, int p_number) {
    Held<IImage> image(createPictureObject<IImage>());
    image->init(p_width, p_height, 0, ZYR_PIXEL_FORMAT_BGRA_8, ZYR_COLOR_SPACE_RGB, ZYR_PIXEL_FORMAT_NONE, 0);
    for (uint32_t y = 0; image->getData() != nullptr && y < p_height; y++) {
        uint8_t* row = static_cast<uint8_t*>(image->getData()) + size_t(y) * image->getPitch();
        for (uint32_t x = 0; x < p_width; x++) {
            // Smooth, so that little is lost by the coding and by the smaller planes of colour.
            const double phase = double(p_number) * 0.2;
            row[x * 4] = static_cast<uint8_t>(128 + 60 * std::sin(x * 0.02 + phase));
            row[x * 4 + 1] = static_cast<uint8_t>(128 + 60 * std::sin(y * 0.03 + phase));
            row[x * 4 + 2] = static_cast<uint8_t>(128 + 60 * std::cos((x + y) * 0.01 + phase));
            row[x * 4 + 3] = 255;
        }
    }
    Held<IUnpackedFrameData> frame(createPictureObject<IUnpackedFrameData>());
    IUnpackedFrameDataReserved* fill = frame->getUnpackedFrameDataReserved();
    fill->setWidth(p_width);
    fill->setHeight(p_height);
    fill->setSystemMemory(image.get());
    return frame;
}

Held<IPackedFrameData> makePacked(uint32_t p_width, uint32_t p_height, uint64_t p_id,
                                  const std::vector<uint8_t>& p_bytes) {
    Held<IPackedFrameData> packed(createPictureObject<IPackedFrameData>());
    IPackedFrameDataReserved* fill = packed->getPackedFrameDataReserved();
    fill->setWidth(p_width);
    fill->setHeight(p_height);
    fill->setVideoFrameID(p_id);
    fill->getPackedDataMutable()->pushBackRange(p_bytes.data(), p_bytes.size());
    return packed;
}

std::vector<uint8_t> bytesOf(IPackedFrameData& p_packed) {
    const Array<uint8_t>* data = p_packed.getPackedData();
    return std::vector<uint8_t>(data->getData(), data->getData() + data->getSize());
}

double comparePictures(IUnpackedFrameData& p_source, IUnpackedFrameData& p_result) {
    const IImage* source = p_source.getSystemMemory(0, 1);
    const IImage* result = p_result.getSystemMemory(0, 1);
    if (source->getWidth() != result->getWidth() || source->getHeight() != result->getHeight()) {
        return 0;
    }
    double sum = 0;
    for (uint32_t y = 0; y < source->getHeight(); y++) {
        const uint8_t* from = static_cast<const uint8_t*>(source->getData()) + size_t(y) * source->getPitch();
        const uint8_t* to = static_cast<const uint8_t*>(result->getData()) + size_t(y) * result->getPitch();
        for (uint32_t x = 0; x < source->getWidth(); x++) {
            for (uint32_t channel = 0; channel < 3; channel++) {
                const double difference = double(from[x * 4 + channel]) - double(to[x * 4 + 2 - channel]);
                sum += difference * difference;
            }
        }
    }
    const double samples = 3.0 * source->getWidth() * source->getHeight();
    return sum == 0 ? 100 : 10 * std::log10(255.0 * 255.0 * samples / sum);
}

EncodingStream::EncodingStream(const FrameCodecInfo& p_info)
    : encoder(createPluginObject<IFrameEncoder>("FFmpegFrameEncoder")) {
    EXPECT_TRUE(encoder->initialize(p_info));
    context = Held<IFrameEncoderContext>(encoder->createFrameEncoderContext());
}

DecodingStream::DecodingStream(const FrameCodecInfo& p_info)
    : decoder(createPluginObject<IFrameDecoder>("FFmpegFrameDecoder")) {
    EXPECT_TRUE(decoder->initialize(p_info));
    context = Held<IFrameDecoderContext>(decoder->createFrameDecoderContext());
}

void PluginTest::SetUp() {
    useTestVaDriver(ZYR_TEST_VA_DRIVER_DIR);
    setRenderNodePresent(false);
    failVaDriverAt(nullptr);
    hostData().takeMessages();
}

Lines PluginTest::takeLog() {
    Lines lines;
    for (const LogMessage& message : hostData().takeMessages()) {
        if (message.level != "TRACE" && message.text.compare(0, 6, "level:") != 0 &&
            message.text.compare(0, 8, "Set crf ") != 0 && message.text.compare(0, 7, "Set qp ") != 0) {
            lines.push_back(message.level + " " + message.text);
        }
    }
    return lines;
}

Lines PluginTest::takeWholeLog() {
    Lines lines;
    for (const LogMessage& message : hostData().takeMessages()) {
        if (message.level != "TRACE") {
            lines.push_back(message.level + " " + message.text);
        }
    }
    return lines;
}

} // namespace zyr_test
