#include "zyr_common/process/zyr_command_vector.h"

#include <cstring>

namespace zyr {

CommandVector::CommandVector(const String& p_directory, const String& p_commandLine, const List<String>* p_arguments)
    : m_path(p_directory + p_commandLine), m_commandLine(p_commandLine) {
    if (p_arguments != nullptr) {
        for (const String& argument : *p_arguments) {
            m_commandLine += " ";
            m_commandLine += argument;
        }
    }
    size_t count = 0;
    char* rest = nullptr;
    char* token = strtok_r(m_commandLine.getData(), " ", &rest);
    while (token != nullptr && count < CAPACITY - 1) {
        m_arguments[count++] = token;
        token = strtok_r(nullptr, " ", &rest);
    }
    m_arguments[count] = nullptr;
}

} // namespace zyr
