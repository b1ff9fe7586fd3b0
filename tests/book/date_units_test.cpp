// Date serial numbers in both date systems, and column width units.
#include "book/date_serial.h"
#include "book/units.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

using namespace tabrix;

// A date and time as "y-m-d h:m:s.ms", the fields of a serial number.
static std::string fields(int y, int mo, int d, int h, int mi, int s, int ms) {
    char b[64];
    std::snprintf(b, sizeof b, "%d-%d-%d %d:%d:%d.%d", y, mo, d, h, mi, s, ms);
    return b;
}

TEST(DateSerial, PackAndUnpack) {
    // `dir`: 'b' both ways, 'p' packing only, 'u' unpacking only, 'x' the
    // serial number is out of range and unpacking leaves the fields alone.
    struct Case {
        char dir;
        bool d1904;
        double serial;
        int y, mo, d, h, mi, s, ms;
    };
    const Case cases[] = {
        {'b', false, 2.0, 1900, 1, 1, 0, 0, 0, 0}, // no historic leap day
        {'b', false, 0.5, 0, 0, 0, 12, 0, 0, 0},   // pure time
        {'p', false, 1.0, 1899, 12, 31, 0, 0, 0, 0},
        {'b', false, 61.0, 1900, 3, 1, 0, 0, 0, 0},
        {'b', false, 36526.0, 2000, 1, 1, 0, 0, 0, 0},
        {'b', false, 45351.25, 2024, 2, 29, 6, 0, 0, 0},
        {'b', false, 2958465.0, 9999, 12, 31, 0, 0, 0, 0},
        {'p', true, 0.0, 1904, 1, 1, 0, 0, 0, 0},
        {'b', true, 36526.0 - 1462, 2000, 1, 1, 0, 0, 0, 0},
        {'p', false, 36526.0 + 1.5 / 86400.0, 2000, 1, 1, 0, 0, 1, 500},
        {'p', false, -36522.0, 1800, 1, 1, 0, 0, 0, 0},
        {'x', false, 2958466.0, 0, 0, 0, 0, 0, 0, 0},
        {'x', false, -657435.0, 0, 0, 0, 0, 0, 0, 0},
        {'u', true, 0.75, 0, 0, 0, 18, 0, 0, 0},
        {'u', true, 1.0, 1904, 1, 2, 0, 0, 0, 0},
        {'u', false, 36526.0 + (13 * 3600 + 14 * 60 + 15.25) / 86400.0, 2000, 1, 1, 13, 14, 15,
         250},
        {'u', false, 36526.99999999, 2000, 1, 1, 23, 59, 59, 999},
    };
    for (const Case &c : cases) {
        const std::string want = fields(c.y, c.mo, c.d, c.h, c.mi, c.s, c.ms);
        if (c.dir == 'b' || c.dir == 'p') {
            EXPECT_DOUBLE_EQ(datePack(c.d1904, c.y, c.mo, c.d, c.h, c.mi, c.s, c.ms), c.serial)
                << want;
        }
        if (c.dir == 'p') continue;
        int y = -9, mo = -9, d = -9, h = -9, mi = -9, s = -9, ms = -9;
        EXPECT_EQ(dateUnpack(c.d1904, c.serial, &y, &mo, &d, &h, &mi, &s, &ms), c.dir != 'x');
        EXPECT_EQ(fields(y, mo, d, h, mi, s, ms),
                  c.dir == 'x' ? fields(-9, -9, -9, -9, -9, -9, -9) : want)
            << c.serial;
    }
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
