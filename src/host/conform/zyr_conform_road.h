/// The road of frames through a plug-in under test.
#pragma once

#include "host/conform/zyr_conform_bench.h"
#include "host/zyr_negotiation.h"

namespace zyr::host {

/// What the plug-in's codecs offer and ask for here, and the pairs that agree.
class ConformMarket {
public:
    /// Throws ConformFailure for records that no host can use.
    explicit ConformMarket(PluginBench& p_bench);

    PluginBench& getBench() { return m_bench; }
    Market& getMarket() { return m_market; }
    /// Pairs in which each offer and each wish takes part that has a partner. Throws ConformSkip when nothing agrees.
    std::vector<Match*> listPairs();

private:
    PluginBench& m_bench;
    Market m_market;
    std::vector<std::unique_ptr<Match>> m_matches;
};

/// "vp9: libvpx-vp9 to vp9"
std::string nameOf(const Match& p_match);

/// A picture in B, G, R, A that can be told from others: a gradient with a box in it, moved by its number.
Ref<IUnpackedFrameData> makePicture(uint32_t p_width, uint32_t p_height, unsigned p_number);

/// An encoder context and a decoder context of one pair. All checks throw ConformFailure.
class ConformRoad {
public:
    /// Initializes both sides and makes the contexts.
    ConformRoad(ConformMarket& p_market, Match& p_match);
    ConformRoad(const ConformRoad&) = delete;
    ConformRoad& operator=(const ConformRoad&) = delete;
    ~ConformRoad() { close(); }

    /// Gives both contexts back, and takes new ones. The next packet is a key frame.
    void reopen();
    void close();

    /// One packet with bytes, of the picture's size.
    Ref<IPackedFrameData> encode(IUnpackedFrameData& p_picture);
    /// One picture of the packet's size, in R, G, B, A, with its number.
    Ref<IUnpackedFrameData> decode(IPackedFrameData& p_packet);
    /// Encodes, decodes and compares.
    void send(uint32_t p_width, uint32_t p_height, unsigned p_number);

    /// The bare calls, for what may fail. What they give is checked by the caller.
    Ref<IPackedFrameData> tryEncode(IUnpackedFrameData* p_picture);
    Ref<IUnpackedFrameData> tryDecode(IPackedFrameData* p_packet);
    /// The same checks as of encode() and decode(), on what came of a try.
    void checkPacket(const IPackedFrameData& p_packet, uint32_t p_width, uint32_t p_height) const;
    void checkPicture(const IUnpackedFrameData& p_picture, uint32_t p_width, uint32_t p_height) const;
    /// Fails unless the decoded picture looks like what was encoded; without loss they are equal.
    void compare(const IUnpackedFrameData& p_source, const IUnpackedFrameData& p_decoded) const;

    IFrameEncoder& getEncoder() { return m_encoder; }
    IFrameDecoder& getDecoder() { return m_decoder; }
    IFrameEncoderContext& getEncoderContext() { return *m_encoderContext; }
    IFrameDecoderContext& getDecoderContext() { return *m_decoderContext; }
    PluginBench& getBench() { return m_bench; }
    const std::string& getName() const { return m_name; }
    [[noreturn]] void fail(const std::string& p_reason) const { throw ConformFailure(m_name + ": " + p_reason); }

private:
    PluginBench& m_bench;
    Match& m_match;
    IFrameEncoder& m_encoder;
    IFrameDecoder& m_decoder;
    std::string m_name;
    Ref<IFrameEncoderContext> m_encoderContext;
    Ref<IFrameDecoderContext> m_decoderContext;
    uint64_t m_encoded = 0;
    uint64_t m_decoded = 0;
};

} // namespace zyr::host
