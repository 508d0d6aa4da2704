#include "host/zyr_guarded_codecs.h"

#include "host/zyr_plugin_guard.h"
#include "host/zyr_standard_output.h"

#include <cstdio>
#include <dlfcn.h>
#include <filesystem>

namespace zyr::host {

namespace {

std::string findFileOfClass(const IObject& p_object) {
    // An object begins with the address of its class's table of operations, which lies in the module.
    const void* table = *reinterpret_cast<const void* const*>(&p_object);
    Dl_info info{};
    return dladdr(table, &info) != 0 && info.dli_fname != nullptr ? info.dli_fname : "";
}

/// What all guarded objects know of the plug-in.
class GuardedObject {
public:
    explicit GuardedObject(const IObject& p_object)
        : m_file(findFileOfClass(p_object)),
          m_plugin(std::filesystem::path(m_file).filename()),
          m_class(toText(p_object.getClassName())) {}

    const std::string& getFile() const { return m_file; }

protected:
    /// Makes a call and gives its result.
    template <typename Work> auto guard(const char* p_call, uint64_t p_frame, Work&& p_work) {
        const PluginCall call = describeCall(p_call, p_frame);
        decltype(p_work()) result{};
        try {
            callPlugin(call, [&] { result = p_work(); });
        } catch (const PluginError&) {
            m_isBroken = true;
            throw;
        }
        return result;
    }

    PluginCall describeCall(const char* p_call, uint64_t p_frame = 0) const {
        return {m_plugin.c_str(), m_class.c_str(), p_call, p_frame};
    }

    [[noreturn]] void fail(const char* p_call, uint64_t p_frame, const std::string& p_reason) const {
        throw PluginError(describeFault(describeCall(p_call, p_frame), p_reason));
    }

    /// Releases the plug-in's object, but leaves one alone that has crashed: its state cannot be relied upon.
    template <class Interface> void letGo(Interface*& p_object) const {
        if (m_isBroken) {
            p_object = zyr_createInterfaceObject<Interface>();
        }
    }

    /// Hands good records on, and tells of the others.
    template <class Record, typename Check>
    void takeRecords(const char* p_call, List<Record*>& p_from, List<Record*>& p_to, Check&& p_check) const {
        for (Record* record : p_from) {
            const std::string reason = p_check(record);
            if (reason.empty()) {
                p_to.pushBack(record);
                continue;
            }
            fprintf(stderr, "zyr-host: %s\n", describeFault(describeCall(p_call), reason).c_str());
            if (record != nullptr) {
                record->release();
            }
        }
    }

private:
    const std::string m_file;
    const std::string m_plugin;
    const std::string m_class;
    bool m_isBroken = false;
};

class GuardedEncoderContext : public WFrameEncoderContext, public GuardedObject {
public:
    explicit GuardedEncoderContext(IFrameEncoderContext* p_context) : GuardedObject(*p_context) {
        m_interfaceObject = p_context;
    }
    ~GuardedEncoderContext() override { letGo(m_interfaceObject); }

    IPackedFrameData* encode(IUnpackedFrameData* p_frame) override {
        const uint64_t frame = ++m_frame;
        IPackedFrameData* packed = guard("encode", frame, [&] { return m_interfaceObject->encode(p_frame); });
        if (packed != nullptr) {
            const std::string reason = checkPackedFrame(packed, p_frame->getWidth(), p_frame->getHeight());
            if (!reason.empty()) {
                packed->release();
                fail("encode", frame, reason);
            }
        }
        return packed;
    }
    bool_t setQuality(uint8_t p_quality) override {
        return guard("setQuality", 0, [&] { return m_interfaceObject->setQuality(p_quality); });
    }

private:
    uint64_t m_frame = 0;
};

class GuardedEncoder : public WFrameEncoder, public GuardedObject {
public:
    explicit GuardedEncoder(IFrameEncoder* p_encoder) : GuardedObject(*p_encoder) { m_interfaceObject = p_encoder; }
    ~GuardedEncoder() override { letGo(m_interfaceObject); }

    void getCodecProposals(List<FrameCodecProposal*>& p_proposals) override {
        List<FrameCodecProposal*> proposals;
        guard("getCodecProposals", 0, [&] {
            m_interfaceObject->getCodecProposals(proposals);
            return true;
        });
        takeRecords("getCodecProposals", proposals, p_proposals, checkProposal);
    }
    bool_t initialize(const FrameCodecInfo& p_codecInfo) override {
        return guard("initialize", 0, [&] { return m_interfaceObject->initialize(p_codecInfo); });
    }
    IFrameEncoderContext* createFrameEncoderContext() override {
        const char* call = "createFrameEncoderContext";
        IFrameEncoderContext* context = guard(call, 0, [&] { return m_interfaceObject->createFrameEncoderContext(); });
        if (context == nullptr) {
            fail(call, 0, "no context");
        }
        return new GuardedEncoderContext(context);
    }
};

class GuardedDecoderContext : public WFrameDecoderContext, public GuardedObject {
public:
    explicit GuardedDecoderContext(IFrameDecoderContext* p_context) : GuardedObject(*p_context) {
        m_interfaceObject = p_context;
    }
    ~GuardedDecoderContext() override { letGo(m_interfaceObject); }

    IUnpackedFrameData* decode(IPackedFrameData* p_frame) override {
        const uint64_t frame = ++m_frame;
        IUnpackedFrameData* unpacked = guard("decode", frame, [&] { return m_interfaceObject->decode(p_frame); });
        if (unpacked != nullptr) {
            const std::string reason = checkUnpackedFrame(unpacked, p_frame->getWidth(), p_frame->getHeight());
            if (!reason.empty()) {
                unpacked->release();
                fail("decode", frame, reason);
            }
        }
        return unpacked;
    }

private:
    uint64_t m_frame = 0;
};

class GuardedDecoder : public WFrameDecoder, public GuardedObject {
public:
    explicit GuardedDecoder(IFrameDecoder* p_decoder) : GuardedObject(*p_decoder) { m_interfaceObject = p_decoder; }
    ~GuardedDecoder() override { letGo(m_interfaceObject); }

    void getCodecRequests(List<FrameCodecRequest*>& p_requests) override {
        List<FrameCodecRequest*> requests;
        guard("getCodecRequests", 0, [&] {
            m_interfaceObject->getCodecRequests(requests);
            return true;
        });
        takeRecords("getCodecRequests", requests, p_requests, checkRequest);
    }
    bool_t initialize(const FrameCodecInfo& p_codecInfo) override {
        return guard("initialize", 0, [&] { return m_interfaceObject->initialize(p_codecInfo); });
    }
    IFrameDecoderContext* createFrameDecoderContext() override {
        const char* call = "createFrameDecoderContext";
        IFrameDecoderContext* context = guard(call, 0, [&] { return m_interfaceObject->createFrameDecoderContext(); });
        if (context == nullptr) {
            fail(call, 0, "no context");
        }
        return new GuardedDecoderContext(context);
    }
};

} // namespace

Ref<IFrameEncoder> guardEncoder(IFrameEncoder* p_encoder) {
    return Ref<IFrameEncoder>::adopt(new GuardedEncoder(p_encoder));
}

Ref<IFrameDecoder> guardDecoder(IFrameDecoder* p_decoder) {
    return Ref<IFrameDecoder>::adopt(new GuardedDecoder(p_decoder));
}

std::string findModuleFile(const IObject& p_object) {
    const GuardedObject* guarded = dynamic_cast<const GuardedObject*>(&p_object);
    return guarded != nullptr ? guarded->getFile() : findFileOfClass(p_object);
}

} // namespace zyr::host
