// Formulas against independent software: what we write, LibreOffice
// recomputes to the values expected and xlrd finds and decompiles; what
// LibreOffice, gnumeric and xlwt write, we print, and the printed text written again
// computes the same; the corpus files print every formula or answer with a
// message, and a save keeps their formula records byte for byte.
#include "biff/book_impl.h"
#include "support/binary_book.h"
#include "biff/sheet_impl.h"
#include "support/interop_tools.h"
#include "support/record_walk.h"

#include "support/oracle.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <string>

using namespace tabrix;
using namespace bifftest;

namespace {

using Book = BookImplT<char>;
using BookPtr = BinaryBook<>;

BookPtr newBook() { return newBinaryBook(); }

// What LibreOffice computes for the cells of `path`: sheet name -> "r c"
// -> value (numbers in %.17g, booleans as 1 or 0, texts in UTF-8).
using Computed = std::map<std::string, std::map<std::string, std::string>>;

Computed computed(const std::string &path) {
    Computed out;
    std::string sheet;
    for (const std::string &l : oracle::dump("libreoffice", path, true)) {
        if (l.compare(0, 6, "SHEET ") == 0) {
            sheet = l.substr(6);
            continue;
        }
        const size_t col = l.find(' '), kind = l.find(' ', col + 1), value = l.find(' ', kind + 1);
        if (value != std::string::npos) out[sheet][l.substr(0, kind)] = l.substr(value + 1);
    }
    return out;
}

std::string field(Computed &values, const std::string &sheet, size_t row, size_t col) {
    return values[sheet][std::to_string(row) + " " + std::to_string(col)];
}

// A computed value against an expected one: numbers by value, booleans as
// TRUE or 1, text exactly.
bool sameValue(const std::string &got, const std::string &want) {
    if (want == "TRUE" || want == "FALSE")
        return got == want || got == (want == "TRUE" ? "1" : "0");
    char *e1 = nullptr, *e2 = nullptr;
    const double a = std::strtod(got.c_str(), &e1), b = std::strtod(want.c_str(), &e2);
    if (!want.empty() && !*e2)
        return !got.empty() && !*e1 && std::fabs(a - b) <= 1e-9 * (1 + std::fabs(b));
    return got == want;
}

bool knownMessage(const std::string &m) {
    static const std::set<std::string> messages = {"can't recognize formula block: unknown ptg",
                                                   "unknown Ptg 0x18",
                                                   "unknown Ptg 0x19",
                                                   "GetFormula move1 error",
                                                   "can't build infix formula string",
                                                   "incorrect number of function parameters"};
    return messages.count(m) || m.compare(0, 15, "toInfix error: ") == 0;
}

// A book by xlwt, with the formulas xlwt compiles itself.
const char *kXlwtBook = R"PY(
import sys, xlwt
wb = xlwt.Workbook()
s = wb.add_sheet('S')
o = wb.add_sheet('Other')
for r, v in enumerate([2, 5, 11]):
    s.write(r, 0, v)
o.write(0, 0, 7)
for r, f in enumerate(['SUM(A1:A3)', 'A1*2+A2', 'IF(A1>1,"y","n")', 'Other!A1+1',
                       'MAX(A1,A3)-MIN(A1:A3)', 'ROUND(A3/3,2)', '(A1+A2)*A3', 'A2&"x"']):
    s.write(r, 1, xlwt.Formula(f))
wb.save(sys.argv[1])
)PY";

struct Written {
    const char *formula;
    const char *value;
};

const Written kWritten[] = {
    {"=1+2*3", "7"},
    {"(1+2)*3", "9"},
    {"2^3^2", "64"},
    {"-2^2", "4"},
    {"10-4-3", "3"},
    {"5%*2", "0.1"},
    {"Data!A1>=3", "TRUE"},
    {"Data!A1>=4", "FALSE"},
    {"Data!A1<>Data!A2", "TRUE"},
    {"Data!A1<=Data!A2", "TRUE"},
    {"\"a,b\"&\"say \"\"hi\"\"\"", "a,bsay \"hi\""},
    {"SUM(Data!A1:B2)", "15"},
    {"SUM(Data!A1,Data!A2,5)", "12"},
    {"AVERAGE(Data!A1:A2)", "3.5"},
    {"ROUND(PI()*100,0)", "314"},
    {"IF(Data!A1>2,\"big\",\"small\")", "big"},
    {"MAX(ABS(Data!B2),MIN(Data!A1:A2))", "3"},
    {"Data!$A$1+Data!A$2+Data!$B1", "17"},
    {"SUM('My Data-2'!A1:A2)", "100"},
    {"'My Data-2'!A1*2", "200"},
    {"SUM(Data:'My Data-2'!A1)", "103"},
    {"SUMPRODUCT(Data!A1:A2,Data!B1:B2)", "22"},
    {"TODAY()>40000", "TRUE"},
    {"LEN(Data!C1)", "3"},
    {"MOD(17,5)+INT(7.8)", "9"},
    {"CONCATENATE(\"a\",\"b\")", "ab"},
    {"VLOOKUP(4,Data!A1:B2,2,FALSE)", "-2"},
    {"DATE(2020,1,31)", "43861"},
    {"ATAN2(1,1)*4", "3.14159265358979"},
    {"LOG10(1000)", "3"},
    {"A1+0.25", "7.25"},
    {"COUNTIF(Data!A1:B2,\">3\")", "2"},
};

