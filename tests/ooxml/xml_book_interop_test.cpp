// Open XML books against independent software: a book made here opens in
// openpyxl and LibreOffice with its sheets in order and its values and
// formula texts; books other programs write read here as openpyxl reads
// them, and edited and saved keep every part and open in them again.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "support/oracle.h"
#include "support/packages.h"
#include "support/xml_parts.h"
#include "tabrix.h"
#include "tabrix/IBookT.h"

using namespace tabrix;
namespace fs = std::filesystem;

namespace {

const char *const kDir = "xml_book_interop";

// Our listing of every sheet of the Open XML book at `path`, in the
// oracle's form.
oracle::Lines ourLines(const fs::path &path) {
    auto *book = static_cast<IBookT<wchar_t> *>(tbCreateXMLBookW());
    oracle::Lines out;
    if (!book->load(path.wstring().c_str())) {
        out.push_back("ERROR " + oracle::hex(book->errorMessage()));
    } else {
        for (int i = 0; i < book->sheetCount(); ++i) {
            ISheetT<wchar_t> *s = book->getSheet(i);
            out.push_back("SHEET " + oracle::hex(s->name()));
            oracle::Lines cells = oracle::sheetLines(*s, s->lastRow(), s->lastCol());
            out.insert(out.end(), cells.begin(), cells.end());
        }
    }
    book->release();
    return out;
}

// Sheets added, inserted, copied, renamed, hidden and deleted.
TEST(XMLBookInterop, NewBookOpensWithItsSheets) {
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "python3-openpyxl is not installed";
    auto *book = static_cast<IBookT<char> *>(tbCreateXMLBookA());
    book->setLocale("UTF-8");
    ASSERT_NE(book->addSheet("First", nullptr), nullptr);
    ASSERT_NE(book->addSheet("Gone", nullptr), nullptr);
    ASSERT_NE(book->addSheet("Ünïcödé ✓", nullptr), nullptr);
    ASSERT_NE(book->insertSheet(1, "Inserted", nullptr), nullptr);
    ASSERT_NE(book->addSheet("Copy", book->getSheet(0)), nullptr);
    ASSERT_TRUE(book->delSheet(2));
    book->getSheet(3)->setName("Renamed");
    ASSERT_TRUE(book->getSheet(1)->setHidden(SHEETSTATE_HIDDEN));
    ASSERT_TRUE(book->getSheet(3)->setHidden(SHEETSTATE_VERYHIDDEN));
    book->setActiveSheet(2);
    const fs::path path = packages::scratch(kDir, "new_book.xlsx");
    ASSERT_TRUE(book->save(path.string().c_str())) << book->errorMessage();
    book->release();

    EXPECT_EQ(oracle::dump("openpyxl-sheets", path.string(), true),
              (oracle::Lines{"SHEET First visible", "SHEET Inserted hidden",
                             "SHEET Ünïcödé ✓ visible", "SHEET Renamed veryHidden"}));
    if (!oracle::has("soffice")) GTEST_SKIP() << "LibreOffice is not installed";
    const oracle::Lines lo = oracle::dump("libreoffice-sheets", path.string(), true);
    ASSERT_EQ(lo.size(), 4u) << oracle::firstDifference(lo, {});
    const char *names[] = {"SHEET First ", "SHEET Inserted ", "SHEET Ünïcödé ✓ ", "SHEET Renamed "};
    for (size_t i = 0; i < 4; ++i) EXPECT_EQ(lo[i].rfind(names[i], 0), 0u) << lo[i];
}

// The texts a writer must escape (controls, a carriage return, a literal
// "_xHHHH_", the longest text), every kind of value, errors kept from a
// loaded book and copied, dates with formats, and formulas whose string
// literals hold both separators.
TEST(XMLBookInterop, OurBookReadsAlikeInOpenpyxlAndLibreOffice) {
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "python3-openpyxl is not installed";
    const fs::path errors = packages::scratch(kDir, "errors.xlsx");
    oracle::dump("make-errors", errors.string());
    auto *book = static_cast<IBookT<char> *>(tbCreateXMLBookA());
    book->setLocale("UTF-8");
    ASSERT_TRUE(book->load(errors.string().c_str())) << book->errorMessage();
    for (int c = 0; c < 7; ++c) ASSERT_TRUE(book->getSheet(0)->copyCell(0, c, 1, 6 - c));
    ISheetT<char> *v = book->addSheet("Values", nullptr);
    const std::string longest = std::string(32766, 'w') + "\xE2\x82\xAC";
    const char *texts[] = {"plain",
                           "lf\n only",
                           "_x0041_ literally",
                           "  blanks around  ",
                           "\xF0\x9F\x98\x80 \xF0\x9D\x84\x9E non-BMP",
                           "\xE6\xBC\xA2\xE5\xAD\x97 \xE2\x82\xAC",
                           "quote \" amp & lt <",
                           "a,b;c",
                           "soh \x01 tab\t us \x1F",
                           "cr\r\nlf and lone cr\r",
                           "_x000D_ and _x005f_ typed",
                           longest.c_str()};
    for (int i = 0; i < int(sizeof texts / sizeof texts[0]); ++i)
        ASSERT_TRUE(v->writeStr(i, 0, texts[i], nullptr)) << book->errorMessage();
    const double numbers[] = {0.1, -2.5, 1e300, 123456789012345.0, 5e-324, 1.0 / 3};
    for (int i = 0; i < int(sizeof numbers / sizeof numbers[0]); ++i)
        ASSERT_TRUE(v->writeNum(i, 1, numbers[i], nullptr));
    v->writeBool(0, 2, true, nullptr);
    v->writeBool(1, 2, false, nullptr);
    IFormatT<char> *date = book->addFormat(nullptr);
    date->setNumFormat(14);
    IFormatT<char> *stamp = book->addFormat(nullptr);
    stamp->setNumFormat(book->addCustomNumFormat("yyyy-mm-dd hh:mm:ss"));
    v->writeNum(0, 3, book->datePack(2024, 2, 29, 0, 0, 0, 0), date);
    v->writeNum(1, 3, book->datePack(1999, 12, 31, 18, 30, 15, 0), stamp);
    ISheetT<char> *f = book->addSheet("Formulas", nullptr);
    f->writeNum(0, 0, 2, nullptr);
    f->writeFormula(0, 1, "=IF(A1>1;\"a,b\";\"c;d\")", nullptr);
    f->writeFormula(1, 1, "SUM(A1;A1;3)", nullptr);
    f->writeFormula(2, 1, "CONCATENATE(\"x;\";Values!A8)", nullptr);
    const fs::path path = packages::scratch(kDir, "ours.xlsx");
    ASSERT_TRUE(book->save(path.string().c_str())) << book->errorMessage();
    book->release();

    // Texts the readers show otherwise than we do: openpyxl leaves the
    // escapes of controls as they are stored, and LibreOffice turns a
    // carriage return into a line break.
    const struct {
        const char *line;
        const wchar_t *openpyxl, *libreOffice;
    } shown[] = {
        {"8 0 s ", L"soh _x0001_ tab\t us _x001F_", nullptr},
        {"9 0 s ", L"cr_x000D_\nlf and lone cr_x000D_", L"cr\nlf and lone cr\n"},
    };
    const oracle::Lines ours = ourLines(path);
    oracle::Lines asOpenpyxl = ours, asLibreOffice = ours;
    for (const auto &s : shown)
        for (size_t i = 0; i < ours.size(); ++i)
            if (ours[i].rfind(s.line, 0) == 0) {
                asOpenpyxl[i] = s.line + oracle::hex(s.openpyxl);
                if (s.libreOffice) asLibreOffice[i] = s.line + oracle::hex(s.libreOffice);
            }
    const oracle::Lines py = oracle::dump("openpyxl", path.string());
    EXPECT_EQ(py, asOpenpyxl) << oracle::firstDifference(py, asOpenpyxl);
    const oracle::Lines formulas = {
        "SHEET " + oracle::hex(L"Errors"),
        "SHEET " + oracle::hex(L"Values"),
        "SHEET " + oracle::hex(L"Formulas"),
        "0 1 " + oracle::hex(L"IF(A1>1,\"a,b\",\"c;d\")"),
        "1 1 " + oracle::hex(L"SUM(A1,A1,3)"),
        "2 1 " + oracle::hex(L"CONCATENATE(\"x;\",Values!A8)"),
    };
    EXPECT_EQ(oracle::dump("openpyxl-formulas", path.string()), formulas);
    if (!oracle::has("soffice")) GTEST_SKIP() << "LibreOffice is not installed";
    // LibreOffice shows booleans and dates as it prints them and computes
    // the formulas: every text, error and formula's value must be there.
    const oracle::Lines lo = oracle::dump("libreoffice", path.string());
    oracle::Lines wanted = {"0 1 s " + oracle::hex(L"a,b"), "1 1 n 7",
                            "2 1 s " + oracle::hex(L"x;a,b;c")};
    for (const std::string &line : asLibreOffice)
        if (line.find(" s ") != std::string::npos || line.find(" e ") != std::string::npos)
            wanted.push_back(line);
    for (const std::string &line : wanted)
        EXPECT_NE(std::find(lo.begin(), lo.end(), line), lo.end()) << line.substr(0, 80);
    const oracle::Lines loFormulas = oracle::dump("libreoffice-formulas", path.string());
    for (size_t i = 3; i < formulas.size(); ++i)
        EXPECT_NE(std::find(loFormulas.begin(), loFormulas.end(), formulas[i]), loFormulas.end())
            << formulas[i];
}

// A book counting dates from 1904 with formulas written in R1C1 and a cell
// at the last row and column: openpyxl reads the same cells and the
// formulas in A1; LibreOffice, saving it again, the same cells and the
// formulas' values.
TEST(XMLBookInterop, Date1904AndR1C1BookReadsAlike) {
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "python3-openpyxl is not installed";
    auto *book = static_cast<IBookT<char> *>(tbCreateXMLBookA());
    book->setLocale("UTF-8");
    book->setDate1904(true);
    book->setRefR1C1(true);
    ISheetT<char> *d = book->addSheet("Dates", nullptr);
    IFormatT<char> *stamp = book->addFormat(nullptr);
    stamp->setNumFormat(book->addCustomNumFormat("yyyy-mm-dd hh:mm:ss"));
    d->writeNum(0, 0, book->datePack(2024, 2, 29, 6, 0, 0, 0), stamp);
    d->writeNum(1, 0, book->datePack(1904, 1, 2, 0, 0, 0, 0), stamp);
    d->writeNum(0, 1, 4, nullptr);
    ASSERT_TRUE(d->writeFormula(0, 2, "=RC[-1]*3", nullptr)) << book->errorMessage();
    ASSERT_TRUE(d->writeFormula(1, 2, "SUM(R1C2:R1C3;R[-1]C[-1])", nullptr));
    ASSERT_TRUE(book->addSheet("Far", nullptr)->writeNum(1048575, 16383, 5, nullptr));
    const fs::path path = packages::scratch(kDir, "date1904_r1c1.xlsx");
    ASSERT_TRUE(book->save(path.string().c_str())) << book->errorMessage();
    book->release();

    oracle::Lines ours = ourLines(path);
    ours.insert(ours.begin(), "DATE1904");
    EXPECT_EQ(oracle::dump("openpyxl", path.string()), ours);
    EXPECT_EQ(oracle::dump("openpyxl-formulas", path.string()),
              (oracle::Lines{"SHEET " + oracle::hex(L"Dates"), "0 2 " + oracle::hex(L"B1*3"),
                             "1 2 " + oracle::hex(L"SUM($B$1:$C$1,B1)"),
                             "SHEET " + oracle::hex(L"Far")}));
    if (!oracle::has("soffice")) GTEST_SKIP() << "LibreOffice is not installed";
    ours.insert(ours.begin() + 4, "0 2 n 12");
    ours.insert(ours.begin() + 6, "1 2 n 20");
    const oracle::Lines lo = oracle::dump("libreoffice-cells", path.string());
    EXPECT_EQ(lo, ours) << oracle::firstDifference(lo, ours);
}

// Row and column edits, a merge, a name and a new name for the first sheet.
std::string edit(IBookT<char> &book) {
    ISheetT<char> *s = book.getSheet(0);
    if (!s) return "no first sheet";
    const bool ok = s->insertRow(1, 2) && s->insertCol(1, 1) && s->removeRow(6, 6) &&
                    s->removeCol(4, 4) && s->setMerge(30, 31, 0, 1) &&
                    s->setNamedRange("added", 0, 1, 0, 1, -2);
    if (!ok) return book.errorMessage();
    s->setName("Edited sheet");
    return "";
}

// Books of LibreOffice, gnumeric, openpyxl, xlsxwriter and the npm
// package's JavaScript writer (each that is installed) read cell for cell
// as openpyxl reads them, cached values of formulas included.  They and
// some of the corpus's books, edited, keep every part through a save
// (opaque ones byte for byte), and openpyxl and LibreOffice open the result
// with its sheets.
TEST(XMLBookInterop, OtherProducersBooksReadAndKeepTheirPartsThroughAnEdit) {
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "python3-openpyxl is not installed";
    const fs::path made = packages::scratch(kDir, "made");
    fs::remove_all(made);
    xmlparts::makeProducerBooks(made);
    std::vector<fs::path> files;
    for (const auto &e : fs::recursive_directory_iterator(made))
        if (e.path().extension() == ".xlsx") files.push_back(e.path());
    const size_t producers = files.size();
    EXPECT_GE(producers, 3u);
    const fs::path corpus = fs::path(TABRIX_CORPUS_DIR) / "public";
    for (const char *name :
         {"libxlsxwriter/merge_range01.xlsx", "libxlsxwriter/defined_name01.xlsx",
          "libxlsxwriter/outline01.xlsx", "libxlsxwriter/panes01.xlsx",
          "libxlsxwriter/print_area01.xlsx", "libxlsxwriter/row_col_format01.xlsx",
          "calamine/column_row_ranges.xlsx"})
        if (fs::exists(corpus / name)) files.push_back(corpus / name);
    const bool office = oracle::has("soffice");
    for (size_t i = 0; i < files.size(); ++i) {
        const fs::path &file = files[i];
        SCOPED_TRACE(file.string());
        if (i < producers) {
            const oracle::Lines py = oracle::dump("openpyxl", file.string());
            const oracle::Lines ours = ourLines(file);
            EXPECT_EQ(ours, py) << oracle::firstDifference(ours, py);
        }
        const fs::path saved = packages::scratch(kDir, "edited" + std::to_string(i) + ".xlsx");
        const std::string problem = packages::packageRoundTrip(file, saved, edit);
        EXPECT_EQ(problem, "");
        if (!problem.empty()) continue;
        oracle::Lines want = oracle::dump("openpyxl-sheets", file.string(), true);
        ASSERT_FALSE(want.empty());
        want.front() = "SHEET Edited sheet" + want.front().substr(want.front().rfind(' '));
        EXPECT_EQ(oracle::dump("openpyxl-sheets", saved.string(), true), want);
        if (!office) continue;
        const oracle::Lines lo = oracle::dump("libreoffice-sheets", saved.string(), true);
        ASSERT_FALSE(lo.empty());
        EXPECT_EQ(lo.front(), want.front());
    }
}

} // namespace
