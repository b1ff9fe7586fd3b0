// Sheet substreams through an in-memory workbook stream: cells of every
// record kind loaded and saved, runs split into single cells, records the
// sheet doesn't model kept in order, chart sheets kept whole, the records a
// new sheet writes, and the size messages of the load; shared formulas
// printed from each cell, array formula cells, and loaded formula blocks
// saved unchanged.
#include "support/fake_owner.h"
#include "support/record_trip.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace tabrix;
using namespace bifftest;

namespace {

Bytes num(double v) {
    Bytes b(8);
    std::memcpy(b.data(), &v, 8);
    return b;
}

Bytes bof(uint16_t dt) { return words({0x0600, dt, 8346, 1997}) + words({0, 0, 0, 0}); }

Bytes special(uint8_t kind, uint8_t byte) { return Bytes{kind, 0, byte, 0, 0, 0, 0xFF, 0xFF}; }

// The records `sheet` writes.
Records saved(SheetImplT<char> &sheet) {
    Opened out(writeBook([&](Xls<char> &x) { sheet.write(x); }));
    return out.records();
}

void load(SheetImplT<char> &sheet, const Bytes &wb) {
    Opened in(rawBook(wb));
    sheet.read(in.x);
}

// A formula cell that points at the anchor of a shared formula.
Bytes expFormula(uint16_t row, uint16_t col, const Bytes &value, uint16_t anchorRow) {
    return words({row, col, 15}) + value + words({0, 0, 0}) + Bytes{5, 0, 0x01} +
           words({anchorRow, 0});
}

// A formula cell whose tokens are `rgce`, cached number 0.
Bytes formula(uint16_t row, uint16_t col, const Bytes &rgce) {
    return words({row, col, 15, 0, 0, 0, 0, 0, 0, 0, uint16_t(rgce.size())}) + rgce;
}

Bytes expOf(uint16_t row, uint16_t col) { return Bytes{0x01} + words({row, col}); }

TEST(SheetRecords, SharedAndArrayFormulasPrintFromEachCell) {
    // B1:B3 share "A1*2" relative to each cell (row offset 0, column -1);
    // D1 is an array formula whose tokens stay in its ARRAY record.
    const Bytes refN = {0x4C, 0, 0, 0xFF, 0xFF, 0x1E, 2, 0, 0x05};
    const Bytes shared = words({0, 2}) + Bytes{1, 1, 0, 3} + words({uint16_t(refN.size())}) + refN;
    const Bytes array = words({0, 0}) + Bytes{3, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    const Bytes b1 = formula(0, 1, expOf(0, 1)), b2 = formula(1, 1, expOf(0, 1)),
                b3 = formula(2, 1, expOf(0, 1)), d1 = formula(0, 3, expOf(0, 3)),
                e1 = formula(0, 4, {0x1E, 7, 0, 0x19, 0x40, 0, 0, 0x1E, 1, 0, 0x03});
    FakeOwner<char> owner;
    SheetImplT<char> &sheet = owner.addSheet(L"S");
    load(sheet, stream({{2057, bof(16)},
                        {6, b1},
                        {1212, shared},
                        {6, b2},
                        {6, b3},
                        {6, d1},
                        {545, array},
                        {6, e1},
                        {10, {}}}));
    EXPECT_STREQ(sheet.readFormula(0, 1, nullptr), "A1*2");
    EXPECT_STREQ(sheet.readFormula(2, 1, nullptr), "A3*2");
    EXPECT_EQ(sheet.readFormula(0, 3, nullptr), nullptr);
    EXPECT_EQ(owner.msg(), "can't build infix formula string");
    EXPECT_STREQ(sheet.readFormula(0, 4, nullptr), "7+1");

    // Loaded blocks are saved as they were read, cells in row order.
    Bytes blocks;
    for (auto &r : saved(sheet))
        if (r.first == 6 || r.first == 1212 || r.first == 545) blocks = blocks + r.second;
    EXPECT_EQ(blocks, b1 + shared + d1 + array + e1 + b2 + b3);

    // Writing over the anchor moves the shared formula on.
    ASSERT_TRUE(sheet.writeFormula(0, 1, "C1", nullptr));
    EXPECT_STREQ(sheet.readFormula(0, 1, nullptr), "C1");
    EXPECT_STREQ(sheet.readFormula(1, 1, nullptr), "A2*2");
    EXPECT_STREQ(sheet.readFormula(2, 1, nullptr), "A3*2");
}

TEST(SheetRecords, OverwritingAnAnchorMovesTheSharedFormula) {
    Bytes shared = words({0, 2}) + Bytes{0, 0, 0, 3, 3, 0, 0x1E, 1, 0};
    Bytes text = words({3}) + Bytes{0, 'a', 'b', 'c'};
    Records in = {
        {2057, bof(16)}, {6, expFormula(0, 0, special(0, 0), 0)}, {1212, shared},
        {519, text},     {6, expFormula(1, 0, special(0, 0), 0)}, {6, expFormula(2, 0, num(4), 0)},
        {10, {}}};
    FakeOwner<char> owner;
    SheetImplT<char> &sheet = owner.addSheet(L"S");
    load(sheet, stream(in));
    // An empty cached text of a cell under an anchor is the anchor's.
    EXPECT_STREQ(sheet.readStr(0, 0, nullptr), "abc");
    EXPECT_STREQ(sheet.readStr(1, 0, nullptr), "abc");
    EXPECT_EQ(sheet.readNum(2, 0, nullptr), 4.0);

    ASSERT_TRUE(sheet.writeNum(0, 0, 7, nullptr));
    Records out = saved(sheet);
    std::vector<uint16_t> ids;
    for (auto &r : out)
        if (r.first == 6 || r.first == 1212 || r.first == 638) ids.push_back(r.first);
    EXPECT_EQ(ids, (std::vector<uint16_t>{638, 6, 1212, 6}));
    for (auto &r : out)
        if (r.first == 6) {
            // Both users now point at the cell in row 1.
            EXPECT_EQ(r.second[23] | r.second[24] << 8, 1);
        }
}

TEST(SheetRecords, ChartSheetStaysByteIdentical) {
    Records chart = {{2057, bof(32)}, {4198, Bytes{1, 2, 3, 4}}, {2057, bof(32)},   {4147, {}},
                     {10, {}},        {4148, Bytes{7}},          {60, Bytes{5, 5}}, {10, {}}};
    FakeOwner<char> owner;
    SheetImplT<char> &sheet = owner.addSheet(L"Chart");
    Bytes wb = stream(chart);
    Bytes after = stream({{253, words({0, 0, 15, 0, 0})}});
    load(sheet, wb + after);
    EXPECT_EQ(sheet.docType(), 32);
    EXPECT_EQ(saved(sheet), chart);
}

TEST(SheetRecords, NewSheetWritesAValidWorksheet) {
    FakeOwner<char> owner;
    SheetImplT<char> &sheet = owner.addSheet(L"New");
    sheet.writeNum(2, 3, 1, nullptr);
    sheet.writeStr(4, 1, "x", nullptr);
    sheet.setSelected(true);
    Records out = saved(sheet);
    std::vector<uint16_t> ids;
    for (auto &r : out) ids.push_back(r.first);
    std::vector<uint16_t> expected = {2057, 523, 13,  12,  15,  17,  16, 95,  42,
                                      43,   130, 128, 549, 129, 20,  21, 131, 132,
                                      161,  85,  512, 638, 253, 574, 29, 10};
    EXPECT_EQ(ids, expected);
    auto find = [&](uint16_t id) {
        for (auto &r : out)
            if (r.first == id) return r.second;
        return Bytes();
    };
    EXPECT_EQ(find(2057).size(), 16u);
    EXPECT_EQ(find(2057)[2], 16);
    EXPECT_EQ(find(512), words({2, 0, 5, 0, 1, 4, 0}));
    EXPECT_EQ(find(574).at(1), 0x06); // selected: 0x06B6

    sheet.setSelected(false);
    Bytes unselected = saved(sheet)[23].second;
    EXPECT_EQ(unselected[0] | unselected[1] << 8, 0x04B6);

    SheetImplT<char> &again = owner.addSheet(L"Again");
    load(again, stream(out));
    EXPECT_EQ(again.readNum(2, 3, nullptr), 1.0);
    EXPECT_STREQ(again.readStr(4, 1, nullptr), "x");
    EXPECT_TRUE(again.selected());
    EXPECT_EQ(saved(again), out);
}

TEST(SheetRecords, BadRecordsGiveTheirMessages) {
    struct Case {
        uint16_t id;
        Bytes data;
        const char *message;
    } cases[] = {
        {130, Bytes(1), "GridSet size is incorrect"},
        {128, Bytes(6), "Guts size is incorrect"},
        {549, Bytes(2), "DefaultRowHeight size is incorrect"},
        {85, Bytes(3), "DefColWidth size is incorrect"},
        {94, Bytes(4), "Uncalced size is incorrect"},
        {215, Bytes(3), "DBCell size is incorrect"},
        {229, Bytes(1), "MergeCells size is incorrect"},
        {125, Bytes(10), "ColInfo size is incorrect"},
        {6, Bytes(20), "Formula size is incorrect"},
        {10, Bytes(2), "EOF size is incorrect"},
        {638, words({0, 256, 15, 0, 0}), "col must be in range 0-255"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.message);
        FakeOwner<char> owner;
        SheetImplT<char> &sheet = owner.addSheet(L"S");
        Bytes wb = stream({{2057, bof(16)}, {c.id, c.data}, {10, {}}});
        EXPECT_EQ(errorOf([&] { load(sheet, wb); }), c.message);
    }
    // The size checks of the records themselves are in the record table.
    // A worksheet of an older format loads, but is not saved under a newer
    // header over records of the older layout.
    {
        FakeOwner<char> owner;
        SheetImplT<char> &sheet = owner.addSheet(L"S");
        Bytes old = words({0x0400, 16, 8346, 1997}) + words({0, 0, 0, 0});
        load(sheet, stream({{2057, old}, {515, words({1, 1, 15}) + num(0.5)}, {10, {}}}));
        EXPECT_EQ(sheet.readNum(1, 1, nullptr), 0.5);
        EXPECT_EQ(errorOf([&] { saved(sheet); }),
                  "a worksheet loaded from a format older than BIFF8 can't be saved");
    }
    // Number padded to 16 or 18 bytes is accepted.
    for (size_t size : {16u, 18u}) {
        FakeOwner<char> owner;
        SheetImplT<char> &sheet = owner.addSheet(L"S");
        Bytes data = words({1, 1, 15}) + num(0.1);
        data.resize(size);
        load(sheet, stream({{2057, bof(16)}, {515, data}, {10, {}}}));
        EXPECT_EQ(sheet.readNum(1, 1, nullptr), 0.1);
    }
}

TEST(SheetRecords, SettingsAndStructureRecordsComeBack) {
    Records in = {
        {2057, bof(16)},
        {94, words({1})},
        {523, words({0, 0, 2, 0, 7, 0, 0, 0}) + words({0x40, 0}) + words({0x80, 0})},
        {13, words({0})},
        {12, words({50})},
        {15, words({0})},
        {17, words({1})},
        {16, num(0.01)},
        {95, words({0})},
        {42, words({1})},
        {43, words({1})},
        {130, words({0})},
        {128, words({1, 2, 3, 4})},
        {549, words({1, 300})},
        {129, words({0x4C1})},
        {20, Bytes{0, 0, 0}},
        {161, Bytes(34, 1)},
        {85, words({10})},
        {125, words({1, 3, 4000, 15, 1, 0})},
        {125, words({4, 4, 4000, 15, 1, 0})},
        {512, words({0, 0, 2, 0}) + words({0, 2, 0})},
        {520, words({0, 0, 1, 400, 0, 0, 0x1C0, 16})},
        {638, words({0, 0, 15}) + Bytes{0, 0, 0xF0, 0x3F}},
        {574, words({0x06B6, 0, 0, 64, 0, 0, 0}) + words({0, 0})},
        {160, words({3, 2})},
        {65, words({0, 1, 1, 0, 2})},
        {29, Bytes{3, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0}},
        {229, words({1}) + words({0, 1, 0, 1})},
        {10, {}},
    };
    FakeOwner<char> owner;
    SheetImplT<char> &sheet = owner.addSheet(L"S");
    load(sheet, stream(in));
    EXPECT_FALSE(sheet.refA1());
    EXPECT_TRUE(sheet.colHidden(2));
    EXPECT_DOUBLE_EQ(sheet.rowHeight(0), 20.0);
    int rf, rl, cf, cl;
    EXPECT_TRUE(sheet.getMerge(1, 1, &rf, &rl, &cf, &cl));

    Records out = saved(sheet);
    // The page setup run always holds Footer, HCenter and VCenter; equal
    // touching column runs are merged into one record; the Row's column
    // span is zeroed; everything else is as read.
    Records expected = in;
    expected.insert(expected.begin() + 16, {{21, {}}, {131, words({0})}, {132, words({0})}});
    expected.erase(expected.begin() + 22);
    expected[21].second = words({1, 4, 4000, 15, 1, 0});
    expected[23].second = words({0, 0, 0, 400, 0, 0, 0x1C0, 16});
    EXPECT_EQ(out, expected);
}

} // namespace
