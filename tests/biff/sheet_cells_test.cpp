// The binary sheet's cell store: messages of reads of another kind, text
// limits, shared strings, formats, merges, rows, columns and a copy into
// another book.  What both kinds of book share is in book/.
#include "support/biff_bytes.h"
#include "support/fake_owner.h"

#include <gtest/gtest.h>

#include <cstring>
#include <tuple>

using namespace tabrix;
using namespace bifftest;

namespace {

struct Book {
    FakeOwner<char> owner;
    SheetImplT<char> &sheet = owner.addSheet(L"Sheet1");
};

TEST(SheetCells, ReadsOfAnotherKindAnswerNeutrallyWithTheirMessage) {
    Book b;
    b.sheet.writeNum(0, 0, 7, nullptr);
    b.sheet.writeStr(0, 1, "seven", nullptr);
    b.sheet.writeBool(0, 2, true, nullptr);
    b.sheet.writeBlank(0, 3, nullptr);
    IFormatT<char> *f = nullptr;
    struct Case {
        std::function<bool()> read;
        std::string message;
    } cases[] = {
        {[&] { return b.sheet.readNum(0, 1, nullptr) == 0.0; },
         "this cell doesn't contain a number"},
        {[&] { return b.sheet.readNum(9, 9, nullptr) == 0.0; },
         "this cell doesn't contain a number"},
        {[&] { return b.sheet.readStr(0, 0, nullptr) == nullptr; },
         "this cell doesn't contain a string"},
        {[&] { return !b.sheet.readBool(0, 0, nullptr); }, "this cell doesn't contain a bool"},
        {[&] { return !b.sheet.readBlank(0, 0, &f); }, "this cell doesn't contain a blank"},
        {[&] { return !b.sheet.readBlank(0, 3, nullptr); }, "format mustn't be NULL"},
        {[&] { return b.sheet.readFormula(0, 0, nullptr) == nullptr; },
         "cell doesn't contain a formula"},
        {[&] { return b.sheet.readError(0, 0) == ERRORTYPE_NOERROR; }, "ok"},
        {[&] { return b.sheet.readError(0, 2) == ERRORTYPE_NOERROR; }, "ok"},
        {[&] { return b.sheet.readBool(0, 2, nullptr); }, "ok"},
        {[&] { return b.sheet.readBlank(0, 3, &f) && f == b.owner.styles().formats()[15]; }, "ok"},
        {[&] { return b.sheet.cellType(70000, 0) == CELLTYPE_EMPTY; }, "ok"},
        {[&] { return b.sheet.cellType(65536, 0) == CELLTYPE_EMPTY; }, "ok"},
        {[&] { return b.sheet.readNum(70000, 0, nullptr) == 0.0; }, "row must be in range 0-65535"},
    };
    for (size_t i = 0; i < sizeof cases / sizeof cases[0]; ++i) {
        SCOPED_TRACE(i);
        // Past the last row nothing is there: not the rows cut to 16 bits.
        b.sheet.writeNum(70000 - 65536, 0, 1, nullptr);
        EXPECT_TRUE(cases[i].read());
        EXPECT_EQ(b.owner.msg(), cases[i].message);
    }
}

TEST(SheetCells, StringsShareTheTableWithoutChangingEachOther) {
    Book b;
    SST &sst = b.owner.sst();
    // Overwriting through the kinds.
    ASSERT_TRUE(b.sheet.writeStr(1, 1, "first", nullptr));
    ASSERT_TRUE(b.sheet.writeNum(1, 1, 5, nullptr));
    EXPECT_EQ(b.sheet.cellType(1, 1), CELLTYPE_NUMBER);
    ASSERT_TRUE(b.sheet.writeStr(1, 1, "second", nullptr));
    EXPECT_STREQ(b.sheet.readStr(1, 1, nullptr), "second");
    b.sheet.writeBool(1, 2, true, nullptr);
    b.sheet.writeBool(1, 2, false, nullptr);
    EXPECT_FALSE(b.sheet.readBool(1, 2, nullptr));

    // Two cells with one string: writing one leaves the other.
    b.sheet.writeStr(2, 0, "same", nullptr);
    b.sheet.writeStr(2, 1, "same", nullptr);
    EXPECT_EQ(b.sheet.labelSst()[b.sheet.labelSst().size() - 1].sst,
              b.sheet.labelSst()[b.sheet.labelSst().size() - 2].sst);
    b.sheet.writeStr(2, 1, "changed", nullptr);
    EXPECT_STREQ(b.sheet.readStr(2, 0, nullptr), "same");
    EXPECT_STREQ(b.sheet.readStr(2, 1, nullptr), "changed");

    // A string of one cell is replaced in place: same index, no new entry.
    b.sheet.writeStr(3, 0, "alone", nullptr);
    uint32_t index = b.sheet.labelSst().back().sst;
    unsigned count = sst.strings().count();
    b.sheet.writeStr(3, 0, "still alone", nullptr);
    EXPECT_EQ(b.sheet.labelSst().back().sst, index);
    EXPECT_EQ(sst.strings().count(), count);
    EXPECT_STREQ(b.sheet.readStr(3, 0, nullptr), "still alone");

    // A string used on another sheet of the book is not replaced in place.
    SheetImplT<char> &other = b.owner.addSheet(L"Other");
    other.writeStr(0, 0, "still alone", nullptr);
    b.sheet.writeStr(3, 0, "moved on", nullptr);
    EXPECT_STREQ(other.readStr(0, 0, nullptr), "still alone");
    EXPECT_STREQ(b.sheet.readStr(3, 0, nullptr), "moved on");

    // A text the sheet wrote before, whose table entry was since replaced
    // in place, is looked up again rather than taken from memory.
    b.sheet.writeStr(4, 0, "before", nullptr);
    b.sheet.writeStr(4, 0, "after", nullptr);
    b.sheet.writeStr(4, 1, "before", nullptr);
    EXPECT_STREQ(b.sheet.readStr(4, 0, nullptr), "after");
    EXPECT_STREQ(b.sheet.readStr(4, 1, nullptr), "before");
    // Writing the same text again keeps the entry.
    index = b.sheet.labelSst().back().sst;
    b.sheet.writeStr(4, 1, "before", nullptr);
    EXPECT_EQ(b.sheet.labelSst().back().sst, index);
}

// A copy of the index holds the cells of the original, which it outlives.
TEST(SheetCells, IndexCopiesItsPages) {
    SheetIndex index;
    index.at(7, 3) = SheetIndex::code(SheetIndex::kLabel, 12345);
    SheetIndex copy(index);
    index.clear();
    EXPECT_EQ(copy.get(7, 3), (12345u << 4) | 15u);
    EXPECT_FALSE(index.hasRow(7));
}

TEST(SheetCells, TextLengthAndEncoding) {
    Book b;
    std::string longest(32767, 'x');
    EXPECT_TRUE(b.sheet.writeStr(0, 0, longest.c_str(), nullptr));
    EXPECT_EQ(std::strlen(b.sheet.readStr(0, 0, nullptr)), 32767u);
    std::string tooLong(32768, 'x');
    EXPECT_FALSE(b.sheet.writeStr(0, 1, tooLong.c_str(), nullptr));
    EXPECT_EQ(b.owner.msg(), "string is too long");
    EXPECT_EQ(b.sheet.cellType(0, 1), CELLTYPE_EMPTY);
    // The limit counts UTF-16 units, not bytes.
    std::string accents;
    for (int i = 0; i < 20000; ++i) accents += "\xC3\xA9";
    EXPECT_TRUE(b.sheet.writeStr(0, 2, accents.c_str(), nullptr)) << b.owner.msg();
}

TEST(SheetCells, FormatsOfCellsAndTheirFallbacks) {
    Book b;
    StyleTable<char> &st = b.owner.styles();
    IFormatT<char> *cellFmt = st.addFormat(nullptr);
    IFormatT<char> *rowFmt = st.addFormat(nullptr);
    IFormatT<char> *colFmt = st.addFormat(nullptr);
    FakeOwner<char> stranger;
    IFormatT<char> *foreign = stranger.styles().addFormat(nullptr);

    ASSERT_TRUE(b.sheet.writeNum(0, 0, 1, cellFmt));
    IFormatT<char> *out = nullptr;
    b.sheet.readNum(0, 0, &out);
    EXPECT_EQ(out, cellFmt);
    // Without a format the cell keeps the one it has.
    b.sheet.writeNum(0, 0, 2, nullptr);
    EXPECT_EQ(b.sheet.cellFormat(0, 0), cellFmt);
    EXPECT_FALSE(b.sheet.writeNum(0, 0, 3, foreign));
    EXPECT_EQ(b.owner.msg(), "specified format not found");
    EXPECT_EQ(b.sheet.readNum(0, 0, nullptr), 2.0);

    ASSERT_TRUE(b.sheet.setRow(5, 20, rowFmt, false));
    ASSERT_TRUE(b.sheet.setCol(7, 8, 12, colFmt, false));
    EXPECT_EQ(b.sheet.cellFormat(5, 3), rowFmt);
    EXPECT_EQ(b.sheet.cellFormat(2, 8), colFmt);
    EXPECT_EQ(b.sheet.cellFormat(2, 2), st.formats()[15]);

    b.sheet.setCellFormat(0, 0, rowFmt);
    EXPECT_EQ(b.sheet.cellFormat(0, 0), rowFmt);
    b.sheet.setCellFormat(4, 4, colFmt);
    EXPECT_EQ(b.sheet.cellType(4, 4), CELLTYPE_BLANK);
    EXPECT_EQ(b.sheet.cellFormat(4, 4), colFmt);
    b.sheet.setCellFormat(4, 4, foreign);
    EXPECT_EQ(b.owner.msg(), "specified format is not found");
}

TEST(SheetCells, ClearTakesMergedAreasWithTheirBlanks) {
    Book b;
    ASSERT_TRUE(b.sheet.setMerge(1, 2, 1, 3));
    EXPECT_EQ(b.sheet.cellType(2, 3), CELLTYPE_BLANK);
    b.sheet.writeNum(1, 1, 4, nullptr);
    b.sheet.writeNum(1, 3, 4, nullptr);
    int rf = 0, rl = 0, cf = 0, cl = 0;
    EXPECT_TRUE(b.sheet.getMerge(2, 2, &rf, &rl, &cf, &cl));
    EXPECT_EQ(std::vector<int>({rf, rl, cf, cl}), std::vector<int>({1, 2, 1, 3}));

    ASSERT_TRUE(b.sheet.clear(2, 5, 3, 3));
    EXPECT_FALSE(b.sheet.getMerge(2, 2, &rf, &rl, &cf, &cl));
    EXPECT_EQ(b.owner.msg(), "this cell isn't in merging block");
    EXPECT_EQ(b.sheet.cellType(2, 1), CELLTYPE_EMPTY);  // a blank of the area, outside the range
    EXPECT_EQ(b.sheet.cellType(1, 1), CELLTYPE_NUMBER); // values stay
    EXPECT_EQ(b.sheet.cellType(1, 3), CELLTYPE_NUMBER);

    struct Case {
        int rf, rl, cf, cl;
        const char *message;
    } bad[] = {{5, 4, 0, 0, "rowLast must be greater than or equal to rowFirst"},
               {0, 0, 5, 4, "colLast must be greater than or equal to colFirst"}};
    for (const Case &c : bad) {
        EXPECT_FALSE(b.sheet.clear(c.rf, c.rl, c.cf, c.cl));
        EXPECT_EQ(b.owner.msg(), c.message);
        EXPECT_FALSE(b.sheet.setMerge(c.rf, c.rl, c.cf, c.cl));
        EXPECT_EQ(b.owner.msg(), c.message);
    }
    // Out-of-range bounds are clamped.
    EXPECT_TRUE(b.sheet.clear(-5, 100000, -1, 1000));
    EXPECT_EQ(b.sheet.cellType(1, 1), CELLTYPE_EMPTY);

    EXPECT_TRUE(b.sheet.setMerge(0, 0, 0, 1));
    EXPECT_TRUE(b.sheet.delMerge(0, 1));
    EXPECT_FALSE(b.sheet.delMerge(0, 1));
}

TEST(SheetCells, RowsAndColumns) {
    Book b;
    EXPECT_TRUE(b.sheet.setRow(3, 409.6, nullptr, false));
    EXPECT_FALSE(b.sheet.setRow(3, 409.65, nullptr, false));
    EXPECT_EQ(b.owner.msg(), "height is too big");
    EXPECT_FALSE(b.sheet.setRow(3, -1, nullptr, false));
    EXPECT_EQ(b.owner.msg(), "height can't be negative");
    EXPECT_FALSE(b.sheet.setCol(2, 4, 256, nullptr, false));
    EXPECT_EQ(b.owner.msg(), "width must be in range 0-255");
    EXPECT_FALSE(b.sheet.setCol(2, 4, -1, nullptr, false));
    // A row hidden by its height is shown again by its flag.
    EXPECT_TRUE(b.sheet.setRow(4, 15, nullptr, true) && b.sheet.rowHidden(4));
    EXPECT_TRUE(b.sheet.setRowHidden(4, false));
    EXPECT_FALSE(b.sheet.rowHidden(4));
    // Hiding a column of a run splits the run.
    EXPECT_TRUE(b.sheet.setCol(2, 4, 20, nullptr, false));
    EXPECT_TRUE(b.sheet.setColHidden(3, true));
    EXPECT_FALSE(b.sheet.colHidden(2));
    EXPECT_FALSE(b.sheet.setCol(4, 2, 20, nullptr, false));
    EXPECT_EQ(b.owner.msg(), "colLast must be greater than or equal to colFirst");
    EXPECT_FALSE(b.sheet.setColHidden(256, true));
    EXPECT_EQ(b.owner.msg(), "col must be in range 0-255");
}

TEST(SheetCells, NameAddressesAndLaterOperations) {
    Book b;
    b.sheet.setName(std::string(40, 'n').c_str());
    EXPECT_EQ(b.owner.msg(), "warning: sheet's name is cut to 31 characters");
    EXPECT_EQ(b.sheet.wideName(), std::wstring(31, L'n'));
    // Cut at a whole character: the pair at units 31 and 32 goes whole.
    b.sheet.setName((std::string(30, 'p') + "\xF0\x9F\x98\x80").c_str());
    EXPECT_EQ(b.sheet.wideName(), std::wstring(30, L'p'));
    b.sheet.setName("");
    EXPECT_EQ(b.owner.msg(), "sheet's name is empty");
    EXPECT_EQ(b.sheet.wideName(), std::wstring(30, L'p'));

    EXPECT_STREQ(b.sheet.rowColToAddr(0, 0, true, true), "A1");
    EXPECT_STREQ(b.sheet.rowColToAddr(9, 26, false, false), "$AA$10");
    int row = -5, col = -5;
    bool rr = true, cr = true;
    b.sheet.addrToRowCol("$B$2", &row, &col, &rr, &cr);
    EXPECT_EQ(std::make_tuple(row, col, rr, cr), std::make_tuple(1, 1, false, false));
}

TEST(SheetCells, CopyIntoAnotherBookMovesStringsAndFormats) {
    Book src;
    IFormatT<char> *f = src.owner.styles().addFormat(nullptr);
    f->setNumFormat(14);
    src.sheet.writeNum(0, 0, 45000, f);
    src.sheet.writeStr(1, 0, "carried", nullptr);
    src.sheet.writeStr(2, 0, "carried", f);
    src.sheet.setRow(3, 30, f, false);

    FakeOwner<char> dst;
    dst.sst().insert(L"already here", false);
    SheetImplT<char> &copy = dst.addCopy(src.sheet);
    EXPECT_EQ(copy.wideName(), L"Sheet1");
    EXPECT_STREQ(copy.readStr(1, 0, nullptr), "carried");
    EXPECT_STREQ(copy.readStr(2, 0, nullptr), "carried");
    EXPECT_TRUE(copy.isDate(0, 0));
    IFormatT<char> *mapped = copy.cellFormat(0, 0);
    ASSERT_NE(mapped, nullptr);
    EXPECT_NE(mapped, f);
    EXPECT_EQ(mapped, copy.cellFormat(2, 0)); // one new format for both cells
    EXPECT_EQ(mapped, copy.cellFormat(3, 5)); // and the row's
    // Each xf the sheet uses becomes one new format: f and the default 15.
    EXPECT_EQ(dst.styles().formatSize(), 21 + 2);
    EXPECT_EQ(copy.cellFormat(1, 0)->numFormat(), 0);

    // A copy within the same book keeps indexes and formats.
    SheetImplT<char> &twin = src.owner.addCopy(src.sheet);
    EXPECT_EQ(twin.cellFormat(0, 0), f);
    twin.writeStr(1, 0, "changed", nullptr);
    EXPECT_STREQ(src.sheet.readStr(1, 0, nullptr), "carried");
}

} // namespace
