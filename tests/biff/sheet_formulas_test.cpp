// Formula cells of a binary sheet: shared formulas printed from each cell,
// array formula cells, and loaded formula blocks saved unchanged.
#include "biff/sheet_impl.h"
#include "support/record_trip.h"
#include "support/fake_owner.h"

#include <gtest/gtest.h>

#include <string>

using namespace tabrix;
using namespace bifftest;

namespace {

Bytes cat(const Bytes &a, const Bytes &b) { return a + b; }

// A formula cell whose tokens are `rgce`, cached number 0.
Bytes formula(uint16_t row, uint16_t col, const Bytes &rgce) {
    Bytes b = cat(words({row, col, 15, 0, 0, 0, 0, 0, 0, 0}), words({uint16_t(rgce.size())}));
    return cat(b, rgce);
}

Bytes exp(uint16_t row, uint16_t col) { return cat(Bytes{0x01}, words({row, col})); }

} // namespace

TEST(SheetFormulas, SharedAndArrayFormulasPrintFromEachCell) {
    // B1:B3 share "A1*2" relative to each cell (row offset 0, column -1);
    // D1 is an array formula whose tokens stay in its ARRAY record.
    const Bytes refN = {0x4C, 0, 0, 0xFF, 0xFF, 0x1E, 2, 0, 0x05};
    const Bytes shared =
        cat(cat(words({0, 2}), Bytes{1, 1, 0, 3}), cat(words({uint16_t(refN.size())}), refN));
    const Bytes array = cat(words({0, 0}), Bytes{3, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    Bytes stream;
    record(stream, 2057, cat(words({0x0600, 16, 8346, 1997}), words({0, 0, 0, 0})));
    record(stream, 6, formula(0, 1, exp(0, 1)));
    record(stream, 1212, shared);
    record(stream, 6, formula(1, 1, exp(0, 1)));
    record(stream, 6, formula(2, 1, exp(0, 1)));
    record(stream, 6, formula(0, 3, exp(0, 3)));
    record(stream, 545, array);
    record(stream, 6, formula(0, 4, {0x1E, 7, 0, 0x19, 0x40, 0, 0, 0x1E, 1, 0, 0x03}));
    record(stream, 10, {});
    FakeOwner<char> owner;
    SheetImplT<char> &sheet = owner.addSheet(L"S");
    Opened in(rawBook(stream));
    sheet.read(in.x);
    EXPECT_STREQ(sheet.readFormula(0, 1, nullptr), "A1*2");
    EXPECT_STREQ(sheet.readFormula(2, 1, nullptr), "A3*2");
    EXPECT_EQ(sheet.readFormula(0, 3, nullptr), nullptr);
    EXPECT_EQ(owner.msg(), "can't build infix formula string");
    EXPECT_STREQ(sheet.readFormula(0, 4, nullptr), "7+1");

    // Loaded blocks are saved as they were read.
    Opened out(writeBook([&](Xls<char> &x) { sheet.write(x); }));
    Bytes saved;
    for (auto &r : out.records())
        if (r.first == 6 || r.first == 1212 || r.first == 545) saved = cat(saved, r.second);
    // Cells come out in row order.
    const Bytes e1 = formula(0, 4, {0x1E, 7, 0, 0x19, 0x40, 0, 0, 0x1E, 1, 0, 0x03});
    const Bytes expected =
        cat(cat(cat(formula(0, 1, exp(0, 1)), shared), cat(formula(0, 3, exp(0, 3)), array)),
            cat(e1, cat(formula(1, 1, exp(0, 1)), formula(2, 1, exp(0, 1)))));
    ASSERT_EQ(saved.size(), expected.size());
    for (size_t i = 0; i < saved.size(); ++i) ASSERT_EQ(saved[i], expected[i]) << i;

    // Writing over the anchor moves the shared formula on.
    ASSERT_TRUE(sheet.writeFormula(0, 1, "C1", nullptr));
    EXPECT_STREQ(sheet.readFormula(0, 1, nullptr), "C1");
    EXPECT_STREQ(sheet.readFormula(1, 1, nullptr), "A2*2");
    EXPECT_STREQ(sheet.readFormula(2, 1, nullptr), "A3*2");
}
