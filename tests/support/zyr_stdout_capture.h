/// What a piece of code prints, through the C library's streams or otherwise.
#pragma once

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

namespace zyr {

template <typename Code> std::string captureStdout(Code p_code) {
    fflush(stdout);
    testing::internal::CaptureStdout();
    p_code();
    fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

template <typename Code> std::string captureStderr(Code p_code) {
    fflush(stderr);
    testing::internal::CaptureStderr();
    p_code();
    fflush(stderr);
    return testing::internal::GetCapturedStderr();
}

} // namespace zyr
