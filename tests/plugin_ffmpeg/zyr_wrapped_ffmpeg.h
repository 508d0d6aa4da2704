/// FFmpeg's functions as the plug-in calls them in a program that is linked with --wrap: each can be made to fail.
#pragma once

#include <cstdint>
#include <string>

namespace zyr_test {

/// Lets the n-th next call of a function fail, the first being 1, in the way in which that function tells failure.
void failAtCall(const std::string& p_function, int p_call = 1);

/// All functions work again.
void failAtNoCall();

/// Added to the time stamp of each packet that avcodec_receive_packet gives.
void shiftPacketTimes(int64_t p_shift);

/// What the last call of sws_setColorspaceDetails was told.
struct ColourDetails {
    bool isSourceFull = false;
    bool isTargetFull = false;
    const int* coefficients = nullptr;
};
const ColourDetails& lastColourDetails();

/// FFmpeg's objects (contexts, frames, packets, scalers) that the plug-in made and has not freed.
int countLiveFFmpegObjects();

} // namespace zyr_test
