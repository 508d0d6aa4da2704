// A plug-in module with its own copy of the library and one class on top of a facade.
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/object/zyr_object_class.h"

namespace zyr {

class FakeFormat : public ObjectClass<FakeFormat, WDataFormatInfo> {
public:
    static constexpr const char* c_className = "FakeFormat";
    static constexpr const char* c_classGUIDText = "60000000-0000-4000-8000-00000000c1a5";

    FakeFormat() {
        initObjectInterface();
        init_This();
    }
    ~FakeFormat() override { release_This(); }
    void init_This() { m_prefix = "fake:"; }
    void release_This() {}
    void copy_This(const FakeFormat* p_src) { m_prefix = p_src->m_prefix; }
    void setFormatName(const String& p_name) override { ObjectClass::setFormatName(m_prefix + p_name); }

private:
    String m_prefix;
};

} // namespace zyr

extern "C" {

ZYR_API const char* zyr_plugin_getName() {
    return "class";
}
ZYR_API uint64_t zyr_plugin_getVersion() {
    return 0x10000050000;
}
ZYR_API const char* zyr_plugin_getLongName() {
    return "A fake with a class";
}
ZYR_API const char* zyr_plugin_getGUID() {
    return "60000000-0000-4000-8000-000000000c1a";
}
ZYR_API const char* zyr_plugin_getDescription() {
    return "";
}
ZYR_API const char* zyr_plugin_getNamespace() {
    return "FAKE";
}
ZYR_API const char* zyr_plugin_getDependenciesComponentModules() {
    return "common, core";
}
ZYR_API const char* zyr_plugin_getDependenciesPluginModules() {
    return "";
}
ZYR_API uint8_t zyr_plugin_initialize(void* p_applicationData) {
    zyr::zyr_setApplicationData(static_cast<zyr::ApplicationData*>(p_applicationData));
    zyr::zyr_addObjectAllocator<zyr::FakeFormat>();
    return 1;
}
ZYR_API void zyr_plugin_deinitialize() {}
ZYR_API uint8_t zyr_plugin_isExtensionSupported(const char*, int*) {
    return 0;
}
ZYR_API void* zyr_plugin_getProcAddress(const char*) {
    return nullptr;
}
}
