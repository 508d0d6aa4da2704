/// Decoders of frames and their per-stream contexts, with the facades that a codec plug-in extends.
///
/// The counterpart of zyr_frame_encoder.h: a decoder states requests, is initialized with the agreed record and creates
/// a context for each stream. One thread at a time uses a decoder, and one a context.
///
///     decoder->initialize(codecInfo);
///     IFrameDecoderContext* context = decoder->createFrameDecoderContext();
///     IUnpackedFrameData* unpacked = context->decode(packed); // the caller releases it
#pragma once

#include "picture/zyr_frame_codec_info.h"
#include "picture/zyr_frame_codec_request.h"
#include "picture/zyr_level_reserved.h"
#include "zyr_common/object/zyr_object.h"

namespace zyr {

class IFrameDecoderContext;
class IPackedFrameData;
class IUnpackedFrameData;

/// What a plug-in can decode on this machine. A decoder serves one codec at a time and any number of streams of it.
class IFrameDecoder : public IObject {
public:
    /// Name of the library behind the decoder.
    virtual const String& getLibName() const = 0;
    /// Its version in the packed form of `zyr_encodeVersion64`.
    virtual uint64_t getLibVersion() const = 0;
    /// Name of the agreed codec, empty before `initialize`.
    virtual const String& getCodecName() const = 0;
    /// Appends what the decoder wants on this machine. The caller owns the elements and releases each.
    virtual void getCodecRequests(List<FrameCodecRequest*>& p_requests) = 0;
    /// Fixes the codec. False when the decoder cannot decode it.
    virtual bool_t initialize(const FrameCodecInfo& p_codecInfo) = 0;
    /// Forgets the codec. Contexts that still live keep the decoder alive.
    virtual bool_t deinitialize() = 0;
    /// The agreed record, owned by the decoder.
    virtual const FrameCodecInfo* getCodecInfo() const = 0;
    /// A new context, which the caller owns and which keeps a reference to the decoder.
    virtual IFrameDecoderContext* createFrameDecoderContext() = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ICopyReserved* getFrameDecoderReserved() const = 0;
};

/// The state of one stream. Frames are decoded in the order in which they were coded.
class IFrameDecoderContext : public IObject {
public:
    /// Takes a reference to the decoder. False when the context has one already or cannot work with this one.
    virtual bool_t initialize(IFrameDecoder* p_decoder) = 0;
    /// Gives the decoder back and drops the state of the stream. False when there is no decoder.
    virtual bool_t deinitialize() = 0;
    /// Decodes one frame. The caller owns the result, which is null on failure; the next frame can succeed.
    virtual IUnpackedFrameData* decode(IPackedFrameData* p_frame) = 0;
    /// The decoder, without a reference.
    virtual IFrameDecoder* getDecoder() const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILifeCycleReserved* getFrameDecoderContextReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(FrameDecoder, IObject, "8d3bfe60-d157-4077-8ff0-68af1abc390d")
ZYR_INTERFACE_TRAITS(FrameDecoderContext, IObject, "acdde0f5-4b0e-4040-b606-c32709806422")

/// Forwards each operation to the FrameDecoder of its module; what extends that class derives from this.
template <class Interface> class FrameDecoderFacade : public ObjectFacade<Interface> {
public:
    const String& getLibName() const override { return this->m_interfaceObject->getLibName(); }
    uint64_t getLibVersion() const override { return this->m_interfaceObject->getLibVersion(); }
    const String& getCodecName() const override { return this->m_interfaceObject->getCodecName(); }
    void getCodecRequests(List<FrameCodecRequest*>& p_requests) override {
        this->m_interfaceObject->getCodecRequests(p_requests);
    }
    bool_t initialize(const FrameCodecInfo& p_codecInfo) override {
        return this->m_interfaceObject->initialize(p_codecInfo);
    }
    bool_t deinitialize() override { return this->m_interfaceObject->deinitialize(); }
    const FrameCodecInfo* getCodecInfo() const override { return this->m_interfaceObject->getCodecInfo(); }
    IFrameDecoderContext* createFrameDecoderContext() override {
        return this->m_interfaceObject->createFrameDecoderContext();
    }
    ICopyReserved* getFrameDecoderReserved() const override {
        return this->m_interfaceObject->getFrameDecoderReserved();
    }
};

/// Forwards each operation to the FrameDecoderContext of its module; what extends that class derives from this.
template <class Interface> class FrameDecoderContextFacade : public ObjectFacade<Interface> {
public:
    bool_t initialize(IFrameDecoder* p_decoder) override { return this->m_interfaceObject->initialize(p_decoder); }
    bool_t deinitialize() override { return this->m_interfaceObject->deinitialize(); }
    IUnpackedFrameData* decode(IPackedFrameData* p_frame) override { return this->m_interfaceObject->decode(p_frame); }
    IFrameDecoder* getDecoder() const override { return this->m_interfaceObject->getDecoder(); }
    ILifeCycleReserved* getFrameDecoderContextReserved() const override {
        return this->m_interfaceObject->getFrameDecoderContextReserved();
    }
};

using WFrameDecoder = FrameDecoderFacade<IFrameDecoder>;
using WFrameDecoderContext = FrameDecoderContextFacade<IFrameDecoderContext>;

} // namespace zyr
