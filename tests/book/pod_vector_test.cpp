// The cell vectors keep every element through growth from heap to mapped
// memory, copies, trims and clears.
#include "book/pod_vector.h"

#include <gtest/gtest.h>

using namespace tabrix;

namespace {

// Shaped like the plain cell records the vectors hold.
struct Number {
    uint16_t row, col, xf;
    double value;
};
struct RK {
    uint16_t row, col, xf;
    uint32_t rk;
};

template <class V> void fillNumbers(V &v, size_t n) {
    for (size_t i = 0; i < n; ++i) {
        Number &e = v.emplace_back();
        e.row = uint16_t(i);
        e.col = uint16_t(i >> 16);
        e.value = double(i) * 0.5;
    }
}

template <class V> bool holdsNumbers(const V &v, size_t n) {
    if (v.size() != n) return false;
    for (size_t i = 0; i < n; ++i)
        if (v[i].row != uint16_t(i) || v[i].col != uint16_t(i >> 16) ||
            v[i].value != double(i) * 0.5)
            return false;
    return true;
}

} // namespace

TEST(PodVector, KeepsElementsThroughGrowthCopyAndTrim) {
    // Sizes on both sides of the switch to mapped memory and of a huge page.
    for (size_t n : {size_t(0), size_t(1), size_t(100), size_t(16384), size_t(20000),
                     size_t(300000), size_t(1000000)}) {
        SCOPED_TRACE(n);
        PodVector<Number> v;
        fillNumbers(v, n);
        EXPECT_TRUE(holdsNumbers(v, n));
        EXPECT_GE(v.capacity(), n);

        PodVector<Number> copy(v);
        EXPECT_TRUE(holdsNumbers(copy, n));
        copy.emplace_back().value = -1;
        EXPECT_EQ(v.size(), n) << "the copy shares nothing";

        v.shrink_to_fit();
        EXPECT_TRUE(holdsNumbers(v, n));
        v.emplace_back();
        EXPECT_EQ(v.back().value, 0.0) << "a new element starts as a default record";

        PodVector<Number> moved(std::move(copy));
        EXPECT_EQ(moved.size(), n + 1);
        EXPECT_EQ(moved.back().value, -1.0);

        moved.clear();
        EXPECT_TRUE(moved.empty());
        fillNumbers(moved, n / 2);
        EXPECT_TRUE(holdsNumbers(moved, n / 2));
    }
}

TEST(PodVector, ReserveThenAssign) {
    PodVector<RK> v;
    v.reserve(500000);
    EXPECT_GE(v.capacity(), 500000u);
    EXPECT_TRUE(v.empty());
    RK e{};
    e.rk = 0x3FF00000;
    for (int i = 0; i < 10; ++i) v.push_back(e);
    PodVector<RK> w;
    for (int i = 0; i < 70000; ++i) w.emplace_back().row = 7;
    w = v;
    ASSERT_EQ(w.size(), 10u);
    EXPECT_EQ(w[9].rk, 0x3FF00000u);
    w.shrink_to_fit();
    w.clear();
    w.shrink_to_fit();
    EXPECT_EQ(w.capacity(), 0u);
}