const int kCalcCol = 0;

// Data, My Data-2, Calc: the formulas in column A of Calc, numbers and
// shared formulas (fill-down) beside them.
std::string writeFormulaBook() {
    BookPtr b = newBook();
    ISheetT<char> *data = b->addSheet("Data", nullptr);
    ISheetT<char> *other = b->addSheet("My Data-2", nullptr);
    ISheetT<char> *calc = b->addSheet("Calc", nullptr);
    data->writeNum(0, 0, 3, nullptr);
    data->writeNum(1, 0, 4, nullptr);
    data->writeNum(0, 1, 10, nullptr);
    data->writeNum(1, 1, -2, nullptr);
    data->writeStr(0, 2, "x,y", nullptr);
    other->writeNum(0, 0, 100, nullptr);
    int row = 0;
    for (const Written &w : kWritten)
        EXPECT_TRUE(calc->writeFormula(row++, kCalcCol, w.formula, nullptr))
            << w.formula << ": " << b->errorMessage();
    for (int r = 0; r < 20; ++r) {
        calc->writeNum(r, 2, r, nullptr);
        calc->writeFormula(r, 3, ("C" + std::to_string(r + 1) + "*2+$C$1").c_str(), nullptr);
    }
    const std::string path = tmpPath("formulas.xls");
    EXPECT_TRUE(b->save(path.c_str())) << b->errorMessage();
    return path;
}

// Prints every formula of `path`, writes each printable one again in its
// cell, and saves the result as `rewritten`.  Answers the cells rewritten
// (sheet name, row, col).
std::vector<std::tuple<std::string, int, int>> rewrite(const std::string &path,
                                                       const std::string &rewritten, int &printed) {
    std::vector<std::tuple<std::string, int, int>> cells;
    BookPtr b = newBook();
    EXPECT_TRUE(b->load(path.c_str())) << path << ": " << b->errorMessage();
    printed = 0;
    for (int i = 0; i < b->sheetCount(); ++i) {
        ISheetT<char> *s = b->getSheet(i);
        for (int r = s->firstRow(); r < s->lastRow(); ++r)
            for (int c = s->firstCol(); c < s->lastCol(); ++c) {
                if (!s->isFormula(r, c)) continue;
                const char *text = s->readFormula(r, c, nullptr);
                if (!text) {
                    EXPECT_TRUE(knownMessage(b->errorMessage())) << b->errorMessage();
                    continue;
                }
                ++printed;
                const std::string t = text;
                if (s->writeFormula(r, c, t.c_str(), nullptr)) cells.emplace_back(s->name(), r, c);
            }
    }
    EXPECT_TRUE(b->save(rewritten.c_str())) << b->errorMessage();
    return cells;
}

} // namespace

TEST(FormulaInterop, LibreOfficeComputesWhatWeWriteAndXlrdFindsIt) {
    const std::string path = writeFormulaBook();
    if (oracle::has("xlrd") && oracle::has("olefile")) {
        std::set<std::pair<int, int>> seen;
        for (const std::string &line : oracle::dump("xlrd-formulas", path)) {
            int sheet = -1, row = -1, col = -1, kind = -1;
            char text[4096] = {0};
            ASSERT_GE(std::sscanf(line.c_str(), "%d %d %d %d %4095[^\n]", &sheet, &row, &col, &kind,
                                  text),
                      4)
                << line;
            EXPECT_EQ(std::string(text).find("ERROR"), std::string::npos) << line;
            EXPECT_EQ(kind, 2) << line; // a number: the cached result
            if (sheet == 2 && col == kCalcCol) seen.insert({row, col});
        }
        EXPECT_EQ(seen.size(), sizeof kWritten / sizeof kWritten[0]);
    }
    if (!oracle::has("soffice")) GTEST_SKIP() << "LibreOffice not installed";
    Computed values = computed(path);
    ASSERT_TRUE(values.count("Calc"));
    size_t row = 0;
    for (const Written &w : kWritten) {
        const std::string got = field(values, "Calc", row++, kCalcCol);
        EXPECT_TRUE(sameValue(got, w.value)) << w.formula << " gave " << got;
    }
    for (size_t r = 0; r < 20; ++r)
        EXPECT_EQ(field(values, "Calc", r, 3), std::to_string(2 * r)) << r;
}

