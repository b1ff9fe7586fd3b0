// The Open XML cell store through a framed sheet of a small fake book:
// writes and reads of every kind with their messages and limits, formula
// texts, extents, clear and copy, and cells of files.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "ooxml/binding/engine/cell_memory.h"
#include "support/xml_sheet_fake.h"

using namespace tabrix;

namespace {

const char *const kHead =
    "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"><sheetData>";
const char *const kTail = "</sheetData></worksheet>";

std::string sheetXml(const std::string &rows) { return kHead + rows + kTail; }

struct Step {
    const char *what;
    std::function<std::string(ISheetT<char> &)> call;
    std::string result;
    std::string message = "ok";
};

std::string num(double d) {
    char b[32];
    std::snprintf(b, sizeof b, "%g", d);
    return b;
}
std::string text(const char *s) { return s ? s : "(null)"; }

TEST(XmlSheetCells, WritesReadsAndMessagesInOrder) {
    xmlfake::Book<char> book;
    xmlfake::Sheet<char> sheet(book);
    using S = ISheetT<char>;
    const std::vector<Step> steps = {
        {"num", [](S &s) { return num(s.writeNum(0, 0, 1.5, nullptr)); }, "1"},
        {"col checked first", [](S &s) { return num(s.writeNum(-1, -1, 1, nullptr)); }, "0",
         "col must be in range 0-16383"},
        {"nothing made", [](S &s) { return num(s.lastRow() * 100 + s.lastCol()); }, "101"},
        {"str", [](S &s) { return num(s.writeStr(0, 1, "h\xC3\xA9llo", nullptr)); }, "1"},
        {"num of str", [](S &s) { return num(s.readNum(0, 1, nullptr)); }, "0",
         "this cell doesn't contain a number"},
        {"str of num", [](S &s) { return text(s.readStr(0, 0, nullptr)); }, "(null)",
         "this cell doesn't contain a string"},
        {"missing", [](S &s) { return num(s.readNum(5, 5, nullptr)); }, "0", "cell is not found"},
        {"bool", [](S &s) { return num(s.writeBool(0, 2, true, nullptr)); }, "1"},
        {"bool of num", [](S &s) { return num(s.readBool(0, 0, nullptr)); }, "0",
         "this cell doesn't contain a bool"},
        {"blank without format", [](S &s) { return num(s.writeBlank(0, 3, nullptr)); }, "0",
         "format is null"},
        {"blank of num", [](S &s) { return num(s.readBlank(0, 0, nullptr)); }, "0",
         "cell is not blank"},
        {"error of num", [](S &s) { return num(s.readError(0, 0)); }, "255",
         "this cell doesn't contain an error"},
        {"formula of num", [](S &s) { return text(s.readFormula(0, 0, nullptr)); }, "(null)",
         "this cell doesn't contain a formula"},
        {"formula", [](S &s) { return num(s.writeFormula(1, 0, "=SUM(A1;B1)", nullptr)); }, "1"},
        {"formula without value is blank", [](S &s) { return num(s.cellType(1, 0)); }, "4"},
        {"is formula", [](S &s) { return num(s.isFormula(1, 0) * 10 + s.isFormula(0, 0)); }, "10"},
        {"number over formula",
         [](S &s) { return num(s.writeNum(1, 0, 7, nullptr) + s.isFormula(1, 0)); }, "1"},
        {"clear", [](S &s) { return num(s.clear(1, 1048575, 0, 16383)); }, "1"},
        {"cleared", [](S &s) { return num(s.cellType(4, 4) * 10 + s.cellType(0, 1)); }, "2"},
        {"extents after clear",
         [](S &s) {
             return num(s.firstRow()) + " " + num(s.lastRow()) + " " + num(s.firstCol()) + " " +
                    num(s.lastCol());
         },
         "0 1 0 3"},
        {"clear all", [](S &s) { return num(s.clear(0, 1048575, 0, 16383) + s.lastRow()); }, "1"},
    };
    for (const Step &step : steps) {
        EXPECT_EQ(step.call(sheet), step.result) << step.what;
        EXPECT_EQ(xmlfake::message(book), step.message) << step.what;
    }
}

TEST(XmlSheetCells, CellsOfFilesReadByKind) {
    xmlfake::Book<char> book;
    const char *sst = "<sst xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
                      "<si><t>zero</t></si><si><r><t>ri</t></r><r><rPr><b/></rPr><t>ch</t></r></si>"
                      "</sst>";
    book.sst = std::make_unique<SharedStrings>(binding::TRANSITIONAL, sst, std::strlen(sst));
    xmlfake::Sheet<char> sheet(
        book,
        sheetXml("<row r=\"2\"><c t=\"s\"><v>1</v></c><c><v>2.5</v></c>"
                 "<c r=\"E2\" t=\"str\"><f>\"a\"&amp;\"b\"</f><v>ab_x000D_</v></c>"
                 "<c t=\"e\"><v>#DIV/0!</v></c><c t=\"e\"><v>#BAD</v></c></row>"
                 "<row><c r=\"A3\" t=\"inlineStr\"><is><r><t>in</t></r><r><t>line</t></r></is></c>"
                 "<c t=\"s\"><v>7</v></c><c t=\"b\"><v>1</v></c></row>"));
    struct Case {
        int row, col;
        int type;
        std::string value, message;
    };
    const std::vector<Case> cases = {
        {1, 0, 2, "rich", "ok"}, // rich item flattened; no address: first column
        {1, 1, 1, "2.5", "ok"},  // follows the cell before it
        {1, 4, 2, "ab\r", "ok"}, // a formula's text result, escapes decoded
        {1, 5, 5, "7", "ok"},    // error cells follow too
        {1, 6, 5, "255", "unknown error value"},
        {2, 0, 2, "inline", "ok"}, // row without r follows the row before it
        {2, 1, 2, "(null)", "index is out of range or no value"},
        {2, 2, 3, "1", "ok"},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(sheet.cellType(c.row, c.col), c.type) << c.row << "," << c.col;
        std::string got;
        switch (c.type) {
        case 1: got = num(sheet.readNum(c.row, c.col, nullptr)); break;
        case 2: got = text(sheet.readStr(c.row, c.col, nullptr)); break;
        case 3: got = num(sheet.readBool(c.row, c.col, nullptr)); break;
        case 5: got = num(sheet.readError(c.row, c.col)); break;
        }
        EXPECT_EQ(got, c.value) << c.row << "," << c.col;
        EXPECT_EQ(xmlfake::message(book), c.message) << c.row << "," << c.col;
    }
    EXPECT_TRUE(sheet.isFormula(1, 4));
    EXPECT_EQ(sheet.firstRow() * 1000 + sheet.lastRow() * 100 + sheet.lastCol(), 1307);
    // Rows and cells out of order are found, and written among.
    xmlfake::Sheet<char> unordered(
        book, sheetXml("<row r=\"3\"><c r=\"C3\"><v>33</v></c><c r=\"A3\"><v>31</v></c></row>"
                       "<row r=\"1\"><c r=\"B1\"><v>12</v></c></row>"));
    unordered.writeNum(2, 1, 32, nullptr);
    unordered.writeNum(1, 0, 21, nullptr);
    std::string seen;
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c)
            if (unordered.cellType(r, c) == CELLTYPE_NUMBER)
                seen += num(unordered.readNum(r, c, nullptr)) + " ";
    EXPECT_EQ(seen, "12 21 31 32 33 ");
}

