/// What the fuzzers share. Each defines LLVMFuzzerTestOneInput: with the "fuzz" preset libFuzzer feeds it, in every
/// other build zyr_fuzz_replay.cpp gives it the files of its corpus once, as a test.
#pragma once

#include "host/zyr_framework.h"

#include <cstddef>
#include <cstdint>

/// Looks at one input. Gives 0; what must not happen ends the process.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* p_data, size_t p_size);

namespace zyr_fuzz {

/// Ends the process, loudly, when what must hold does not.
void require(bool p_holds, const char* p_what);

/// The framework, started at the first call; that call decides how much of it. Only errors are logged, into a
/// directory of the run's own.
zyr::host::Framework& getFramework(bool p_coreOnly);

} // namespace zyr_fuzz
