/// A host in the test program: application data that records the log, the loaded plug-in, and what streams need.
#pragma once

#include "picture/zyr_picture.h"
#include "zyr_common/application/zyr_application_data.h"

#include <gtest/gtest.h>
#include <mutex>
#include <string>
#include <vector>

namespace zyr_test {

/// One message of the log.
struct LogMessage {
    std::string level; ///< as in "WARN"
    std::string module;
    std::string function;
    std::string text;
};

/// Writes no file.
class RecordingApplicationData : public zyr::ApplicationData {
public:
    RecordingApplicationData() : ApplicationData(0, 0) {}
    void openLogFile(const zyr::String&, const zyr::String&) override {}
    void printStringOnLogFile(const zyr::String& p_text) override;

    /// The messages since the last call.
    std::vector<LogMessage> takeMessages();

private:
    std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

/// The plug-in's entry points.
struct PluginEntries {
    void* library = nullptr; ///< null where the plug-in is linked into the program
    uint8_t (*initialize)(void*) = nullptr;
    void (*deinitialize)() = nullptr;
};

/// Loads the plug-in, or gives the linked one. Defined by each test program.
PluginEntries loadPlugin();

/// Gives the application data core and picture modules, real or made up. Defined by each test program.
void prepareModules(zyr::ApplicationData& p_data);

/// The application data of the process, made at the first call together with the modules and the plug-in, which are all
/// initialized then.
RecordingApplicationData& hostData();

/// What a codec is negotiated to be; the planes model is I420.
zyr::FrameCodecInfo makeCodecInfo(const char* p_codecName, const char* p_implementation, const char* p_options,
                                  const char* p_hardwareDevice, zyr::ColorSpaceEnum p_colorSpace);

/// Makes an object of the plug-in's by class name. The caller releases it.
template <class Interface> Interface* createPluginObject(const char* p_className) {
    hostData();
    return static_cast<Interface*>(zyr::zyr_createObjectFromName(zyr::String(p_className)));
}

/// Makes an object of the picture module's. The caller releases it.
template <class Interface> Interface* createPictureObject() {
    hostData();
    return static_cast<Interface*>(
        zyr::zyr_createObjectFromGUIDAndTypeName(zyr::zyr_getInterfaceGUID<Interface>(), zyr::String()));
}

/// Releases an object at the end of its scope.
template <class Interface> class Held {
public:
    Held(Interface* p_object = nullptr) : m_object(p_object) {}
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    Held(Held&& p_other) noexcept : m_object(p_other.m_object) { p_other.m_object = nullptr; }
    Held& operator=(Held&& p_other) noexcept {
        std::swap(m_object, p_other.m_object);
        return *this;
    }
    ~Held() {
        if (m_object != nullptr) {
            m_object->release();
        }
    }
    Interface* get() const { return m_object; }
    Interface* operator->() const { return m_object; }
    Interface& operator*() const { return *m_object; }
    explicit operator bool() const { return m_object != nullptr; }

private:
    Interface* m_object;
};

/// A picture in B, G, R, A whose contents move with its number.
Held<zyr::IUnpackedFrameData> makeFrame(uint32_t p_width, uint32_t p_height, int p_number);

/// A coded frame that holds the bytes.
Held<zyr::IPackedFrameData> makePacked(uint32_t p_width, uint32_t p_height, uint64_t p_id,
                                       const std::vector<uint8_t>& p_bytes);

std::vector<uint8_t> bytesOf(zyr::IPackedFrameData& p_packed);

/// The difference of a source in B, G, R, A and a result in R, G, B, A, in decibels.
double comparePictures(zyr::IUnpackedFrameData& p_source, zyr::IUnpackedFrameData& p_result);

/// An encoder with one stream.
struct EncodingStream {
    Held<zyr::IFrameEncoder> encoder;
    Held<zyr::IFrameEncoderContext> context;
    explicit EncodingStream(const zyr::FrameCodecInfo& p_info);
};

/// A decoder with one stream.
struct DecodingStream {
    Held<zyr::IFrameDecoder> decoder;
    Held<zyr::IFrameDecoderContext> context;
    explicit DecodingStream(const zyr::FrameCodecInfo& p_info);
};

/// Starts with an empty log, no hardware and a driver that does not fail.
class PluginTest : public testing::Test {
protected:
    void SetUp() override;

    /// The log since the last call as "LEVEL text", without lines of level TRACE, of FFmpeg and of quality settings.
    std::vector<std::string> takeLog();
    /// The same with nothing left out but TRACE.
    std::vector<std::string> takeWholeLog();
};

typedef std::vector<std::string> Lines;

} // namespace zyr_test
