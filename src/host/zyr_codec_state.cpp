#include "host/zyr_codec_state.h"

#include "host/zyr_encoder_options.h"
#include "host/zyr_object_file.h"
#include "host/zyr_run_error.h"

#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/serialization/zyr_record_items.h"

namespace zyr::host {

namespace {

template <typename Field>
bool_t writeField(ISerializer* p_serializer, const char* p_key, Field& p_field, bool_t p_firstPass, bool_t p_headerPass,
                  bool_t& p_result) {
    const String key(p_key);
    if (p_headerPass) {
        return RecordFieldIO<Field>::declare(p_serializer, key, p_field, p_result);
    }
    return !p_serializer->isBinaryFormat() && p_firstPass
               ? 1
               : RecordFieldIO<Field>::write(p_serializer, key, p_field, 0, nullptr);
}

template <typename Field> bool_t readField(IDeserializer* p_deserializer, const char* p_key, Field& p_field) {
    uint32_t cache = 0;
    return RecordFieldIO<Field>::read(p_deserializer, String(p_key), cache, p_field, nullptr);
}

void save(Framework& p_framework, IObject& p_object, const std::string& p_path) {
    std::vector<std::string> reasons;
    if (!saveObject(p_framework, p_object, p_path, "", reasons)) {
        throw RunError(p_path + ": " + (reasons.empty() ? "it cannot be written" : reasons.front()));
    }
}

/// The file's object, which is of the class. `p_absence` says what the file lacks otherwise. Throws RunError.
template <class Class> Ref<IObject> load(Framework& p_framework, const std::string& p_path, const char* p_absence) {
    registerCodecState();
    std::vector<std::string> reasons;
    const std::string format = chooseObjectFormat(p_path, readObjectFile(p_path), "");
    Ref<IObject> object = loadObject(p_framework, p_path, format, reasons);
    if (!object) {
        throw RunError(reasons.empty() ? "it cannot be loaded" : reasons.front());
    }
    if (!object->findClassGUID(Class::getStaticClassGUID())) {
        throw RunError(std::string("it holds ") + p_absence + ", but " + toText(object->getClassName()));
    }
    return object;
}

std::string nameOf(const FrameCodecInfo& p_info) {
    const std::string hardware = toText(p_info.hardwareDeviceName);
    return toText(p_info.codecImplementation) + " (" + (hardware.empty() ? "software" : hardware) + ") for " +
           toText(p_info.codecName);
}

template <typename Record> bool isFor(const Record& p_record, const FrameCodecInfo& p_info) {
    return p_record.codecName == p_info.codecName && p_record.codecImplementation == p_info.codecImplementation &&
           p_record.hardwareDeviceName == p_info.hardwareDeviceName;
}

/// Whether each value of the one set is in the other.
template <typename Enumeration> bool isWithin(const HashSet<Enumeration>& p_part, const HashSet<Enumeration>& p_whole) {
    for (auto it = p_part.beginConst(); it != p_part.endConst(); ++it) {
        if (!p_whole.check(it->m_first)) {
            return false;
        }
    }
    return true;
}

/// The first thing in a record that is not agreed here; null where all of it is.
const char* findExcess(const FrameCodecInfo& p_info, const FrameCodecInfo& p_here) {
    return !isWithin(p_info.planesModels, p_here.planesModels)     ? "the layouts of planes"
           : !isWithin(p_info.colorSpaces, p_here.colorSpaces)     ? "the colour spaces"
           : !isWithin(p_info.codecProfiles, p_here.codecProfiles) ? "the profiles"
           : !isWithin(p_info.compressions, p_here.compressions)   ? "the compressions"
           : p_info.lossless > p_here.lossless                     ? "coding without loss"
           : p_info.variableQuality > p_here.variableQuality       ? "a variable quality"
                                                                   : nullptr;
}

/// Why a pair of this machine cannot do what was agreed on; empty where it can.
std::string explainDisagreement(const FrameCodecInfo& p_info, const FrameCodecProposal& p_proposal,
                                const FrameCodecRequest& p_request) {
    FrameCodecRequest request(p_request);
    if (!p_info.variableQuality && zyr_isRequestMandatory(request.variableQuality)) {
        request.variableQuality = ZYR_REQUEST_OPTIONAL; // The wish was dropped when the record was agreed on.
    }
    FrameCodecInfo here;
    if (!p_proposal.matchWithCodecRequest(request, here)) {
        return "its encoder and decoder do not go together here: " + explainMismatch(p_proposal, request);
    }
    const char* const excess = findExcess(p_info, here);
    return excess != nullptr ? std::string("its encoder and decoder do not agree here on ") + excess : "";
}

} // namespace

template <class Class, typename First, typename Second>
bool_t CodecState<Class, First, Second>::readSerialized(IDeserializer* p_deserializer) {
    return this->readSerialized_This(p_deserializer) && readField(p_deserializer, Class::c_firstKey, m_first) &&
           readField(p_deserializer, Class::c_secondKey, m_second);
}

template <class Class, typename First, typename Second>
bool_t CodecState<Class, First, Second>::writePass(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                                   bool_t& p_result) {
    p_result = this->writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result) &&
               writeField(p_serializer, Class::c_firstKey, m_first, p_firstPass, p_headerPass, p_result) &&
               writeField(p_serializer, Class::c_secondKey, m_second, p_firstPass, p_headerPass, p_result);
    return p_result;
}

