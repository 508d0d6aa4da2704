/// The picture module's implementations of encoders, decoders and their contexts: what stands behind the facade that a
/// codec plug-in extends. They keep what they are told and code nothing themselves.
#pragma once

#include "picture/zyr_frame_decoder.h"
#include "picture/zyr_frame_encoder.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/memory/zyr_ref.h"

namespace zyr {

/// See IFrameEncoder for the operations. Offers nothing; keeps adapter and agreed record.
class FrameEncoderLevel : public UnstoredLevel<ObjectLevel<IFrameEncoder>, IFrameEncoder> {
public:
    const String& getLibName() const override { return String::getConstEmpty(); }
    uint64_t getLibVersion() const override { return 0; }
    const String& getCodecName() const override { return m_codecInfo.codecName; }
    void getCodecProposals(List<FrameCodecProposal*>&) override {}
    uint64_t getAdapterID() const override { return m_adapterID; }
    void setAdapterID(uint64_t p_adapterID) override { m_adapterID = p_adapterID; }
    bool_t initialize(const FrameCodecInfo& p_codecInfo) override;
    bool_t deinitialize() override { return 1; }
    const FrameCodecInfo* getCodecInfo() const override { return &m_codecInfo; }
    IFrameEncoderContext* createFrameEncoderContext() override;
    ICopyReserved* getFrameEncoderReserved() const override { return &m_reserved; }

    void init_This();
    void release_This() {}
    void copy_This(const IFrameEncoder* p_src);

private:
    FrameCodecInfo m_codecInfo;
    uint64_t m_adapterID = 0;
    mutable LevelReserved<FrameEncoderLevel, ICopyReserved> m_reserved{this};
};

/// See IFrameEncoderContext for the operations.
class FrameEncoderContextLevel : public UnstoredLevel<ObjectLevel<IFrameEncoderContext>, IFrameEncoderContext> {
public:
    ~FrameEncoderContextLevel() override { release_This(); }

    bool_t initialize(IFrameEncoder* p_encoder) override;
    bool_t deinitialize() override;
    IPackedFrameData* encode(IUnpackedFrameData* p_frame) override;
    IFrameEncoder* getEncoder() const override { return m_encoder.get(); }
    uint8_t getQuality() const override { return m_quality; }
    bool_t setQuality(uint8_t p_quality) override;
    ILifeCycleReserved* getFrameEncoderContextReserved() const override { return &m_reserved; }

    void init_This() { m_quality = defaultQuality; }
    void release_This();
    void copy_This(const IFrameEncoderContext* p_src) { m_quality = p_src->getQuality(); }

private:
    static constexpr uint8_t defaultQuality = 60;

    Ref<IFrameEncoder> m_encoder;
    uint8_t m_quality = defaultQuality;
    mutable LevelReserved<FrameEncoderContextLevel, ILifeCycleReserved> m_reserved{this};
};

/// See IFrameDecoder for the operations. Wants nothing; keeps the agreed record.
class FrameDecoderLevel : public UnstoredLevel<ObjectLevel<IFrameDecoder>, IFrameDecoder> {
public:
    const String& getLibName() const override { return String::getConstEmpty(); }
    uint64_t getLibVersion() const override { return 0; }
    const String& getCodecName() const override { return m_codecInfo.codecName; }
    void getCodecRequests(List<FrameCodecRequest*>&) override {}
    bool_t initialize(const FrameCodecInfo& p_codecInfo) override;
    bool_t deinitialize() override { return 1; }
    const FrameCodecInfo* getCodecInfo() const override { return &m_codecInfo; }
    IFrameDecoderContext* createFrameDecoderContext() override;
    ICopyReserved* getFrameDecoderReserved() const override { return &m_reserved; }

    void init_This();
    void release_This() {}
    void copy_This(const IFrameDecoder* p_src);

private:
    FrameCodecInfo m_codecInfo;
    mutable LevelReserved<FrameDecoderLevel, ICopyReserved> m_reserved{this};
};

/// See IFrameDecoderContext for the operations.
class FrameDecoderContextLevel : public UnstoredLevel<ObjectLevel<IFrameDecoderContext>, IFrameDecoderContext> {
public:
    ~FrameDecoderContextLevel() override { release_This(); }

    bool_t initialize(IFrameDecoder* p_decoder) override;
    bool_t deinitialize() override;
    IUnpackedFrameData* decode(IPackedFrameData* p_frame) override;
    IFrameDecoder* getDecoder() const override { return m_decoder.get(); }
    ILifeCycleReserved* getFrameDecoderContextReserved() const override { return &m_reserved; }

    void init_This() {}
    void release_This();
    void copy_This(const IFrameDecoderContext*) {}

private:
    Ref<IFrameDecoder> m_decoder;
    mutable LevelReserved<FrameDecoderContextLevel, ILifeCycleReserved> m_reserved{this};
};

using FrameEncoder = Implementation<FrameEncoderLevel>;
using FrameEncoderContext = Implementation<FrameEncoderContextLevel>;
using FrameDecoder = Implementation<FrameDecoderLevel>;
using FrameDecoderContext = Implementation<FrameDecoderContextLevel>;

} // namespace zyr
