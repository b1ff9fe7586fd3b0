// The `tabrix` program run as a process: usage errors, failures on missing,
// corrupt and mislabelled files, dumps of a book written here through the
// library (json parsed back), conversions, the progress line, corpus files.
// The splitting of separated text is the module's reader, tested there.
//
// A bad range is a usage error (exit 2) when its text is malformed, and a
// failed operation (exit 1) when it is well-formed but beyond the last cell
// of the file's format.
#include "support/run_tool.h"

#include "tabrix.h"
#include "tabrix/IBookT.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <map>
#include <string>
#include <sys/stat.h>
#include <vector>

using namespace clitest;
using tabrix::IBookT;
using tabrix::ISheetT;

namespace {

bool contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

bool exists(const std::string &path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0;
}

// The book the dump tests read, written through the library.  Sheet "Data"
// holds every kind and the texts that need quoting, a formula in B6 and the
// book's name "Amounts" over B2:B5; sheet "Second" a cell away from A1.
std::string writeTestBook() {
    std::string path = scratch("book.xls");
    IBookT<char> *book = static_cast<IBookT<char> *>(tbCreateBookCA());
    book->setLocale("UTF-8");
    ISheetT<char> *s = book->addSheet("Data", nullptr);
    tabrix::IFormatT<char> *date = book->addFormat(nullptr);
    date->setNumFormat(14);
    tabrix::IFormatT<char> *dateTime = book->addFormat(nullptr);
    dateTime->setNumFormat(22);
    const char *head[] = {"name", "amount", "flag", "when"};
    const char *names[] = {"plain", "comma, here", "quote \"q\"", "line\nbreak",
                           "Gr\xC3\xBC\xC3\x9F"
                           "e \xE2\x9C\x93 \x01"};
    const double amounts[] = {1, -2.5, 0.1, 1e300};
    for (int c = 0; c < 4; ++c) s->writeStr(0, c, head[c], nullptr);
    for (int r = 0; r < 5; ++r) s->writeStr(r + 1, 0, names[r], nullptr);
    for (int r = 0; r < 4; ++r) s->writeNum(r + 1, 1, amounts[r], nullptr);
    s->writeBool(1, 2, true, nullptr);
    s->writeNum(1, 3, book->datePack(2024, 1, 31, 0, 0, 0, 0), date);
    s->writeBool(2, 2, false, nullptr);
    s->writeNum(2, 3, book->datePack(2024, 2, 29, 12, 30, 0, 0), dateTime);
    s->writeBlank(3, 2, date);
    s->writeStr(4, 2, "tab\there", nullptr);
    s->writeStr(4, 3, "back\\slash", nullptr);
    s->writeFormula(5, 1, "SUM(B2:B3)", nullptr);
    s->setNamedRange("Amounts", 1, 4, 1, 1, -1);
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
    bool saved = book->save(path.c_str());
    EXPECT_TRUE(saved) << book->errorMessage();
    book->release();
    return path;
}

// The cells of a json dump by reference, read back by python's json
// reader (support/json_cells.py): kind, value, date and number format of
// each.  With `errorsAsText` an error cell counts as a text cell of its
// error text.  `sheet` gets the dumped sheet's name.
using Cells = std::map<std::string, std::string>;
Cells cellsOf(const RunResult &dump, std::string *sheet = nullptr, bool errorsAsText = false) {
    std::string path = scratch("dump.json");
    writeFile(path, dump.out);
    std::string command = "/usr/bin/python3 " TABRIX_SOURCE_DIR
                          "/tests/tools/support/json_cells.py " +
                          path + (errorsAsText ? " errors-as-text" : "");
    std::string out;
    if (FILE *p = popen(command.c_str(), "r")) {
        char buffer[4096];
        for (size_t n; (n = fread(buffer, 1, sizeof buffer, p)) > 0;) out.append(buffer, n);
        pclose(p);
    }
    Cells cells, info;
    for (size_t at = 0, end; (end = out.find('\x1e', at)) != std::string::npos; at = end + 1) {
        size_t sep = out.find('\x1f', at);
        (out[at] == '@' ? info : cells)[out.substr(at, sep - at)] =
            out.substr(sep + 1, end - sep - 1);
    }
    if (out.empty()) cells["error"] = "no output from " + command;
    if (sheet) *sheet = info["@sheet"];
    return cells;
}

// One run of the tool: its exit code, a part of what it says (stdout on
// success, stderr on failure) and a note on stderr a success may carry;
// without a note a success says nothing on stderr, a failure nothing on
// stdout.
struct Case {
    std::vector<std::string> args;
    int exitCode;
    std::string says;
    std::string note = "";
};

void runCases(const std::vector<Case> &cases) {
    for (const Case &c : cases) {
        std::string shown = "tabrix";
        for (const std::string &a : c.args) shown += " " + a;
        RunResult r = runTool(c.args);
        EXPECT_EQ(r.exitCode, c.exitCode) << shown << "\nstderr: " << r.err;
        const std::string &said = c.exitCode == 0 ? r.out : r.err;
        EXPECT_TRUE(contains(said, c.says)) << shown << "\nsaid: " << said;
        if (c.exitCode != 0) {
            EXPECT_EQ(r.out, "") << shown;
        } else if (c.note.empty()) {
            EXPECT_EQ(r.err, "") << shown;
        } else {
            EXPECT_TRUE(contains(r.err, c.note)) << shown << "\nstderr: " << r.err;
        }
    }
}

// Help, bad command lines, and malformed ranges, refused before the file is
// even opened.
TEST(Cli, HelpAndUsageErrors) {
    std::vector<Case> cases = {
        {{}, 2, "usage: tabrix COMMAND"},
        {{"--help"}, 0, "commands:\n  info"},
        {{"help"}, 0, "  convert   convert between"},
        {{"dump", "--help"}, 0, "usage: tabrix dump FILE [--sheet NAME|N]"},
        {{"help", "convert"}, 0, "usage: tabrix convert IN OUT"},
        {{"info", "-h"}, 0, "usage: tabrix info FILE"},
        {{"frobnicate"}, 2, "tabrix: unknown command 'frobnicate'"},
        {{"dump"}, 2, "tabrix dump: missing file argument\nusage: tabrix dump"},
        {{"convert", "a.csv"}, 2, "tabrix convert: missing argument"},
        {{"info", "a.xls", "b.xls"}, 2, "unexpected argument 'b.xls'"},
        {{"dump", "a.xls", "--bogus"}, 2, "unknown option '--bogus'"},
        {{"dump", "a.xls", "-q"}, 2, "unknown option '-q'"},
        {{"dump", "a.xls", "--sheet"}, 2, "option '--sheet' needs a value NAME|N"},
        {{"dump", "a.xls", "-s", "1", "--sheet=2"}, 2, "option '--sheet' is given twice"},
        {{"convert", "a.xls", "b.csv", "--text=yes"}, 2, "option '--text' takes no value"},
        {{"dump", "a.xls", "--format", "xml"}, 2, "unknown format 'xml': use csv, tsv or json"},
        {{"convert", "a.xls", "b.doc"}, 2, "cannot tell the format of b.doc from its name"},
    };
    const char *const badRanges[][2] = {
        {"A0", "rows count from 1"},
        {"A1:", "a corner is missing"},
        {":B2", "a corner is missing"},
        {"A1:B2:C3", "a range has one ':'"},
        {"XFE1", "column XFE is beyond the last column XFD"},
        {"A1048577", "row 1048577 is beyond the last row"},
        {"1A", "'1A' is not a cell address"},
        {"A1:C", "use corners such as A1:D10"},
        {"A-1", "'A-1' is not a cell address"},
        {"", "it is empty"},
    };
    for (const auto &b : badRanges)
        cases.push_back({{"dump", "no-such-file.xls", "--range", b[0]},
                         2,
                         std::string("bad range '") + b[0] + "': " + b[1]});
    runCases(cases);
}

// Files that are no workbook, or no good one, and text that cannot become one.
TEST(Cli, FilesThatFail) {
    std::string missing = scratch("missing.xls");
    remove(missing.c_str());
    const std::map<std::string, std::string> files = {
        {"empty.xls", ""},
        {"noise.xls", std::string("\x01\x02\x03\x00\xff\xfe", 6)},
        {"text.xls", "a,b\n1,2\n"},
        {"page.xls", "<html><body><table><tr><td>1</td></tr></table></body></html>\n"},
        {"bare.xls", std::string("\x09\x08\x10\x00\x00\x06\x05\x00", 8)},
        {"plain.csv", "a,b\n"},
        // The compound file and zip signatures with nothing sensible behind.
        {"corrupt.xls", std::string("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8) + std::string(600, 'Z')},
        {"junk.xlsx", std::string("PK\x03\x04", 4) + std::string(100, '\x11')},
        {"open.csv", "a,b\n1,2\n\"never\nclosed\n"},
        {"wide.csv", "x" + std::string(600, ',') + "\n"},
    };
    for (const auto &f : files) writeFile(scratch(f.first), f.second);
    auto at = [](const char *name) { return scratch(name); };
    runCases({
        {{"info", missing},
         1,
         "tabrix info: cannot open " + missing + ": No such file or directory"},
        {{"dump", missing}, 1, "cannot open " + missing},
        {{"convert", missing, at("out.csv")}, 1, "cannot open " + missing},
        {{"info", TABRIX_TEST_TMP}, 1, "it is a directory"},
        {{"info", at("empty.xls")}, 1, at("empty.xls") + " looks like an empty file"},
        {{"info", at("noise.xls")},
         1,
         " looks like a file of unknown kind, not a workbook: it has neither the compound file "
         "nor the zip signature"},
        {{"dump", at("text.xls")}, 1, " looks like comma-separated text, not a workbook"},
        {{"info", at("page.xls")}, 1, " looks like an HTML or XML document"},
        {{"info", at("bare.xls")}, 1, "a bare binary record stream"},
        {{"info", at("plain.csv")},
         1,
         at("plain.csv") + " is comma-separated text, not a workbook"},
        {{"info", at("corrupt.xls")}, 1, "tabrix info: cannot load " + at("corrupt.xls") + ": "},
        {{"dump", at("junk.xlsx")}, 1, "tabrix dump: cannot load " + at("junk.xlsx") + ": "},
        {{"convert", at("open.csv"), at("open.xls")},
         1,
         at("open.csv") + " line 3: a quoted field is not closed"},
        {{"convert", at("wide.csv"), at("wide.xls")},
         1,
         "601 fields, more than the columns this workbook format holds (256)"},
    });
}

TEST(Cli, InfoAndDumpOfAWrittenBook) {
    std::string book = writeTestBook();
    std::string blank = scratch("blank.xls");
    IBookT<char> *empty = static_cast<IBookT<char> *>(tbCreateBookCA());
    empty->addSheet("Nothing", nullptr);
    ASSERT_TRUE(empty->save(blank.c_str())) << empty->errorMessage();
    empty->release();
    // The kind goes by the content: a binary book named .xlsx is read as
    // what it is, with a note.
    std::string renamed = scratch("really-binary.xlsx");
    writeFile(renamed, readFile(book));
    runCases({
        {{"info", book}, 0, "format:        binary workbook (compound file, BIFF8 0x0600)\n"},
        {{"info", book},
         0,
         "date system:   1900\nsheets:        2 (active: 1)\n"
         "  1  Data    sheet    visible      A1:D6\n"
         "  2  Second  sheet    visible      A1:C3\n"
         "named ranges:  1\n  Amounts  Data!B2:B5  (scope: book)\n"
         "pictures:      1 (placed on sheets: 1)\n  Second!B4  png  90x40\n"
         "comments:      2\n  Data!B1  sum of\\nall\n  Second!U41  far\n"},
        {{"info", renamed},
         0,
         "format:        binary workbook",
         "tabrix: note: " + renamed +
             " looks like a compound file (a binary .xls workbook), not what its extension "
             ".xlsx says; reading it as one"},
        {{"dump", book, "--range", "A1:D5"},
         0,
         "name,amount,flag,when\n"
         "plain,1,TRUE,2024-01-31\n"
         "\"comma, here\",-2.5,FALSE,2024-02-29 12:30:00\n"
         "\"quote \"\"q\"\"\",0.1,,\n"
         "\"line\nbreak\",1e+300,tab\there,back\\slash\n"},
        {{"dump", book, "-r", "a1:d5", "-f", "tsv"},
         0,
         "name\tamount\tflag\twhen\n"
         "plain\t1\tTRUE\t2024-01-31\n"
         "comma, here\t-2.5\tFALSE\t2024-02-29 12:30:00\n"
         "quote \"q\"\t0.1\t\t\n"
         "line\\nbreak\t1e+300\ttab\\there\tback\\\\slash\n"},
        // Ranges: reversed corners, one cell, whole columns and rows.
        {{"dump", book, "--range", "B3:A2"}, 0, "plain,1\n\"comma, here\",-2.5\n"},
        {{"dump", book, "--range", "$B$2"}, 0, "1\n"},
        {{"dump", book, "--sheet", "Second", "--range", "C:C"}, 0, "\n\n42\n"},
        {{"dump", book, "--sheet", "2", "--range", "3:3"}, 0, ",,42\n"},
        {{"dump", book, "--sheet", "second"}, 0, "x,,\n,,\n,,42\n"},
        // A formula cell: its cached value, or with --formulas its text.
        {{"dump", book, "--range", "B6"}, 0, "0\n"},
        {{"dump", book, "--range", "B6", "--formulas"}, 0, "=SUM(B2:B3)\n"},
        // Well-formed, but beyond what the binary format holds.
        {{"dump", book, "--range", "A1:IW1"}, 1, "range A1:IW1 reaches beyond IV65536"},
        {{"dump", book, "--range", "A65537"}, 1, "reaches beyond IV65536"},
        {{"dump", book, "--sheet", "Nope"},
         1,
         "tabrix dump: no sheet named 'Nope'; the sheets are 'Data', 'Second'"},
        {{"dump", book, "--sheet", "3"}, 1, "no sheet number 3: the book has 2 sheets"},
        // Ranges with no cell in them, and a sheet with none at all.
        {{"dump", book, "-s", "Second", "-r", "H:H", "-f", "json"},
         0,
         "\"range\": \"H1:H3\",\n  \"cells\": []"},
        {{"dump", blank, "-f", "json"}, 0, "\"range\": \"\",\n  \"cells\": []"},
        {{"dump", blank, "-f", "json", "-r", "B:B"}, 0, "\"range\": \"\",\n  \"cells\": []"},
        {{"dump", blank}, 0, ""},
    });
}

// xls to csv or tsv and back keeps every value; xls to xls with --sheet
// keeps one sheet; --cells copies the cells of both.  Between xls and the
// Open XML kinds, both ways, every sheet keeps values, formulas and formats.
TEST(Cli, ConvertRoundTrips) {
    std::string book = writeTestBook();
    std::string csv = scratch("round.csv"), back = scratch("round.xls");
    std::string tsv = scratch("round.tsv"), back2 = scratch("round2.xls");
    std::string one = scratch("one.xls"), cells = scratch("cells.xls");
    std::string xlsx = scratch("open.xlsx"), xlsm = scratch("open.xlsm"),
                xltx = scratch("open.xltx"), fromXml = scratch("from-open.xls"),
                oneXml = scratch("one.xlsx"), csvXml = scratch("round.xlsx");
    const std::string openXml = "format:        Open XML workbook (zip package)\n";
    runCases({
        {{"convert", book, csv}, 0, ""},
        {{"convert", csv, back}, 0, ""},
        {{"convert", book, tsv}, 0, ""},
        {{"convert", tsv, back2}, 0, ""},
        {{"convert", book, one, "--sheet", "Second"}, 0, ""},
        {{"convert", book, cells, "--cells"}, 0, ""},
        {{"info", one}, 0, "sheets:        1 (active: 1)\n  1  Second"},
        {{"convert", book, xlsx}, 0, "", "2 comments stay behind: " + xlsx},
        {{"convert", book, xlsm}, 0, "", "2 comments stay behind"},
        {{"convert", book, xltx}, 0, "", "2 comments stay behind"},
        {{"convert", xlsx, fromXml}, 0, ""},
        {{"convert", xlsx, oneXml, "--sheet", "2"}, 0, ""},
        {{"convert", csv, csvXml}, 0, ""},
        {{"info", xlsm}, 0, openXml},
        {{"info", xlsx}, 0, "pictures:      1 (placed on sheets: 1)\n  Second!B4  png  90x40\n"},
        {{"info", fromXml}, 0, "pictures:      1 (placed on sheets: 1)\n  Second!B4  png  90x40\n"},
        {{"info", cells}, 0, "comments:      2\n  Data!B1  sum of\\nall\n  Second!U41  far\n"},
        {{"info", xltx},
         0,
         "sheets:        2 (active: 1)\n  1  Data    sheet    visible      A1:D6\n"
         "  2  Second  sheet    visible      A1:C3\n"},
        {{"info", oneXml},
         0,
         "sheets:        1 (active: 1)\n  1  Second  sheet    visible      A1:C3"},
        {{"dump", xlsx, "-r", "B6", "--formulas"}, 0, "=SUM(B2:B3)\n"},
        {{"dump", xlsx, "-r", "A1:IW1"}, 0, "name,amount,flag,when" + std::string(253, ',') + "\n"},
        {{"convert", book, scratch("x.csv"), "--cells"},
         2,
         "--cells applies between two workbooks"},
        {{"convert", csv, scratch("again.csv")}, 2, "are text; one side must be a workbook"},
        {{"convert", book, scratch("x.csv"), "--text"}, 2, "--text applies when the input is csv"},
    });
    // Text has no blank cells and no formulas: rows 1 to 5 without C4.
    auto original = cellsOf(runTool({"dump", book, "-f", "json", "-r", "A1:D5"}));
    original.erase("C4");
    for (const std::string &copy : {back, back2, csvXml}) {
        std::string sheet;
        EXPECT_EQ(cellsOf(runTool({"dump", copy, "-f", "json", "-r", "A1:D5"}), &sheet), original)
            << copy;
        EXPECT_EQ(sheet, "round");
    }
    for (const std::string &copy : {cells, xlsx, xlsm, xltx, fromXml})
        for (const char *sheet : {"1", "2"})
            EXPECT_EQ(cellsOf(runTool({"dump", copy, "-s", sheet, "-f", "json"})),
                      cellsOf(runTool({"dump", book, "-s", sheet, "-f", "json"})))
                << copy << " sheet " << sheet;
}

// Text into a workbook: what each field becomes, and with --text what it
// stays.
TEST(Cli, ConvertTextFields) {
    std::string csv = scratch("fields.csv"), xls = scratch("fields.xls"), txt = scratch("text.xls");
    writeFile(csv, "\xEF\xBB\xBF"
                   "12,-3.5e2,007,true,FALSE,2024-03-01,2024-03-01T06:00:00,08:30:00,"
                   "\"a,\"\"b\"\"\r\nc\",,x\r\n"
                   "+1,1e999,.5,2024-13-01,0x10, 7\n");
    RunResult r = runTool({"convert", csv, xls, "--sheet", "Fields"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    std::string sheet;
    auto got = cellsOf(runTool({"dump", xls, "-f", "json"}), &sheet);
    EXPECT_EQ(sheet, "Fields");
    const std::map<std::string, std::string> expected = {
        {"A1", "number 12  0"},
        {"B1", "number -350  0"},
        {"C1", "string 007  0"},
        {"D1", "boolean true  0"},
        {"E1", "boolean false  0"},
        {"F1", "number 45352 2024-03-01 14"},
        {"G1", "number 45352.25 2024-03-01 06:00:00 22"},
        {"H1", "number 0.35416666666666669 08:30:00 21"},
        {"I1", "string a,\"b\"\r\nc  0"},
        {"K1", "string x  0"},
        {"A2", "number 1  0"},
        {"B2", "string 1e999  0"},
        {"C2", "number 0.5  0"},
        {"D2", "string 2024-13-01  0"},
        {"E2", "string 0x10  0"},
        {"F2", "string  7  0"},
    };
    EXPECT_EQ(got, expected);

    r = runTool({"convert", csv, txt, "--text"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(runTool({"dump", txt, "-r", "A1:C1"}).out, "12,-3.5e2,007\n");
    EXPECT_TRUE(contains(runTool({"info", txt}).out, "  1  fields")) << "named for the file";
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
    EXPECT_TRUE(contains(seen, "\rloading " + xls + " (")) << seen;
    EXPECT_TRUE(contains(seen, " MB) ...\x1b[K")) << seen;
    EXPECT_TRUE(contains(seen, "\r\x1b[Kfile:")) << "the line is wiped before the report\n" << seen;
}

// Real files: every corpus .xls either loads, with a full report, or fails
// with a message; nothing crashes.
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
        auto was = cellsOf(dump, nullptr, true);
        EXPECT_FALSE(was.count("error")) << f << ": " << was["error"];
        // The cells of the first sheet survive a copy into a new book.
        RunResult copy = runTool({"convert", f, copied, "--cells", "--sheet", "1"});
        EXPECT_EQ(copy.exitCode, 0) << f << ": " << copy.err;
        if (copy.exitCode != 0) continue;
        auto now = cellsOf(runTool({"dump", copied, "-f", "json"}), nullptr, true);
        // A printed formula the parser refuses is copied as its value; one
        // that reaches other sheets loses them, as only one sheet is copied.
        for (auto &cell : was) {
            if (cell.second.compare(0, 8, "formula ") != 0 || !now.count(cell.first)) continue;
            std::string &copied = now[cell.first];
            if (copied.compare(0, 8, "formula ") != 0 || cell.second.find('!') != std::string::npos)
                copied = cell.second;
        }
        // A merged block comes along, its cells made blank with the format
        // of its first one.
        for (auto it = now.begin(); it != now.end();)
            it = !was.count(it->first) && it->second.compare(0, 6, "blank ") == 0 ? now.erase(it)
                                                                                  : std::next(it);
        EXPECT_EQ(now, was) << f;
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
}

} // namespace
