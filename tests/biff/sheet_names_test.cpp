// Sheet names: print area and titles, named ranges with their scopes and
// forms, the self-reference they go through, and rows inserted or removed
// under them.
#include "biff/sheet_names.h"
#include "support/record_trip.h"

#include <gtest/gtest.h>

#include <string>

using namespace tabrix;
using namespace bifftest;

namespace {

// A book's names and external references, and SheetNames for its sheets.
struct Book {
    MemPool pool;
    std::vector<Lbl> names;
    std::vector<SupBookBlock> supBooks;
    int sheetCount = 3;
    SheetNames sheet(int index) { return SheetNames(names, supBooks, pool, index, sheetCount); }
};

Bytes area(uint16_t ixti, uint16_t r1, uint16_t r2, uint16_t c1, uint16_t c2) {
    return Bytes{0x3B} + words({ixti, r1, r2, c1, c2});
}

Bytes cell(uint16_t ixti, uint16_t r, uint16_t c) { return Bytes{0x3A} + words({ixti, r, c}); }

Bytes unionOf(uint16_t ixti, uint16_t r1, uint16_t r2, uint16_t c1, uint16_t c2) {
    return Bytes{0x29, 23, 0} + area(ixti, r1, r2, 0, 255) + area(ixti, 0, 65535, c1, c2) +
           Bytes{0x10};
}

struct Range {
    int r1 = -1, r2 = -1, c1 = -1, c2 = -1;
    bool hidden = true;
    bool operator==(const Range &o) const {
        return r1 == o.r1 && r2 == o.r2 && c1 == o.c1 && c2 == o.c2;
    }
};

std::ostream &operator<<(std::ostream &os, const Range &r) {
    return os << r.r1 << "-" << r.r2 << ":" << r.c1 << "-" << r.c2;
}

Range get(const SheetNames &s, const wchar_t *name, int scope) {
    Range r;
    s.getNamedRange(name, &r.r1, &r.r2, &r.c1, &r.c2, scope, &r.hidden);
    return r;
}

Range range(int r1, int r2, int c1, int c2) { return Range{r1, r2, c1, c2}; }

} // namespace

TEST(SheetNamesTest, PrintAreaMakesTheSelfReferenceOnce) {
    Book b;
    SheetNames s = b.sheet(1);
    s.setPrintArea(0, 9, 0, 3);
    s.setPrintArea(2, 20, 1, 4);
    ASSERT_EQ(b.names.size(), 1u);
    const Lbl &l = b.names[0];
    EXPECT_TRUE(l.builtin() && l.itab == 2 && l.cce == 11);
    EXPECT_EQ(l.rgce, area(0, 2, 20, 1, 4));
    EXPECT_EQ(l.nameText(), L"Print_Area");
    ASSERT_EQ(b.supBooks.size(), 1u);
    EXPECT_EQ(b.supBooks[0].supBook.data, (std::vector<uint8_t>{3, 0, 1, 4}));
    ASSERT_EQ(b.supBooks[0].externSheet.rgXTI.size(), 1u);
    EXPECT_EQ(b.supBooks[0].externSheet.rgXTI[0], XTI(0, 1, 1));

    // Another sheet's print area is a name of its own with an XTI of its own.
    b.sheet(0).setPrintArea(5, 5, 5, 5);
    ASSERT_EQ(b.names.size(), 2u);
    EXPECT_EQ(b.names[1].rgce, area(1, 5, 5, 5, 5));
    EXPECT_EQ(b.supBooks[0].externSheet.rgXTI[1], XTI(0, 0, 0));

    EXPECT_EQ(get(s, L"print_area", SheetNames::kScopeThisSheet), range(2, 20, 1, 4));
    EXPECT_EQ(get(s, L"PRINT_AREA", 1), range(2, 20, 1, 4));
    s.clearPrintArea();
    ASSERT_EQ(b.names.size(), 1u);
    EXPECT_EQ(b.names[0].itab, 1); // sheet 0's stays
    EXPECT_EQ(errorOf([&] { get(s, L"Print_Area", -2); }), "named range is not found");
    EXPECT_EQ(errorOf([&] { s.setPrintArea(0, 65536, 0, 1); }), "row must be in range 0-65535");
    EXPECT_EQ(errorOf([&] { s.setPrintArea(0, 1, 0, 256); }), "col must be in range 0-255");
    EXPECT_EQ(errorOf([&] { s.setPrintArea(5, 4, 0, 1); }),
              "rowLast must be greater than or equal to rowFirst");
    EXPECT_EQ(errorOf([&] { s.setPrintArea(0, 1, 3, 2); }),
              "colLast must be greater than or equal to colFirst");
    EXPECT_EQ(errorOf([&] { s.setPrintRepeatCols(3, 2); }),
              "colLast must be greater than or equal to colFirst");
    EXPECT_EQ(errorOf([&] { s.setNamedRange(L"back", 9, 8, 0, 0, 0); }),
              "rowLast must be greater than or equal to rowFirst");
}

