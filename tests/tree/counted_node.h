/// A tree node whose living number is counted.
#pragma once

#include <gtest/gtest.h>

namespace zyr {

template <typename Node> class CountedNode : public Node {
public:
    CountedNode() { s_living++; }
    ~CountedNode() override { s_living--; }

    static inline int s_living = 0;
};

} // namespace zyr