// A wide caller hands code points in and gets code points back; the table
// holds UTF-16 units, escapes where XML needs them.
TEST(XmlSheetCells, WideTextsRoundTrip) {
    xmlfake::Book<wchar_t> book;
    xmlfake::Sheet<wchar_t> sheet(book);
    const std::vector<std::wstring> texts = {L"\U0001F600 smile", L"tab\tcr\r", L"_x0041_",
                                             L"\x4E2D\x6587"};
    for (size_t i = 0; i < texts.size(); ++i)
        ASSERT_TRUE(sheet.writeStr(int(i), 0, texts[i].c_str(), nullptr));
    std::string saved;
    book.sst->save(saved);
    book.sst = std::make_unique<SharedStrings>(binding::TRANSITIONAL, saved.data(), saved.size());
    for (size_t i = 0; i < texts.size(); ++i) {
        const wchar_t *got = sheet.readStr(int(i), 0, nullptr);
        EXPECT_EQ(std::wstring(got ? got : L"(null)"), texts[i]) << i;
    }
}

// Formula texts in UTF-8: separators exchanged outside literals and quoted
// names, escapes where XML needs them, the same text read before a save
// and after a load.
TEST(XmlSheetCells, FormulaTextsRoundTrip) {
    const struct {
        const char *written, *stored, *read;
    } cases[] = {
        {"=IF(A1;\"a,b\";\"c;d\")", "IF(A1,\"a,b\",\"c;d\")", "IF(A1;\"a,b\";\"c;d\")"},
        {"SUM('a;b'!A1;2)", "SUM('a;b'!A1,2)", "SUM('a;b'!A1;2)"},
        {"IF(A1=\"\xC3\xA9;x\";1;2)", "IF(A1=&quot;\xC3\xA9;x&quot;,1,2)",
         "IF(A1=\"\xC3\xA9;x\";1;2)"},
        {"my_name+1", "my_name+1", "my_name+1"},
        {"\"_x0041_\"&A1;", "&quot;_x005F_x0041_&quot;&amp;A1,", "\"_x0041_\"&A1;"},
        {"\"a\x01"
         "b\"",
         "\"a_x0001_b\"",
         "\"a\x01"
         "b\""},
        {"A1<B1", "A1&lt;B1", "A1<B1"},
        // Longer than sixteen bytes: a literal across the sixteenth, names
        // with "_" and a control among the first sixteen.
        {"=CONCATENATE(\"abcdefghijkl,;\";A1;\"x\")", "CONCATENATE(\"abcdefghijkl,;\",A1,\"x\")",
         "CONCATENATE(\"abcdefghijkl,;\";A1;\"x\")"},
        {"SUM(first_range;second_range)", "SUM(first_range,second_range)",
         "SUM(first_range;second_range)"},
        {"\"a\x01"
         "bcdefghijklmnop\";1",
         "\"a_x0001_bcdefghijklmnop\",1",
         "\"a\x01"
         "bcdefghijklmnop\";1"},
    };
    xmlfake::Book<char> book;
    xmlfake::Sheet<char> sheet(book);
    const int n = int(sizeof cases / sizeof *cases);
    for (int i = 0; i < n; ++i) {
        ASSERT_TRUE(sheet.writeFormula(i, 0, cases[i].written, nullptr)) << i;
        EXPECT_EQ(text(sheet.readFormula(i, 0, nullptr)), cases[i].read) << i;
    }
    const std::string saved = sheet.save();
    xmlfake::Sheet<char> again(book, saved);
    for (int i = 0; i < n; ++i) {
        EXPECT_NE(saved.find(std::string("<f>") + cases[i].stored + "</f>"), std::string::npos)
            << cases[i].stored;
        EXPECT_EQ(text(again.readFormula(i, 0, nullptr)), cases[i].read) << i;
    }
}

