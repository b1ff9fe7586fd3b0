// Sheet settings as LibreOffice sees them: a book with print setup, window
// settings, protection, page breaks, names and a hidden sheet is converted
// by LibreOffice, and what it understood is read back with openpyxl.
#include "biff/book_impl.h"
#include "support/binary_book.h"
#include "support/interop_tools.h"

#include "support/oracle.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace tabrix;
using namespace bifftest;

namespace {

TEST(SheetSettingsInterop, LibreOfficeSeesPrintSetupNamesAndViews) {
    if (!oracle::has("soffice")) GTEST_SKIP() << "LibreOffice is not installed";
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "python3-openpyxl is not installed";
    BinaryBook<> book = newBinaryBook();
    ISheetT<char> *s = book->addSheet("Setup", nullptr);
    ISheetT<char> *f = book->addSheet("Fit", nullptr);
    ISheetT<char> *h = book->addSheet("Hidden", nullptr);
    ASSERT_TRUE(s && f && h);
    for (int r = 0; r < 30; ++r) s->writeNum(r, r % 6, r, nullptr);
    f->writeNum(0, 0, 1, nullptr);
    h->writeNum(0, 0, 1, nullptr);

    s->setLandscape(true);
    s->setPaper(PAPER_A4);
    s->setPrintZoom(75);
    s->setMarginLeft(0.5);
    s->setMarginRight(0.6);
    s->setMarginTop(0.7);
    s->setMarginBottom(0.8);
    s->setHeader("&CQuarterly report", 0.3);
    s->setFooter("&RPage &P", 0.35);
    s->setHCenter(true);
    s->setVCenter(true);
    s->setPrintGridlines(true);
    s->setPrintRowCol(true);
    s->setDisplayGridlines(false);
    s->setZoom(150);
    s->split(3, 1);
    s->setProtect(true);
    s->setHorPageBreak(20, true);
    s->setVerPageBreak(4, true);
    s->setPrintArea(1, 9, 1, 3);
    s->setPrintRepeatRows(0, 1);
    s->setPrintRepeatCols(0, 0);
    s->setNamedRange("prices", 1, 3, 1, 1, -1);
    s->setNamedRange("local", 4, 6, 2, 2, -2);
    f->setPrintFit(1, 2);
    f->setRightToLeft(true);
    f->setTopLeftView(5, 2);
    ASSERT_TRUE(h->setHidden(SHEETSTATE_HIDDEN)) << book->errorMessage();

    std::string path = tmpPath("sheet_settings.xls");
    ASSERT_TRUE(book->save(path.c_str())) << book->errorMessage();
    std::string xlsx = convertWithLibreOffice(path, freshDir("sheet_settings_lo"), "xlsx", "xlsx");
    ASSERT_FALSE(xlsx.empty()) << "LibreOffice converted nothing";

    std::vector<std::string> expected = {
        "Setup state visible",
        "Fit state visible",
        "Hidden state hidden",
        "orientation landscape paper 9 scale 75",
        "margins 0.5 0.6 0.7 0.8 0.3 0.35",
        "header Quarterly report | footer Page &P",
        "centred True True grid True headings True",
        "view grid False zoom 150 freeze B4",
        "protected True",
        "print area ['$B$2:$D$10'] titles $1:$2 $A:$A",
        "breaks [20] [4]",
        "fit True 1 2 rtl True top left C6",
        "name local 0 Setup!$C$5:$C$7",
        "name prices None Setup!$B$2:$B$4",
    };
    EXPECT_EQ(oracle::dump("openpyxl-settings", xlsx), expected);
}

} // namespace
