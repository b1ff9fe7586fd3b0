// The `tabrix` program run as a process: usage errors, failures on missing,
// corrupt and mislabelled files, dumps of a book written here through the
// library (json parsed back), conversions, and corpus files.
//
// A bad range is a usage error (exit 2) when its text is malformed, and a
// failed operation (exit 1) when it is well-formed but beyond the last cell
// of the file's format.
#include "support/json_value.h"
#include "support/run_tool.h"

#include "tabrix.h"
#include "tabrix/IBookT.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <dirent.h>
#include <string>
#include <sys/stat.h>
#include <vector>

using namespace clitest;
using tabrix::IBookT;
using tabrix::ISheetT;

namespace {

const char *const kPendingXml = "Open XML workbooks are not available yet";

bool contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

bool exists(const std::string &path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0;
}

// The book the dump tests read, written through the library.  Sheet
// "Data" holds the kinds and the texts that need quoting; sheet "Second" a
// cell away from A1.
struct TestBook {
    std::string path;
    std::string pending; // the library's message when it cannot write books yet
    bool hasFormula = false;
    bool hasName = false; // "Amounts", B2:B5 of "Data", for the whole book
};

TestBook writeTestBook() {
    TestBook t;
    t.path = scratch("book.xls");
    IBookT<char> *book = static_cast<IBookT<char> *>(tbCreateBookCA());
    book->setLocale("UTF-8");
    ISheetT<char> *s = book->addSheet("Data", nullptr);
    if (!s) {
        t.pending = book->errorMessage();
        book->release();
        return t;
    }
    tabrix::IFormatT<char> *date = book->addFormat(nullptr);
    date->setNumFormat(14);
    tabrix::IFormatT<char> *dateTime = book->addFormat(nullptr);
    dateTime->setNumFormat(22);
    const char *head[] = {"name", "amount", "flag", "when"};
    for (int c = 0; c < 4; ++c) s->writeStr(0, c, head[c], nullptr);
    s->writeStr(1, 0, "plain", nullptr);
    s->writeNum(1, 1, 1, nullptr);
    s->writeBool(1, 2, true, nullptr);
    s->writeNum(1, 3, book->datePack(2024, 1, 31, 0, 0, 0, 0), date);
    s->writeStr(2, 0, "comma, here", nullptr);
    s->writeNum(2, 1, -2.5, nullptr);
    s->writeBool(2, 2, false, nullptr);
    s->writeNum(2, 3, book->datePack(2024, 2, 29, 12, 30, 0, 0), dateTime);
    s->writeStr(3, 0, "quote \"q\"", nullptr);
    s->writeNum(3, 1, 0.1, nullptr);
    s->writeBlank(3, 2, date);
    s->writeStr(4, 0, "line\nbreak", nullptr);
    s->writeNum(4, 1, 1e300, nullptr);
    s->writeStr(4, 2, "tab\there", nullptr);
    s->writeStr(4, 3, "back\\slash", nullptr);
    s->writeStr(5, 0,
                "Gr\xC3\xBC\xC3\x9F"
                "e \xE2\x9C\x93 \x01",
                nullptr);
    t.hasFormula = s->writeFormula(5, 1, "SUM(B2:B3)", nullptr);
    t.hasName = s->setNamedRange("Amounts", 1, 4, 1, 1, -1);
    ISheetT<char> *second = book->addSheet("Second", nullptr);
    second->writeStr(0, 0, "x", nullptr);
    second->writeNum(2, 2, 42, nullptr);
    // A 90 by 40 picture header and a comment on each sheet.
    const unsigned char png[] = {0x89, 'P', 'N', 'G', 13, 10, 26, 10, 0,  0, 0, 13, 'I', 'H', 'D',
                                 'R',  0,   0,   0,   90, 0,  0,  0,  40, 8, 2, 0,  0,   0};
    int pic = book->addPicture2(reinterpret_cast<const char *>(png), sizeof png);
    second->setPicture(3, 1, pic, 1.0, 0, 0);
    s->writeComment(0, 1, "sum of\nall", "ann", 100, 50);
    second->writeComment(40, 20, "far", nullptr, 100, 50);
    if (!book->save(t.path.c_str())) t.pending = book->errorMessage();
    book->release();
    return t;
}

#define NEED_BOOK(t) ASSERT_EQ((t).pending, "") << "the test book was not saved"

// The cells of a json dump by reference, each as one line of what a copy
// must keep: kind, value, date, number format.  With `errorsAsText` an
// error cell counts as a text cell of its error text, the form a copy gives
// it when the target refuses the error as a formula.
std::map<std::string, std::string> cellsOf(const RunResult &dump, std::string *sheet = nullptr,
                                           bool errorsAsText = false) {
    std::map<std::string, std::string> cells;
    JsonValue doc;
    std::string error;
    if (!parseJson(dump.out, doc, error)) {
        cells["error"] = error;
        return cells;
    }
    if (sheet) *sheet = doc["sheet"].text;
    for (const JsonValue &c : doc["cells"].items) {
        const JsonValue &v = c["value"];
        char number[40];
        std::snprintf(number, sizeof number, "%.17g", v.number);
        std::string shown = v.type == JsonValue::Number ? number
                            : v.type == JsonValue::Bool ? (v.flag ? "true" : "false")
                                                        : v.text;
        // Custom number formats are numbered by each book: compare their text.
        std::string numFormat = c.has("numFormatText") ? c["numFormatText"].text
                                                       : std::to_string(int(c["numFormat"].number));
        std::string kind = errorsAsText && c["kind"].text == "error" ? "string" : c["kind"].text;
        // A formula copied is the formula: its cached value waits for a
        // recalculation.
        const bool formula = c.has("formula") && c["formula"].type == JsonValue::String;
        // An error written as the formula of its constant reads as that error.
        if (formula && errorsAsText && c["formula"].text[0] == '#')
            cells[c["ref"].text] = "string " + c["formula"].text + "  " + numFormat;
        else if (formula)
            cells[c["ref"].text] = "formula " + c["formula"].text + " " + numFormat;
        else
            cells[c["ref"].text] = kind + " " + shown + " " + c["date"].text + " " + numFormat;
    }
    return cells;
}

struct Case {
    std::vector<std::string> args;
    int exitCode;
    std::string inErr; // part of stderr ("" for none expected)
    std::string inOut; // part of stdout
};

void runCases(const std::vector<Case> &cases) {
    for (const Case &c : cases) {
        std::string shown;
        for (const std::string &a : c.args) shown += " " + a;
        RunResult r = runTool(c.args);
        EXPECT_EQ(r.exitCode, c.exitCode) << "tabrix" << shown << "\nstderr: " << r.err;
        EXPECT_TRUE(contains(r.err, c.inErr)) << "tabrix" << shown << "\nstderr: " << r.err;
        EXPECT_TRUE(contains(r.out, c.inOut)) << "tabrix" << shown << "\nstdout: " << r.out;
        if (c.exitCode != 0) {
            EXPECT_TRUE(r.out.empty()) << "tabrix" << shown << "\nstdout: " << r.out;
        }
    }
}

TEST(Cli, HelpAndUsageErrors) {
    runCases({
        {{}, 2, "usage: tabrix COMMAND", ""},
        {{"--help"}, 0, "", "commands:\n  info"},
        {{"help"}, 0, "", "  convert   convert between"},
        {{"dump", "--help"}, 0, "", "usage: tabrix dump FILE [--sheet NAME|N]"},
        {{"help", "convert"}, 0, "", "usage: tabrix convert IN OUT"},
        {{"info", "-h"}, 0, "", "usage: tabrix info FILE"},
        {{"frobnicate"}, 2, "tabrix: unknown command 'frobnicate'", ""},
        {{"dump"}, 2, "tabrix dump: missing file argument\nusage: tabrix dump", ""},
        {{"convert", "a.csv"}, 2, "tabrix convert: missing argument", ""},
        {{"info", "a.xls", "b.xls"}, 2, "unexpected argument 'b.xls'", ""},
        {{"dump", "a.xls", "--bogus"}, 2, "unknown option '--bogus'", ""},
        {{"dump", "a.xls", "-q"}, 2, "unknown option '-q'", ""},
        {{"dump", "a.xls", "--sheet"}, 2, "option '--sheet' needs a value NAME|N", ""},
        {{"dump", "a.xls", "-s", "1", "--sheet=2"}, 2, "option '--sheet' is given twice", ""},
        {{"convert", "a.xls", "b.csv", "--text=yes"}, 2, "option '--text' takes no value", ""},
        {{"dump", "a.xls", "--format", "xml"}, 2, "unknown format 'xml': use csv, tsv or json", ""},
        {{"convert", "a.xls", "b.doc"}, 2, "cannot tell the format of b.doc from its name", ""},
    });
}

// Malformed ranges are refused before the file is even opened.
TEST(Cli, MalformedRangesAreUsageErrors) {
    const char *const bad[][2] = {
        {"A0", "rows count from 1"},
        {"A1:", "a corner is missing"},
        {":B2", "a corner is missing"},
        {"A1:B2:C3", "a range has one ':'"},
        {"XFE1", "column XFE is beyond the last column XFD"},
        {"A1048577", "row 1048577 is beyond the last row"},
        {"1A", "'1A' is not a cell address"},
        {"A1:C", "use corners such as A1:D10"},
        {"B", "use corners such as A1:D10"},
        {"A-1", "'A-1' is not a cell address"},
        {"", "it is empty"},
    };
    for (const auto &b : bad) {
        RunResult r = runTool({"dump", "no-such-file.xls", "--range", b[0]});
        EXPECT_EQ(r.exitCode, 2) << b[0] << ": " << r.err;
        EXPECT_TRUE(contains(r.err, std::string("bad range '") + b[0] + "': " + b[1])) << r.err;
    }
}

TEST(Cli, FilesThatAreNoWorkbook) {
    std::string missing = scratch("missing.xls");
    std::string empty = scratch("empty.xls"), noise = scratch("noise.xls");
    std::string text = scratch("text.xls"), html = scratch("page.xls");
    std::string biff = scratch("bare.xls"), csv = scratch("plain.csv");
    std::string corrupt = scratch("corrupt.xls"), zipJunk = scratch("junk.xlsx");
    remove(missing.c_str());
    writeFile(empty, "");
    writeFile(noise, std::string("\x01\x02\x03\x00\xff\xfe", 6));
    writeFile(text, "a,b\n1,2\n");
    writeFile(html, "<html><body><table><tr><td>1</td></tr></table></body></html>\n");
    writeFile(biff, std::string("\x09\x08\x10\x00\x00\x06\x05\x00", 8));
    writeFile(csv, "a,b\n");
    // The compound file signature with nothing sensible behind it.
    writeFile(corrupt,
              std::string("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8) + std::string(600, '\x5a'));
    writeFile(zipJunk, std::string("PK\x03\x04", 4) + std::string(100, '\x11'));
    runCases({
        {{"info", missing},
         1,
         "tabrix info: cannot open " + missing + ": No such file or directory",
         ""},
        {{"dump", missing}, 1, "cannot open " + missing, ""},
        {{"convert", missing, scratch("out.csv")}, 1, "cannot open " + missing, ""},
        {{"info", TABRIX_TEST_TMP}, 1, "it is a directory", ""},
        {{"info", empty}, 1, empty + " looks like an empty file", ""},
        {{"info", noise},
         1,
         noise + " looks like a file of unknown kind, not a workbook: it has neither the "
                 "compound file nor the zip signature",
         ""},
        {{"dump", text}, 1, text + " looks like comma-separated text, not a workbook", ""},
        {{"info", html}, 1, html + " looks like an HTML or XML document", ""},
        {{"info", biff}, 1, "a bare binary record stream", ""},
        {{"info", csv}, 1, csv + " is comma-separated text, not a workbook", ""},
        {{"info", corrupt}, 1, "tabrix info: cannot load " + corrupt + ": ", ""},
        {{"dump", zipJunk}, 1, "tabrix dump: cannot load " + zipJunk + ": ", ""},
    });
}

// The kind goes by the content: a binary book named .xlsx is read as what
// it is, with a note.
TEST(Cli, ContentWinsOverExtension) {
    TestBook t = writeTestBook();
    NEED_BOOK(t);
    std::string renamed = scratch("really-binary.xlsx");
    writeFile(renamed, readFile(t.path));
    RunResult r = runTool({"info", renamed});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_TRUE(contains(r.err, "tabrix: note: " + renamed +
                                    " looks like a compound file (a binary .xls workbook), not "
                                    "what its extension .xlsx says; reading it as one"))
        << r.err;
    EXPECT_TRUE(contains(r.out, "format:        binary workbook")) << r.out;
}

TEST(Cli, InfoOfAWrittenBook) {
    TestBook t = writeTestBook();
    NEED_BOOK(t);
    RunResult r = runTool({"info", t.path});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    for (const char *line :
         {"file:          ", "format:        binary workbook (compound file, BIFF8 0x0600)",
          "date system:   1900", "sheets:        2 (active: 1)",
          "  1  Data    sheet    visible      A1:D6\n",
          "  2  Second  sheet    visible      A1:C3\n",
          "pictures:      1 (placed on sheets: 1)\n  Second!B4  png  90x40\n",
          "comments:      2\n  Data!B1  sum of\\nall\n  Second!U41  far\n"})
        EXPECT_TRUE(contains(r.out, line)) << "missing '" << line << "' in\n" << r.out;
    // Names as the library has them.
    if (t.hasName) {
        EXPECT_TRUE(contains(r.out, "named ranges:  1\n  Amounts  Data!B2:B5  (scope: book)\n"))
            << r.out;
    } else {
        EXPECT_TRUE(contains(r.out, "named ranges:  0\n")) << r.out;
    }
}

TEST(Cli, DumpCsvAndTsv) {
    TestBook t = writeTestBook();
    NEED_BOOK(t);
    runCases({
        {{"dump", t.path, "--range", "A1:D5"},
         0,
         "",
         "name,amount,flag,when\n"
         "plain,1,TRUE,2024-01-31\n"
         "\"comma, here\",-2.5,FALSE,2024-02-29 12:30:00\n"
         "\"quote \"\"q\"\"\",0.1,,\n"
         "\"line\nbreak\",1e+300,tab\there,back\\slash\n"},
        {{"dump", t.path, "-r", "a1:d5", "-f", "tsv"},
         0,
         "",
         "name\tamount\tflag\twhen\n"
         "plain\t1\tTRUE\t2024-01-31\n"
         "comma, here\t-2.5\tFALSE\t2024-02-29 12:30:00\n"
         "quote \"q\"\t0.1\t\t\n"
         "line\\nbreak\t1e+300\ttab\\there\tback\\\\slash\n"},
        // Ranges: reversed corners, one cell, whole columns and rows.
        {{"dump", t.path, "--range", "B3:A2"}, 0, "", "plain,1\n\"comma, here\",-2.5\n"},
        {{"dump", t.path, "--range", "$B$2"}, 0, "", "1\n"},
        {{"dump", t.path, "--sheet", "Second", "--range", "C:C"}, 0, "", "\n\n42\n"},
        {{"dump", t.path, "--sheet", "2", "--range", "3:3"}, 0, "", ",,42\n"},
        {{"dump", t.path, "--sheet", "second"}, 0, "", "x,,\n,,\n,,42\n"},
        // A formula cell: its cached value, or with --formulas its text.
        {{"dump", t.path, "--range", "B6"}, 0, "", "0\n"},
        {{"dump", t.path, "--range", "B6", "--formulas"}, 0, "", "=SUM(B2:B3)\n"},
        // Well-formed, but beyond what the binary format holds.
        {{"dump", t.path, "--range", "A1:IW1"}, 1, "range A1:IW1 reaches beyond IV65536", ""},
        {{"dump", t.path, "--range", "A65537"}, 1, "reaches beyond IV65536", ""},
        {{"dump", t.path, "--sheet", "Nope"},
         1,
         "tabrix dump: no sheet named 'Nope'; the sheets are 'Data', 'Second'",
         ""},
        {{"dump", t.path, "--sheet", "3"}, 1, "no sheet number 3: the book has 2 sheets", ""},
    });
}

// The json form parsed back: each cell's kind, value, format and formula.
TEST(Cli, DumpJsonParsesBack) {
    TestBook t = writeTestBook();
    NEED_BOOK(t);
    RunResult r = runTool({"dump", t.path, "--format", "json"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    JsonValue doc;
    std::string error;
    ASSERT_TRUE(parseJson(r.out, doc, error)) << error << "\n" << r.out;
    EXPECT_EQ(doc["file"].text, t.path);
    EXPECT_EQ(doc["sheet"].text, "Data");
    EXPECT_EQ(doc["range"].text, "A1:D6");
    const JsonValue &cells = doc["cells"];
    ASSERT_EQ(cells.type, JsonValue::Array);

    struct Expect {
        const char *ref;
        const char *kind;
        JsonValue::Type type;
        double number;
        const char *text;
        int numFormat;
    };
    const Expect expected[] = {
        {"A1", "string", JsonValue::String, 0, "name", 0},
        {"B2", "number", JsonValue::Number, 1, nullptr, 0},
        {"C2", "boolean", JsonValue::Bool, 1, nullptr, 0},
        {"D2", "number", JsonValue::Number, 45322, nullptr, 14},
        {"C3", "boolean", JsonValue::Bool, 0, nullptr, 0},
        {"D3", "number", JsonValue::Number, 45351.520833333336, nullptr, 22},
        {"A4", "string", JsonValue::String, 0, "quote \"q\"", 0},
        {"B4", "number", JsonValue::Number, 0.1, nullptr, 0},
        {"C4", "blank", JsonValue::Null, 0, nullptr, 14},
        {"A5", "string", JsonValue::String, 0, "line\nbreak", 0},
        {"B5", "number", JsonValue::Number, 1e300, nullptr, 0},
        {"C5", "string", JsonValue::String, 0, "tab\there", 0},
        {"D5", "string", JsonValue::String, 0, "back\\slash", 0},
        {"A6", "string", JsonValue::String, 0,
         "Gr\xC3\xBC\xC3\x9F"
         "e \xE2\x9C\x93 \x01",
         0},
    };
    std::map<std::string, const JsonValue *> byRef;
    for (const JsonValue &c : cells.items) byRef[c["ref"].text] = &c;
    // Every cell written and nothing else: 4 + 4 + 4 + 3 + 4 + 1 (+ formula).
    EXPECT_EQ(cells.items.size(), t.hasFormula ? 21u : 20u);
    for (const Expect &e : expected) {
        ASSERT_TRUE(byRef.count(e.ref)) << e.ref;
        const JsonValue &c = *byRef[e.ref];
        EXPECT_EQ(c["kind"].text, e.kind) << e.ref;
        EXPECT_EQ(c["value"].type, e.type) << e.ref;
        if (e.type == JsonValue::Number) {
            EXPECT_EQ(c["value"].number, e.number) << e.ref;
        }
        if (e.type == JsonValue::Bool) {
            EXPECT_EQ(c["value"].flag, e.number != 0) << e.ref;
        }
        if (e.text) {
            EXPECT_EQ(c["value"].text, e.text) << e.ref;
        }
        EXPECT_EQ(c["numFormat"].number, e.numFormat) << e.ref;
        EXPECT_GE(c["format"].number, 0) << e.ref;
        EXPECT_FALSE(c.has("formula")) << e.ref;
    }
    EXPECT_EQ((*byRef["D2"])["date"].text, "2024-01-31");
    EXPECT_EQ((*byRef["D3"])["date"].text, "2024-02-29 12:30:00");
    EXPECT_EQ((*byRef["B3"])["row"].number, 2);
    EXPECT_EQ((*byRef["B3"])["col"].number, 1);
    // Cells of the same format share its index.
    EXPECT_EQ((*byRef["D2"])["format"].number, (*byRef["C4"])["format"].number);
    EXPECT_NE((*byRef["D2"])["format"].number, (*byRef["D3"])["format"].number);
    if (t.hasFormula) {
        ASSERT_TRUE(byRef.count("B6"));
        EXPECT_EQ((*byRef["B6"])["formula"].text, "SUM(B2:B3)");
    }
}

// A range with no cell in it, and a sheet with none at all.
TEST(Cli, DumpJsonOfEmptyRanges) {
    TestBook t = writeTestBook();
    NEED_BOOK(t);
    std::string blank = scratch("blank.xls");
    {
        IBookT<char> *book = static_cast<IBookT<char> *>(tbCreateBookCA());
        book->addSheet("Nothing", nullptr);
        ASSERT_TRUE(book->save(blank.c_str())) << book->errorMessage();
        book->release();
    }
    struct {
        std::vector<std::string> args;
        const char *range;
    } cases[] = {
        {{"dump", t.path, "--sheet", "Second", "--range", "H:H", "-f", "json"}, "H1:H3"},
        {{"dump", blank, "-f", "json"}, ""},
        {{"dump", blank, "-f", "json", "-r", "B:B"}, ""},
    };
    for (const auto &c : cases) {
        RunResult r = runTool(c.args);
        ASSERT_EQ(r.exitCode, 0) << r.err;
        JsonValue doc;
        std::string error;
        ASSERT_TRUE(parseJson(r.out, doc, error)) << error << "\n" << r.out;
        EXPECT_EQ(doc["range"].text, c.range);
        EXPECT_EQ(doc["cells"].type, JsonValue::Array);
        EXPECT_TRUE(doc["cells"].items.empty()) << r.out;
    }
    RunResult csv = runTool({"dump", blank});
    EXPECT_EQ(csv.exitCode, 0) << csv.err;
    EXPECT_EQ(csv.out, "");
}

// xls to csv to xls keeps every value; xls to xls with --sheet keeps one.
TEST(Cli, ConvertRoundTrips) {
    TestBook t = writeTestBook();
    NEED_BOOK(t);
    std::string csv = scratch("round.csv"), back = scratch("round.xls");
    std::string tsv = scratch("round.tsv"), back2 = scratch("round2.xls");
    std::string one = scratch("one.xls"), cells = scratch("cells.xls");
    std::string range = t.hasFormula ? "A1:D5" : "A1:D6";
    runCases({
        {{"convert", t.path, csv}, 0, "", ""},
        {{"convert", csv, back}, 0, "", ""},
        {{"convert", t.path, tsv}, 0, "", ""},
        {{"convert", tsv, back2}, 0, "", ""},
        {{"convert", t.path, one, "--sheet", "Second"}, 0, "", ""},
        {{"convert", t.path, cells, "--cells"}, 0, "", ""},
        {{"convert", t.path, scratch("x.csv"), "--cells"},
         2,
         "--cells applies between two workbooks",
         ""},
        {{"convert", csv, scratch("again.csv")}, 2, "are text; one side must be a workbook", ""},
        {{"convert", t.path, scratch("x.csv"), "--text"},
         2,
         "--text applies when the input is csv",
         ""},
    });
    RunResult original = runTool({"dump", t.path, "-f", "json", "-r", range});
    for (const std::string &copy : {back, back2}) {
        RunResult again = runTool({"dump", copy, "-f", "json", "-r", range});
        ASSERT_EQ(again.exitCode, 0) << again.err;
        JsonValue a, b;
        std::string error;
        ASSERT_TRUE(parseJson(original.out, a, error)) << error;
        ASSERT_TRUE(parseJson(again.out, b, error)) << error;
        EXPECT_EQ(b["sheet"].text, "round");
        std::map<std::string, const JsonValue *> copied;
        for (const JsonValue &c : b["cells"].items) copied[c["ref"].text] = &c;
        for (const JsonValue &c : a["cells"].items) {
            std::string ref = c["ref"].text;
            if (c["kind"].text == "blank") continue; // text has no blank cells
            ASSERT_TRUE(copied.count(ref)) << copy << " " << ref;
            const JsonValue &d = *copied[ref];
            EXPECT_EQ(d["kind"].text, c["kind"].text) << copy << " " << ref;
            EXPECT_EQ(d["value"].number, c["value"].number) << copy << " " << ref;
            EXPECT_EQ(d["value"].text, c["value"].text) << copy << " " << ref;
            EXPECT_EQ(d["value"].flag, c["value"].flag) << copy << " " << ref;
            EXPECT_EQ(d["date"].text, c["date"].text) << copy << " " << ref;
        }
    }
    // A copy of the cells alone keeps every cell of both sheets.
    for (const char *sheet : {"1", "2"}) {
        std::string name;
        EXPECT_EQ(cellsOf(runTool({"dump", cells, "-s", sheet, "-f", "json"})),
                  cellsOf(runTool({"dump", t.path, "-s", sheet, "-f", "json"}), &name))
            << "sheet " << name;
    }
    RunResult info = runTool({"info", one});
    EXPECT_EQ(info.exitCode, 0) << info.err;
    EXPECT_TRUE(contains(info.out, "sheets:        1")) << info.out;
    EXPECT_TRUE(contains(info.out, "  1  Second")) << info.out;
}

// Text into a workbook: what each field becomes.
TEST(Cli, ConvertTextFields) {
    std::string csv = scratch("fields.csv"), xls = scratch("fields.xls"), txt = scratch("text.xls");
    writeFile(csv, "\xEF\xBB\xBF"
                   "12,-3.5e2,007,true,FALSE,2024-03-01,2024-03-01T06:00:00,08:30:00,\"a,"
                   "\"\"b\"\"\r\nc\",,x\r\n"
                   "+1,1e999,.5,2024-13-01,0x10, 7\n");
    RunResult r = runTool({"convert", csv, xls, "--sheet", "Fields"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    r = runTool({"dump", xls, "-f", "json"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    JsonValue doc;
    std::string error;
    ASSERT_TRUE(parseJson(r.out, doc, error)) << error;
    EXPECT_EQ(doc["sheet"].text, "Fields");
    std::map<std::string, std::string> got;
    for (const JsonValue &c : doc["cells"].items) {
        const JsonValue &v = c["value"];
        std::string shown = v.type == JsonValue::Number ? std::to_string(v.number)
                            : v.type == JsonValue::Bool ? (v.flag ? "true" : "false")
                                                        : v.text;
        got[c["ref"].text] = c["kind"].text + ":" + (c.has("date") ? c["date"].text : shown);
    }
    const std::map<std::string, std::string> expected = {
        {"A1", "number:12.000000"},
        {"B1", "number:-350.000000"},
        {"C1", "string:007"},
        {"D1", "boolean:true"},
        {"E1", "boolean:false"},
        {"F1", "number:2024-03-01"},
        {"G1", "number:2024-03-01 06:00:00"},
        {"H1", "number:08:30:00"},
        {"I1", "string:a,\"b\"\r\nc"},
        {"K1", "string:x"},
        {"A2", "number:1.000000"},
        {"B2", "string:1e999"},
        {"C2", "number:0.500000"},
        {"D2", "string:2024-13-01"},
        {"E2", "string:0x10"},
        {"F2", "string: 7"},
    };
    EXPECT_EQ(got, expected);

    // --text keeps every field as it stands.
    r = runTool({"convert", csv, txt, "--text"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    r = runTool({"dump", txt, "-r", "A1:C1"});
    EXPECT_EQ(r.out, "12,-3.5e2,007\n");
    r = runTool({"info", txt});
    EXPECT_TRUE(contains(r.out, "  1  fields")) << r.out;
}

TEST(Cli, BrokenText) {
    std::string open = scratch("open.csv"), wide = scratch("wide.csv");
    writeFile(open, "a,b\n1,2\n\"never\nclosed\n");
    std::string row(300 * 2, ',');
    writeFile(wide, "x" + row + "\n");
    RunResult r = runTool({"convert", open, scratch("open.xls")});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(contains(r.err, open + " line 3: a quoted field is not closed")) << r.err;
    r = runTool({"convert", wide, scratch("wide.xls")});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(
        contains(r.err, "601 fields, more than the columns this workbook format holds (256)"))
        << r.err;
}

// A large file shows a progress line while it loads, but only on a
// terminal: `script` gives the tool one.
TEST(Cli, ProgressLineOnlyOnATerminal) {
    if (!exists("/usr/bin/script"))
        GTEST_SKIP() << "no /usr/bin/script to give the tool a terminal";
    std::string csv = scratch("big.csv"), xls = scratch("big.xls");
    std::string rows;
    for (int r = 0; r < 65536; ++r) {
        std::string row = std::to_string(r * 1000003LL);
        for (int c = 0; c < 7; ++c) row += "," + std::to_string(r + c * 0.125);
        rows += row + "\n";
    }
    writeFile(csv, rows);
    RunResult r = runTool({"convert", csv, xls});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "");

    r = runTool({"dump", xls, "--range", "H65536"});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.out, "65535.75\n");
    EXPECT_EQ(r.err, "") << "no progress line when stderr is a file";

    std::string typescript = scratch("typescript.txt");
    std::string command = "/usr/bin/script -qec '" + toolPath() + " info " + xls + "' " +
                          typescript + " > /dev/null 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0);
    std::string seen = readFile(typescript);
    EXPECT_TRUE(contains(seen, "\rloading " + xls + " ...\x1b[K")) << seen;
    EXPECT_TRUE(contains(seen, "\r\x1b[Kfile:")) << "the line is wiped before the report\n" << seen;
}

// Open XML goes through the library's Open XML book: while it has none, a
// clear message and exit 1; once it has, the same commands work.
TEST(Cli, OpenXmlAsTheLibraryHasIt) {
    std::string csv = scratch("small.csv"), xlsx = scratch("small.xlsx");
    writeFile(csv, "a,1\nb,2\n");
    RunResult r = runTool({"convert", csv, xlsx});
    if (r.exitCode == 1) {
        EXPECT_TRUE(contains(r.err, kPendingXml)) << r.err;
        return;
    }
    ASSERT_EQ(r.exitCode, 0) << r.err;
    r = runTool({"dump", xlsx});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.out, "a,1\nb,2\n");
}

// Real files: every corpus .xls either loads, with a full report, or fails
// with a message; nothing crashes.  The ones below are plain enough that
// they must load.
TEST(Cli, InfoAndDumpOfCorpusFiles) {
    std::string dir = std::string(TABRIX_CORPUS_DIR) + "/public";
    if (!exists(dir)) GTEST_SKIP() << "no corpus at " << dir;
    std::vector<std::string> files;
    for (const char *sub : {"calamine", "libxls", "xlrd"}) {
        std::string d = dir + "/" + sub;
        DIR *h = opendir(d.c_str());
        if (!h) continue;
        while (dirent *e = readdir(h)) {
            std::string name = e->d_name;
            if (name.size() > 4 && name.compare(name.size() - 4, 4, ".xls") == 0)
                files.push_back(d + "/" + name);
        }
        closedir(h);
    }
    ASSERT_FALSE(files.empty());
    int loaded = 0;
    std::string copied = scratch("corpus-copy.xls");
    for (const std::string &f : files) {
        RunResult info = runTool({"info", f});
        ASSERT_TRUE(info.exitCode == 0 || info.exitCode == 1) << f << ": " << info.err;
        if (info.exitCode == 1) {
            EXPECT_TRUE(contains(info.err, "tabrix info: ")) << f << ": " << info.err;
            continue;
        }
        ++loaded;
        EXPECT_TRUE(contains(info.out, "sheets:")) << f;
        RunResult dump = runTool({"dump", f, "-f", "json"});
        ASSERT_TRUE(dump.exitCode == 0 || dump.exitCode == 1) << f << ": " << dump.err;
        if (dump.exitCode != 0) continue;
        JsonValue doc;
        std::string error;
        EXPECT_TRUE(parseJson(dump.out, doc, error)) << f << ": " << error;
        // The cells of the first sheet survive a copy into a new book.
        RunResult copy = runTool({"convert", f, copied, "--cells", "--sheet", "1"});
        EXPECT_EQ(copy.exitCode, 0) << f << ": " << copy.err;
        if (copy.exitCode == 0) {
            auto was = cellsOf(dump, nullptr, true);
            auto now = cellsOf(runTool({"dump", copied, "-f", "json"}), nullptr, true);
            // A printed formula the parser refuses is copied as its value;
            // one that reaches other sheets loses them, as only one sheet
            // is copied.
            for (auto &cell : was) {
                if (cell.second.compare(0, 8, "formula ") != 0 || !now.count(cell.first)) continue;
                std::string &copy = now[cell.first];
                if (copy.compare(0, 8, "formula ") != 0 ||
                    cell.second.find('!') != std::string::npos)
                    copy = cell.second;
            }
            for (auto &cell : was)
                if (now.count(cell.first) && now[cell.first] != cell.second)
                    ADD_FAILURE() << f << " " << cell.first << ": " << now[cell.first] << " vs "
                                  << cell.second;
            EXPECT_EQ(now.size(), was.size()) << f;
        }
    }
    EXPECT_GT(loaded, 0);
    // A book of the older format is not saved as it stands, but converts.
    std::string old = dir + "/libxls/fuzz_corpus_biff5-label-records.xls";
    if (exists(old)) {
        std::string xls = scratch("old-copy.xls"), csv = scratch("old-copy.csv");
        EXPECT_EQ(runTool({"convert", old, xls}).exitCode, 0);
        EXPECT_EQ(runTool({"convert", old, csv}).exitCode, 0);
        EXPECT_EQ(runTool({"dump", xls}).out, runTool({"dump", old}).out);
        EXPECT_EQ(readFile(csv), runTool({"dump", old}).out);
    }
    std::string date = dir + "/calamine/date.xls";
    if (exists(date)) {
        RunResult r = runTool({"info", date});
        EXPECT_EQ(r.exitCode, 0) << r.err;
        EXPECT_TRUE(contains(r.out, "format:        binary workbook (compound file, BIFF8"))
            << r.out;
    }
}

} // namespace
