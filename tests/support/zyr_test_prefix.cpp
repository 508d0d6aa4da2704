// Nothing: the build compiles the header of this name for all tests when it compiles this file.
#include "zyr_test_prefix.h"
