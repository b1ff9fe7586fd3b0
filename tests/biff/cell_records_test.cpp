// Cell records: RK decoding and exactness.
#include "biff/records/rk.h"
#include "support/record_trip.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

using namespace tabrix;
using namespace bifftest;

TEST(CellRecordsTest, RkDecodesAllFourForms) {
    struct Case {
        uint32_t rk;
        double value;
    };
    const Case cases[] = {
        {0x3FF00000u, 1.0},          // double
        {0x3FF00001u, 0.01},         // double / 100
        {0x00000006u, 1.0},          // integer 1
        {0xFFFFFFFEu, -1.0},         // integer -1
        {0x80000002u, -536870912.0}, // most negative integer
        {0x7FFFFFFEu, 536870911.0},  // most positive integer
        {0x00004E23u, 50.0},         // integer 5000 / 100
        {0xFFFFFFFBu, -0.02},        // integer -2 / 100 (bits 0 and 1)
        {0xC0000000u, -2.0},         // negative double
        {0x00000000u, 0.0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.rk);
        RK r;
        r.rk = c.rk;
        EXPECT_DOUBLE_EQ(r.value(), c.value);
    }
}

TEST(CellRecordsTest, RkExactness) {
    double lowBits;
    uint64_t b = 0x3FF0000000000001ull;
    std::memcpy(&lowBits, &b, sizeof lowBits);
    struct Case {
        double v;
        bool exact;
    };
    const Case cases[] = {
        {1.0, true},
        {0.5, true},
        {-2.0, true},
        {0.0, true},
        {0.1, false},
        {1e300, false},
        {lowBits, false},
        // The test is on bits alone: the default quiet NaN keeps its bits.
        {std::numeric_limits<double>::quiet_NaN(), true},
        {std::numeric_limits<double>::infinity(), true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.v);
        EXPECT_EQ(rkExact(c.v), c.exact);
        if (c.exact) {
            RK r;
            r.setValue(c.v);
            double back = r.value();
            EXPECT_EQ(std::memcmp(&back, &c.v, sizeof back), 0);
        }
    }
}
