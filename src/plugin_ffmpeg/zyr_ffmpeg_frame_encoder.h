/// FFmpeg's encoders as the framework sees them: what works on this machine, and contexts for streams.
#pragma once

#include "picture/zyr_frame_encoder.h"
#include "plugin_ffmpeg/zyr_ffmpeg_quality.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/object/zyr_object_class.h"

struct AVCodecContext;

namespace zyr {

#pragma pack(push, 1)

/// One configuration of an encoder.
class FFmpegEncoderInfo : public FrameCodecProposal {
public:
    FFmpegEncoderInfo(const char* p_codecImplementation, const char* p_codecName, const char* p_codecOptions,
                      quality_FUNC p_qualityCallback);

    bool_t available; ///< Whether the encoder could be opened here.
    quality_FUNC qualityCallback;
};

#pragma pack(pop)

/// Opens each known encoder once, at the first call of getCodecProposals or initialize, to learn which ones work. That
/// is slow (real hardware sessions among them), so the answers are kept until clear; a device that appears later isn't
/// noticed. One thread at a time.
class FFmpegFrameEncoder : public ObjectClass<FFmpegFrameEncoder, WFrameEncoder> {
public:
    static constexpr const char* c_className = "FFmpegFrameEncoder";
    static constexpr const char* c_classGUIDText = "34a75fed-1d36-4ea9-9756-43bb88c2ba21";

    FFmpegFrameEncoder();
    ~FFmpegFrameEncoder() override;

    const String& getLibName() const override;
    uint64_t getLibVersion() const override;
    const String& getCodecName() const override { return m_codecInfo.codecName; }
    void getCodecProposals(List<FrameCodecProposal*>& p_proposals) override;
    /// Silent. False for a colour space other than BT.601, and for an encoder that is not known or doesn't work here.
    bool_t initialize(const FrameCodecInfo& p_codecInfo) override;
    bool_t deinitialize() override { return 1; }
    const FrameCodecInfo* getCodecInfo() const override { return &m_codecInfo; }
    IFrameEncoderContext* createFrameEncoderContext() override;

    /// Of the chosen encoder; null before initialize.
    quality_FUNC getQualityCallback() const { return m_qualityCallback; }

    /// The table of encoders goes and comes with clear; the agreed record and its callback stay, which is relied upon.
    void init_This() { m_encoders = nullptr; }
    void release_This();
    /// A copy takes neither the record nor the table.
    void copy_This(const FFmpegFrameEncoder*) {}

private:
    void initEncoders();
    bool_t validateEncoder(const FFmpegEncoderInfo& p_info, bool_t p_fullRange) const;

    FrameCodecInfo m_codecInfo;
    List<FFmpegEncoderInfo*>* m_encoders;
    quality_FUNC m_qualityCallback;
};

/// What every encoder of this plug-in is set to before it is opened: pictures in YUV 4:2:0 and BT.601 that come out in
/// the order in which they go in, none kept back.
void setEncoderParameters(AVCodecContext* p_context, int p_width, int p_height, bool_t p_fullRange);

} // namespace zyr
