/// Base levels for a plug-in with one codec: an author describes what it offers, packs a picture into bytes and unpacks
/// them again. Negotiation, contexts, frames and the checks of what comes from outside stand here.
///
///     class MyEncoderContext;
///     class MyEncoder : public CodecEncoder<MyEncoder, MyEncoderContext> {
///     public:
///         static constexpr const char* c_className = "MyEncoder";
///         static constexpr const char* c_classGUIDText = "...";          // fresh and random
///         static constexpr CodecOffer c_offer = {.m_codecName = "mine", .m_implementation = "simple"};
///     };
///     class MyEncoderContext : public CodecEncoderContext<MyEncoderContext, MyEncoder> {
///     public:
///         static constexpr const char* c_className = "MyEncoderContext";
///         static constexpr const char* c_classGUIDText = "...";
///         bool_t encodePicture(const IImage& p_image, Array<uint8_t>& p_bytes) override;
///     };
///
/// and the same two classes for the decoder. A codec of another kind (planes, several offers, hardware) derives from
/// ObjectClass and the facades itself.
#pragma once

#include "picture/zyr_codec_enums.h"
#include "picture/zyr_frame_codec_proposal.h"
#include "picture/zyr_frame_data.h"
#include "picture/zyr_frame_decoder.h"
#include "picture/zyr_frame_encoder.h"
#include "picture/zyr_image.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_object_class.h"
#include "zyr_common/platform/zyr_version.h"

namespace zyr {

/// A way of coding whole pictures in R, G, B, as both sides name it.
struct CodecOffer {
    const char* m_codecName;      ///< What encoder and decoder have in common.
    const char* m_implementation; ///< Which of those that speak it.
    /// How fast this way of coding is, as its author sees it.
    CodecRatingEnum m_rating = ZYR_CODEC_RATING_NORMAL;
    /// Every decoded picture equals the coded one.
    bool_t m_lossless = 1;
};

/// The records of an offer, for the caller to change and to hand on: all is mandatory that the codec cannot do without.
FrameCodecProposal* createProposal(const CodecOffer& p_offer, uint64_t p_adapterID);
/// The same for the decoder's side. Both are new and belong to the caller.
FrameCodecRequest* createRequest(const CodecOffer& p_offer);
/// Whether the agreed record is one that the offer leads to.
bool_t isOfOffer(const CodecOffer& p_offer, const FrameCodecInfo& p_codecInfo);

/// The picture that an encoder gets, in B, G, R, A; null after a line of `p_module` and `p_function`. Not counted.
const IImage* findPicture(const IUnpackedFrameData* p_frame, const char* p_module, const char* p_function);
/// Whether a packet has bytes and a size that can be decoded; false after a line.
bool_t isDecodable(const IPackedFrameData* p_frame, const char* p_module, const char* p_function);
/// A new packet without bytes. The caller owns it.
IPackedFrameData* createPacket(const IImage& p_image, uint64_t p_frameID);
/// A new picture in R, G, B, A of the packet's size. The caller owns it; null when there is no memory for it.
IImage* createPicture(const IPackedFrameData& p_packet);
/// A new frame with the picture, and with size, number and map of changes of its packet. The caller owns it.
IUnpackedFrameData* createFrame(const IPackedFrameData& p_packet, IImage& p_image);

/// What encoder and decoder have in common. The agreed record stays over clear, and a copy does not take it.
template <class Class, class Facade> class CodecBase : public ObjectClass<Class, Facade> {
public:
    /// Needs the picture module, like everything here.
    CodecBase() { this->initObjectInterface(); }

    const String& getLibName() const override {
        static const String& name = makePermanent<String>(Class::c_offer.m_implementation);
        return name;
    }
    /// 1.0.0; a codec that stands on a library gives that one's.
    uint64_t getLibVersion() const override { return zyr_encodeVersion64(1, 0, 0); }
    const String& getCodecName() const override { return m_codecInfo.codecName; }
    /// Keeps the agreed record. False, with the former record kept, for one that another codec agreed on.
    bool_t initialize(const FrameCodecInfo& p_codecInfo) override {
        if (!isOfOffer(Class::c_offer, p_codecInfo)) {
            return 0;
        }
        m_codecInfo = p_codecInfo;
        return 1;
    }
    /// Frees nothing: contexts that live on still read the record.
    bool_t deinitialize() override { return 1; }
    const FrameCodecInfo* getCodecInfo() const override { return &m_codecInfo; }

    /// Nothing of this level is copied or cleared.
    void init_This() {}
    void release_This() {}
    void copy_This(const Class*) {}

private:
    /// empty until initialize
    FrameCodecInfo m_codecInfo;
};

/// `Class` has `c_offer` besides its name and GUID.
template <class Class, class Context> class CodecEncoder : public CodecBase<Class, WFrameEncoder> {
public:
    /// Adds the one offer, which then belongs to the caller.
    void getCodecProposals(List<FrameCodecProposal*>& p_proposals) override {
        p_proposals.pushBack(createProposal(Class::c_offer, this->getAdapterID()));
    }
    /// A new context of this codec, which the caller owns.
    IFrameEncoderContext* createFrameEncoderContext() override {
        Context* context = new Context;
        context->initialize(static_cast<IFrameEncoder*>(this->getTLIObject()));
        return context;
    }
};

/// The same for the other side, with an offer that has the same codec name.
template <class Class, class Context> class CodecDecoder : public CodecBase<Class, WFrameDecoder> {
public:
    /// Adds the one request, which then belongs to the caller.
    void getCodecRequests(List<FrameCodecRequest*>& p_requests) override {
        p_requests.pushBack(createRequest(Class::c_offer));
    }
    /// A new context of this codec, which the caller owns.
    IFrameDecoderContext* createFrameDecoderContext() override {
        Context* context = new Context;
        context->initialize(static_cast<IFrameDecoder*>(this->getTLIObject()));
        return context;
    }
};

/// What the contexts have in common: they hold one `Codec` by a reference.
template <class Class, class Facade, class Interface, class Codec>
class CodecContextBase : public ObjectIdentity<Class, Facade> {
public:
    /// Without a codec: nothing can be coded until initialize.
    CodecContextBase() { this->initObjectInterface(); }