// The cells' memory: blocks of every size stay apart, a freed block is the
// next of its size, and blocks aligned beyond the lists are mapped alone.
TEST(XmlSheetCells, CellMemoryKeepsBlocksApartAndReusesThem) {
    binding::c_cell_memory memory;
    const size_t sizes[] = {1,   15,  16,   17,    48,     256,    257,
                            320, 321, 4000, 70000, 262144, 262145, 3u << 20};
    struct Block {
        char *p;
        size_t n;
        char fill;
    };
    std::vector<Block> blocks;
    for (int round = 0; round < 40; ++round)
        for (size_t n : sizes) {
            char *p = static_cast<char *>(memory.allocate(n, 8));
            const char fill = char(blocks.size());
            std::memset(p, fill, n);
            blocks.push_back({p, n, fill});
        }
    for (const Block &b : blocks)
        ASSERT_TRUE(b.p[0] == b.fill && b.p[b.n - 1] == b.fill && b.p[b.n / 2] == b.fill);
    for (size_t i = 0; i < blocks.size(); i += 2) {
        memory.deallocate(blocks[i].p, blocks[i].n, 8);
        EXPECT_EQ(memory.allocate(blocks[i].n, 8), blocks[i].p) << blocks[i].n;
    }
    void *wide = memory.allocate(100, 64);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(wide) % 64, 0u);
    memory.deallocate(wide, 100, 64);
    for (const Block &b : blocks) memory.deallocate(b.p, b.n, 8);
}

} // namespace
