// Date serial numbers in both date systems, and column width units.
#include "book/date_serial.h"
#include "book/units.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace tabrix;

TEST(DateSerial, Pack) {
    struct Case {
        bool d1904;
        int y, mo, d, h, mi, s, ms;
        double expect;
    };
    const Case cases[] = {
        {false, 1900, 1, 1, 0, 0, 0, 0, 2.0}, // no historic leap day
        {false, 0, 0, 0, 12, 0, 0, 0, 0.5},   // pure time
        {false, 1899, 12, 31, 0, 0, 0, 0, 1.0},
        {false, 1900, 3, 1, 0, 0, 0, 0, 61.0},
        {false, 2000, 1, 1, 0, 0, 0, 0, 36526.0},
        {false, 2024, 2, 29, 6, 0, 0, 0, 45351.25},
        {false, 9999, 12, 31, 0, 0, 0, 0, 2958465.0},
        {true, 1904, 1, 1, 0, 0, 0, 0, 0.0},
        {true, 2000, 1, 1, 0, 0, 0, 0, 36526.0 - 1462},
        {false, 2000, 1, 1, 0, 0, 1, 500, 36526.0 + 1.5 / 86400.0},
        {false, 1800, 1, 1, 0, 0, 0, 0, -36522.0},
    };
    for (const Case &c : cases)
        EXPECT_DOUBLE_EQ(datePack(c.d1904, c.y, c.mo, c.d, c.h, c.mi, c.s, c.ms), c.expect)
            << c.y << "-" << c.mo << "-" << c.d << (c.d1904 ? " 1904" : "");
}

TEST(DateSerial, Unpack) {
    struct Case {
        bool d1904;
        double value;
        bool ok;
        int y, mo, d, h, mi, s, ms;
    };
    const Case cases[] = {
        {false, 0.5, true, 0, 0, 0, 12, 0, 0, 0},
        {false, 2.0, true, 1900, 1, 1, 0, 0, 0, 0},
        {false, 61.0, true, 1900, 3, 1, 0, 0, 0, 0},
        {false, 45351.25, true, 2024, 2, 29, 6, 0, 0, 0},
        {false, 2958465.0, true, 9999, 12, 31, 0, 0, 0, 0},
        {false, 2958466.0, false, 0, 0, 0, 0, 0, 0, 0},
        {false, -657435.0, false, 0, 0, 0, 0, 0, 0, 0},
        {true, 0.75, true, 0, 0, 0, 18, 0, 0, 0},
        {true, 1.0, true, 1904, 1, 2, 0, 0, 0, 0},
        {true, 36526.0 - 1462, true, 2000, 1, 1, 0, 0, 0, 0},
        {false, 36526.0 + (13 * 3600 + 14 * 60 + 15.25) / 86400.0, true, 2000, 1, 1, 13, 14, 15,
         250},
        {false, 36526.99999999, true, 2000, 1, 1, 23, 59, 59, 999},
    };
    for (const Case &c : cases) {
        int y = -9, mo = -9, d = -9, h = -9, mi = -9, s = -9, ms = -9;
        bool ok = dateUnpack(c.d1904, c.value, &y, &mo, &d, &h, &mi, &s, &ms);
        EXPECT_EQ(ok, c.ok) << c.value;
        if (!c.ok) {
            EXPECT_EQ(y, -9) << "untouched on failure";
            continue;
        }
        EXPECT_EQ(y, c.y) << c.value;
        EXPECT_EQ(mo, c.mo) << c.value;
        EXPECT_EQ(d, c.d) << c.value;
        EXPECT_EQ(h, c.h) << c.value;
        EXPECT_EQ(mi, c.mi) << c.value;
        EXPECT_EQ(s, c.s) << c.value;
        EXPECT_EQ(ms, c.ms) << c.value;
    }
}

TEST(DateSerial, RoundTripBothSystems) {
    for (bool d1904 : {false, true})
        for (int y : {1905, 1950, 2000, 2099, 9999})
            for (int mo : {1, 2, 7, 12})
                for (int d : {1, 28}) {
                    double v = datePack(d1904, y, mo, d, 17, 45, 30, 125);
                    int yy, mm, dd, h, mi, s, ms;
                    ASSERT_TRUE(dateUnpack(d1904, v, &yy, &mm, &dd, &h, &mi, &s, &ms));
                    EXPECT_EQ(yy * 10000 + mm * 100 + dd, y * 10000 + mo * 100 + d);
                    EXPECT_EQ(h * 3600000 + mi * 60000 + s * 1000 + ms, 63930125);
                }
    EXPECT_DOUBLE_EQ(
        datePack(false, 2010, 5, 5, 0, 0, 0, 0) - datePack(true, 2010, 5, 5, 0, 0, 0, 0), 1462.0);
}

TEST(DateSerial, NullTimeOutputsAndNaN) {
    int y, mo, d, s;
    ASSERT_TRUE(dateUnpack(false, 0.5, &y, &mo, &d, nullptr, nullptr, &s, nullptr));
    EXPECT_EQ(s, 30); // the remainder was not reduced by the absent hour and minute
    EXPECT_TRUE(dateUnpack(false, std::nan(""), &y, &mo, &d, nullptr, nullptr, nullptr, nullptr));
}

TEST(Units, Conversions) {
    EXPECT_EQ(getMaxDigWidth(L"Arial", 10), 7);
    EXPECT_EQ(getMaxDigWidth(L"", 0), 7);
    struct Case {
        int w;
        int extra;
        int defaultPx8;
    };
    for (const Case &c : {Case{7, 8, 64}, Case{12, 8, 104}, Case{13, 16, 120}, Case{29, 24, 256},
                          Case{45, 32, 392}})
        EXPECT_EQ(ExcelUnitsConverter::extraSpace(c.w), c.extra) << c.w;
    for (const Case &c : {Case{7, 8, 64}, Case{13, 16, 120}})
        EXPECT_EQ(ExcelUnitsConverter::defaultColWidthPx(8, c.w), c.defaultPx8);

    struct Px {
        double chars;
        int px;
    };
    for (const Px &p :
         {Px{8.43, 64}, Px{1.0, 12}, Px{0.5, 6}, Px{0.0, 0}, Px{10.0, 75}, Px{2.0, 19}})
        EXPECT_EQ(ExcelUnitsConverter::numCharsToPx(p.chars, 7), p.px) << p.chars;
    for (const Px &p : {Px{8.43, 64}, Px{1.0, 12}, Px{0.5, 6}, Px{0.0, 0}, Px{10.0, 75}})
        EXPECT_DOUBLE_EQ(ExcelUnitsConverter::pxToNumChars(p.px, 7), p.chars) << p.px;
    EXPECT_DOUBLE_EQ(ExcelUnitsConverter::numCharsToXmlWidth(8.43, 7), 9.140625);
    EXPECT_DOUBLE_EQ(ExcelUnitsConverter::numCharsToXmlWidth(0.5, 7), 0.85546875);
    EXPECT_EQ(ExcelUnitsConverter::xmlWidthToPx(9.140625, 7), 64);
    EXPECT_EQ(ExcelUnitsConverter::xmlWidthToPx(0.0, 7), 0);
    // Every whole pixel width survives chars and back.
    for (int px = 0; px < 300; ++px)
        EXPECT_EQ(ExcelUnitsConverter::numCharsToPx(ExcelUnitsConverter::pxToNumChars(px, 7), 7),
                  px)
            << px;
}
