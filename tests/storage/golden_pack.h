/// Many small saved files in one: for each a line with its name and size, its bytes, and a line end.
///
///     class/ListOfObjects 264
///     ...
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace zyr::test {

using GoldenPack = std::vector<std::pair<std::string, std::string>>;

/// The pack of a format among the test data; empty where it can't be read.
GoldenPack readGoldenPack(const std::string& p_format);
std::string joinPack(const GoldenPack& p_pack);

} // namespace zyr::test
