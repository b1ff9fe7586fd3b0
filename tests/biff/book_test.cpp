// The binary book: a new book's tables, loads that fail and leave a new
// book, the sheet list with its names and self-reference, records kept
// through a save, cells through saveRaw and loadRaw, the older format, and
// the files of other producers.
#include "biff/book_impl.h"
#include "biff/sheet_impl.h"
#include "book/encoding.h"
#include "support/biff_bytes.h"
#include "support/interop_tools.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

using namespace tabrix;
using namespace bifftest;

namespace {

using Bytes = std::vector<uint8_t>;
using Book = BookImplT<char>;

Bytes operator+(Bytes a, const Bytes &b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

struct BookDeleter {
    void operator()(Book *b) const { b->release(); }
};
using BookPtr = std::unique_ptr<Book, BookDeleter>;

BookPtr newBook() {
    BookPtr b(new BinaryBookT<char>());
    b->setLocale("UTF-8");
    return b;
}

Bytes bofData(uint16_t vers, uint16_t dt) {
    Bytes d;
    put16(d, vers);
    put16(d, dt);
    put16(d, 8346);
    put16(d, 1997);
    if (vers == 0x0600) {
        put32(d, 49353);
        put32(d, 774);
    }
    return d;
}

Bytes word(uint16_t w) {
    Bytes d;
    put16(d, w);
    return d;
}

// A BoundSheet8 of an 8-bit name; BIFF5 has no flags byte.
Bytes boundSheet(const std::string &name, bool biff5 = false) {
    Bytes d;
    put32(d, 0);
    d.push_back(0);
    d.push_back(0);
    d.push_back(uint8_t(name.size()));
    if (!biff5) d.push_back(0);
    d.insert(d.end(), name.begin(), name.end());
    return d;
}

Bytes number(uint16_t row, uint16_t col, double v) {
    Bytes d;
    put16(d, row);
    put16(d, col);
    put16(d, 15);
    uint64_t bits;
    std::memcpy(&bits, &v, 8);
    put32(d, uint32_t(bits));
    put32(d, uint32_t(bits >> 32));
    return d;
}

// A name of sheet `itab` (1-based) with a 7-byte 3D reference formula.
Bytes lbl(const std::string &name, uint16_t itab, uint16_t ixti) {
    Bytes d;
    put16(d, 0);
    d.push_back(0);
    d.push_back(uint8_t(name.size()));
    put16(d, 7);
    put16(d, 0);
    put16(d, itab);
    for (int i = 0; i < 4; ++i) d.push_back(0);
    d.push_back(0);
    d.insert(d.end(), name.begin(), name.end());
    d.push_back(0x3A);
    put16(d, ixti);
    put16(d, 0);
    put16(d, 0);
    return d;
}

// A workbook stream: globals (Bof, `extra`, one BoundSheet8 a sheet, EOF),
// then each sheet's substream with a number in A1 equal to its position.
Bytes workbook(const std::vector<std::pair<uint16_t, Bytes>> &extra,
               const std::vector<std::string> &sheets, uint16_t vers = 0x0600) {
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

std::string saved(Book &b) {
    const char *data = nullptr;
    unsigned size = 0;
    EXPECT_TRUE(b.saveRaw(&data, &size)) << b.errorMessage();
    return std::string(data ? data : "", size);
}

// Records of the globals of a saved file, up to their EOF.
std::vector<std::pair<uint16_t, Bytes>> globalsOf(const std::string &file) {
    Opened o(file);
    std::vector<std::pair<uint16_t, Bytes>> out;
    for (auto &r : o.records()) {
        out.push_back(r);
        if (r.first == 10) break;
    }
    return out;
}

int countId(const std::vector<std::pair<uint16_t, Bytes>> &records, uint16_t id) {
    int n = 0;
    for (const auto &r : records) n += r.first == id;
    return n;
}

void expectFresh(Book &b) {
    EXPECT_EQ(b.sheetCount(), 0);
    EXPECT_EQ(b.formatSize(), 21);
    EXPECT_EQ(b.fontSize(), 5);
    EXPECT_EQ(b.biffVersion(), 0x0600);
}

TEST(BookTest, NewBookSavesAndLoadsBack) {
    BookPtr b = newBook();
    expectFresh(*b);
    EXPECT_EQ(b->activeSheet(), 0);
    std::string file = saved(*b);
    auto globals = globalsOf(file);
    EXPECT_EQ(countId(globals, 133), 0);
    EXPECT_EQ(countId(globals, 49), 5);
    EXPECT_EQ(countId(globals, 224), 21);
    EXPECT_EQ(countId(globals, 659), 6);
    ASSERT_FALSE(globals.empty());
    EXPECT_EQ(globals.front().first, 2057);

    BookPtr c = newBook();
    ASSERT_TRUE(c->loadRaw(file.data(), unsigned(file.size()))) << c->errorMessage();
    EXPECT_STREQ(c->errorMessage(), "ok");
    expectFresh(*c);
    EXPECT_EQ(saved(*c), file);
}

struct LoadFailure {
    const char *what;
    Bytes stream;
    const char *message;
};

TEST(BookTest, FailedLoadsLeaveANewBook) {
    auto one = [](uint16_t id, Bytes data) { return workbook({{id, data}}, {"S"}); };
    const LoadFailure cases[] = {
        {"encrypted", one(47, Bytes(6, 0)), "workbook is encrypted"},
        {"old version",
         [] {
             Bytes wb;
             record(wb, 2057, bofData(0x0400, 5));
             return wb;
         }(),
         "This file format isn't supported"},
        {"record id 0",
         [] {
             Bytes wb;
             record(wb, 2057, bofData(0x0600, 5));
             record(wb, 0, Bytes(2, 0));
             return wb;
         }(),
         "read error: record id can't be 0"},
        {"Window1", one(61, Bytes(17, 0)), "Window1 size is incorrect"},
        {"CodePage", one(66, Bytes(3, 0)), "CodePage size is incorrect"},
        {"UsesELFs", one(352, Bytes(1, 0)), "UsesELFs size is incorrect"},
        {"Country", one(140, Bytes(2, 0)), "Country size is incorrect"},
        {"RecalcId", one(449, Bytes(7, 0)), "RecalcId size is incorrect"},
        {"RRTabId", one(317, Bytes(3, 0)), "RRTabId size is incorrect"},
        {"Excel9File", one(448, Bytes(1, 0)), "Excel9File size is incorrect"},
        {"Format", one(1054, Bytes(2, 0)), "Format size is incorrect"},
        {"BoundSheet8", one(133, Bytes(7, 0)), "BoundSheet8 size is incorrect"},
        {"InterfaceEnd", one(226, Bytes(1, 0)), "InterfaceEnd size is incorrect"},
        {"Mms", one(193, Bytes(3, 0)), "Mms size is incorrect"},
        {"BookExt", one(2147, Bytes(23, 0)), "BookExt size is incorrect"},
        {"record past the stream's end",
         [] {
             Bytes wb;
             record(wb, 2057, bofData(0x0600, 5));
             put16(wb, 0x1234);
             put16(wb, 8000);
             return wb;
         }(),
         "read error: workbook stream is truncated"},
        {"too many sheets",
         [] {
             Bytes wb;
             record(wb, 2057, bofData(0x0600, 5));
             for (int i = 0; i <= Book::kMaxSheets; ++i) record(wb, 133, boundSheet("s"));
             return wb;
         }(),
         "workbook has too many sheets"},
    };
    for (const LoadFailure &c : cases) {
        SCOPED_TRACE(c.what);
        BookPtr b = newBook();
        ASSERT_NE(b->addSheet("old", nullptr), nullptr);
        std::string file = rawBook(c.stream);
        EXPECT_FALSE(b->loadRaw(file.data(), unsigned(file.size())));
        EXPECT_STREQ(b->errorMessage(), c.message);
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

TEST(BookTest, SheetListOperations) {
    BookPtr b = newBook();
    ISheetT<char> *first = b->addSheet("Sheet1", nullptr);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(b->activeSheet(), 0);

    // The active sheet moves with its sheet.
    ISheetT<char> *front = b->insertSheet(0, "Front", nullptr);
    ASSERT_NE(front, nullptr);
    EXPECT_EQ(b->activeSheet(), 1);
    EXPECT_EQ(b->getSheet(1), first);

    EXPECT_EQ(b->addSheet("SHEET1", nullptr), nullptr);
    EXPECT_STREQ(b->errorMessage(), "book already contains such sheet name");

    std::string forty(40, 'x');
    ISheetT<char> *longName = b->addSheet(forty.c_str(), nullptr);
    ASSERT_NE(longName, nullptr);
    EXPECT_STREQ(b->errorMessage(), "warning: sheet's name is cut to 31 characters");
    EXPECT_EQ(std::string(longName->name()), std::string(31, 'x'));
    // 31 code points of UTF-8, not 31 bytes.
    std::string wide;
    for (int i = 0; i < 40; ++i) wide += "\xC3\xA9";
    ISheetT<char> *accents = b->addSheet(wide.c_str(), nullptr);
    ASSERT_NE(accents, nullptr);
    EXPECT_EQ(std::string(accents->name()), wide.substr(0, 62));

    struct Bad {
        const char *what;
        std::function<bool()> call;
        const char *message;
    };
    const Bad bad[] = {
        {"getSheet -1", [&] { return b->getSheet(-1) == nullptr; }, "index is out of range"},
        {"getSheet 4", [&] { return b->getSheet(4) == nullptr; }, "index is out of range"},
        {"sheetType 9", [&] { return b->sheetType(9) == SHEETTYPE_UNKNOWN; },
         "index is out of range"},
        {"insert 5", [&] { return b->insertSheet(5, "x", nullptr) == nullptr; },
         "index is out of range"},
        {"delSheet 4", [&] { return !b->delSheet(4); }, "index is out of range"},
        {"setActive 4",
         [&] {
             b->setActiveSheet(4);
             return true;
         },
         "index is out of range"},
        {"sheetType 0", [&] { return b->sheetType(0) == SHEETTYPE_SHEET; }, "ok"},
    };
    for (const Bad &c : bad) {
        SCOPED_TRACE(c.what);
        EXPECT_TRUE(c.call());
        EXPECT_STREQ(b->errorMessage(), c.message);
    }
    EXPECT_EQ(b->activeSheet(), 1);

    b->setActiveSheet(3);
    EXPECT_TRUE(b->delSheet(3));
    EXPECT_EQ(b->activeSheet(), 2);
    EXPECT_EQ(b->sheetCount(), 3);
    EXPECT_EQ(b->rrTabId(), (std::vector<uint16_t>{1, 2, 3}));
    // A deleted sheet's handle stays usable.
    EXPECT_STREQ(accents->name(), wide.substr(0, 62).c_str());
    EXPECT_TRUE(b->delSheet(0));
    EXPECT_TRUE(b->delSheet(0));
    EXPECT_FALSE(b->delSheet(0));
    EXPECT_STREQ(b->errorMessage(), "can't remove the last sheet in workbook");
    EXPECT_EQ(b->getSheet(0), longName);
}

// Three sheets; names of sheets 1, 2 (two) and 3; the self-reference with
// one entry per sheet and one over sheets 0-2.
Bytes namedWorkbook() {
    Bytes ext;
    put16(ext, 4);
    for (uint16_t s : {0, 1, 2}) {
        put16(ext, 0);
        put16(ext, s);
        put16(ext, s);
    }
    put16(ext, 0);
    put16(ext, 0);
    put16(ext, 2);
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
    std::string file = rawBook(namedWorkbook());
    BookPtr b = newBook();
    ASSERT_TRUE(b->loadRaw(file.data(), unsigned(file.size()))) << b->errorMessage();
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
    std::string again = saved(*b);
    BookPtr c = newBook();
    ASSERT_TRUE(c->loadRaw(again.data(), unsigned(again.size()))) << c->errorMessage();
    EXPECT_EQ(itabs(*c), (std::vector<uint16_t>{1, 2, 2}));
    EXPECT_EQ(xtis(*c), (std::vector<uint16_t>{0, 0, 0xFFFF, 0xFFFF, 1, 1, 0xFFFF, 0xFFFF}));
    EXPECT_EQ(c->getSheet(1)->readNum(0, 0, nullptr), 2.0);
}

TEST(BookTest, KeptAndDroppedGlobalRecords) {
    Bytes bookExt;
    put16(bookExt, 2147);
    for (int i = 0; i < 10; ++i) bookExt.push_back(0);
    put32(bookExt, 21);
    put32(bookExt, 0);
    bookExt.push_back(158);
    const Bytes unknownA = {1, 2, 3, 4, 5};
    const Bytes theme = {9, 8, 7};
    std::string file = rawBook(workbook(
        {{2147, bookExt}, {0x1234, unknownA}, {2198, theme}, {0x4321, {}}, {34, word(1)}, {96, {}}},
        {"S"}));
    BookPtr b = newBook();
    ASSERT_TRUE(b->loadRaw(file.data(), unsigned(file.size()))) << b->errorMessage();
    EXPECT_TRUE(b->hasBookExt());
    EXPECT_TRUE(b->isDate1904());
    EXPECT_TRUE(b->isTemplate());
    auto globals = globalsOf(saved(*b));
    EXPECT_EQ(countId(globals, 2147), 0);
    EXPECT_EQ(countId(globals, 96), 1);
    auto has = [&](uint16_t id, const Bytes &data) {
        for (const auto &r : globals)
            if (r.first == id && r.second == data) return true;
        return false;
    };
    EXPECT_TRUE(has(0x1234, unknownA));
    EXPECT_TRUE(has(0x4321, {}));
    EXPECT_TRUE(has(2198, theme));
    EXPECT_TRUE(has(34, word(1)));
}

Bytes pattern(size_t n, uint8_t seed) {
    Bytes d(n);
    for (size_t i = 0; i < n; ++i) d[i] = uint8_t(seed + i * 7);
    return d;
}

// Globals with values other than a new book's, in the order a save writes
// them, so that the saved globals must equal them record for record.
std::vector<std::pair<uint16_t, Bytes>> canonicalGlobals() {
    Bytes window1, country, recalc, ext, sst;
    for (uint16_t w : {10, 20, 3000, 4000, 0x38, 1, 0, 1, 500}) put16(window1, w);
    put16(country, 44);
    put16(country, 49);
    put16(recalc, 449);
    put16(recalc, 0);
    put32(recalc, 123456);
    put16(ext, 1);
    for (uint16_t w : {0, 1, 1}) put16(ext, w);
    put32(sst, 1);
    put32(sst, 1);
    put16(sst, 2);
    sst.push_back(0);
    sst.push_back('h');
    sst.push_back('i');
    return {{2057, bofData(0x0600, 5)},
            {96, {}},
            {225, word(1252)},
            {193, {1, 2}},
            {226, {}},
            {92, pattern(112, 3)},
            {66, word(1252)},
            {353, word(1)},
            {317, {1, 0, 2, 0}},
            {211, {}},
            {442, pattern(9, 1)},
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
            {2172, pattern(12, 5)},
            {2173, pattern(20, 6)},
            {2173, pattern(21, 7)},
            {2190, pattern(8, 8)},
            {4188, pattern(6, 9)},
            {352, word(1)},
            {133, boundSheet("One")},
            {133, boundSheet("Two")},
            {2202, pattern(4, 10)},
            {2211, pattern(4, 11)},
            {140, country},
            {430, {2, 0, 1, 4}},
            {23, ext},
            {24, lbl("nm", 2, 0)},
            {449, recalc},
            {2150, pattern(30, 12)},
            {235, pattern(40, 13)},
            {60, pattern(10, 14)},
            {252, sst},
            {2198, pattern(16, 15)},
            {2203, pattern(3, 16)},
            {2188, pattern(5, 17)},
            {0x1234, pattern(7, 18)},
            {10, {}}};
}

TEST(BookTest, GlobalsComeBackRecordForRecord) {
    auto globals = canonicalGlobals();
    Bytes wb;
    for (const auto &r : globals) record(wb, r.first, r.second);
    for (int i = 0; i < 2; ++i) {
        record(wb, 2057, bofData(0x0600, 16));
        record(wb, 515, number(0, 0, i));
        record(wb, 10, {});
    }
    std::string file = rawBook(wb);
    BookPtr b = newBook();
    ASSERT_TRUE(b->loadRaw(file.data(), unsigned(file.size()))) << b->errorMessage();
    EXPECT_EQ(b->activeSheet(), 1);
    EXPECT_TRUE(b->isTemplate());
    EXPECT_EQ(b->words().interfaceHdr, 1252);

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

TEST(BookTest, SmallRecordSizesThatLoad) {
    Bytes longWrite = pattern(120, 1);
    std::string file = rawBook(workbook(
        {{225, {}}, {193, {}}, {226, word(0)}, {96, word(0)}, {92, longWrite}, {448, {}}}, {"S"}));
    BookPtr b = newBook();
    ASSERT_TRUE(b->loadRaw(file.data(), unsigned(file.size()))) << b->errorMessage();
    EXPECT_EQ(b->words().interfaceHdr, 1200);
    auto out = globalsOf(saved(*b));
    for (const auto &r : out) {
        if (r.first == 92) {
            EXPECT_EQ(r.second, Bytes(longWrite.begin(), longWrite.begin() + 112));
        } else if (r.first == 225) {
            EXPECT_EQ(r.second, word(1200));
        }
        EXPECT_NE(r.first, 448);
    }
}

TEST(BookTest, VisibleSheetsAndSettings) {
    Bytes wb;
    record(wb, 2057, bofData(0x0600, 5));
    const uint8_t states[] = {1, 0, 2, 0};
    for (int i = 0; i < 4; ++i) {
        Bytes bs = boundSheet("S" + std::to_string(i));
        bs[4] = states[i];
        record(wb, 133, bs);
    }
    record(wb, 10, {});
    for (int i = 0; i < 4; ++i) {
        record(wb, 2057, bofData(0x0600, i == 3 ? 32 : 16));
        record(wb, 10, {});
    }
    std::string file = rawBook(wb);
    BookPtr b = newBook();
    ASSERT_TRUE(b->loadRaw(file.data(), unsigned(file.size()))) << b->errorMessage();
    EXPECT_EQ(b->visibleSheetCount(), 2);
    EXPECT_EQ(b->getNextVisibleSheet(1), 3);
    EXPECT_EQ(b->getNextVisibleSheet(3), 1);
    EXPECT_EQ(b->getNextVisibleSheet(7), 7);
    EXPECT_EQ(b->sheetType(3), SHEETTYPE_CHART);
    b->calcFirstTab();
    EXPECT_EQ(b->window1().itabFirst, 1);
    b->setActiveSheet(2);
    b->calcActiveSheet();
    EXPECT_EQ(b->activeSheet(), 3);
    // The chart substream comes back as it was.
    std::string again = saved(*b);
    EXPECT_NE(
        again.find(std::string(reinterpret_cast<const char *>(bofData(0x0600, 32).data()), 16)),
        std::string::npos);

    EXPECT_FALSE(b->refR1C1());
    b->setRefR1C1(true);
    EXPECT_TRUE(b->refR1C1());
    EXPECT_FALSE(b->setLocale("no_such_LOCALE.xyz"));
    EXPECT_STREQ(b->errorMessage(), "setlocale error");
    EXPECT_TRUE(b->setLocale("UTF-8"));

    BookPtr c = newBook();
    int y = 0, m = 0, d = 0;
    double serial = c->datePack(2024, 2, 29, 0, 0, 0, 0);
    c->setDate1904(true);
    EXPECT_EQ(c->datePack(2024, 2, 29, 0, 0, 0, 0), serial - 1462);
    EXPECT_TRUE(c->dateUnpack(serial - 1462, &y, &m, &d, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(y * 10000 + m * 100 + d, 20240229);
    EXPECT_EQ(c->getPicture(0, nullptr, nullptr), 0);
    EXPECT_STREQ(c->errorMessage(), "index is out of range");
}

TEST(BookTest, CellsRoundTripThroughSaveRawAndLoadRaw) {
    BookPtr b = newBook();
    ISheetT<char> *s1 = b->addSheet("Numbers", nullptr);
    ISheetT<char> *s2 = b->addSheet("Text ü", nullptr);
    ASSERT_TRUE(s1 && s2);
    for (int r = 0; r < 300; ++r) {
        s1->writeNum(r, r % 256, r * 1.5, nullptr);
        s2->writeStr(r, 3, ("row " + std::to_string(r % 17)).c_str(), nullptr);
    }
    s2->writeBool(65535, 255, true, nullptr);
    b->setActiveSheet(1);
    b->setDate1904(true);
    std::string file = saved(*b);

    BookPtr c = newBook();
    ASSERT_TRUE(c->loadRaw(file.data(), unsigned(file.size()))) << c->errorMessage();
    ASSERT_EQ(c->sheetCount(), 2);
    EXPECT_EQ(c->activeSheet(), 1);
    EXPECT_TRUE(c->isDate1904());
    ISheetT<char> *t1 = c->getSheet(0), *t2 = c->getSheet(1);
    EXPECT_STREQ(t1->name(), "Numbers");
    EXPECT_STREQ(t2->name(), "Text ü");
    for (int r = 0; r < 300; ++r) {
        EXPECT_EQ(t1->readNum(r, r % 256, nullptr), r * 1.5);
        EXPECT_STREQ(t2->readStr(r, 3, nullptr), ("row " + std::to_string(r % 17)).c_str());
    }
    EXPECT_TRUE(t2->readBool(65535, 255, nullptr));
    // Saved again, the same bytes.
    EXPECT_EQ(saved(*c), file);

    // Through a file too.
    std::string path = tmpPath("book_test_cells.xls");
    ASSERT_TRUE(c->save(path.c_str())) << c->errorMessage();
    BookPtr d = newBook();
    ASSERT_TRUE(d->load(path.c_str())) << d->errorMessage();
    EXPECT_EQ(d->getSheet(0)->readNum(299, 299 % 256, nullptr), 299 * 1.5);
    EXPECT_FALSE(d->save((tmpPath("no-such-dir") + "/x.xls").c_str()));
    EXPECT_STREQ(d->errorMessage(), "can't open file for writing");
    std::remove(path.c_str());
}

TEST(BookTest, WideBookLoadsAndSavesFiles) {
    std::unique_ptr<BookImplT<wchar_t>, void (*)(BookImplT<wchar_t> *)> b(
        new BinaryBookT<wchar_t>(), [](BookImplT<wchar_t> *p) { p->release(); });
    b->setLocale("UTF-8");
    ISheetT<wchar_t> *s = b->addSheet(L"Données", nullptr);
    ASSERT_NE(s, nullptr);
    s->writeStr(2, 1, L"ÿ€", nullptr);
    std::string narrow = tmpPath("book_test_wide_é.xls");
    std::wstring path;
    utf8ToWide(narrow.c_str(), path);
    ASSERT_TRUE(b->save(path.c_str())) << b->errorMessage();
    b->clear();
    EXPECT_EQ(b->sheetCount(), 0);
    ASSERT_TRUE(b->load(path.c_str())) << b->errorMessage();
    EXPECT_STREQ(b->getSheet(0)->name(), L"Données");
    EXPECT_STREQ(b->getSheet(0)->readStr(2, 1, nullptr), L"ÿ€");
    std::remove(narrow.c_str());
}

TEST(BookTest, SheetCopiedFromAnotherBook) {
    BookPtr src = newBook();
    ISheetT<char> *from = src->addSheet("From", nullptr);
    IFormatT<char> *pct = src->addFormat(nullptr);
    pct->setNumFormat(src->addCustomNumFormat("0.000%"));
    from->writeStr(0, 0, "shared text", nullptr);
    from->writeNum(1, 0, 0.25, pct);

    BookPtr dst = newBook();
    dst->addSheet("Mine", nullptr)->writeStr(5, 5, "other", nullptr);
    ISheetT<char> *copy = dst->addSheet("Copy", from);
    ASSERT_NE(copy, nullptr) << dst->errorMessage();
    EXPECT_STREQ(copy->name(), "Copy");
    EXPECT_STREQ(copy->readStr(0, 0, nullptr), "shared text");
    IFormatT<char> *fmt = nullptr;
    EXPECT_EQ(copy->readNum(1, 0, &fmt), 0.25);
    ASSERT_NE(fmt, nullptr);
    EXPECT_GE(fmt->numFormat(), 164);
    EXPECT_STREQ(dst->customNumFormat(fmt->numFormat()), "0.000%");

    // Saved, the copy stands on its own.
    src.reset();
    std::string file = saved(*dst);
    BookPtr again = newBook();
    ASSERT_TRUE(again->loadRaw(file.data(), unsigned(file.size())));
    EXPECT_STREQ(again->getSheet(1)->readStr(0, 0, nullptr), "shared text");
    EXPECT_STREQ(again->getSheet(0)->readStr(5, 5, nullptr), "other");
}

TEST(BookTest, OlderFormatLoadsButIsNotSaved) {
    Bytes wb = workbook({}, {"Old one", "Two"}, 0x0500);
    std::string file = rawBook(wb);
    BookPtr b = newBook();
    ASSERT_TRUE(b->loadRaw(file.data(), unsigned(file.size()))) << b->errorMessage();
    EXPECT_EQ(b->biffVersion(), 0x0500);
    ASSERT_EQ(b->sheetCount(), 2);
    EXPECT_STREQ(b->getSheet(0)->name(), "Old one");
    EXPECT_EQ(b->getSheet(1)->readNum(0, 0, nullptr), 1.0);
    const char *data = nullptr;
    unsigned size = 0;
    EXPECT_FALSE(b->saveRaw(&data, &size));
    EXPECT_STREQ(b->errorMessage(), "a workbook loaded from the BIFF5 format can't be saved");
    EXPECT_FALSE(b->save(tmpPath("book_test_old.xls").c_str()));
    EXPECT_STREQ(b->errorMessage(), "a workbook loaded from the BIFF5 format can't be saved");
    // The book itself is untouched.
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

Bytes cellHead(uint16_t row, uint16_t col) {
    Bytes d;
    put16(d, row);
    put16(d, col);
    put16(d, 15);
    return d;
}

Bytes rec(uint16_t id, const Bytes &data) {
    Bytes v;
    record(v, id, data);
    return v;
}

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
        uint16_t vers;
        Bytes globals, sheet;
        std::vector<std::string> cells; // or "!" and the message of a refused load
        std::function<void(Book &)> more;
    };
    const std::vector<Case> cases = {
        {"BoolErr of 9 bytes",
         0x0600,
         {},
         rec(517, cellHead(0, 1) + Bytes{1, 0, 0}),
         {"0,1:3:true"},
         nullptr},
        {"Label with zeros behind its text",
         0x0600,
         {},
         rec(516, cellHead(0, 0) + Bytes{2, 0, 0, 'a', 'b', 0, 0}),
         {"0,0:2:ab"},
         nullptr},
        {"Dimensions of 16 bytes",
         0x0600,
         {},
         rec(512, Bytes(16, 0)) + a1,
         {"0,0:1:7.000000"},
         nullptr},
        {"CalcDelta of 16 bytes keeps its default",
         0x0600,
         {},
         rec(16, calcDelta) + rec(12, Bytes(3, 9)) + a1,
         {"0,0:1:7.000000"},
         [&](Book &b) {
             EXPECT_EQ(savedRecord(b, 16), dbl(0.001));
             EXPECT_EQ(savedRecord(b, 12), word(100));
         }},
        {"id 0 in a sheet dropped",
         0x0600,
         {},
         a1 + Bytes(4, 0) + rec(0, Bytes(8, 1)) + rec(515, number(1, 0, 8)),
         {"0,0:1:7.000000", "1,0:1:8.000000"},
         [&](Book &b) { EXPECT_EQ(savedRecord(b, 10).size(), 0u); }},
        {"id 0 in the globals",
         0x0600,
         rec(0, {}),
         a1,
         {"!read error: record id can't be 0"},
         nullptr},
        {"Format one character short",
         0x0600,
         rec(1054, {164, 0, 3, 0, 0, 'a', 'b'}),
         a1,
         {"0,0:1:7.000000"},
         [&](Book &b) { EXPECT_STREQ(b.customNumFormat(164), "ab"); }},
        {"older format, newer sheet header",
         0x0500,
         rec(66, word(1251)),
         oldSheet,
         {"0,0:2:\xD0\x9F\xD1\x80", "1,0:2:ok"},
         [&](Book &b) { EXPECT_STREQ(b.getSheet(0)->header(), "Hdr"); }},
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

TEST(BookTest, CorpusFilesLoadSaveAndLoadAgain) {
    std::vector<std::string> files = corpusXlsFiles();
    if (files.empty()) GTEST_SKIP() << "no corpus";
    int loaded = 0;
    for (const std::string &f : files) {
        SCOPED_TRACE(f);
        BookPtr b = newBook();
        if (!b->load(f.c_str())) {
            std::printf("not loaded: %s: %s\n", f.c_str(), b->errorMessage());
            // Files of other formats or encrypted ones fail cleanly.
            EXPECT_EQ(b->sheetCount(), 0);
            EXPECT_EQ(b->formatSize(), 21);
            continue;
        }
        ++loaded;
        std::vector<std::string> before = cellsOf(*b);
        const char *data = nullptr;
        unsigned size = 0;
        if (!b->saveRaw(&data, &size)) {
            std::printf("not saved: %s: %s\n", f.c_str(), b->errorMessage());
            EXPECT_EQ(b->biffVersion(), 0x0500) << b->errorMessage();
            continue;
        }
        BookPtr c = newBook();
        ASSERT_TRUE(c->loadRaw(data, size)) << c->errorMessage();
        EXPECT_EQ(cellsOf(*c), before);
    }
    EXPECT_GT(loaded, 0);
}

} // namespace
