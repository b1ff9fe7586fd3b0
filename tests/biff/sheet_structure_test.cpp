// Structure edits of a binary sheet: each edit runs on the same small sheet,
// which is then saved and loaded again; where every cell, merge, row and
// column property, outline level and range name ended up is compared with
// the expected places, and refused edits with their messages.
#include "biff/book_impl.h"
#include "biff/sheet_impl.h"
#include "support/binary_book.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

using namespace tabrix;
using namespace bifftest;

namespace {

using Sheet = ISheetT<char>;
using Book = BinaryBook<>;

const int kRows = 8, kCols = 5;

double valueAt(int r, int c) { return 100 * r + c + 1; }

// Cells (r, c) = valueAt; rows 2-4 x cols 1-2 merged; row 3 30 points
// high, row 6 hidden; column 2 20 characters wide; a cell name at B6, an
// area name over A2:B4; a formula =A1 in A9.
Book baseBook() {
    Book b = newBinaryBook();
    Sheet *s = b->addSheet("S", nullptr);
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kCols; ++c) s->writeNum(r, c, valueAt(r, c), nullptr);
    s->setMerge(2, 4, 1, 2);
    s->setRow(3, 30, nullptr, false);
    s->setRowHidden(6, true);
    s->setCol(2, 2, 20, nullptr, false);
    s->setNamedRange("one", 5, 5, 1, 1, -1);
    s->setNamedRange("area", 1, 3, 0, 1, -1);
    s->writeFormula(8, 0, "A1", nullptr);
    return b;
}

Book reloaded(BookImplT<char> &b) { return loadedBook(savedBytes(b)); }

// "0 1 - 2" -> {0, 1, -1, 2}: new position i holds old position v.
std::vector<int> places(const std::string &text) {
    std::vector<int> out;
    std::istringstream in(text);
    for (std::string w; in >> w;) out.push_back(w == "-" ? -1 : std::stoi(w));
    return out;
}

// The cells of the window that differ from what the mappings say.
std::string misplacedCells(Sheet &s, const std::string &rowText, const std::string &colText) {
    const std::vector<int> rows = places(rowText), cols = places(colText);
    std::string wrong;
    for (int r = 0; r < 12; ++r)
        for (int c = 0; c < 8; ++c) {
            const int from = r < int(rows.size()) ? rows[size_t(r)] : -1;
            const int fromCol = c < int(cols.size()) ? cols[size_t(c)] : -1;
            const bool want = from >= 0 && from < kRows && fromCol >= 0 && fromCol < kCols;
            const bool have = s.cellType(r, c) == CELLTYPE_NUMBER && !s.isFormula(r, c);
            if (want != have || (have && s.readNum(r, c, nullptr) != valueAt(from, fromCol)))
                wrong += std::string(s.rowColToAddr(r, c, true, true)) + " ";
        }
    return wrong;
}

// Merges, row and column properties, outline levels, names and the formula.
std::string shapeOf(SheetImplT<char> &s) {
    std::ostringstream os;
    for (const MergeCells &m : s.mergeCells())
        for (const MergeCells::Area &a : m.areas)
            os << "m" << a.ref.rwFirst << "-" << a.ref.rwLast << "/" << a.ref.colFirst << "-"
               << a.ref.colLast << " ";
    std::vector<Row> rows = s.rows();
    std::sort(rows.begin(), rows.end(), [](const Row &a, const Row &b) { return a.row < b.row; });
    for (const Row &r : rows) {
        if (r.height == 255 && !(r.flags & 0x37)) continue;
        os << "r" << r.row << ":" << r.height / 20.0 << (r.flags & 0x20 ? "h" : "")
           << (r.flags & 0x10 ? "c" : "");
        if (r.flags & 7) os << "L" << (r.flags & 7);
        os << " ";
    }
    for (int c = 0; c < 8; ++c) {
        char width[16];
        std::snprintf(width, sizeof width, "%.2f", s.colWidth(c));
        int level = 0;
        for (const ColInfo &ci : s.colInfos())
            if (ci.covers(c)) level = (ci.flags >> 8) & 7;
        if (std::string(width) != "8.43" || s.colHidden(c) || level)
            os << "c" << c << ":" << width << (s.colHidden(c) ? "h" : "")
               << (level ? "L" + std::to_string(level) : "") << " ";
    }
    for (const char *name : {"one", "area"}) {
        int rf = -1, rl = -1, cf = -1, cl = -1;
        if (s.getNamedRange(name, &rf, &rl, &cf, &cl, -1, nullptr))
            os << name << "=" << rf << "-" << rl << "/" << cf << "-" << cl << " ";
    }
    for (int r = 0; r < 12; ++r)
        if (s.isFormula(r, 0)) os << "f" << r << ":" << s.readFormula(r, 0, nullptr) << " ";
    std::string out = os.str();
    if (!out.empty()) out.pop_back();
    return out;
}

struct Edit {
    const char *name;
    std::function<bool(Sheet &)> run;
    const char *message;
    const char *rows; // new row i holds old row v
    const char *cols;
    const char *shape;
};

const char *kAll = "0 1 2 3 4 5 6 7 8 9 10 11";
const char *kCols5 = "0 1 2 3 4";
const char *kBaseShape = "m2-4/1-2 r3:30 r6:12.75h c2:20.00 one=5-5/1-1 area=1-3/0-1 f8:A1";