TEST(FormulaInterop, FormulasOfOtherProducersPrintAndComputeAgain) {
    if (!oracle::has("soffice")) GTEST_SKIP() << "LibreOffice not installed";
    std::vector<std::string> sources;
    // LibreOffice's own tokens, shared formulas among them.
    const std::string lo =
        convertWithLibreOffice(writeFormulaBook(), freshDir("formula_lo_xls"), "xls", "xls");
    ASSERT_FALSE(lo.empty());
    sources.push_back(lo);
    if (oracle::has("xlwt")) {
        const std::string x = tmpPath("xlwt_formulas.xls");
        runPython("xlwt_book.py", kXlwtBook, x);
        sources.push_back(x);
    }
    if (std::system("command -v ssconvert >/dev/null 2>&1") == 0) {
        // Gnumeric reads "=" fields of a csv as formulas.
        const std::string csv = tmpPath("gnumeric_formulas.csv"),
                          xls = tmpPath("gnumeric_formulas.xls");
        // (a quoted field makes it take the file for text: none here).
        std::ofstream(csv)
            << "2,=A1*3,=A1>=2\n5,=SUM(A1:A3),=A1<>A2\n11,=-A3^2,=A3/4+1\n"
               "4,=MAX(A1:A4)-MIN(A1:A4),=(A1+A2)*A3\n7,=A$1+$A2*2,=AVERAGE(A1:A5)\n";
        std::system(("ssconvert '" + csv + "' '" + xls + "' >/dev/null 2>&1").c_str());
        sources.push_back(xls);
    }
    for (const std::string &src : sources) {
        int printed = 0;
        const std::string again = tmpPath("rewritten.xls");
        auto cells = rewrite(src, again, printed);
        EXPECT_GE(printed, 8) << src;
        EXPECT_GE(cells.size(), 8u) << src;
        Computed before = computed(src), after = computed(again);
        for (const auto &cell : cells) {
            const std::string &sheet = std::get<0>(cell);
            const size_t r = size_t(std::get<1>(cell)), c = size_t(std::get<2>(cell));
            const std::string was = field(before, sheet, r, c), now = field(after, sheet, r, c);
            EXPECT_TRUE(sameValue(now, was))
                << src << " " << sheet << " " << r << "," << c << ": " << now << " vs " << was;
        }
    }
}

TEST(FormulaInterop, CorpusFormulasPrintAndSaveUnchanged) {
    const std::set<uint16_t> formulaIds = {6, 1212, 545, 566};
    int files = 0, formulas = 0, answered = 0;
    for (const std::string &path : corpusXlsFiles()) {
        BookPtr b = newBook();
        if (!b->load(path.c_str())) continue;
        ++files;
        for (int i = 0; i < b->sheetCount(); ++i) {
            ISheetT<char> *s = b->getSheet(i);
            if (b->sheetType(i) != SHEETTYPE_SHEET) continue;
            for (int r = s->firstRow(); r < s->lastRow(); ++r)
                for (int c = s->firstCol(); c < s->lastCol(); ++c) {
                    if (!s->isFormula(r, c)) continue;
                    ++formulas;
                    if (s->readFormula(r, c, nullptr)) continue;
                    ++answered;
                    EXPECT_TRUE(knownMessage(b->errorMessage()))
                        << path << " " << r << "," << c << ": " << b->errorMessage();
                }
        }
        const std::string out = tmpPath("corpus_formulas.xls");
        if (!b->save(out.c_str())) continue;
        WalkedBook before = walkBook(path), after = walkBook(out);
        if (!before.error.empty()) continue;
        ASSERT_EQ(after.error, "") << path;
        std::vector<std::vector<WalkedRecord>> was, now;
        for (const WalkedBook *w : {&before, &after})
            for (const Substream &sub : w->substreams) {
                if (sub.dt != 0x10) continue;
                std::vector<WalkedRecord> recs;
                for (const WalkedRecord &rec : sub.records)
                    if (formulaIds.count(rec.id)) recs.push_back(rec);
                std::sort(recs.begin(), recs.end());
                (w == &before ? was : now).push_back(recs);
            }
        EXPECT_EQ(was, now) << path;
    }
    std::printf("corpus: %d files, %d formulas, %d answered with a message\n", files, formulas,
                answered);
}
