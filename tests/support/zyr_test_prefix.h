#pragma once

// What most tests include, compiled once for all of them. Every test depends on all that stands here, so of the library
// only that belongs here which nearly every test reads anyway.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/log/zyr_log.h"
#include "zyr_common/text/zyr_string.h"
