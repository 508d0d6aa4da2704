// Stands in for the fuzzing engine: gives the fuzzer every file of the directories that are named, each once.
#include "zyr_fuzz.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

int main(int p_argc, char** p_argv) {
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < p_argc; i++) {
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(p_argv[i], error)) {
            files.push_back(entry.path());
        }
        if (error) {
            fprintf(stderr, "%s: %s\n", p_argv[i], error.message().c_str());
            return 2;
        }
    }
    std::sort(files.begin(), files.end());
    for (const std::filesystem::path& file : files) {
        std::ifstream stream(file, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        if (!stream) {
            fprintf(stderr, "%s cannot be read\n", file.c_str());
            return 1;
        }
        printf("%s\n", file.filename().c_str());
        fflush(stdout); // The last name printed is the one that failed.
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    }
    if (files.empty()) {
        fprintf(stderr, "no files to replay\n");
        return 2;
    }
    return 0;
}