TEST(SheetNamesTest, PrintTitles) {
    struct Step {
        bool rows;
        int first, last;
    };
    struct Case {
        const char *name;
        std::vector<Step> steps;
        std::vector<uint8_t> want;
    };
    const Case cases[] = {
        {"rows", {{true, 0, 1}}, area(0, 0, 1, 0, 255)},
        {"cols", {{false, 2, 3}}, area(0, 0, 65535, 2, 3)},
        {"rows then cols", {{true, 0, 1}, {false, 0, 2}}, unionOf(0, 0, 1, 0, 2)},
        {"cols then rows", {{false, 0, 2}, {true, 0, 1}}, unionOf(0, 0, 1, 0, 2)},
        {"rows twice", {{true, 0, 1}, {true, 4, 6}}, area(0, 4, 6, 0, 255)},
        {"cols twice", {{false, 0, 1}, {false, 7, 7}}, area(0, 0, 65535, 7, 7)},
        {"union, new rows", {{true, 0, 1}, {false, 0, 2}, {true, 3, 4}}, unionOf(0, 3, 4, 0, 2)},
        {"union, new cols", {{true, 0, 1}, {false, 0, 2}, {false, 5, 9}}, unionOf(0, 0, 1, 5, 9)},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        Book b;
        SheetNames s = b.sheet(0);
        for (const Step &st : c.steps) {
            if (st.rows)
                s.setPrintRepeatRows(st.first, st.last);
            else
                s.setPrintRepeatCols(st.first, st.last);
        }
        ASSERT_EQ(b.names.size(), 1u);
        EXPECT_EQ(b.names[0].rgce, c.want);
        EXPECT_EQ(b.names[0].cce, c.want.size());
        EXPECT_EQ(b.names[0].nameText(), L"Print_Titles");
        EXPECT_EQ(b.supBooks[0].externSheet.rgXTI.size(), 1u);
    }

    // The union form is no range name; clearing leaves the print area.
    Book b;
    SheetNames s = b.sheet(0);
    s.setPrintArea(0, 5, 0, 5);
    s.setPrintRepeatRows(0, 0);
    s.setPrintRepeatCols(0, 0);
    EXPECT_EQ(s.namedRangeSize(), 1);
    s.clearPrintRepeats();
    ASSERT_EQ(b.names.size(), 1u);
    EXPECT_EQ(b.names[0].nameText(), L"Print_Area");
}

// A cell name keeps its form; a sheet's list holds its own names and the
// book's names of its sheet, not another sheet's.
TEST(SheetNamesTest, NamesOfASheetAndTheirForms) {
    Book b;
    SheetNames s0 = b.sheet(0), s1 = b.sheet(1);
    s1.setNamedRange(L"Single", 4, 4, 2, 2, SheetNames::kScopeThisSheet);
    s1.setNamedRange(L"Single", 10, 20, 3, 5, SheetNames::kScopeThisSheet);
    ASSERT_EQ(b.names.size(), 1u);
    EXPECT_EQ(b.names[0].rgce, cell(0, 10, 3));
    s0.setNamedRange(L"A", 0, 0, 0, 0, -2);
    s1.setNamedRange(L"B", 1, 2, 1, 2, -1);
    b.names.back().setHidden(true);
    EXPECT_EQ(s0.namedRangeSize(), 1);
    int scope = 0;
    bool hidden = false;
    EXPECT_EQ(s1.namedRange(1, nullptr, nullptr, nullptr, nullptr, &scope, &hidden), L"B");
    EXPECT_TRUE(hidden);
    EXPECT_EQ(scope, -1);
    for (int bad : {2, -1})
        EXPECT_EQ(errorOf([&] {
                      s1.namedRange(bad, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
                  }),
                  "index is out of range");
    EXPECT_EQ(errorOf([&] { get(s0, L"Single", -2); }), "named range is not found");
    EXPECT_EQ(errorOf([&] { s0.delNamedRange(L"single", -2); }), "named range is not found");
    EXPECT_EQ(errorOf([&] { s0.setNamedRange(L"x", 0, 0, 0, 300, -2); }),
              "col must be in range 0-255");
    // An area name set again in its scope takes the new area; names go by
    // the book's scope and by a sheet's index.
    s0.setNamedRange(L"Area", 0, 3, 0, 1, SheetNames::kScopeBook);
    s0.setNamedRange(L"Area", 7, 8, 9, 10, SheetNames::kScopeBook);
    EXPECT_EQ(get(s0, L"AREA", -1), range(7, 8, 9, 10));
    s0.setNamedRange(L"There", 0, 0, 0, 0, 2);
    const size_t count = b.names.size();
    EXPECT_EQ(errorOf([&] {
                  s0.delNamedRange(L"area", SheetNames::kScopeBook);
                  s0.delNamedRange(L"there", 2);
              }),
              "");
    EXPECT_EQ(b.names.size(), count - 2);
}

TEST(SheetNamesTest, SelfReferenceGoesInFrontOfExternalBooks) {
    Book b;
    SupBookBlock external;
    external.supBook.data = {1, 0, 5, 0, 0, 'x', '.', 'x', 'l', 's'};
    external.hasExternSheet = true;
    external.externSheet.rgXTI.push_back(XTI(0, 0, 0));
    b.supBooks.push_back(external);
    Lbl foreign;
    foreign.rgce = area(0, 1, 1, 1, 1); // through the external book
    foreign.cce = 11;
    b.names.push_back(foreign);

    SheetNames s = b.sheet(0);
    EXPECT_EQ(s.namedRangeSize(), 0);
    s.setNamedRange(L"Mine", 0, 1, 0, 1, -2);
    ASSERT_EQ(b.supBooks.size(), 2u);
    EXPECT_TRUE(b.supBooks[0].isSelfRef());
    EXPECT_FALSE(b.supBooks[0].hasExternSheet);
    EXPECT_TRUE(b.supBooks[1].hasExternSheet);
    const std::vector<XTI> &xti = b.supBooks[1].externSheet.rgXTI;
    ASSERT_EQ(xti.size(), 2u);
    EXPECT_EQ(xti[0], XTI(1, 0, 0)); // still the external book
    EXPECT_EQ(xti[1], XTI(0, 0, 0));
    EXPECT_EQ(b.names[1].rgce, area(1, 0, 1, 0, 1));
    EXPECT_EQ(s.namedRangeSize(), 1);
}
