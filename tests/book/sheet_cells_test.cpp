// Cells through the public sheet interface of each kind of book: the range
// gates and their messages, every kind of value through a save and a load,
// reversed clears, and copies of cells.
#include "support/book_kinds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>

using namespace tabrix;
using namespace bookkinds;

namespace {

using Sheet = ISheetT<char>;

class SheetCells : public ::testing::TestWithParam<BookKind> {
protected:
    BookPtr newBook() { return bookkinds::newBook(GetParam()); }
    BookPtr reloaded(IBookT<char> &b) { return bookkinds::reloaded(GetParam(), b); }
};

std::string text(const char *t) { return t ? t : "(null)"; }

// A cell as one line: its kind and value, "date" when it is one, and the
// number format.  A formula shows its text alone: its cached value differs
// by kind (a binary book caches 0, an Open XML one nothing).
std::string describe(Sheet &s, int row, int col) {
    if (s.isFormula(row, col)) return "formula " + text(s.readFormula(row, col, nullptr));
    IFormatT<char> *f = s.cellFormat(row, col);
    std::string tail =
        (s.isDate(row, col) ? " date " : " ") + std::to_string(f ? f->numFormat() : -1);
    switch (s.cellType(row, col)) {
    case CELLTYPE_NUMBER: {
        char b[40];
        std::snprintf(b, sizeof b, "%.17g", s.readNum(row, col, nullptr));
        return "number " + std::string(b) + tail;
    }
    case CELLTYPE_STRING: return "string [" + text(s.readStr(row, col, nullptr)) + "]" + tail;
    case CELLTYPE_BOOLEAN: return s.readBool(row, col, nullptr) ? "true" : "false";
    case CELLTYPE_BLANK: return "blank" + tail;
    case CELLTYPE_EMPTY: return "empty";
    default: return "error " + std::to_string(int(s.readError(row, col)));
    }
}

TEST_P(SheetCells, OutOfRangeCellsGiveTheRangeMessages) {
    const BookKind &k = GetParam();
    BookPtr book = newBook();
    Sheet *s = book->addSheet("S", nullptr);
    IFormatT<char> *f = book->addFormat(nullptr);
    const std::string row = "row must be in range 0-" + std::to_string(k.lastRow);
    const std::string col = "col must be in range 0-" + std::to_string(k.lastCol);
    struct Case {
        int r, c;
        std::string message;
    } cases[] = {{-1, 0, row}, {k.lastRow + 1, 0, row}, {0, k.lastCol + 1, col}, {0, -1, col}};
    for (const Case &c : cases) {
        SCOPED_TRACE(std::to_string(c.r) + "," + std::to_string(c.c));
        const std::string read = k.readBeyond ? k.readBeyond : c.message;
        const std::pair<std::function<bool()>, std::string> calls[] = {
            {[&] { return !s->writeNum(c.r, c.c, 1, nullptr); }, c.message},
            {[&] { return !s->writeStr(c.r, c.c, "x", nullptr); }, c.message},
            {[&] { return !s->writeBool(c.r, c.c, true, nullptr); }, c.message},
            {[&] { return !s->writeBlank(c.r, c.c, f); }, c.message},
            {[&] { return !s->writeFormula(c.r, c.c, "1+1", nullptr); }, c.message},
            {[&] { return s->readNum(c.r, c.c, nullptr) == 0.0; }, read},
            {[&] { return s->readStr(c.r, c.c, nullptr) == nullptr; }, read},
            {[&] { return !s->copyCell(0, 0, c.r, c.c); }, c.message},
        };
        s->writeNum(0, 0, 1, nullptr);
        for (const auto &call : calls) {
            EXPECT_TRUE(call.first());
            EXPECT_EQ(text(book->errorMessage()), call.second);
        }
        EXPECT_EQ(s->lastRow(), 1);
    }
    // The last cell itself is there after a save and a load.
    ASSERT_TRUE(s->writeNum(k.lastRow, k.lastCol, -2, nullptr)) << book->errorMessage();
    BookPtr back = reloaded(*book);
    Sheet *t = back->getSheet(0);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->readNum(k.lastRow, k.lastCol, nullptr), -2);
    EXPECT_EQ(t->lastRow(), k.lastRow + 1);
    EXPECT_EQ(t->lastCol(), k.lastCol + 1);
}

