/// Both matrices.
#pragma once

#include "zyr_common/geometry/zyr_matrix3x3.h"
#include "zyr_common/geometry/zyr_matrix4x4.h"
