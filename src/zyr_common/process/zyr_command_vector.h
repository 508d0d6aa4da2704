/// A command line cut at blanks, as the launchers without quoting pass it. Internal to the launchers.
#pragma once

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// The path of a program and its arguments, ready before a fork. Made once and not copied: the vector points into it.
class CommandVector {
public:
    CommandVector(const String& p_directory, const String& p_commandLine, const List<String>* p_arguments);
    CommandVector(const CommandVector&) = delete;
    CommandVector& operator=(const CommandVector&) = delete;

    const char* getPath() const { return m_path.getData(); }
    char* const* getArguments() const { return m_arguments; }

private:
    /// The null behind the last argument counted. Further arguments are dropped.
    static constexpr size_t CAPACITY = 32;

    String m_path;
    String m_commandLine;
    char* m_arguments[CAPACITY];
};

} // namespace zyr
