/// The encoder of lossless blocks as the framework sees it.
#pragma once

#include "picture/zyr_frame_encoder.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/object/zyr_object_class.h"

namespace zyr {

/// Works on every machine, in three ways: with each compression. One thread at a time.
class BlocksFrameEncoder : public ObjectClass<BlocksFrameEncoder, WFrameEncoder> {
public:
    static constexpr const char* c_className = "BlocksFrameEncoder";
    static constexpr const char* c_classGUIDText = "4b913fdd-af4f-465a-97a1-e203e99fec74";

    BlocksFrameEncoder();
    ~BlocksFrameEncoder() override;

    const String& getLibName() const override;
    uint64_t getLibVersion() const override;
    const String& getCodecName() const override { return m_codecInfo.codecName; }
    void getCodecProposals(List<FrameCodecProposal*>& p_proposals) override;
    /// Silent. False unless single-plane RGB and a compression were agreed. Of the options "threads=N" is read: so many
    /// threads take part in large pictures, and none beside the caller's with 1; "dense=1" lets large packets of text
    /// be compressed by ZIP.
    bool_t initialize(const FrameCodecInfo& p_codecInfo) override;
    bool_t deinitialize() override { return 1; }
    const FrameCodecInfo* getCodecInfo() const override { return &m_codecInfo; }
    IFrameEncoderContext* createFrameEncoderContext() override;

    /// The agreed record stays over clear, as with every codec.
    void init_This() {}
    void release_This() {}
    /// A copy does not take the record.
    void copy_This(const BlocksFrameEncoder*) {}

private:
    FrameCodecInfo m_codecInfo;
};

} // namespace zyr
