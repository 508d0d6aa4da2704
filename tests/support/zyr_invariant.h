/// Broken invariants end the process with status 0 after a line on the standard output, where death tests don't look.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

/// The code must end the process with status 0 and print a line that matches the pattern.
#define ZYR_EXPECT_INVARIANT(code, pattern)                                                                            \
    EXPECT_EXIT(                                                                                                       \
        {                                                                                                              \
            dup2(STDERR_FILENO, STDOUT_FILENO);                                                                        \
            code;                                                                                                      \
        },                                                                                                             \
        testing::ExitedWithCode(0), pattern)
