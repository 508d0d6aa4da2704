// The samples of the documents, each with the names that it takes for granted. That they compile is the test.

#include "picture/zyr_picture.h"
#include "zyr_common/zyr_common.h"

#include <cstring>
#include <poll.h>

// Samples name things to show that they are there.
#pragma GCC diagnostic ignored "-Wunused-variable"
// The samples' own words are those of a reader's program.
// NOLINTBEGIN(readability-identifier-naming)
namespace zyr {

namespace {

namespace variables {
#include "variables_1.inl"
#include "variables_2.inl"
#include "variables_3.inl"
} // namespace variables

void show(uint32_t, const String&) {}

[[maybe_unused]] void readDocument() {
#include "documents_1.inl"
    (void)bytes;
}

[[maybe_unused]] void fillMap(IObject* object) {
#include "object-containers_1.inl"
    (void)first;
}

[[maybe_unused]] void launch() {
#include "processes_1.inl"
}

[[maybe_unused]] void packResource(IResource* resource) {
#include "resources_1.inl"
}

[[maybe_unused]] void readSettings(const String& commandLine) {
#include "settings_1.inl"
    handler->release();
}

int millisecondsUntil(uint64_t) {
    return 0;
}

[[maybe_unused]] void drive(Socket* socket, const TransportState& state, ITransport* transport) {
#include "transports_1.inl"
}

// What they define is used here, or it would be told as unused.
[[maybe_unused]] void useVariables(IObject* p_object, const VariableDescriptor& p_descriptor,
                                   ObjectGUIDReference& p_reference) {
    (void)variables::setNumber(p_object, p_descriptor, 0);
    (void)variables::getLines(p_object);
    variables::resolve(p_reference, p_object);
}

} // namespace

} // namespace zyr
// NOLINTEND(readability-identifier-naming)
