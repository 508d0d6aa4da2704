/// A lossless codec in a plug-in of its own: each picture is packed as one LZ4 block.
///
/// Small enough to be read in one sitting, whole enough to be used: hosts find it, negotiate with it and send streams
/// through it like any other codec.
#pragma once

#include "picture/zyr_picture.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/object/zyr_object_class.h"

/// The codec as both sides name it.
constexpr const char* LOSSLESS_CODEC_NAME = "lossless";
constexpr const char* LOSSLESS_IMPLEMENTATION = "lz4";

constexpr uint32_t BYTES_PER_PIXEL = 4;

/// Offers one way of encoding, which works on every machine.
class LosslessFrameEncoder : public zyr::ObjectClass<LosslessFrameEncoder, zyr::WFrameEncoder> {
public:
    static constexpr const char* c_className = "LosslessFrameEncoder";
    static constexpr const char* c_classGUIDText = "f13b1975-252c-421f-95f1-3a53f79f63bc";

    LosslessFrameEncoder() {
        initObjectInterface();
        init_This();
    }
    ~LosslessFrameEncoder() override { release_This(); }

    const zyr::String& getLibName() const override;
    uint64_t getLibVersion() const override;
    const zyr::String& getCodecName() const override { return m_codecInfo.codecName; }
    void getCodecProposals(zyr::List<zyr::FrameCodecProposal*>& p_proposals) override;
    bool_t initialize(const zyr::FrameCodecInfo& p_codecInfo) override;
    bool_t deinitialize() override { return 1; }
    const zyr::FrameCodecInfo* getCodecInfo() const override { return &m_codecInfo; }
    zyr::IFrameEncoderContext* createFrameEncoderContext() override;

    void init_This() {}
    void release_This() { m_codecInfo.clear(); }
    void copy_This(const LosslessFrameEncoder* p_src) { m_codecInfo = p_src->m_codecInfo; }

private:
    zyr::FrameCodecInfo m_codecInfo;
};

/// One stream. Each packet stands for itself.
class LosslessFrameEncoderContext : public zyr::ObjectIdentity<LosslessFrameEncoderContext, zyr::WFrameEncoderContext> {
public:
    static constexpr const char* c_className = "LosslessFrameEncoderContext";
    static constexpr const char* c_classGUIDText = "bd0f068e-4b2a-4344-9b54-d66093add011";

    LosslessFrameEncoderContext() { initObjectInterface(); }
    ~LosslessFrameEncoderContext() override;

    bool_t initialize(zyr::IFrameEncoder* p_encoder) override;
    bool_t deinitialize() override;
    /// Takes pictures in B, G, R, A. Null for any other and for a frame without one.
    zyr::IPackedFrameData* encode(zyr::IUnpackedFrameData* p_frame) override;
    zyr::IFrameEncoder* getEncoder() const override { return m_encoder; }
    uint8_t getQuality() const override { return 100; }
    bool_t setQuality(uint8_t) override { return 1; }

private:
    zyr::IFrameEncoder* m_encoder = nullptr; ///< counted
    uint64_t m_frameCount = 0;
    zyr::Array<unsigned char> m_rows; ///< the picture without gaps between its rows
};

/// The other side.
class LosslessFrameDecoder : public zyr::ObjectClass<LosslessFrameDecoder, zyr::WFrameDecoder> {
public:
    static constexpr const char* c_className = "LosslessFrameDecoder";
    static constexpr const char* c_classGUIDText = "ad50e028-9ee8-478b-916b-8ad1b9a88313";

    LosslessFrameDecoder() {
        initObjectInterface();
        init_This();
    }
    ~LosslessFrameDecoder() override { release_This(); }

    const zyr::String& getLibName() const override;
    uint64_t getLibVersion() const override;
    const zyr::String& getCodecName() const override { return m_codecInfo.codecName; }
    void getCodecRequests(zyr::List<zyr::FrameCodecRequest*>& p_requests) override;
    bool_t initialize(const zyr::FrameCodecInfo& p_codecInfo) override;
    bool_t deinitialize() override { return 1; }
    const zyr::FrameCodecInfo* getCodecInfo() const override { return &m_codecInfo; }
    zyr::IFrameDecoderContext* createFrameDecoderContext() override;

    void init_This() {}
    void release_This() { m_codecInfo.clear(); }
    void copy_This(const LosslessFrameDecoder* p_src) { m_codecInfo = p_src->m_codecInfo; }

private:
    zyr::FrameCodecInfo m_codecInfo;
};

class LosslessFrameDecoderContext : public zyr::ObjectIdentity<LosslessFrameDecoderContext, zyr::WFrameDecoderContext> {
public:
    static constexpr const char* c_className = "LosslessFrameDecoderContext";
    static constexpr const char* c_classGUIDText = "8296d74d-4fb0-45f0-b39e-67c45bf00afd";

    LosslessFrameDecoderContext() { initObjectInterface(); }
    ~LosslessFrameDecoderContext() override;

    bool_t initialize(zyr::IFrameDecoder* p_decoder) override;
    bool_t deinitialize() override;
    /// Gives pictures in R, G, B, A, as hosts expect them. Null for damaged packets.
    zyr::IUnpackedFrameData* decode(zyr::IPackedFrameData* p_frame) override;
    zyr::IFrameDecoder* getDecoder() const override { return m_decoder; }

private:
    zyr::IFrameDecoder* m_decoder = nullptr; ///< counted
    zyr::Array<unsigned char> m_rows;
};
