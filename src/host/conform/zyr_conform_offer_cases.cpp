#include "host/conform/zyr_conform_road.h"
#include "host/zyr_encoder_options.h"
#include "zyr_common/object/zyr_object.h"

namespace zyr::host {

namespace {

/// What is not tested by checkProposal() and checkRequest(), which guard hosts against crashes only.
template <typename Record> std::string findFault(const Record& p_record) {
    const Record& r = p_record;
    const std::string name = "a record for " + toText(r.codecName);
    for (const bool_t flag :
         {r.planesModelYUV, r.planesModel, r.colorSpaceYUV, r.colorSpace, r.codecProfile, r.compression}) {
        if (flag > 1) {
            return name + " with a truth value of " + std::to_string(flag);
        }
    }
    const std::string options = toText(r.codecOptions);
    if (!options.empty() && !EncoderOptions::isWellFormed(options)) {
        return name + " with the options '" + options + "', which are not of the form key=value,key=value";
    }
    const bool yuvModel =
        r.planesModel420 || r.planesModel410 || r.planesModel411 || r.planesModel422 || r.planesModel444;
    const bool yuvSpace =
        r.colorSpaceBT601 || r.colorSpaceBT601FullRange || r.colorSpaceBT709 || r.colorSpaceBT709FullRange;
    if ((r.planesModelYUV && !yuvModel) || (r.planesModel && !yuvModel && !r.planesModelSingle)) {
        return name + " that insists on a model of planes and names none";
    }
    if ((r.colorSpaceYUV && !yuvSpace) || (r.colorSpace && !yuvSpace && !r.colorSpaceRGB)) {
        return name + " that insists on a colour space and names none";
    }
    if (r.codecProfile && !r.codecProfileBaseline && !r.codecProfileMain && !r.codecProfileHigh) {
        return name + " that insists on a profile and names none";
    }
    if (r.compression && !r.compressionRle && !r.compressionLz4 && !r.compressionZip) {
        return name + " that insists on a compression and names none";
    }
    return "";
}

/// Asks twice, and checks each record. `p_ask` appends to a list.
template <typename Record, typename Codec, typename Ask, typename Check>
size_t checkRecords(PluginBench& p_bench, Codec& p_codec, const char* p_call, Ask&& p_ask, Check&& p_check) {
    const std::string name = toText(p_codec.getClassName());
    List<Record*> records;
    const auto ask = [&] {
        p_bench.call(p_codec, p_call, [&] {
            p_ask(records);
            return 0;
        });
    };
    ask();
    const size_t count = records.getSize();
    for (const Record* record : records) {
        std::string reason = p_check(record);
        if (reason.empty()) {
            reason = findFault(*record);
        }
        require(reason.empty(), name + " hands out " + reason);
    }
    ask();
    require(records.getSize() == 2 * count, std::string(p_call) + " of " + name + " gives " + std::to_string(count) +
                                                " records at first and leaves " + std::to_string(records.getSize()) +
                                                " at its second call");
    for (Record* record : records) {
        record->release();
    }
    return count;
}

template <typename Interface> std::vector<Ref<IObject>> startWith(PluginBench& p_bench, const char* p_what) {
    p_bench.start();
    std::vector<Ref<IObject>> objects = p_bench.createAll(zyr_getInterfaceGUID<Interface>());
    if (objects.empty()) {
        throw ConformSkip(std::string("it has no ") + p_what);
    }
    return objects;
}

void checkProposals(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    for (const Ref<IObject>& object : startWith<IFrameEncoder>(bench, "encoder")) {
        IFrameEncoder& encoder = static_cast<IFrameEncoder&>(*object);
        checkRecords<FrameCodecProposal>(
            bench, encoder, "getCodecProposals",
            [&](List<FrameCodecProposal*>& p_list) { encoder.getCodecProposals(p_list); }, checkProposal);
    }
}

void checkRequests(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    for (const Ref<IObject>& object : startWith<IFrameDecoder>(bench, "decoder")) {
        IFrameDecoder& decoder = static_cast<IFrameDecoder&>(*object);
        checkRecords<FrameCodecRequest>(
            bench, decoder, "getCodecRequests",
            [&](List<FrameCodecRequest*>& p_list) { decoder.getCodecRequests(p_list); }, checkRequest);
    }
}

void checkAdapter(const ConformSubject& p_subject) {
    constexpr uint64_t ADAPTER = 0x1234567890abcdef;
    PluginBench bench(p_subject);
    for (const Ref<IObject>& object : startWith<IFrameEncoder>(bench, "encoder")) {
        IFrameEncoder& encoder = static_cast<IFrameEncoder&>(*object);
        encoder.setAdapterID(ADAPTER);
        require(encoder.getAdapterID() == ADAPTER, toText(encoder.getClassName()) + " forgets its adapter");
        List<FrameCodecProposal*> proposals;
        bench.call(encoder, "getCodecProposals", [&] {
            encoder.getCodecProposals(proposals);
            return 0;
        });
        for (FrameCodecProposal* proposal : proposals) {
            require(proposal->adapterID == ADAPTER,
                    "a proposal of " + toText(encoder.getClassName()) + " is for another adapter than the encoder");
            proposal->release();
        }
    }
}

template <typename Enumeration>
bool areEqual(const HashSet<Enumeration>& p_first, const HashSet<Enumeration>& p_second) {
    auto second = p_second.beginConst();
    for (auto first = p_first.beginConst(); first != p_first.endConst(); ++first, ++second) {
        if (second == p_second.endConst() || first->m_first != second->m_first) {
            return false;
        }
    }
    return second == p_second.endConst();
}

bool areEqual(const FrameCodecInfo& p_first, const FrameCodecInfo& p_second) {
    const FrameCodecInfo& a = p_first;
    const FrameCodecInfo& b = p_second;
    return a.codecName == b.codecName && a.codecImplementation == b.codecImplementation &&
           a.codecOptions == b.codecOptions && a.hardwareDeviceName == b.hardwareDeviceName && a.rating == b.rating &&
           a.adapterID == b.adapterID && areEqual(a.planesModels, b.planesModels) &&
           areEqual(a.colorSpaces, b.colorSpaces) && areEqual(a.codecProfiles, b.codecProfiles) &&
           areEqual(a.compressions, b.compressions) && a.variableQuality == b.variableQuality && a.video == b.video &&
           a.lossless == b.lossless && a.packedBlocks == b.packedBlocks && a.multiSlice == b.multiSlice;
}

template <typename Codec> void checkInfo(Codec& p_codec, const FrameCodecInfo& p_info) {
    const std::string name = toText(p_codec.getClassName());
    const FrameCodecInfo* held = p_codec.getCodecInfo();
    require(held != nullptr && areEqual(*held, p_info), name + " holds another record than the agreed one");
    require(p_codec.getCodecName() == p_info.codecName,
            name + " calls its codec '" + toText(p_codec.getCodecName()) + "'");
}

void checkNegotiation(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    ConformMarket market(bench);
    if (market.getMarket().m_offers.empty() || market.getMarket().m_wishes.empty()) {
        throw ConformSkip("it does not both encode and decode here");
    }
    for (Match* match : market.listPairs()) {
        ConformRoad road(market, *match);
        checkInfo(road.getEncoder(), match->m_info);
        checkInfo(road.getDecoder(), match->m_decoderInfo);
        FrameCodecRequest narrowed;
        require(match->m_wish->m_request->filterWithCodecInfo(match->m_info, narrowed),
                road.getName() + ": the request does not survive what was agreed on it");
        FrameCodecInfo foreign(match->m_info);
        foreign.codecName = "conform-no-such-codec";
        foreign.codecImplementation = "conform-no-such-implementation";
        require(!bench.call(road.getEncoder(), "initialize", [&] { return road.getEncoder().initialize(foreign); }),
                road.getName() + ": the encoder accepts a codec that it does not offer");
    }
}

} // namespace

std::vector<ConformCase> listOfferCases() {
    return {
        {"proposals",
         "Each proposal is a record of its own with whole texts and numbers in their ranges, and what it insists on "
         "can "
         "be met; asking again adds to the list and takes nothing away.",
         {"registration"},
         checkProposals},
        {"requests", "The same holds for the requests of a decoder.", {"registration"}, checkRequests},
        {"adapter",
         "An encoder keeps the adapter that it is told, and makes its proposals for it.",
         {"proposals"},
         checkAdapter},
        {"negotiation",
         "Both sides accept what was agreed and tell it again as it is, with the sets in their order; an encoder "
         "refuses a codec that it does not offer.",
         {"proposals", "requests"},
         checkNegotiation},
    };
}

} // namespace zyr::host
