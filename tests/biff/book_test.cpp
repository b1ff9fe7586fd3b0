// The binary book: a new book's tables, loads that fail and leave a new
// book, the sheet list with its names and self-reference, records kept
// through a save, files of wide names, the older format, and
// the files of other producers.
#include "biff/book_impl.h"
#include "biff/sheet_impl.h"
#include "book/encoding.h"
#include "support/binary_book.h"
#include "support/interop_tools.h"
#include "support/record_trip.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

using namespace tabrix;
using namespace bifftest;

namespace {

using Book = BookImplT<char>;
using BookPtr = BinaryBook<>;

BookPtr newBook() { return newBinaryBook(); }
std::string saved(Book &b) { return savedBytes(b); }

Bytes bofData(uint16_t vers, uint16_t dt) {
    Bytes d = words({vers, dt, 8346, 1997});
    return vers == 0x0600 ? d + words({49353, 0, 774, 0}) : d;
}

Bytes word(uint16_t w) { return words({w}); }

// A BoundSheet8 of an 8-bit name; BIFF5 has no flags byte.
Bytes boundSheet(const std::string &name, bool biff5 = false) {
    Bytes d = {0, 0, 0, 0, 0, 0, uint8_t(name.size())};
    if (!biff5) d.push_back(0);
    return d + Bytes(name.begin(), name.end());
}

Bytes number(uint16_t row, uint16_t col, double v) {
    Bytes d = words({row, col, 15}) + Bytes(8);
    std::memcpy(d.data() + 6, &v, 8);
    return d;
}

// A name of sheet `itab` (1-based) with a 7-byte 3D reference formula.
Bytes lbl(const std::string &name, uint16_t itab, uint16_t ixti) {
    Bytes d = Bytes{0, 0, 0, uint8_t(name.size())} + words({7, 0, itab}) + Bytes(5);
    return d + Bytes(name.begin(), name.end()) + Bytes{0x3A} + words({ixti, 0, 0});
}

// A workbook stream: globals (Bof, `extra`, one BoundSheet8 a sheet, EOF),
// then each sheet's substream with a number in A1 equal to its position.
Bytes workbook(const Records &extra, const std::vector<std::string> &sheets,
               uint16_t vers = 0x0600) {
    Bytes wb;
    record(wb, 2057, bofData(vers, 5));
    for (const auto &r : extra) record(wb, r.first, r.second);
    for (const std::string &s : sheets) record(wb, 133, boundSheet(s, vers == 0x0500));
    record(wb, 10, {});
    for (size_t i = 0; i < sheets.size(); ++i) {
        record(wb, 2057, bofData(vers, 16));
        record(wb, 515, number(0, 0, double(i)));
        record(wb, 10, {});
    }
    return wb;
}

BookPtr loaded(const Bytes &wb) { return loadedBook(rawBook(wb)); }

// Records of the globals of a saved file, up to their EOF.
Records globalsOf(const std::string &file) {
    Opened o(file);
    Records out;
    for (auto &r : o.records()) {
        out.push_back(r);
        if (r.first == 10) break;
    }
    return out;
}

void expectFresh(Book &b) {
    EXPECT_EQ(std::make_tuple(b.sheetCount(), b.formatSize(), b.fontSize(), b.biffVersion()),
              std::make_tuple(0, 21, 5, 0x0600));
}

TEST(BookTest, FailedLoadsLeaveANewBook) {
    auto one = [](uint16_t id, Bytes data) { return workbook({{id, data}}, {"S"}); };
    auto globalsOnly = [](const Bytes &tail, uint16_t vers = 0x0600) {
        Bytes wb;
        record(wb, 2057, bofData(vers, 5));
        return wb + tail;
    };
    Bytes manySheets;
    for (int i = 0; i <= Book::kMaxSheets; ++i) record(manySheets, 133, boundSheet("s"));
    const struct {
        Bytes stream;
        std::string message;
    } cases[] = {
        {one(47, Bytes(6, 0)), "workbook is encrypted"},
        {globalsOnly({}, 0x0400), "This file format isn't supported"},
        {globalsOnly(words({0, 2, 0})), "read error: record id can't be 0"},
        {globalsOnly(words({0x1234, 8000})), "read error: workbook stream is truncated"},
        {globalsOnly(manySheets), "workbook has too many sheets"},
        {one(61, Bytes(17, 0)), "Window1 size is incorrect"},
        {one(66, Bytes(3, 0)), "CodePage size is incorrect"},
        {one(352, Bytes(1, 0)), "UsesELFs size is incorrect"},
        {one(140, Bytes(2, 0)), "Country size is incorrect"},
        {one(449, Bytes(7, 0)), "RecalcId size is incorrect"},
        {one(317, Bytes(3, 0)), "RRTabId size is incorrect"},
        {one(448, Bytes(1, 0)), "Excel9File size is incorrect"},
        {one(1054, Bytes(2, 0)), "Format size is incorrect"},
        {one(133, Bytes(7, 0)), "BoundSheet8 size is incorrect"},
        {one(226, Bytes(1, 0)), "InterfaceEnd size is incorrect"},
        {one(193, Bytes(3, 0)), "Mms size is incorrect"},
        {one(2147, Bytes(23, 0)), "BookExt size is incorrect"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.message);
        BookPtr b = newBook();
        ASSERT_NE(b->addSheet("old", nullptr), nullptr);
        std::string file = rawBook(c.stream);
        EXPECT_FALSE(b->loadRaw(file.data(), unsigned(file.size())));
        EXPECT_EQ(b->errorMessage(), c.message);
        expectFresh(*b);
    }
    BookPtr b = newBook();
    b->addSheet("old", nullptr);
    EXPECT_FALSE(b->load((tmpPath("no-such-dir") + "/missing.xls").c_str()));
    EXPECT_STREQ(b->errorMessage(), "can't open file for reading");
    expectFresh(*b);
    EXPECT_FALSE(b->loadRaw("not a workbook", 14));
    expectFresh(*b);
}

// Three sheets; names of sheets 1, 2 (two) and 3; the self-reference with
// one entry per sheet and one over sheets 0-2.
Bytes namedWorkbook() {
    Bytes ext = words({4, 0, 0, 0, 0, 1, 1, 0, 2, 2, 0, 0, 2});
    return workbook({{430, {3, 0, 1, 4}},
                     {23, ext},
                     {24, lbl("one", 1, 0)},
                     {24, lbl("two", 2, 1)},
                     {24, lbl("twoB", 2, 1)},
                     {24, lbl("three", 3, 2)}},
                    {"A", "B", "C"});
}

std::vector<uint16_t> itabs(Book &b) {
    std::vector<uint16_t> out;
    for (const Lbl &l : b.names()) out.push_back(l.itab);
    return out;
}

std::vector<uint16_t> xtis(Book &b) {
    std::vector<uint16_t> out;
    for (const XTI &x : b.supBooks().at(0).externSheet.rgXTI) {
        out.push_back(x.itabFirst);
        out.push_back(x.itabLast);
    }
    return out;
}

TEST(BookTest, NamesAndSelfReferenceFollowTheSheets) {
    BookPtr b = loaded(namedWorkbook());
    ASSERT_EQ(b->sheetCount(), 3);
    EXPECT_EQ(itabs(*b), (std::vector<uint16_t>{1, 2, 2, 3}));

    ASSERT_NE(b->insertSheet(1, "New", nullptr), nullptr);
    EXPECT_EQ(itabs(*b), (std::vector<uint16_t>{1, 3, 3, 4}));
    EXPECT_EQ(xtis(*b), (std::vector<uint16_t>{0, 0, 2, 2, 3, 3, 0, 3}));
    // A range over the removed sheet points nowhere.
    EXPECT_TRUE(b->delSheet(1));
    EXPECT_EQ(itabs(*b), (std::vector<uint16_t>{1, 2, 2, 3}));
    EXPECT_EQ(xtis(*b), (std::vector<uint16_t>{0, 0, 1, 1, 2, 2, 0xFFFF, 0xFFFF}));

    // Deleting sheet 1 removes one of its two names; its entry points
    // nowhere, the ones behind move down.
    EXPECT_TRUE(b->delSheet(1));
    EXPECT_EQ(itabs(*b), (std::vector<uint16_t>{1, 2, 2}));
    EXPECT_EQ(xtis(*b), (std::vector<uint16_t>{0, 0, 0xFFFF, 0xFFFF, 1, 1, 0xFFFF, 0xFFFF}));
    EXPECT_EQ(b->supBooks().at(0).supBook.data.at(0), 2);

    // The changes survive a save.
    BookPtr c = loadedBook(saved(*b));
    EXPECT_EQ(itabs(*c), (std::vector<uint16_t>{1, 2, 2}));
    EXPECT_EQ(xtis(*c), (std::vector<uint16_t>{0, 0, 0xFFFF, 0xFFFF, 1, 1, 0xFFFF, 0xFFFF}));
    EXPECT_EQ(c->getSheet(1)->readNum(0, 0, nullptr), 2.0);
}

// Globals with values other than a new book's, in the order a save writes
// them, so that the saved globals must equal them record for record.
Records canonicalGlobals() {
    Bytes window1 = words({10, 20, 3000, 4000, 0x38, 1, 0, 1, 500});
    Bytes country = words({44, 49}), recalc = words({449, 0}) + words({0xE240, 1});
    Bytes ext = words({1, 0, 1, 1}), sst = words({1, 0, 1, 0, 2}) + Bytes{0, 'h', 'i'};
    return {{2057, bofData(0x0600, 5)},
            {96, {}},
            {225, word(1252)},
            {193, {1, 2}},
            {226, {}},
            {92, seq(112, 3)},
            {66, word(1252)},
            {353, word(1)},
            {317, {1, 0, 2, 0}},
            {211, {}},
            {442, seq(9, 1)},
            {156, word(17)},
            {25, word(1)},
            {18, word(1)},
            {19, word(0xABCD)},
            {431, word(1)},
            {444, word(0x1234)},
            {61, window1},
            {64, word(1)},
            {141, word(2)},
            {34, word(1)},
            {14, word(0)},
            {439, word(1)},
            {218, word(1)},
            {2172, seq(12, 5)},
            {2173, seq(20, 6)},
            {2173, seq(21, 7)},
            {2190, seq(8, 8)},
            {4188, seq(6, 9)},
            {352, word(1)},
            {133, boundSheet("One")},
            {133, boundSheet("Two")},
            {2202, seq(4, 10)},
            {2211, seq(4, 11)},
            {140, country},
            {430, {2, 0, 1, 4}},
            {23, ext},
            {24, lbl("nm", 2, 0)},
            {449, recalc},
            {2150, seq(30, 12)},
            {235, seq(40, 13)},
            {60, seq(10, 14)},
            {252, sst},
            {2198, seq(16, 15)},
            {2203, seq(3, 16)},
            {2188, seq(5, 17)},
            {0x1234, seq(7, 18)},
            {10, {}}};
}

TEST(BookTest, GlobalsComeBackRecordForRecord) {
    // Behind the canonical globals: BookExt, which a save drops, and an
    // unknown empty record, which it keeps.
    auto globals = canonicalGlobals();
    Bytes bookExt = word(2147) + Bytes(10) + Bytes{21, 0, 0, 0, 0, 0, 0, 0, 158};
    globals.insert(globals.end() - 1, {{2147, bookExt}, {0x4321, {}}});
    Bytes wb = stream(globals);
    for (int i = 0; i < 2; ++i) {
        record(wb, 2057, bofData(0x0600, 16));
        record(wb, 515, number(0, 0, i));
        record(wb, 10, {});
    }
    BookPtr b = loaded(wb);
    EXPECT_EQ(b->activeSheet(), 1);
    EXPECT_TRUE(b->isTemplate() && b->isDate1904() && b->hasBookExt());
    EXPECT_EQ(b->words().interfaceHdr, 1252);

    globals.erase(globals.end() - 3);
    auto out = globalsOf(saved(*b));
    ASSERT_EQ(out.size(), globals.size());
    for (size_t i = 0; i < out.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(out[i].first, globals[i].first);
        // The sheets' positions are new; the rest of BoundSheet8 is not.
        size_t from = out[i].first == 133 ? 4 : 0;
        ASSERT_GE(out[i].second.size(), from);
        EXPECT_EQ(Bytes(out[i].second.begin() + long(from), out[i].second.end()),
                  Bytes(globals[i].second.begin() + long(from), globals[i].second.end()));
    }
}

// A wide book through a file whose name is not ASCII; a file that can't be
// written.
TEST(BookTest, FilesOfWideNames) {
    BinaryBook<wchar_t> w = newBinaryBook<wchar_t>();
    w->addSheet(L"Donn\u00e9es", nullptr)->writeStr(2, 1, L"\u00ff\u20ac", nullptr);
    std::string narrow = tmpPath("book_test_wide_\xC3\xA9.xls");
    std::wstring wpath;
    utf8ToWide(narrow.c_str(), wpath);
    ASSERT_TRUE(w->save(wpath.c_str())) << w->errorMessage();
    w->clear();
    EXPECT_EQ(w->sheetCount(), 0);
    ASSERT_TRUE(w->load(wpath.c_str())) << w->errorMessage();
    EXPECT_STREQ(w->getSheet(0)->name(), L"Donn\u00e9es");
    EXPECT_STREQ(w->getSheet(0)->readStr(2, 1, nullptr), L"\u00ff\u20ac");
    std::remove(narrow.c_str());
    EXPECT_FALSE(w->save((wpath + L".d/x.xls").c_str()));
    EXPECT_STREQ(w->errorMessage(), L"can't open file for writing");
}

TEST(BookTest, OlderFormatLoadsButIsNotSaved) {
    BookPtr b = loaded(workbook({}, {"Old one", "Two"}, 0x0500));
    EXPECT_EQ(b->biffVersion(), 0x0500);
    const char *data = nullptr;
    unsigned size = 0;
    EXPECT_FALSE(b->saveRaw(&data, &size));
    EXPECT_STREQ(b->errorMessage(), "a workbook loaded from the BIFF5 format can't be saved");
    EXPECT_EQ(b->sheetCount(), 2);
}

// Every cell of every sheet as text, for comparing two loads.
std::vector<std::string> cellsOf(Book &b) {
    std::vector<std::string> out;
    for (int i = 0; i < b.sheetCount(); ++i) {
        ISheetT<char> *s = b.getSheet(i);
        out.push_back(std::string("sheet ") + s->name());
        if (b.sheetType(i) != SHEETTYPE_SHEET) continue;
        for (int r = s->firstRow(); r < s->lastRow(); ++r)
            for (int c = s->firstCol(); c < s->lastCol(); ++c) {
                CellType t = s->cellType(r, c);
                std::string v;
                if (t == CELLTYPE_NUMBER) {
                    double d = s->readNum(r, c, nullptr);
                    v = std::isnan(d) ? "nan" : std::to_string(d);
                } else if (t == CELLTYPE_STRING) {
                    const char *text = s->readStr(r, c, nullptr);
                    v = text ? text : "(null)";
                } else if (t == CELLTYPE_BOOLEAN) {
                    v = s->readBool(r, c, nullptr) ? "true" : "false";
                }
                if (t != CELLTYPE_EMPTY)
                    out.push_back(std::to_string(r) + "," + std::to_string(c) + ":" +
                                  std::to_string(int(t)) + ":" + v);
            }
    }
    return out;
}

// ---- what real producers write ----

Bytes cellHead(uint16_t row, uint16_t col) { return words({row, col, 15}); }

// One sheet "S" behind globals of version `vers` with `globals` records,
// its own header claiming the current version, then `sheet`.
Bytes quirkBook(uint16_t vers, const Bytes &globals, const Bytes &sheet) {
    Bytes wb;
    record(wb, 2057, bofData(vers, 5));
    wb.insert(wb.end(), globals.begin(), globals.end());
    // An older book's name is in its code page (1251 in the cases).
    record(wb, 133, vers == 0x0500 ? boundSheet("S\xCF", true) : boundSheet("S"));
    record(wb, 10, {});
    record(wb, 2057, bofData(0x0600, 16));
    wb.insert(wb.end(), sheet.begin(), sheet.end());
    record(wb, 10, {});
    return wb;
}

// The saved book's record `id` (first of the stream).
Bytes savedRecord(Book &b, uint16_t id) {
    Opened o(saved(b));
    for (const auto &r : o.records())
        if (r.first == id) return r.second;
    return Bytes{0xEE};
}

TEST(BookTest, ProducerQuirksLoad) {
    const Bytes a1 = rec(515, number(0, 0, 7));
    auto dbl = [](double v) {
        Bytes n = number(0, 0, v);
        return Bytes(n.begin() + 6, n.end());
    };
    // One producer's CalcDelta: 8 bytes of garbage, then the value.
    const Bytes calcDelta = Bytes(8, 0xFF) + dbl(0.5);
    // Older format: Index with 16-bit rows, 8-bit header, Label without
    // flags in code page 1251, and a formula's string result.
    Bytes index = {0, 0, 0, 0, 0, 0, 3, 0, 0, 0, 0, 0};
    Bytes formula =
        cellHead(1, 0) + Bytes{0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 3, 0, 0x1E, 1, 0};
    Bytes oldSheet = rec(523, index) + rec(20, {3, 'H', 'd', 'r'}) +
                     rec(516, cellHead(0, 0) + Bytes{2, 0, 0xCF, 0xF0}) + rec(6, formula) +
                     rec(519, {2, 0, 'o', 'k'});
    struct Case {
        const char *what;
        Bytes globals, sheet;
        std::vector<std::string> cells; // or "!" and the message of a refused load
        std::function<void(Book &)> more = nullptr;
        uint16_t vers = 0x0600;
    };
    const std::vector<Case> cases = {
        {"BoolErr of 9 bytes", {}, rec(517, cellHead(0, 1) + Bytes{1, 0, 0}), {"0,1:3:true"}},
        {"Label with zeros behind its text",
         {},
         rec(516, cellHead(0, 0) + Bytes{2, 0, 0, 'a', 'b', 0, 0}),
         {"0,0:2:ab"}},
        {"Dimensions of 16 bytes", {}, rec(512, Bytes(16, 0)) + a1, {"0,0:1:7.000000"}},
        {"CalcDelta of 16 bytes keeps its default",
         {},
         rec(16, calcDelta) + rec(12, Bytes(3, 9)) + a1,
         {"0,0:1:7.000000"},
         [&](Book &b) {
             EXPECT_EQ(savedRecord(b, 16), dbl(0.001));
             EXPECT_EQ(savedRecord(b, 12), word(100));
         }},
        {"id 0 in a sheet dropped",
         {},
         a1 + Bytes(4, 0) + rec(0, Bytes(8, 1)) + rec(515, number(1, 0, 8)),
         {"0,0:1:7.000000", "1,0:1:8.000000"},
         [&](Book &b) { EXPECT_EQ(savedRecord(b, 10).size(), 0u); }},
        {"InterfaceEnd and Template of a word",
         rec(226, word(0)) + rec(96, word(0)),
         a1,
         {"0,0:1:7.000000"},
         [&](Book &b) { EXPECT_TRUE(b.isTemplate()); }},
        {"id 0 in the globals", rec(0, {}), a1, {"!read error: record id can't be 0"}},
        {"Format one character short",
         rec(1054, {164, 0, 3, 0, 0, 'a', 'b'}),
         a1,
         {"0,0:1:7.000000"},
         [&](Book &b) { EXPECT_STREQ(b.customNumFormat(164), "ab"); }},
        {"older format, newer sheet header",
         rec(66, word(1251)),
         oldSheet,
         {"0,0:2:\xD0\x9F\xD1\x80", "1,0:2:ok"},
         [&](Book &b) { EXPECT_STREQ(b.getSheet(0)->header(), "Hdr"); },
         0x0500},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        std::string file = rawBook(quirkBook(c.vers, c.globals, c.sheet));
        BookPtr b = newBook();
        bool loaded = b->loadRaw(file.data(), unsigned(file.size()));
        if (c.cells[0][0] == '!') {
            EXPECT_FALSE(loaded);
            EXPECT_EQ("!" + std::string(b->errorMessage()), c.cells[0]);
            continue;
        }
        ASSERT_TRUE(loaded) << b->errorMessage();
        std::vector<std::string> want = {c.vers == 0x0500 ? "sheet S\xD0\x9F" : "sheet S"};
        want.insert(want.end(), c.cells.begin(), c.cells.end());
        EXPECT_EQ(cellsOf(*b), want);
        if (c.more) c.more(*b);
    }
}

} // namespace
