// The shared address scanner: each caller's rules on the same texts.
#include "tabrix/cell_address.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace tabrix;

TEST(CellAddress, RulesOnSameTexts) {
    AddressRules upper, anyCase, plain, book;
    anyCase.columnText = ColumnText::AnyCase;
    plain.columnText = ColumnText::AnyCase;
    plain.dollars = false;
    plain.maxRow = 0x7FFFFFF0;
    book.columnText = ColumnText::BeforeRowDigit;
    using S = CellAddress::Status;
    struct Case {
        const char *text;
        const AddressRules *rules;
        S status;
        long long column, row;
        bool colAbs, rowAbs;
        size_t end;
    };
    const Case cases[] = {
        {"$XFD$1048576", &upper, S::Ok, 16384, 1048576, true, true, 12},
        {"b7", &upper, S::NoAddress, 0, 0, false, false, 0}, // no folding for formulas
        {"b7", &anyCase, S::Ok, 2, 7, false, false, 2},
        {"B$7:C9", &anyCase, S::Ok, 2, 7, false, true, 3},
        {"xfe1", &anyCase, S::ColumnTooLarge, 0, 0, false, false, 3},
        {"A1048577", &anyCase, S::RowTooLarge, 1, 0, false, false, 8},
        {"$$1", &anyCase, S::NoAddress, 0, 0, true, false, 1},
        {"$A$", &anyCase, S::Ok, 1, 0, true, true, 3},
        {"A0", &anyCase, S::Ok, 1, 0, false, false, 2},
        {"C$4]", &plain, S::Ok, 3, 0, false, false, 1}, // "$" ends the sheet part
        {"A2147483632", &plain, S::Ok, 1, 2147483632LL, false, false, 11},
        {"A01", &book, S::Ok, 1 * 26 + ('0' - 64), 1, false, false, 3},
        {"$B$2x", &book, S::Ok, 2, 2, true, true, 4},
        {"a1", &book, S::Ok, 'a' - 64, 1, false, false, 2},
        {"A99999999999", &book, S::Ok, 1, 0x7FFFFFFF, false, false, 12},
    };
    for (const Case &c : cases) {
        CellAddress a = scanCellAddress(c.text, std::strlen(c.text), *c.rules);
        EXPECT_EQ(a.status, c.status) << c.text;
        EXPECT_EQ(a.end, c.end) << c.text;
        if (a.status == S::Ok) {
            EXPECT_EQ(a.column, c.column) << c.text;
            EXPECT_EQ(a.row, c.row) << c.text;
            EXPECT_EQ(a.columnAbsolute, c.colAbs) << c.text;
            EXPECT_EQ(a.rowAbsolute, c.rowAbs) << c.text;
        }
    }
    // Runs beyond a limit are passed over whole, for the caller's message.
    CellAddress a = scanCellAddress("ABCDEF12", 8, anyCase);
    EXPECT_EQ(a.lettersEnd - a.lettersBegin, 6u);
    EXPECT_EQ(columnLetters<char>(16383), "XFD");
    EXPECT_EQ(columnLetters<wchar_t>(702), L"AAA");
}