template <class Class, typename First, typename Second>
bool_t CodecState<Class, First, Second>::writeSerialized(ISerializer* p_serializer, bool_t p_headerPass,
                                                         bool_t& p_result) {
    const bool_t firstPass = !p_serializer->isBinaryFormat();
    return writePass(p_serializer, firstPass, p_headerPass, p_result) &&
           (!firstPass || writePass(p_serializer, 0, p_headerPass, p_result));
}

template class CodecState<CodecOffers, Array<FrameCodecProposal>, Array<FrameCodecRequest>>;
template class CodecState<CodecAgreement, FrameCodecInfo, FrameCodecInfo>;

void registerCodecState() {
    zyr_addObjectAllocator<CodecOffers>();
    zyr_addObjectAllocator<CodecAgreement>();
}

void saveCodecOffers(Framework& p_framework, const Market& p_market, const std::string& p_path) {
    const Ref<CodecOffers> offers = Ref<CodecOffers>::adopt(new CodecOffers);
    for (const Offer& offer : p_market.m_offers) {
        offers->m_first.pushBack(*offer.m_proposal);
    }
    for (const Wish& wish : p_market.m_wishes) {
        offers->m_second.pushBack(*wish.m_request);
    }
    save(p_framework, *offers, p_path);
}

Ref<CodecOffers> loadCodecOffers(Framework& p_framework, const std::string& p_path) {
    const Ref<IObject> object = load<CodecOffers>(p_framework, p_path, "no offers of codecs");
    return Ref<CodecOffers>::share(static_cast<CodecOffers*>(object.get()));
}

void saveCodecAgreement(Framework& p_framework, const Match& p_match, const std::string& p_path) {
    const Ref<CodecAgreement> agreement = Ref<CodecAgreement>::adopt(new CodecAgreement);
    agreement->m_first = p_match.m_info;
    agreement->m_second = p_match.m_decoderInfo;
    save(p_framework, *agreement, p_path);
}

std::unique_ptr<Match> loadCodecAgreement(Framework& p_framework, const Market& p_market, const std::string& p_path) {
    const auto object = load<CodecAgreement>(p_framework, p_path, "no agreed record");
    const auto& agreement = static_cast<const CodecAgreement&>(*object);
    if (!toText(agreement.m_first.codecOptions).empty() &&
        !EncoderOptions::isWellFormed(toText(agreement.m_first.codecOptions))) {
        throw RunError("its options are not of the form key=value,key=value");
    }
    std::string missing = "there is no encoder " + nameOf(agreement.m_first) + " here";
    std::string mismatch;
    for (const Offer& offer : p_market.m_offers) {
        if (!isFor(*offer.m_proposal, agreement.m_first)) {
            continue;
        }
        missing = "there is no decoder " + nameOf(agreement.m_second) + " here";
        for (const Wish& wish : p_market.m_wishes) {
            if (!isFor(*wish.m_request, agreement.m_second)) {
                continue;
            }
            mismatch = explainDisagreement(agreement.m_first, *offer.m_proposal, *wish.m_request);
            if (mismatch.empty()) {
                return std::make_unique<Match>(Match{&offer, &wish, agreement.m_first, agreement.m_second});
            }
        }
    }
    throw NotUsableError(mismatch.empty() ? missing : mismatch);
}

} // namespace zyr::host
