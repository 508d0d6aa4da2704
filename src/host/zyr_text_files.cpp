#include "host/zyr_text_files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace zyr::host {

bool readText(const std::string& p_path, std::string& p_text) {
    FILE* file = p_path == "-" ? stdin : fopen(p_path.c_str(), "r");
    bool done = file != nullptr;
    if (done) {
        char buffer[65536];
        for (size_t count; (count = fread(buffer, 1, sizeof(buffer), file)) != 0;) {
            p_text.append(buffer, count);
        }
        done = ferror(file) == 0;
    }
    if (!done) {
        fprintf(stderr, "zyr-host: cannot read '%s': %s\n", p_path.c_str(), strerror(errno));
    }
    if (file != nullptr && file != stdin) {
        fclose(file);
    }
    return done;
}

bool writeText(const std::string& p_path, const std::string& p_text) {
    FILE* file = fopen(p_path.c_str(), "w");
    bool done = file != nullptr && fwrite(p_text.data(), 1, p_text.size(), file) == p_text.size();
    int error = errno;
    if (file != nullptr && fclose(file) != 0 && done) {
        error = errno;
        done = false;
    }
    if (!done) {
        fprintf(stderr, "zyr-host: cannot write '%s': %s\n", p_path.c_str(), strerror(error));
    }
    return done;
}

} // namespace zyr::host
