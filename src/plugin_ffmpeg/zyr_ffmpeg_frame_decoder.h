/// FFmpeg's decoders as the framework sees them: what works on this machine, and contexts for streams.
#pragma once

#include "picture/zyr_frame_decoder.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/object/zyr_object_class.h"

namespace zyr {

#pragma pack(push, 1)

/// One configuration of a decoder.
class FFmpegDecoderInfo : public FrameCodecRequest {
public:
    FFmpegDecoderInfo(const char* p_codecImplementation, const char* p_codecName, const char* p_codecOptions,
                      const char* p_hardwareDeviceName);

    bool_t available; ///< Whether the decoder could be opened here.
};

#pragma pack(pop)

/// Opens each known decoder once, at the first call of getCodecRequests, to learn which ones work, and keeps the
/// answers until clear. One thread at a time.
class FFmpegFrameDecoder : public ObjectClass<FFmpegFrameDecoder, WFrameDecoder> {
public:
    static constexpr const char* c_className = "FFmpegFrameDecoder";
    static constexpr const char* c_classGUIDText = "999bc88e-a780-4b21-a85c-eef13c553370";

    FFmpegFrameDecoder();
    ~FFmpegFrameDecoder() override;

    const String& getLibName() const override;
    uint64_t getLibVersion() const override;
    const String& getCodecName() const override { return m_codecInfo.codecName; }
    void getCodecRequests(List<FrameCodecRequest*>& p_requests) override;
    /// H.264 is accepted with VAAPI only. Everything else is accepted unseen: that a decoder doesn't exist shows at the
    /// first frame.
    bool_t initialize(const FrameCodecInfo& p_codecInfo) override;
    bool_t deinitialize() override { return 1; }
    const FrameCodecInfo* getCodecInfo() const override { return &m_codecInfo; }
    IFrameDecoderContext* createFrameDecoderContext() override;

    /// The table of decoders goes and comes with clear; the agreed record stays, which is relied upon.
    void init_This() { m_decoders = nullptr; }
    void release_This();
    /// A copy takes neither the record nor the table.
    void copy_This(const FFmpegFrameDecoder*) {}

private:
    void initDecoders();
    bool_t validateDecoder(const FFmpegDecoderInfo& p_info) const;

    FrameCodecInfo m_codecInfo;
    List<FFmpegDecoderInfo*>* m_decoders;
};

} // namespace zyr
