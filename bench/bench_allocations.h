/// Counts the blocks that the modules take from the C library's heap, by the module whose code asked.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zyr::bench {

/// Looks up where the loaded modules lie. Call it once after they have been loaded, before counting.
void watchModules(const std::vector<std::string>& p_fileNames);

/// The blocks taken so far by each watched module, in the order of their names. FFmpeg's own are not among them.
std::vector<size_t> countAllocations();

} // namespace zyr::bench