TEST(SheetStructure, EditsMoveCellsMergesPropertiesAndNames) {
    const std::vector<Edit> edits = {
        {"reversed rows", [](Sheet &s) { return s.insertRow(5, 4); },
         "rowLast must be greater than or equal to rowFirst", kAll, kCols5, kBaseShape},
        {"row out of range", [](Sheet &s) { return s.removeRow(-1, 0); },
         "row must be in range 0-65535", kAll, kCols5, kBaseShape},
        {"insert rows in a merge", [](Sheet &s) { return s.insertRow(3, 4); }, "ok",
         "0 1 2 - - 3 4 5 6 7 8", kCols5,
         "m2-2/1-2 m5-6/1-2 r5:30 r8:12.75h c2:20.00 one=7-7/1-1 area=1-5/0-1 f10:A1"},
        {"remove rows above a merge", [](Sheet &s) { return s.removeRow(1, 2); }, "ok",
         "0 3 4 5 6 7 8", kCols5,
         "m1-2/1-2 r1:30 r4:12.75h c2:20.00 one=7-7/1-1 area=1-3/0-1 f6:A1"},
        {"remove the rows of a merge", [](Sheet &s) { return s.removeRow(2, 4); }, "ok",
         "0 1 5 6 7 8", kCols5, "r3:12.75h c2:20.00 one=8-8/1-1 area=1-3/0-1 f5:A1"},
        {"remove rows inside a merge", [](Sheet &s) { return s.removeRow(3, 3); }, "ok",
         "0 1 2 4 5 6 7 8", kCols5, "m2-3/1-2 r5:12.75h c2:20.00 one=6-6/1-1 area=1-3/0-1 f7:A1"},
        {"insert a column before a merge", [](Sheet &s) { return s.insertCol(1, 1); }, "ok", kAll,
         "0 - 1 2 3 4", "m2-4/2-3 r3:30 r6:12.75h c3:20.00 one=5-5/1-1 area=1-3/0-1 f8:A1"},
        {"insert columns in a merge", [](Sheet &s) { return s.insertCol(2, 3); }, "ok", kAll,
         "0 1 - - 2 3 4",
         "m2-4/1-1 m2-4/4-4 r3:30 r6:12.75h c4:20.00 one=5-5/1-1 area=1-3/0-1 f8:A1"},
        {"remove columns into a merge", [](Sheet &s) { return s.removeCol(0, 1); }, "ok", kAll,
         "2 3 4", "m2-4/0-0 r3:30 r6:12.75h c0:20.00 one=5-5/1-1 area=1-3/0-1"},
        {"insert every row", [](Sheet &s) { return s.insertRow(0, 65535); }, "ok", "", "",
         "c2:20.00 one=65535-65535/1-1 area=65535-65535/0-1"},
        {"group rows collapsed", [](Sheet &s) { return s.groupRows(4, 5, true); }, "ok", kAll,
         kCols5,
         "m2-4/1-2 r3:30 r4:12.75hL1 r5:12.75hL1 r6:12.75hc c2:20.00 one=5-5/1-1 "
         "area=1-3/0-1 f8:A1"},
        {"group rows twice",
         [](Sheet &s) { return s.groupRows(1, 4, false) && s.groupRows(2, 3, false); }, "ok", kAll,
         kCols5,
         "m2-4/1-2 r1:12.75L1 r2:12.75L2 r3:30L2 r4:12.75L1 r6:12.75h c2:20.00 one=5-5/1-1 "
         "area=1-3/0-1 f8:A1"},
        {"group overlapping rows",
         [](Sheet &s) { return s.groupRows(1, 2, false) && s.groupRows(2, 3, false); },
         "detect overlap", kAll, kCols5,
         "m2-4/1-2 r1:12.75L1 r2:12.75L1 r3:30 r6:12.75h c2:20.00 one=5-5/1-1 area=1-3/0-1 "
         "f8:A1"},
        {"reversed group", [](Sheet &s) { return s.groupRows(3, 2, false); },
         "must be rowFirst <= rowLast", kAll, kCols5, kBaseShape},
        {"group columns", [](Sheet &s) { return s.groupCols(1, 2, true); }, "ok", kAll, kCols5,
         "m2-4/1-2 r3:30 r6:12.75h c1:8.43hL1 c2:20.00hL1 one=5-5/1-1 area=1-3/0-1 f8:A1"},
    };
    for (const Edit &e : edits) {
        SCOPED_TRACE(e.name);
        Book b = baseBook();
        Sheet *s = b->getSheet(0);
        const bool done = e.run(*s);
        EXPECT_EQ(std::string(b->errorMessage()), e.message);
        EXPECT_EQ(done, std::string(e.message) == "ok");
        Book back = reloaded(*b);
        Sheet *t = back->getSheet(0);
        auto *impl = dynamic_cast<SheetImplT<char> *>(t);
        ASSERT_TRUE(impl);
        EXPECT_EQ(misplacedCells(*t, e.rows, e.cols), "");
        EXPECT_EQ(shapeOf(*impl), e.shape);
    }
}

// Limits: the deepest outline level, and a cell pushed off the last row
// or column while its neighbours stay.
TEST(SheetStructure, LimitsAtTheEdges) {
    Book b = baseBook();
    Sheet *s = b->getSheet(0);
    for (int i = 0; i < 7; ++i) ASSERT_TRUE(s->groupRows(20, 20, false)) << i;
    EXPECT_FALSE(s->groupRows(20, 20, false));
    EXPECT_STREQ(b->errorMessage(), "outline level can't be more than 7");
    s->writeNum(65535, 255, 1, nullptr);
    s->writeNum(65534, 254, 2, nullptr);
    ASSERT_TRUE(s->insertRow(65535, 65535));
    ASSERT_TRUE(s->insertCol(254, 254));
    Book back = reloaded(*b);
    Sheet *t = back->getSheet(0);
    EXPECT_EQ(t->cellType(65535, 255), CELLTYPE_EMPTY);
    EXPECT_EQ(t->readNum(65534, 255, nullptr), 2);
    EXPECT_EQ(t->cellType(65534, 254), CELLTYPE_EMPTY);
}

} // namespace