// Every kind of value, the texts a file format must escape among them, reads
// the same before and after a save and a load.
TEST_P(SheetCells, ValuesComeBackFromASavedBook) {
    BookPtr book = newBook();
    Sheet *s = book->addSheet("Values", nullptr);
    IFormatT<char> *date = book->addFormat(nullptr);
    date->setNumFormat(14);
    IFormatT<char> *custom = book->addFormat(nullptr);
    const int ymd = book->addCustomNumFormat("yyyy-mm-dd hh:mm");
    custom->setNumFormat(ymd);
    const std::string ymdText = std::to_string(ymd);
    struct Case {
        std::function<bool(Sheet &)> write;
        std::string expected;
    };
    const Case cases[] = {
        {[](Sheet &t) { return t.writeNum(0, 0, 0.1, nullptr); }, "number 0.10000000000000001 0"},
        {[](Sheet &t) { return t.writeNum(0, 1, -1e300, nullptr); },
         "number -1.0000000000000001e+300 0"},
        {[](Sheet &t) { return t.writeNum(0, 2, 5e-324, nullptr); },
         "number 4.9406564584124654e-324 0"},
        {[](Sheet &t) { return t.writeNum(0, 3, 123456789012345, nullptr); },
         "number 123456789012345 0"},
        {[&](Sheet &t) { return t.writeNum(0, 4, 45322.5, date); }, "number 45322.5 date 14"},
        {[&](Sheet &t) { return t.writeNum(0, 5, 45322.25, custom); },
         "number 45322.25 date " + ymdText},
        {[](Sheet &t) { return t.writeStr(1, 0, "plain", nullptr); }, "string [plain] 0"},
        {[](Sheet &t) { return t.writeStr(1, 1, "  blanks  ", nullptr); }, "string [  blanks  ] 0"},
        {[](Sheet &t) { return t.writeStr(1, 2, "cr\r\nlf", nullptr); }, "string [cr\r\nlf] 0"},
        {[](Sheet &t) { return t.writeStr(1, 3, "_x0041_ stays", nullptr); },
         "string [_x0041_ stays] 0"},
        {[](Sheet &t) {
             return t.writeStr(1, 4, "\xF0\x9F\x98\x80 \xE6\xBC\xA2\xE5\xAD\x97", nullptr);
         },
         "string [\xF0\x9F\x98\x80 \xE6\xBC\xA2\xE5\xAD\x97] 0"},
        {[](Sheet &t) { return t.writeStr(1, 5, "ctrl \x01\t<&>\"", nullptr); },
         "string [ctrl \x01\t<&>\"] 0"},
        {[&](Sheet &t) { return t.writeStr(1, 6, "", date); }, "string [] 14"},
        {[](Sheet &t) { return t.writeBool(2, 0, true, nullptr); }, "true"},
        {[](Sheet &t) { return t.writeBool(2, 1, false, nullptr); }, "false"},
        {[&](Sheet &t) { return t.writeBlank(2, 2, date); }, "blank 14"},
        {[](Sheet &t) { return t.writeFormula(3, 0, "=SUM(A1;B1)", nullptr); },
         "formula SUM(A1;B1)"},
        {[](Sheet &t) { return t.writeFormula(3, 1, "IF(A1;\"a,b\";\"c;d\")", nullptr); },
         "formula IF(A1;\"a,b\";\"c;d\")"},
        {[](Sheet &t) { return t.writeFormula(3, 2, "Values!B2&\"x\"", nullptr); },
         "formula Values!B2&\"x\""},
    };
    std::map<std::string, std::string> expected;
    for (const Case &c : cases)
        EXPECT_TRUE(c.write(*s)) << c.expected << ": " << book->errorMessage();
    auto all = [](Sheet &t) {
        std::map<std::string, std::string> m;
        for (int r = 0; r < t.lastRow(); ++r)
            for (int c = 0; c < t.lastCol(); ++c)
                if (t.cellType(r, c) != CELLTYPE_EMPTY || t.isFormula(r, c))
                    m[std::to_string(r) + "," + std::to_string(c)] = describe(t, r, c);
        return m;
    };
    std::map<std::string, std::string> before = all(*s);
    std::vector<std::string> wanted, got;
    for (const Case &c : cases) wanted.push_back(c.expected);
    for (const auto &cell : before) got.push_back(cell.second);
    std::sort(wanted.begin(), wanted.end());
    std::sort(got.begin(), got.end());
    EXPECT_EQ(got, wanted);
    BookPtr back = reloaded(*book);
    ASSERT_NE(back->getSheet(0), nullptr);
    EXPECT_EQ(all(*back->getSheet(0)), before);
}

TEST_P(SheetCells, ReversedClearsGiveTheirMessages) {
    BookPtr book = newBook();
    Sheet &s = *book->addSheet("S", nullptr);
    struct Case {
        int rf, rl, cf, cl;
        const char *message;
    } bad[] = {{5, 4, 0, 0, "rowLast must be greater than or equal to rowFirst"},
               {0, 0, 5, 4, "colLast must be greater than or equal to colFirst"}};
    for (const Case &c : bad) {
        EXPECT_FALSE(s.clear(c.rf, c.rl, c.cf, c.cl));
        EXPECT_EQ(text(book->errorMessage()), c.message);
    }
}

TEST_P(SheetCells, CopyCellCopiesEveryKind) {
    BookPtr book = newBook();
    Sheet &s = *book->addSheet("S", nullptr);
    IFormatT<char> *f = book->addFormat(nullptr);
    f->setNumFormat(2);
    s.writeNum(0, 0, 1.5, f);
    s.writeNum(0, 1, 0.1, nullptr);
    s.writeStr(0, 2, "text", nullptr);
    s.writeBool(0, 3, true, nullptr);
    s.writeBlank(0, 4, f);
    for (int c = 0; c < 5; ++c) {
        SCOPED_TRACE(c);
        ASSERT_TRUE(s.copyCell(0, c, 5, c)) << book->errorMessage();
        EXPECT_EQ(describe(s, 5, c), describe(s, 0, c));
    }
    // The copy shares the string: changing it leaves the source alone.
    s.writeStr(5, 2, "other", nullptr);
    EXPECT_STREQ(s.readStr(0, 2, nullptr), "text");
    // Onto a cell of the same kind, in place.
    ASSERT_TRUE(s.copyCell(0, 0, 5, 1));
    EXPECT_EQ(s.readNum(5, 1, nullptr), 1.5);

    EXPECT_FALSE(s.copyCell(9, 9, 5, 5));
    EXPECT_EQ(text(book->errorMessage()), GetParam().noSourceCell);
}

INSTANTIATE_TEST_SUITE_P(Kinds, SheetCells, ::testing::ValuesIn(kBookKinds), kindName);

} // namespace
