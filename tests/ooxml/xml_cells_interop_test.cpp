// Open XML cells against independent readers: a book of ours reads the
// same in openpyxl and in LibreOffice, values and formula texts, and books
// other programs write read here as openpyxl reads them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "support/oracle.h"
#include "support/xml_parts.h"
#include "tabrix.h"
#include "tabrix/IBookT.h"

using namespace tabrix;
namespace fs = std::filesystem;

namespace {

fs::path scratch(const std::string &name) {
    const fs::path dir = fs::path(TABRIX_TEST_TMP) / "xml_cells_interop";
    fs::create_directories(dir);
    return dir / name;
}

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

// The texts a writer must escape, every kind of value, dates with formats,
// and formulas whose string literals hold both separators.
TEST(XmlCellsInterop, OurBookReadsAlikeInOpenpyxlAndLibreOffice) {
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "python3-openpyxl is not installed";
    auto *book = static_cast<IBookT<char> *>(tbCreateXMLBookA());
    book->setLocale("UTF-8");
    ISheetT<char> *v = book->addSheet("Values", nullptr);
    const char *texts[] = {"plain",
                           "lf\n only",
                           "_x0041_ literally",
                           "  blanks around  ",
                           "\xF0\x9F\x98\x80 \xF0\x9D\x84\x9E non-BMP",
                           "\xE6\xBC\xA2\xE5\xAD\x97 \xE2\x82\xAC",
                           "quote \" amp & lt <",
                           "a,b;c"};
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
    const fs::path path = scratch("ours.xlsx");
    ASSERT_TRUE(book->save(path.string().c_str())) << book->errorMessage();
    book->release();

    const oracle::Lines ours = ourLines(path);
    const oracle::Lines py = oracle::dump("openpyxl", path.string());
    EXPECT_EQ(py, ours) << oracle::firstDifference(py, ours);
    const oracle::Lines formulas = {
        "SHEET " + oracle::hex(L"Values"),
        "SHEET " + oracle::hex(L"Formulas"),
        "0 1 " + oracle::hex(L"IF(A1>1,\"a,b\",\"c;d\")"),
        "1 1 " + oracle::hex(L"SUM(A1,A1,3)"),
        "2 1 " + oracle::hex(L"CONCATENATE(\"x;\",Values!A8)"),
    };
    EXPECT_EQ(oracle::dump("openpyxl-formulas", path.string()), formulas);
    if (!oracle::has("soffice")) GTEST_SKIP() << "LibreOffice is not installed";
    // LibreOffice shows booleans and dates as it prints them and computes
    // the formulas: every text and every formula's value must be there.
    const oracle::Lines lo = oracle::dump("libreoffice", path.string());
    oracle::Lines wanted = {"0 1 s " + oracle::hex(L"a,b"), "1 1 n 7",
                            "2 1 s " + oracle::hex(L"x;a,b;c")};
    for (const std::string &line : ours)
        if (line.find(" s ") != std::string::npos) wanted.push_back(line);
    for (const std::string &line : wanted)
        EXPECT_NE(std::find(lo.begin(), lo.end(), line), lo.end()) << line;
    const oracle::Lines loFormulas = oracle::dump("libreoffice-formulas", path.string());
    for (size_t i = 2; i < formulas.size(); ++i)
        EXPECT_NE(std::find(loFormulas.begin(), loFormulas.end(), formulas[i]), loFormulas.end())
            << formulas[i];
}

// Books of LibreOffice, gnumeric, openpyxl and xlsxwriter (each that is
// installed) read cell for cell as openpyxl reads them, cached values of
// formulas included.
TEST(XmlCellsInterop, ProducerBooksReadAsOpenpyxlReadsThem) {
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "python3-openpyxl is not installed";
    const fs::path dir = scratch("producers");
    fs::remove_all(dir);
    fs::create_directories(dir);
    xmlparts::makeProducerBooks(dir);
    int checked = 0;
    for (const auto &e : fs::recursive_directory_iterator(dir)) {
        if (e.path().extension() != ".xlsx") continue;
        const oracle::Lines py = oracle::dump("openpyxl", e.path().string());
        const oracle::Lines ours = ourLines(e.path());
        EXPECT_EQ(ours, py) << e.path() << ": " << oracle::firstDifference(ours, py);
        ++checked;
    }
    EXPECT_GE(checked, 3);
}

} // namespace
