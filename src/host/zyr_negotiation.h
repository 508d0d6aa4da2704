/// Pairs what the encoders offer with what the decoders want, and explains the outcome.
#pragma once

#include "host/zyr_framework.h"

#include <string>
#include <vector>

namespace zyr::host {

struct Offer {
    size_t m_encoder; ///< Index of the encoder object.
    Ref<FrameCodecProposal> m_proposal;
};

struct Wish {
    size_t m_decoder; ///< Index of the decoder object.
    Ref<FrameCodecRequest> m_request;
};

/// What works on this machine.
struct Market {
    std::vector<Ref<IFrameEncoder>> m_encoders;
    std::vector<Ref<IFrameDecoder>> m_decoders;
    std::vector<Offer> m_offers;
    std::vector<Wish> m_wishes;
};

/// Creates all encoders and decoders and asks them what works. The first question to each opens real codecs and takes
/// a moment.
Market openMarket(Framework& p_framework);

/// The user's restrictions; empty texts restrict nothing.
struct Choice {
    std::string m_codec;
    std::string m_encoder;
    std::string m_decoder;
    std::string m_require; ///< "hw", "sw" or empty.
};

/// One agreed way of coding.
struct Match {
    const Offer* m_offer;
    const Wish* m_wish;
    FrameCodecInfo m_info;        ///< As agreed: what the encoder is initialized with.
    FrameCodecInfo m_decoderInfo; ///< The same with the decoder's own implementation, options and hardware.
};

/// Judges every pair of the market in list order. A pair that fails the user's restrictions is not tried. `p_log` takes
/// a line for each pair, and one for each request that was relaxed: with "hw" a request that insists on variable
/// quality is repeated without it, since hardware encoders have a fixed one.
std::vector<std::unique_ptr<Match>> judge(const Market& p_market, const Choice& p_choice,
                                          std::vector<std::string>& p_log, std::vector<std::string>& p_notes);

/// The match to use: among those of the first match's codec the best rated, and the earliest of equals. A codec that
/// works without loss, which few contents are made for, comes behind all others: it is for those who ask for it by
/// name. Null without matches.
Match* chooseMatch(const std::vector<std::unique_ptr<Match>>& p_matches);

/// Makes BT.601 of limited range the agreed colour space of both sides. False when it is not among those agreed.
bool preferLimitedRange(Match& p_match);

/// The first reason for which a proposal and a request don't go together; empty when they do.
std::string explainMismatch(const FrameCodecProposal& p_proposal, const FrameCodecRequest& p_request);

/// The agreed choice of a set of a record: its first element, or the value 0.
template <typename Enumeration> Enumeration firstOf(const HashSet<Enumeration>& p_set) {
    return p_set.isEmpty() ? Enumeration(0) : p_set.frontConst();
}

std::string ratingText(CodecRatingEnum p_rating);
std::string colorSpaceText(ColorSpaceEnum p_space);

} // namespace zyr::host
