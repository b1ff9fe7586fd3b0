// A1 addresses to and from row and column.
#include "book/excel_util.h"
#include "book/tberror.h"

#include <gtest/gtest.h>

#include <tuple>

using tabrix::ExcelUtil;

TEST(ExcelUtil, RowColToAddr) {
    struct Case {
        int row, col;
        bool rowRel, colRel;
        const wchar_t *expect;
    };
    const Case cases[] = {
        {0, 0, true, true, L"A1"},
        {0, 0, false, false, L"$A$1"},
        {9, 26, true, true, L"AA10"},
        {1, 1, false, true, L"B$2"},
        {1, 1, true, false, L"$B2"},
        {0, 25, true, true, L"Z1"},
        {0, 701, true, true, L"ZZ1"},
        {0, 702, true, true, L"AAA1"},
        {65535, 255, true, true, L"IV65536"},
        {1048575, 16383, false, false, L"$XFD$1048576"},
        {-1, 0, true, false, L"$A"},
        {-1, 2, false, true, L"C"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(ExcelUtil::rowColToAddr(c.row, c.col, c.rowRel, c.colRel), c.expect)
            << c.row << "," << c.col;
}

TEST(ExcelUtil, RowColToAddrLimits) {
    struct Case {
        int row, col;
        const char *message;
    };
    const Case cases[] = {
        {1048576, 0, "row must be in range 0-1048575"},
        {-2, 0, "row must be in range 0-1048575"},
        {0, 16384, "col must be in range 0-16383"},
        {0, -1, "col must be in range 0-16383"},
    };
    for (const Case &c : cases) {
        std::string msg;
        try {
            ExcelUtil::rowColToAddr(c.row, c.col, true, true);
        } catch (const tabrix::tberror &e) {
            msg = e.what();
        }
        EXPECT_EQ(msg, c.message) << c.row << "," << c.col;
    }
}

TEST(ExcelUtil, AddrToRowCol) {
    struct Case {
        const wchar_t *addr;
        int row, col;
        bool rowRel, colRel;
    };
    const Case cases[] = {
        {L"A1", 0, 0, true, true},
        {L"AA10", 9, 26, true, true},
        {L"$B$2", 1, 1, false, false},
        {L"B$2", 1, 1, false, true},
        {L"$B2", 1, 1, true, false},
        {L"XFD1048576", 1048575, 16383, true, true},
        {L"IV65536", 65535, 255, true, true},
        {L"$A", -1, 0, true, false},
        {L"C", -1, 2, true, true},
        {L"", -1, -1, true, true},
        {L"12", 11, -1, true, true},
        {L"A01", 0, 9, true, true}, // "A0" is read as column text
    };
    for (const Case &c : cases) {
        int row = 99, col = 99;
        bool rowRel = false, colRel = false;
        ExcelUtil::addrToRowCol(c.addr, &row, &col, &rowRel, &colRel);
        EXPECT_EQ(std::make_tuple(row, col, rowRel, colRel),
                  std::make_tuple(c.row, c.col, c.rowRel, c.colRel))
            << c.addr;
    }
    ExcelUtil::addrToRowCol(L"B7", nullptr, nullptr, nullptr, nullptr); // all outputs optional
}

TEST(ExcelUtil, AddressRoundTrip) {
    for (int col : {0, 1, 25, 26, 27, 51, 52, 255, 701, 702, 16383})
        for (int row : {0, 9, 99, 65535, 1048575})
            for (int flags = 0; flags < 4; ++flags) {
                bool rr = flags & 1, cr = flags & 2;
                std::wstring a = ExcelUtil::rowColToAddr(row, col, rr, cr);
                int r = -5, c = -5;
                bool r2 = !rr, c2 = !cr;
                ExcelUtil::addrToRowCol(a.c_str(), &r, &c, &r2, &c2);
                EXPECT_EQ(std::make_tuple(r, c, r2, c2), std::make_tuple(row, col, rr, cr));
            }
}
