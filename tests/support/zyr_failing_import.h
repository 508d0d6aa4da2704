/// One function that a loaded module, or the program itself, takes from another library: made to fail by count.
///
///     FailingImport none("zyr_core.so", "X509_new", 0);
///     EXPECT_FALSE(handler->generateSelfSigned(...));
///     EXPECT_TRUE(none.hasFailed());
///
/// The entry through which that module calls the function is exchanged while this lives; other modules are not
/// concerned. For functions of up to ten whole numbers and pointers that give one of these or nothing. At most one
/// lives at a time. A module that the sanitizers' runtime is linked into calls some functions of the C library within
/// itself.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zyr::test {

class FailingImport {
public:
    /// The end of the module's file name, or "" for the program; the result and the errno in place of a call; behind
    /// how many calls that pass, and how many calls in all. The test fails when the module has no such entry.
    FailingImport(const std::string& p_module, const char* p_function, intptr_t p_result, int p_error = 0,
                  int p_passing = 0, int p_failing = 1);
    ~FailingImport();
    FailingImport(const FailingImport&) = delete;
    FailingImport& operator=(const FailingImport&) = delete;

    /// Whether a call failed.
    bool hasFailed() const;

private:
    std::vector<void**> m_entries;
    std::vector<void*> m_before;
};

/// Descriptors of this process that are open.
size_t countDescriptors();

} // namespace zyr::test
