// The TextSheet store linked directly: field classification, pages in any
// order of insertion, extents, cell replacement and clearing.
#include "refhost.h"
#include "text_sheet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

namespace {

TextSheet makeStore() {
    TextSheet s;
    memset(&s, 0, sizeof s);
    resetStore(&s);
    s.fieldSeparator = ',';
    s.decimalSeparator = '.';
    strcpy(s.trueText, "TRUE");
    strcpy(s.falseText, "FALSE");
    return s;
}

TEST(ClassifyField, Table) {
    TextSheet s = makeStore();
    double number = -1;
    // Numbers, read as the C library reads them.
    for (const char *t :
         {"0", "12", "-12", "+.5", ".25", "1e3", "1E-2", "2.5e+1", "12.", "12.  ", "7 \t", "0.5",
          "9007199254740991", "-9007199254740991", "9007199254740992.0"}) {
        EXPECT_EQ(classifyField(&s, t, &number), CELL_NUMBER) << t;
        EXPECT_EQ(number, strtod(t, nullptr)) << t;
    }
    // Texts that stay strings: integers past 2^53, leading zeros, broken
    // exponents and points, spaces inside or in front, other notations.
    for (const char *t : {"9007199254740992", "-9007199254740992", "12345678901234567890"})
        EXPECT_EQ(classifyField(&s, t, &number), CELL_STRING) << t;
    for (const char *t : {"007", "-00", "1e", "1e+", "+.5e", "12a", ".", "+", "-.", "12.x", "1.e5",
                          " 1", "1 2", "0x10", "inf", "true", "TRUE ", ""})
        EXPECT_EQ(classifyField(&s, t, &number), CELL_STRING) << t;
    EXPECT_EQ(classifyField(&s, "TRUE", &number), CELL_BOOL);
    EXPECT_EQ(number, 1);
    EXPECT_EQ(classifyField(&s, "FALSE", &number), CELL_BOOL);
    EXPECT_EQ(number, 0);
    // The decimal separator is the store's.
    s.decimalSeparator = ',';
    EXPECT_EQ(classifyField(&s, "1,5", &number), CELL_NUMBER);
    EXPECT_EQ(number, 1.5);
    EXPECT_EQ(classifyField(&s, "1.5", &number), CELL_STRING);
}

TEST(FormatReal, SameTextAsPrintf) {
    const char *formats[] = {"%.15g", "%.17g", "%.1g", "%.6g", "%g", "%.3f", "%.15G", "%e"};
    std::vector<double> values;
    for (const char *t :
         {"0", "-0", "1", "-1.5", "0.1", "2.5", "1e15", "1e16", "123456789012345678", "1e-5",
          "1e-4", "0.0001234", "1e300", "-1e-300", "5e-324", "0.3333333333333333",
          "9007199254740993", "1e21", "999999999999999.9"})
        values.push_back(strtod(t, nullptr));
    std::mt19937_64 rng(11);
    for (int i = 0; i < 2000; ++i) {
        uint64_t bits = rng();
        double v;
        memcpy(&v, &bits, sizeof v);
        if (v == v && v - v == 0) // finite
            values.push_back(v);
        values.push_back((double)(rng() % 1000000) / 1000.0);
    }
    for (const char *f : formats)
        for (double v : values) {
            char expected[512], got[512];
            int n = snprintf(expected, sizeof expected, f, v);
            ASSERT_EQ(formatReal(f, v, got, sizeof got), n) << f << " " << expected;
            ASSERT_STREQ(got, expected) << f;
        }
    char small[4];
    EXPECT_EQ(formatReal("%.15g", 12345.0, small, sizeof small), 5); // too long: snprintf's answer
}

TEST(TextStore, PagesInAnyOrder) {
    g_host = qdhost::hostTable();
    TextSheet s = makeStore();
    // Columns that hit many pages, inserted in a shuffled order, twice over
    // several rows, then read back in another order.
    std::vector<int> cols{0, 1, 63, 64, 65, 127, 128, 500, 640, 1000, 4095, 70000, 3, 200, 129};
    std::mt19937 rng(7);
    const int rows[] = {0, 1, 255, 256, 257, 9000, 20000};
    for (int r : rows) {
        std::shuffle(cols.begin(), cols.end(), rng);
        for (int c : cols) ASSERT_EQ(setNumber(&s, r, c, r * 100000.0 + c), 0);
    }
    EXPECT_EQ((std::vector<int>{s.firstRow, s.lastRow, s.firstCol, s.lastCol}),
              (std::vector<int>{0, 20000, 0, 70000}));
    EXPECT_GE(s.rowCapacity, 20001);
    EXPECT_EQ(s.rows[s.rowCapacity - 1].firstCol, TEXT_NO_COLUMN); // rows made empty
    for (int r : rows) {
        std::shuffle(cols.begin(), cols.end(), rng);
        for (int c : cols) {
            EXPECT_EQ(cellKind(&s, r, c), CELL_NUMBER) << r << "," << c;
            EXPECT_EQ(cellNumber(&s, r, c), r * 100000.0 + c);
        }
        // Pages are linked in order from the lowest.
        TextPage *p = s.rows[r].cursor;
        while (p->lower) p = p->lower;
        int pages = 0, last = -1;
        for (; p; p = p->higher, ++pages) {
            EXPECT_GT(p->pageNumber, last);
            last = p->pageNumber;
        }
        EXPECT_EQ(pages, 9); // pages 0, 1, 2, 3, 7, 10, 15, 63 and 1093
        EXPECT_EQ(std::make_pair(s.rows[r].firstCol, s.rows[r].lastCol), std::make_pair(0, 70000));
        EXPECT_EQ(cellKind(&s, r, 2), CELL_EMPTY);
        EXPECT_EQ(cellKind(&s, r, 70001), CELL_EMPTY);
        EXPECT_EQ(cellKind(&s, r, 300), CELL_EMPTY); // page 4 absent
    }
    EXPECT_EQ(cellKind(&s, 2, 0), CELL_EMPTY);
    EXPECT_EQ(cellKind(&s, 30000, 0), CELL_EMPTY);
    EXPECT_EQ(cellKind(&s, -1, -1), CELL_EMPTY);
    clearStore(&s);
    EXPECT_EQ(s.rowCapacity, 0);
    // Rows written just past the table double it up to a limit, then add that limit.
    for (int r : {0, 256, 512, 1024, 2048, 4096, 8192, 16384}) ASSERT_EQ(setBool(&s, r, 0, 1), 0);
    EXPECT_EQ(s.rowCapacity, 24576);
    clearStore(&s);
    EXPECT_EQ(s.firstRow, TEXT_NO_COLUMN);
    EXPECT_EQ(cellKind(&s, 0, 0), CELL_EMPTY);
}

TEST(TextStore, CellsReplaceEachOther) {
    g_host = qdhost::hostTable();
    TextSheet s = makeStore();
    ASSERT_EQ(setText(&s, 3, 5, "abc"), 0);
    EXPECT_STREQ(cellText(&s, 3, 5), "abc");
    EXPECT_EQ(cellNumber(&s, 3, 5), 0.0);
    ASSERT_EQ(setNumber(&s, 3, 5, 2.5), 0); // frees the text
    EXPECT_EQ(cellKind(&s, 3, 5), CELL_NUMBER);
    EXPECT_STREQ(cellText(&s, 3, 5), "");
    ASSERT_EQ(setText(&s, 3, 5, "x"), 0);
    ASSERT_EQ(setBool(&s, 3, 5, 0), 0);
    EXPECT_EQ(cellKind(&s, 3, 5), CELL_BOOL);
    EXPECT_STREQ(cellBoolText(&s, 3, 5), "FALSE");
    ASSERT_EQ(setBool(&s, 3, 5, 1), 0);
    EXPECT_STREQ(cellBoolText(&s, 3, 5), "TRUE");
    ASSERT_EQ(setText(&s, 3, 5, "again"), 0);
    ASSERT_EQ(setText(&s, 3, 5, nullptr), 0);
    EXPECT_EQ(cellKind(&s, 3, 5), CELL_EMPTY);
    EXPECT_EQ(s.rows[3].lastCol, 5);
    EXPECT_EQ(cellBoolText(&s, 0, 0), nullptr);
    // Writing outside the addressable sheet fails with the message.
    qdhost::Context ctx;
    s.context = &ctx;
    EXPECT_EQ(setNumber(&s, -1, 0, 1), 1);
    EXPECT_EQ(ctx.allErrors(), "SHEET: Out of memory error");
    clearStore(&s);
}

} // namespace
