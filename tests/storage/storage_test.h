/// A host with the core module that saves to memory and loads back.
#pragma once

#include "core_module/core_module_test.h"
#include "storage/stored_sample.h"
#include "support/log_capture.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/storage/zyr_load_save.h"

namespace zyr {

inline const char* const c_formats[] = {"raw", "zbf", "xml", "json"};

/// The samples' own classes are known.
class SampleTest : public CoreModuleUpTest {
protected:
    void SetUp() override {
        CoreModuleUpTest::SetUp();
        const IgnoreLeaks ignoreLeaks; // Class names are never destroyed.
        test::registerSampleClasses();
    }

    /// Empty on failure. Files of their own are not written.
    static std::string save(IObject* p_object, const std::string& p_format) {
        Array<unsigned char> data;
        data.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE);
        return zyr_saveToData(p_object, data, p_format.c_str(), 0, "")
                   ? std::string(reinterpret_cast<const char*>(data.getData()), data.getSize())
                   : std::string();
    }
    /// The bytes lie in a block of their own size, so that a byte beyond is seen by the address sanitizer.
    static Ref<IObject> load(const std::string& p_bytes, const std::string& p_format,
                             const std::string& p_directory = "") {
        Array<unsigned char> data;
        data.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, 1);
        data.pushBackRange(p_bytes.data(), p_bytes.size());
        return Ref<IObject>::adopt(zyr_loadFromData(data, p_format.c_str(), p_directory.c_str()));
    }
};

} // namespace zyr
