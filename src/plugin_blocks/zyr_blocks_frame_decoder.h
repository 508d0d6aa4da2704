/// The decoder of lossless blocks as the framework sees it.
#pragma once

#include "picture/zyr_frame_decoder.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/object/zyr_object_class.h"

namespace zyr {

/// Works on every machine, in three ways: with each compression. One thread at a time.
class BlocksFrameDecoder : public ObjectClass<BlocksFrameDecoder, WFrameDecoder> {
public:
    static constexpr const char* c_className = "BlocksFrameDecoder";
    static constexpr const char* c_classGUIDText = "d7c21635-f2a2-40d0-9597-a08803203903";

    BlocksFrameDecoder();
    ~BlocksFrameDecoder() override;

    const String& getLibName() const override;
    uint64_t getLibVersion() const override;
    const String& getCodecName() const override { return m_codecInfo.codecName; }
    void getCodecRequests(List<FrameCodecRequest*>& p_requests) override;
    /// Silent. False unless single-plane RGB was agreed; the compression stands in each packet. Of the options
    /// "threads=N" is read: so many threads take part in large pictures, and none beside the caller's with 1.
    bool_t initialize(const FrameCodecInfo& p_codecInfo) override;
    bool_t deinitialize() override { return 1; }
    const FrameCodecInfo* getCodecInfo() const override { return &m_codecInfo; }
    IFrameDecoderContext* createFrameDecoderContext() override;

    /// The agreed record stays over clear, as with every codec.
    void init_This() {}
    void release_This() {}
    /// A copy does not take the record.
    void copy_This(const BlocksFrameDecoder*) {}

private:
    FrameCodecInfo m_codecInfo;
};

} // namespace zyr
