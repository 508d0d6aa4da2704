/// What the host keeps of codecs in files of the framework's formats: what they offered on a machine, and what an
/// encoder and a decoder agreed on.
#pragma once

#include "host/zyr_negotiation.h"

#include "zyr_common/object/zyr_object_class.h"

#include <string>

namespace zyr::host {

/// The shape of both: an object with two fields, each of one type.
template <class Class, typename First, typename Second> class CodecState : public ObjectClass<Class, WObject> {
public:
    CodecState() { this->initObjectInterface(); }

    First m_first;
    Second m_second;

    void init_This() {}
    void release_This() {
        m_first = First();
        m_second = Second();
    }
    void copy_This(const Class* p_src) {
        m_first = p_src->m_first;
        m_second = p_src->m_second;
    }
    bool_t readSerialized(IDeserializer* p_deserializer) override;
    bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) override;

private:
    bool_t writePass(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result);
};

/// First what the encoders offer, then what the decoders ask for, in their order.
class CodecOffers : public CodecState<CodecOffers, Array<FrameCodecProposal>, Array<FrameCodecRequest>> {
public:
    static constexpr const char* c_className = "CodecOffers";
    static constexpr const char* c_classGUIDText = "fd2814bf-21bf-4c6f-a305-449b3574c04d";
    static constexpr const char* c_firstKey = "proposals";
    static constexpr const char* c_secondKey = "requests";
};

/// First what an encoder is initialized with, then the same for the decoder.
class CodecAgreement : public CodecState<CodecAgreement, FrameCodecInfo, FrameCodecInfo> {
public:
    static constexpr const char* c_className = "CodecAgreement";
    static constexpr const char* c_classGUIDText = "4bfdf0f1-ee68-43fb-b29a-7e0f4ed151e3";
    static constexpr const char* c_firstKey = "encoderInfo";
    static constexpr const char* c_secondKey = "decoderInfo";
};

/// Makes both classes known to the framework, which must be up, so that they can be loaded.
void registerCodecState();

/// Each writes a file in the format of its extension. Throw RunError that names the file and the reason.
void saveCodecOffers(Framework& p_framework, const Market& p_market, const std::string& p_path);
void saveCodecAgreement(Framework& p_framework, const Match& p_match, const std::string& p_path);

/// Loads what codecs offered where the file was saved. Throws RunError for a file without it.
Ref<CodecOffers> loadCodecOffers(Framework& p_framework, const std::string& p_path);

/// An agreed record cannot be used on this machine. The text tells why.
class NotUsableError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Loads what was agreed, and finds the encoder and decoder for it on this machine. Throws RunError for a file without
/// such a record, and NotUsableError where this machine does not have what it names.
std::unique_ptr<Match> loadCodecAgreement(Framework& p_framework, const Market& p_market, const std::string& p_path);

} // namespace zyr::host