    /// Takes codecs of its own class only.
    bool_t initialize(Interface* p_codec) override {
        if (m_codec) {
            ZYR_LOG_WARN("Already initialized. Cannot initialize");
            return 0;
        }
        if (p_codec == nullptr || p_codec->getClassGUID() != Codec::getStaticClassGUID()) {
            ZYR_LOG_WARN("The codec is not a %s. Cannot initialize", Codec::c_className);
            return 0;
        }
        m_codec = Ref<Interface>::share(p_codec);
        return 1;
    }
    /// Gives the codec back. False, with a line in the log, without one.
    bool_t deinitialize() override {
        if (!m_codec) {
            ZYR_LOG_WARN("Not initialized. Cannot deinitialize");
            return 0;
        }
        m_codec.clear();
        forget();
        return 1;
    }

    /// The stream is over or broken: the next frame begins another one. For codecs that keep something of the last
    /// frame.
    virtual void forget() {}

protected:
    /// null before initialize and behind deinitialize
    Ref<Interface> m_codec;
};

/// One stream of an encoder.
template <class Class, class Encoder>
class CodecEncoderContext : public CodecContextBase<Class, WFrameEncoderContext, IFrameEncoder, Encoder> {
public:
    /// Appends the packed picture, which is in B, G, R, A and not empty, to the bytes. False when it cannot be done.
    virtual bool_t encodePicture(const IImage& p_image, Array<uint8_t>& p_bytes) = 0;

    /// Gives a new packet, which the caller owns; null after a line in the log. A failed frame takes no number.
    IPackedFrameData* encode(IUnpackedFrameData* p_frame) override {
        const IImage* image = findPicture(p_frame, ZYR_MODULE_WORD, __PRETTY_FUNCTION__);
        if (image == nullptr) {
            return nullptr;
        }
        Ref<IPackedFrameData> packet = Ref<IPackedFrameData>::adopt(createPacket(*image, m_frameCount + 1));
        if (!encodePicture(*image, *packet->getPackedFrameDataReserved()->getPackedDataMutable())) {
            ZYR_LOG_WARN("Unable to encode a picture of %ux%u", image->getWidth(), image->getHeight());
            this->forget();
            return nullptr;
        }
        m_frameCount++;
        return packet.release();
    }
    /// Frames are counted from 1 again.
    bool_t deinitialize() override {
        m_frameCount = 0;
        return CodecContextBase<Class, WFrameEncoderContext, IFrameEncoder, Encoder>::deinitialize();
    }
    IFrameEncoder* getEncoder() const override { return this->m_codec.get(); }
    uint8_t getQuality() const override { return m_quality; }
    /// For the next frame on. Encoders without a choice keep the number and do nothing with it.
    bool_t setQuality(uint8_t p_quality) override {
        m_quality = p_quality;
        return 1;
    }

private:
    /// pictures encoded since initialize
    uint64_t m_frameCount = 0;
    uint8_t m_quality = 100;
};

/// One stream of a decoder.
template <class Class, class Decoder>
class CodecDecoderContext : public CodecContextBase<Class, WFrameDecoderContext, IFrameDecoder, Decoder> {
public:
    /// Fills the picture, which is in R, G, B, A and of the packet's size, from the bytes. They come from outside and
    /// may hold anything. False when they are no such picture.
    virtual bool_t decodePicture(const Array<uint8_t>& p_bytes, IImage& p_image) = 0;

    /// Gives a new frame with a picture of its own, which the caller owns; null after a line in the log. The packet
    /// stays as it is.
    IUnpackedFrameData* decode(IPackedFrameData* p_frame) override {
        if (!isDecodable(p_frame, ZYR_MODULE_WORD, __PRETTY_FUNCTION__)) {
            return nullptr;
        }
        const Ref<IImage> image = Ref<IImage>::adopt(createPicture(*p_frame));
        if (!image || !decodePicture(*p_frame->getPackedData(), *image)) {
            ZYR_LOG_WARN("Unable to decode a packet of %ux%u", p_frame->getWidth(), p_frame->getHeight());
            this->forget();
            return nullptr;
        }
        return createFrame(*p_frame, *image);
    }
    IFrameDecoder* getDecoder() const override { return this->m_codec.get(); }
};

} // namespace zyr
