// Formula cells of a binary book: text written and read back through a
// save and load, three-dimensional references and the self-reference they
// make, shared formulas printed from each cell, array formula cells, the
// R1C1 mode, and loaded formula blocks saved unchanged.
#include "biff/book_impl.h"
#include "support/binary_book.h"
#include "biff/sheet_impl.h"
#include "support/record_trip.h"
#include "support/fake_owner.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace tabrix;
using namespace bifftest;

namespace {

using Book = BookImplT<char>;
using BookPtr = BinaryBook<>;

BookPtr newBook() { return newBinaryBook(); }

BookPtr reload(Book &b) { return loadedBook(savedBytes(b)); }

Bytes cat(const Bytes &a, const Bytes &b) { return a + b; }

// A formula cell whose tokens are `rgce`, cached number 0.
Bytes formula(uint16_t row, uint16_t col, const Bytes &rgce) {
    Bytes b = cat(words({row, col, 15, 0, 0, 0, 0, 0, 0, 0}), words({uint16_t(rgce.size())}));
    return cat(b, rgce);
}

Bytes exp(uint16_t row, uint16_t col) { return cat(Bytes{0x01}, words({row, col})); }

} // namespace

TEST(SheetFormulas, WrittenFormulasSurviveSaveAndLoad) {
    BookPtr b = newBook();
    ISheetT<char> *s1 = b->addSheet("Data", nullptr);
    ISheetT<char> *s2 = b->addSheet("Other sheet", nullptr);
    ASSERT_TRUE(s1 && s2);
    const std::pair<const char *, const char *> cases[] = {
        {"=SUM(A1:B2)*2", "SUM(A1:B2)*2"},
        {"'Other sheet'!A1+Data!$B$2", "'Other sheet'!A1+Data!$B$2"},
        {"SUM(Data:'Other sheet'!A1:B3)", "SUM('Data:Other sheet'!A1:B3)"},
        {"'Other sheet'!C3*'Other sheet'!C4", "'Other sheet'!C3*'Other sheet'!C4"},
        {"IF(A1>=2,\"big, \"\"yes\"\"\",\"no\")", "IF(A1>=2;\"big, \"\"yes\"\"\";\"no\")"},
    };
    int row = 10;
    for (const auto &c : cases)
        ASSERT_TRUE(s1->writeFormula(row++, 3, c.first, nullptr)) << b->errorMessage();
    // A failure leaves the cell as it was.
    s1->writeNum(20, 0, 5, nullptr);
    EXPECT_FALSE(s1->writeFormula(20, 0, "SUM(", nullptr));
    EXPECT_STREQ(b->errorMessage(), "error: function parentheses not found");
    EXPECT_EQ(s1->readNum(20, 0, nullptr), 5.0);

    BookPtr again = reload(*b);
    ISheetT<char> *r = again->getSheet(0);
    row = 10;
    for (const auto &c : cases) {
        EXPECT_TRUE(r->isFormula(row, 3));
        const char *text = r->readFormula(row++, 3, nullptr);
        EXPECT_STREQ(text ? text : again->errorMessage(), c.second);
    }
    // Equal sheet ranges share one external sheet entry.
    std::vector<SupBookBlock> &books = again->supBooks();
    ASSERT_EQ(books.size(), 1u);
    EXPECT_TRUE(books[0].isSelfRef());
    EXPECT_EQ(books[0].externSheet.rgXTI.size(), 3u);
    EXPECT_EQ(r->readFormula(0, 0, nullptr), nullptr);
    EXPECT_STREQ(again->errorMessage(), "cell doesn't contain a formula");

    // R1C1 mode converts both ways, relative to the cell.
    again->setRefR1C1(true);
    EXPECT_STREQ(r->readFormula(10, 3, nullptr), "SUM(R[-10]C[-3]:R[-9]C[-2])*2");
    EXPECT_TRUE(r->writeFormula(0, 0, "R[1]C+R1C1", nullptr));
    again->setRefR1C1(false);
    EXPECT_STREQ(r->readFormula(0, 0, nullptr), "A2+$A$1");
}

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
