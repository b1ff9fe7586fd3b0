// Range labels resolved over a fake book: every label form, header rule,
// column selections and their failure messages; cell conversions.
#include "refhost.h"
#include "support/tin_fake_sheet.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <tuple>
#include <vector>

using tin::FakeBook;
using tin::FakeFile;

namespace {

// NO_ADD: an empty book refusing new sheets.
enum BookKind { STANDARD, EMPTY, BLANK_SHEET, NO_ADD };

struct Outcome {
    int status = -1;
    std::string sheet;
    int firstRow = 0, lastRow = 0, firstCol = 0, lastCol = 0;
    std::vector<int> map;
    std::string errors;
};

// Resolves `label` over a fresh book of `kind`.
Outcome resolveIn(BookKind kind, unsigned fileFlags, const char *label) {
    FakeBook book;
    if (kind == STANDARD) tin::fillStandardBook(book);
    if (kind == BLANK_SHEET) book.add("Sheet1");
    book.canAdd = kind != NO_ADD;
    g_host = qdhost::hostTable();
    qdhost::Context ctx;
    FakeFile file(&book, fileFlags);
    const char *text = label;
    unsigned flags = parseOptions(fileFlags, &text, nullptr, nullptr, nullptr, nullptr, nullptr);
    RangeSpec spec;
    Outcome out;
    out.status = resolveRange(&ctx, flags, &file.file, &spec, text);
    out.errors = ctx.allErrors();
    if (out.status == 0) {
        out.sheet = spec.ops.sheetName(spec.sheet);
        out.firstRow = spec.firstRow;
        out.lastRow = spec.lastRow;
        out.firstCol = spec.firstCol;
        out.lastCol = spec.lastCol;
        out.map.assign(spec.columnMap, spec.columnMap + spec.columnCount);
    }
    free(spec.columnMap);
    return out;
}

struct LabelCase {
    const char *label;
    BookKind book;
    unsigned fileFlags;
    const char *sheet;
    int firstRow, lastRow, firstCol, lastCol;
    std::vector<int> map;
};

// The messages of a bad column selection.
std::string number(const char *what) {
    return std::string("SHEET: Invalid column number in selection (") + what + ").\n";
}
std::string ident(const char *what) {
    return std::string("SHEET: Invalid column identifier in selection (") + what + ").\n";
}

const char *kNotFound = "SHEET: Sheet not found.\n";
const char *kInvalid = "SHEET: Invalid range.\n";
const char *kCannotAdd = "SHEET: A new sheet cannot be added.\n";

const LabelCase kLabels[] = {
    // Sheets by none, by name (whole text, any case) and by number.
    {"[]", STANDARD, 0, "Sheet1", 0, 1, 0, 1, {0, 1}},
    {"[", STANDARD, 0, "Sheet1", 0, 1, 0, 1, {0, 1}},
    {"[A1]", STANDARD, 0, "Sheet1", 0, 0, 0, 0, {0}},
    {"[Data$B2:C3]", STANDARD, 0, "Data", 1, 2, 1, 2, {0, 1}},
    {"[data$]", STANDARD, 0, "Data", 0, 3, 0, 2, {0, 1, 2}},
    {"[SHEET10$A1]", STANDARD, 0, "Sheet10", 0, 0, 0, 0, {0}},
    {"[3$A1]", STANDARD, 0, "Data", 0, 0, 0, 0, {0}},
    // Sheets made for writing.
    {"[]", EMPTY, OPT_WRITING, "Sheet1", 0, 0, 0, 0, {0}},
    {"[5$A1]", STANDARD, OPT_WRITING, "Sheet5", 0, 0, 0, 0, {0}},
    {"[3$A1]", BLANK_SHEET, OPT_WRITING, "Sheet3", 0, 0, 0, 0, {0}},
    {"[New$B2]", STANDARD, OPT_WRITING, "New", 1, 1, 1, 1, {0}},
    // Rectangles, whole columns, whole rows, R1C1.
    {"[Data$B:D]", STANDARD, 0, "Data", 0, 3, 1, 3, {0, 1, 2}},
    {"[Data$3:5]", STANDARD, 0, "Data", 2, 4, 0, 2, {0, 1, 2}},
    {"[R2C3]", STANDARD, 0, "Sheet1", 1, 1, 2, 2, {0}},
    {"[r2c3:R4C5]", STANDARD, 0, "Sheet1", 1, 3, 2, 4, {0, 1, 2}},
    {"[R1C16384]", STANDARD, 0, "Sheet1", 0, 0, 16383, 16383, {0}},
    {"[XFD1]", STANDARD, 0, "Sheet1", 0, 0, 16383, 16383, {0}},
    {"[aa10:ab12]", STANDARD, 0, "Sheet1", 9, 11, 26, 27, {0, 1}},
    {"[R1]", STANDARD, 0, "Sheet1", 0, 0, 17, 17, {0}},
    // Column selections by number, reordering and narrowing.
    {"[A1:B2](#2,#1)", STANDARD, 0, "Sheet1", 0, 1, 0, 1, {1, 0}},
    {"[A1:D1]( 3 , 2 )", STANDARD, 0, "Sheet1", 0, 0, 1, 2, {1, 0}},
    {"[A1:D1](#1,#3)", STANDARD, 0, "Sheet1", 0, 0, 0, 2, {0, 2}},
    {"[A1:D1](4,1)", STANDARD, 0, "Sheet1", 0, 0, 0, 3, {3, 0}},
    // Header rule and selection by header name.
    {"skiph;[Data$A1:C4]", STANDARD, 0, "Data", 1, 3, 0, 2, {0, 1, 2}},
    {"skiph;[Data$A1:C4](price, id)", STANDARD, 0, "Data", 1, 3, 0, 2, {2, 0}},
    {"skiph;[Data$A1:C4]( name )", STANDARD, 0, "Data", 1, 3, 1, 1, {0}},
    {"skiph;[Data$A1:C4](#3,name)", STANDARD, 0, "Data", 1, 3, 1, 2, {1, 0}},
    {"SKIPH;[Data$A:C](id)", STANDARD, 0, "Data", 1, 3, 0, 0, {0}},
    {"skiph;grow;[A1:C1]", STANDARD, OPT_WRITING, "Sheet1", 1, 1, 0, 2, {0, 1, 2}},
    // Header creation on a file open for writing.
    {"skiph+;grow;[A1:C1](x,y)", BLANK_SHEET, OPT_WRITING, "Sheet1", 1, 1, 0, 1, {0, 1}},
    {"skiph+;[Data$A1:C4](price)", STANDARD, OPT_WRITING, "Data", 1, 3, 2, 2, {0}},
    // The name form.
    {"table", STANDARD, 0, "Data", 0, 3, 0, 2, {0, 1, 2}},
    {"TABLE(#3,#1)", STANDARD, 0, "Data", 0, 3, 0, 2, {2, 0}},
    {"prices", STANDARD, 0, "Data", 1, 3, 2, 2, {0}},
    {"skiph;table(name)", STANDARD, 0, "Data", 1, 3, 1, 1, {0}},
    {"other", STANDARD, 0, "Sheet10", 0, 0, 0, 0, {0}},
};

// Labels that fail, with the messages, by book and file flags.
struct FailCase {
    BookKind book;
    unsigned fileFlags;
    std::string errors;
    std::vector<const char *> labels;
};

const FailCase kFailures[] = {
    {STANDARD, 0, kNotFound, {"[Sheet$A1]", "[Sheet100$A1]", "[4$A1]", "[0$A1]"}},
    {STANDARD, OPT_WRITING, kNotFound, {"[0$A1]"}},
    {EMPTY, 0, kNotFound, {"[]"}},
    {NO_ADD, OPT_WRITING, kCannotAdd, {"[]", "[2$A1]", "[Other$A1]"}},
    {STANDARD,
     0,
     kInvalid,
     {"[$A1]", "[R1C16385]", "[R0C1]", "[XFE1]", "[ABCD1]", "[A1x]", "[1A]", "[A1", "[A1;B2]",
      "[A]", "[3]", "[A1:B]", "[A1:3]", "[B2:A1]", "[A0]"}},
    {STANDARD, 0, number("3"), {"[A1:B2](3)"}},
    {STANDARD, 0, number("0"), {"[A1:B2](#0)"}},
    {STANDARD, 0, ident(""), {"[A1:B2]()", "[A1:B2](,1)"}},
    {STANDARD, 0, ident("x"), {"[A1:B2](x)"}},
    {STANDARD, 0, ident("nam"), {"skiph;[Data$A1:C4](nam)"}},
    {STANDARD, 0, ident("Name"), {"skiph;[Data$A1:C4](Name)"}},
    {STANDARD, 0, number("4"), {"skiph;[Data$A1:C4](#4)"}},
    {STANDARD, 0, "SHEET: Missing header row.\n", {"skiph;[A1:C1]", "skiph;grow;[A1:C1]"}},
    {BLANK_SHEET, OPT_WRITING, number("1"), {"skiph+;grow;[A1:C1](#1)"}},
    {STANDARD, 0, "SHEET: Range name not found.\n", {"tab", ""}},
};

TEST(ResolveRange, LabelForms) {
    auto trace = [](const char *label, unsigned fileFlags) {
        return std::string(label) + (fileFlags & OPT_WRITING ? " (writing)" : "");
    };
    for (const LabelCase &c : kLabels) {
        SCOPED_TRACE(trace(c.label, c.fileFlags));
        Outcome o = resolveIn(c.book, c.fileFlags, c.label);
        EXPECT_EQ(std::make_tuple(0, std::string(c.sheet), c.firstRow, c.lastRow, c.firstCol,
                                  c.lastCol, c.map, std::string()),
                  std::make_tuple(o.status, o.sheet, o.firstRow, o.lastRow, o.firstCol, o.lastCol,
                                  o.map, o.errors));
    }
    for (const FailCase &f : kFailures)
        for (const char *label : f.labels) {
            SCOPED_TRACE(trace(label, f.fileFlags));
            Outcome o = resolveIn(f.book, f.fileFlags, label);
            EXPECT_EQ(1, o.status);
            EXPECT_EQ(f.errors, o.errors);
        }
}

// ---- cell conversion --------------------------------------------------------

struct CellCase {
    const char *what;
    int kind; // how the cell is filled
    double number;
    const char *text;
    qd_type target;
    int answer;         // readCell's answer
    const char *expect; // the value as text: "%lld", "%g", the string, "null"
};

const qd_type EXT = 99; // any type above 4 reads as text

const CellCase kCells[] = {
    {"number to int", CELL_NUMBER, 2.9, nullptr, QD_INT, CELL_NUMBER, "2"},
    {"negative to int", CELL_NUMBER, -2.9, nullptr, QD_INT, CELL_NUMBER, "-2"},
    {"huge to int", CELL_NUMBER, 1e300, nullptr, QD_INT, CELL_NUMBER, "9223372036854775807"},
    {"NaN to int", CELL_NUMBER, NAN, nullptr, QD_INT, CELL_NUMBER, "0"},
    {"text to int", CELL_STRING, 0, "7.8", QD_INT, CELL_STRING, "7"},
    {"bool to int", CELL_BOOL, 1, nullptr, QD_INT, CELL_BOOL, "1"},
    {"empty to int", CELL_EMPTY, 0, nullptr, QD_INT, CELL_EMPTY, "0"},
    {"blank to int", 4, 0, nullptr, QD_INT, CELL_EMPTY, "0"},
    {"number to real", CELL_NUMBER, 2.5, nullptr, QD_REAL, CELL_NUMBER, "2.5"},
    {"abc to real", CELL_STRING, 0, "abc", QD_REAL, CELL_STRING, "0"},
    {"text to real", CELL_STRING, 0, "-1.25e1", QD_REAL, CELL_STRING, "-12.5"},
    {"bool to real", CELL_BOOL, 1, nullptr, QD_REAL, CELL_BOOL, "1"},
    {"number to string", CELL_NUMBER, 0.1, nullptr, QD_STRING, CELL_NUMBER, "0.1"},
    {"text to string", CELL_STRING, 0, "abc", QD_STRING, CELL_STRING, "abc"},
    {"bool to string", CELL_BOOL, 1, nullptr, QD_STRING, CELL_BOOL, "TRUE"},
    {"false to string", CELL_BOOL, 0, nullptr, QD_STRING, CELL_BOOL, "FALSE"},
    {"empty to string", CELL_EMPTY, 0, nullptr, QD_STRING, CELL_EMPTY, "null"},
    {"number to bool", CELL_NUMBER, 0.5, nullptr, QD_BOOL, CELL_NUMBER, "1"},
    {"zero to bool", CELL_NUMBER, 0, nullptr, QD_BOOL, CELL_NUMBER, "0"},
    {"NaN to bool", CELL_NUMBER, NAN, nullptr, QD_BOOL, CELL_NUMBER, "1"},
    {"TRUE to bool", CELL_STRING, 0, "TRUE", QD_BOOL, CELL_STRING, "1"},
    {"true to bool", CELL_STRING, 0, "true", QD_BOOL, CELL_STRING, "1"},
    {"yes to bool", CELL_STRING, 0, "yes", QD_BOOL, CELL_STRING, "0"},
    {"number to external", CELL_NUMBER, 3, nullptr, EXT, CELL_NUMBER, "3"},
    {"text to external", CELL_STRING, 0, "a b", EXT, CELL_STRING, "a b"},
    {"true to external", CELL_BOOL, 1, nullptr, EXT, CELL_BOOL, "false"},
    {"false to external", CELL_BOOL, 0, nullptr, EXT, CELL_BOOL, "true"},
    {"empty to external", CELL_EMPTY, 0, nullptr, EXT, CELL_EMPTY, "null"},
    {"unknown kind", 5, 0, nullptr, QD_INT, -1, "0"},
};

std::string valueText(qd_type target, const qd_value &v) {
    char buffer[64];
    switch (target) {
    case QD_INT: snprintf(buffer, sizeof buffer, "%lld", (long long)v.i); return buffer;
    case QD_REAL: snprintf(buffer, sizeof buffer, "%g", v.r); return buffer;
    case QD_BOOL: return v.b ? "1" : "0";
    default: return v.s ? v.s : "null";
    }
}

TEST(ReadCell, Conversions) {
    g_host = qdhost::hostTable();
    for (const CellCase &c : kCells) {
        SCOPED_TRACE(c.what);
        FakeBook book;
        tin::FakeSheet &sheet = book.add("Sheet1");
        // The cell lies at C4, read through a range starting at B2.
        switch (c.kind) {
        case CELL_NUMBER: sheet.number(3, 2, c.number); break;
        case CELL_STRING: sheet.text(3, 2, c.text); break;
        case CELL_BOOL: sheet.boolean(3, 2, c.number != 0); break;
        case CELL_EMPTY: break;
        default: sheet.kind(3, 2, c.kind); break;
        }
        qdhost::Context ctx;
        FakeFile file(&book);
        RangeSpec spec;
        ASSERT_EQ(0, resolveRange(&ctx, 0, &file.file, &spec, "[B2:D5]"));
        qd_value v;
        EXPECT_EQ(c.answer, readCell(&ctx, &spec, c.target, &v, 2, 1));
        if (c.answer >= 0) {
            EXPECT_EQ(c.expect, valueText(c.target, v));
        }
        free(spec.columnMap);
        EXPECT_EQ("", ctx.allErrors());
    }
}

TEST(ReadCell, NumbersFollowTheHostFormatAndFitTheBuffer) {
    g_host = qdhost::hostTable();
    FakeBook book;
    book.add("Sheet1").number(0, 0, 1.0 / 3);
    qdhost::Context ctx;
    ctx.realFormat = "%.3f";
    FakeFile file(&book);
    file.file.bufferSize = 4; // "0.333" does not fit: cut, still terminated
    RangeSpec spec;
    ASSERT_EQ(0, resolveRange(&ctx, 0, &file.file, &spec, "[A1]"));
    qd_value v;
    ASSERT_EQ(CELL_NUMBER, readCell(&ctx, &spec, EXT, &v, 0, 0));
    EXPECT_STREQ("0.3", v.s);
    spec.bufferSize = 256;
    ASSERT_EQ(CELL_NUMBER, readCell(&ctx, &spec, QD_STRING, &v, 0, 0));
    EXPECT_STREQ("0.333", v.s);
    free(spec.columnMap);
}

TEST(FormatDate, Parts) {
    struct {
        int y, mo, d, h, mi, s, ms;
        const char *text;
    } cases[] = {
        {2024, 3, 1, 0, 0, 0, 0, "2024-03-01"},
        {0, 0, 0, 12, 30, 0, 0, "12:30:00"},
        {0, 0, 0, 0, 0, 0, 0, "00:00:00"},
        {0, 0, 0, 12, 30, 5, 250, "12:30:05,250"},
        {2024, 3, 1, 12, 30, 0, 500, "2024-03-01T12:30:00,500"},
        {2024, 12, 31, 23, 59, 59, 0, "2024-12-31T23:59:59"},
        {999, 1, 2, 0, 0, 0, 0, " 999-01-02"},
    };
    for (const auto &c : cases) {
        char buffer[64];
        formatDateParts(c.y, c.mo, c.d, c.h, c.mi, c.s, c.ms, buffer, sizeof buffer);
        EXPECT_STREQ(c.text, buffer);
    }
    char small[6];
    formatDateParts(2024, 3, 1, 0, 0, 0, 0, small, sizeof small);
    EXPECT_STREQ("2024-", small);
}

} // namespace
