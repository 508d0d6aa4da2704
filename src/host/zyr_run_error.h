/// How a command tells that it cannot go on.
#pragma once

#include <stdexcept>

namespace zyr::host {

/// A failure that ends the run with exit code 1. The text is meant for the user.
class RunError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Options that cannot be meant: exit code 2, before anything is opened. The text is meant for the user.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace zyr::host
