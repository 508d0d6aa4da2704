#include "host/zyr_negotiation.h"

namespace zyr::host {

namespace {

bool isRestrictedAway(const Choice& p_choice, const FrameCodecProposal& p_proposal,
                      const FrameCodecRequest& p_request) {
    const bool offeredHardware = !toText(p_proposal.hardwareDeviceName).empty();
    const bool wantedHardware = !toText(p_request.hardwareDeviceName).empty();
    if (!p_choice.m_codec.empty() && toText(p_proposal.codecName) != p_choice.m_codec) {
        return true;
    }
    if (!p_choice.m_encoder.empty() && toText(p_proposal.codecImplementation) != p_choice.m_encoder) {
        return true;
    }
    if (!p_choice.m_decoder.empty() && toText(p_request.codecImplementation) != p_choice.m_decoder) {
        return true;
    }
    if (p_choice.m_require == "hw") {
        return !offeredHardware || !wantedHardware;
    }
    return p_choice.m_require == "sw" && (offeredHardware || wantedHardware);
}

std::string nameOf(const FrameCodecProposal& p_proposal) {
    const std::string hardware = toText(p_proposal.hardwareDeviceName);
    return "encoder " + toText(p_proposal.codecImplementation) + (hardware.empty() ? "" : " (" + hardware + ")");
}

std::string nameOf(const FrameCodecRequest& p_request) {
    const std::string hardware = toText(p_request.hardwareDeviceName);
    return "decoder " + toText(p_request.codecImplementation) + (hardware.empty() ? "" : " (" + hardware + ")");
}

} // namespace

Market openMarket(Framework& p_framework) {
    Market market;
    market.m_encoders = p_framework.createEncoders();
    market.m_decoders = p_framework.createDecoders();
    for (size_t i = 0; i < market.m_encoders.size(); i++) {
        List<FrameCodecProposal*> proposals;
        market.m_encoders[i]->getCodecProposals(proposals);
        for (List<FrameCodecProposal*>::iterator it = proposals.begin(); it != proposals.end(); ++it) {
            market.m_offers.push_back(Offer{i, Ref<FrameCodecProposal>::adopt(*it)});
        }
    }
    for (size_t i = 0; i < market.m_decoders.size(); i++) {
        List<FrameCodecRequest*> requests;
        market.m_decoders[i]->getCodecRequests(requests);
        for (List<FrameCodecRequest*>::iterator it = requests.begin(); it != requests.end(); ++it) {
            market.m_wishes.push_back(Wish{i, Ref<FrameCodecRequest>::adopt(*it)});
        }
    }
    return market;
}

std::string explainMismatch(const FrameCodecProposal& p_proposal, const FrameCodecRequest& p_request) {
    const CodecMismatch mismatch = p_proposal.findMismatch(p_request);
    const std::string feature = mismatch.m_feature;
    switch (mismatch.m_kind) {
    case CodecMismatch::ANOTHER_CODEC:
        return "another codec";
    case CodecMismatch::ENCODER_INSISTS:
        return "the encoder insists on " + feature + ", which the decoder does not mention";
    case CodecMismatch::DECODER_INSISTS:
        return "the decoder insists on " + feature + ", which the encoder does not offer";
    case CodecMismatch::NO_COMMON_YUV:
        return "no common YUV " + feature;
    case CodecMismatch::NO_COMMON:
        return "no common " + feature;
    case CodecMismatch::NOTHING:
        break;
    }
    return "";
}

std::vector<std::unique_ptr<Match>> judge(const Market& p_market, const Choice& p_choice,
                                          std::vector<std::string>& p_log, std::vector<std::string>& p_notes) {
    std::vector<std::unique_ptr<Match>> matches;
    for (const Offer& offer : p_market.m_offers) {
        for (const Wish& wish : p_market.m_wishes) {
            const FrameCodecProposal& proposal = *offer.m_proposal;
            const FrameCodecRequest& request = *wish.m_request;
            if (proposal.codecName != request.codecName) {
                continue;
            }
            const std::string pair =
                toText(proposal.codecName) + ": " + nameOf(proposal) + " with " + nameOf(request) + ": ";
            if (isRestrictedAway(p_choice, proposal, request)) {
                p_log.push_back(pair + "left out by the options");
                continue;
            }
            auto match = std::make_unique<Match>(Match{&offer, &wish, {}, {}});
            bool agreed = proposal.matchWithCodecRequest(request, match->m_info);
            if (!agreed && p_choice.m_require == "hw" && zyr_isRequestMandatory(request.variableQuality) &&
                proposal.variableQuality == 0) {
                FrameCodecRequest relaxed(request);
                relaxed.variableQuality = RequestTypeEnum(1);
                match = std::make_unique<Match>(Match{&offer, &wish, {}, {}});
                agreed = proposal.matchWithCodecRequest(relaxed, match->m_info);
                if (agreed) {
                    p_notes.push_back(pair + "the wish for variable quality was dropped, as hardware was asked for");
                }
            }
            if (!agreed) {
                p_log.push_back(pair + "refused, " + explainMismatch(proposal, request));
                continue;
            }
            match->m_decoderInfo = match->m_info;
            match->m_decoderInfo.codecImplementation = request.codecImplementation;
            match->m_decoderInfo.codecOptions = request.codecOptions;
            match->m_decoderInfo.hardwareDeviceName = request.hardwareDeviceName;
            const ColorSpaceEnum space =
                match->m_info.colorSpaces.isEmpty() ? ColorSpaceEnum(0) : match->m_info.colorSpaces.front();
            p_log.push_back(pair + "agreed, " + colorSpaceText(space) + ", rating " + ratingText(match->m_info.rating));
            matches.push_back(std::move(match));
        }
    }
    return matches;
}

Match* chooseMatch(const std::vector<std::unique_ptr<Match>>& p_matches) {
    Match* best = nullptr;
    for (const std::unique_ptr<Match>& match : p_matches) {
        const bool isOfAnother = best == nullptr || match->m_info.codecName != best->m_info.codecName;
        if (best == nullptr || (isOfAnother ? best->m_info.lossless && !match->m_info.lossless
                                            : match->m_info.rating > best->m_info.rating)) {
            best = match.get();
        }
    }
    return best;
}

bool preferLimitedRange(Match& p_match) {
    bool agreed = true;
    for (FrameCodecInfo* info : {&p_match.m_info, &p_match.m_decoderInfo}) {
        agreed = agreed && info->colorSpaces.remove(ZYR_COLOR_SPACE_BT_601) &&
                 info->colorSpaces.pushFront(ZYR_COLOR_SPACE_BT_601, nullptr);
    }
    return agreed;
}

} // namespace zyr::host
