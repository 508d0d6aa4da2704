/// Objects of every kind that can be stored, made in the same way on every run.
#pragma once

#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_object.h"

#include <functional>
#include <string>
#include <vector>

namespace zyr::test {

struct StoredSample {
    /// "class/ListOfObjects", "filled/ListOfObjects", "record/Rect{float}"...
    std::string m_name;
    std::function<Ref<IObject>()> m_make;
    /// The class of the compression info with which the object is stored; null for none.
    const char* m_compression = nullptr;

    /// The object as it is stored.
    Ref<IObject> make() const;
};

/// Registers the classes of the samples that are the tests' own. Needs the core module.
void registerSampleClasses();

/// A new object of each class of the core module, in the order of its registration.
std::vector<StoredSample> makeDefaultObjects();
/// An object with values in every field, of each class that has fields.
std::vector<StoredSample> makeFilledObjects();
/// A holder of each record: filled, and where asked for, also new ones.
std::vector<StoredSample> makeRecords(bool p_withDefaults);
/// What is at the edges: numbers, texts, nested and shared elements, stand-ins.
std::vector<StoredSample> makeOddObjects();

/// Those that can be loaded for themselves, and stand in the golden files: one record of each template.
std::vector<StoredSample> makeGoldenSamples();
/// All of the above.
std::vector<StoredSample> makeAllSamples();

} // namespace zyr::test
