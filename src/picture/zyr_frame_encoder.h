/// Encoders of frames and their per-stream contexts, with the facades that a codec plug-in extends.
///
/// A host asks an encoder for its proposals, matches them with a decoder's requests, initializes the encoder with the
/// agreed record and creates a context for each stream:
///
///     encoder->initialize(codecInfo);
///     IFrameEncoderContext* context = encoder->createFrameEncoderContext();
///     IPackedFrameData* packed = context->encode(unpacked); // the caller releases it
///
/// One thread at a time uses an encoder, and one a context.
#pragma once

#include "picture/zyr_frame_codec_info.h"
#include "picture/zyr_frame_codec_proposal.h"
#include "picture/zyr_level_reserved.h"
#include "zyr_common/object/zyr_object.h"

namespace zyr {

class IFrameEncoderContext;
class IPackedFrameData;
class IUnpackedFrameData;

/// What a plug-in can encode on this machine. An encoder serves one codec at a time and any number of streams of it.
class IFrameEncoder : public IObject {
public:
    /// Name of the library behind the encoder.
    virtual const String& getLibName() const = 0;
    /// Its version in the packed form of `zyr_encodeVersion64`.
    virtual uint64_t getLibVersion() const = 0;
    /// Name of the agreed codec, empty before `initialize`.
    virtual const String& getCodecName() const = 0;
    /// Appends what the encoder offers on this machine. The caller owns the elements and releases each.
    virtual void getCodecProposals(List<FrameCodecProposal*>& p_proposals) = 0;
    /// The graphics adapter that the proposals are made for.
    virtual uint64_t getAdapterID() const = 0;
    /// Before the proposals are asked for.
    virtual void setAdapterID(uint64_t p_adapterID) = 0;
    /// Fixes the codec. False when the encoder does not offer it.
    virtual bool_t initialize(const FrameCodecInfo& p_codecInfo) = 0;
    /// Forgets the codec. Contexts that still live keep the encoder alive.
    virtual bool_t deinitialize() = 0;
    /// The agreed record, owned by the encoder.
    virtual const FrameCodecInfo* getCodecInfo() const = 0;
    /// A new context, which the caller owns and which keeps a reference to the encoder.
    virtual IFrameEncoderContext* createFrameEncoderContext() = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ICopyReserved* getFrameEncoderReserved() const = 0;
};

/// The state of one stream. The size of the pictures may change from frame to frame.
class IFrameEncoderContext : public IObject {
public:
    /// Takes a reference to the encoder. False when the context has one already or cannot work with this one.
    virtual bool_t initialize(IFrameEncoder* p_encoder) = 0;
    /// Gives the encoder back and drops the state of the stream. False when there is no encoder.
    virtual bool_t deinitialize() = 0;
    /// Encodes one frame. The caller owns the result, which is null on failure and may hold no bytes when the encoder
    /// keeps the frame back.
    virtual IPackedFrameData* encode(IUnpackedFrameData* p_frame) = 0;
    /// The encoder, without a reference.
    virtual IFrameEncoder* getEncoder() const = 0;
    /// 0 to 100; higher means better.
    virtual uint8_t getQuality() const = 0;
    /// Takes effect at the next frame.
    /// From any thread. Takes effect at the next frame.
    virtual bool_t setQuality(uint8_t p_quality) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILifeCycleReserved* getFrameEncoderContextReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(FrameEncoder, IObject, "c9d35a11-b322-495c-8ff0-25fd48216ebc")
ZYR_INTERFACE_TRAITS(FrameEncoderContext, IObject, "0ca52f0f-8c1a-476d-a817-d3dd94f10e41")

/// Forwards each operation to the FrameEncoder of its module; what extends that class derives from this.
template <class Interface> class FrameEncoderFacade : public ObjectFacade<Interface> {
public:
    const String& getLibName() const override { return this->m_interfaceObject->getLibName(); }
    uint64_t getLibVersion() const override { return this->m_interfaceObject->getLibVersion(); }
    const String& getCodecName() const override { return this->m_interfaceObject->getCodecName(); }
    void getCodecProposals(List<FrameCodecProposal*>& p_proposals) override {
        this->m_interfaceObject->getCodecProposals(p_proposals);
    }
    uint64_t getAdapterID() const override { return this->m_interfaceObject->getAdapterID(); }
    void setAdapterID(uint64_t p_adapterID) override { this->m_interfaceObject->setAdapterID(p_adapterID); }
    bool_t initialize(const FrameCodecInfo& p_codecInfo) override {
        return this->m_interfaceObject->initialize(p_codecInfo);
    }
    bool_t deinitialize() override { return this->m_interfaceObject->deinitialize(); }
    const FrameCodecInfo* getCodecInfo() const override { return this->m_interfaceObject->getCodecInfo(); }
    IFrameEncoderContext* createFrameEncoderContext() override {
        return this->m_interfaceObject->createFrameEncoderContext();
    }
    ICopyReserved* getFrameEncoderReserved() const override {
        return this->m_interfaceObject->getFrameEncoderReserved();
    }
};

/// Forwards each operation to the FrameEncoderContext of its module; what extends that class derives from this.
template <class Interface> class FrameEncoderContextFacade : public ObjectFacade<Interface> {
public:
    bool_t initialize(IFrameEncoder* p_encoder) override { return this->m_interfaceObject->initialize(p_encoder); }
    bool_t deinitialize() override { return this->m_interfaceObject->deinitialize(); }
    IPackedFrameData* encode(IUnpackedFrameData* p_frame) override { return this->m_interfaceObject->encode(p_frame); }
    IFrameEncoder* getEncoder() const override { return this->m_interfaceObject->getEncoder(); }
    uint8_t getQuality() const override { return this->m_interfaceObject->getQuality(); }
    bool_t setQuality(uint8_t p_quality) override { return this->m_interfaceObject->setQuality(p_quality); }
    ILifeCycleReserved* getFrameEncoderContextReserved() const override {
        return this->m_interfaceObject->getFrameEncoderContextReserved();
    }
};

using WFrameEncoder = FrameEncoderFacade<IFrameEncoder>;
using WFrameEncoderContext = FrameEncoderContextFacade<IFrameEncoderContext>;

} // namespace zyr
