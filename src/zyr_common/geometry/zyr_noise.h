/// Value noise on a line and the escape count of the Mandelbrot iteration.
///
/// Pure functions, safe on any thread, with the same bits on every machine.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// Noise from 0 to 1: random values at the whole numbers, joined by straight lines. It repeats after p_period; p_seed
/// chooses one of the noises. A period of 0 gives one value for all cells from 0 on and another for those below.
///
/// At exactly 0 the value is that of the next whole number, 1, which is relied upon.
ZYR_API float zyr_noiseFirst(float p_x, int p_seed, int p_period);
ZYR_API double zyr_noiseFirst(double p_x, int p_seed, int p_period);

/// The same joined by parabolas, each from the middle of one pair of values to the middle of the next.
ZYR_API float zyr_noiseSecond(float p_x, int p_seed, int p_period);
ZYR_API double zyr_noiseSecond(double p_x, int p_seed, int p_period);

/// The number of steps that a point of the plane stays within the radius 2: p_maxIterations for one that never leaves
/// it, 0 for one that leaves it at once and for a maximum below 1.
ZYR_API uint32_t zyr_mandelbrotSolve(double p_real, double p_imaginary, int p_maxIterations);

} // namespace zyr
