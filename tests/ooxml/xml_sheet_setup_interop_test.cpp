// Sheet setup and structure of Open XML books as independent readers see
// them: openpyxl reads what we wrote, and again after LibreOffice has read
// the book and saved it.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/book_kinds.h"
#include "support/oracle.h"
#include "support/packages.h"
#include "tabrix.h"
#include "tabrix/IBookT.h"

using namespace tabrix;

namespace {

namespace fs = std::filesystem;

// What LibreOffice keeps of a listing: its headless conversion drops view
// settings, writes a height for every row and rounds widths its own way,
// so those are left out, and lines that say nothing more go.
oracle::Lines keptByLibreOffice(const oracle::Lines &lines) {
    oracle::Lines out;
    for (std::string line : lines) {
        if (line.rfind("view ", 0) == 0 || line.rfind("summary", 0) == 0) continue;
        for (const char *field : {" height ", " width "}) {
            const size_t at = line.find(field);
            if (at != std::string::npos)
                line.erase(at, line.find(' ', at + std::string(field).size()) - at);
        }
        const size_t top = line.find(" top left");
        if (top != std::string::npos) line.erase(top);
        if (line.rfind("row", 0) == 0 || line.rfind("col", 0) == 0)
            if (line.find("hidden 1") == std::string::npos &&
                line.find("level 0") != std::string::npos)
                continue;
        out.push_back(line);
    }
    return out;
}

// A book of three sheets with every setting the test reads back.
std::string makeBook(const fs::path &dir) {
    bookkinds::BookPtr book(static_cast<IBookT<char> *>(tbCreateXMLBookA()));
    IBookT<char> &b = *book;
    b.setLocale("UTF-8");
    ISheetT<char> *s = b.addSheet("Setup", nullptr);
    ISheetT<char> *f = b.addSheet("Fit", nullptr);
    ISheetT<char> *h = b.addSheet("Hidden", nullptr);
    EXPECT_TRUE(s && f && h);
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
    // Structure: merges, sizes, hidden lines and groups.
    s->setMerge(1, 2, 1, 2);
    s->setMerge(6, 6, 0, 3);
    s->setCol(0, 9, 12, nullptr, false);
    s->setCol(2, 3, 20, nullptr, false);
    s->setColHidden(5, true);
    s->setRow(4, 30, nullptr, false);
    s->setRowHidden(8, true);
    s->groupRows(10, 12, false);
    s->groupCols(7, 8, true);
    s->setGroupSummaryBelow(false);
    s->insertRow(2, 2); // splits the merge of rows 1-2
    f->setPrintFit(1, 2);
    f->setRightToLeft(true);
    f->setTopLeftView(5, 2);
    EXPECT_TRUE(h->setHidden(SHEETSTATE_HIDDEN)) << b.errorMessage();
    const std::string path = (dir / "setup.xlsx").string();
    EXPECT_TRUE(b.save(path.c_str())) << b.errorMessage();
    return path;
}

TEST(XMLSheetSetupInterop, OpenpyxlAndLibreOfficeReadTheSettings) {
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "python3-openpyxl is not installed";
    const std::string path = makeBook(packages::scratch("xml_sheet_setup_interop", ""));

    const oracle::Lines settings = {
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
    const oracle::Lines dims = {
        "merge 1 1 1 2",
        "merge 3 3 1 2",
        "merge 7 7 0 3",
        "row 5 height 30.0 hidden 0 level 0",
        "row 9 height - hidden 1 level 0",
        "row 11 height - hidden 0 level 1",
        "row 12 height - hidden 0 level 1",
        "row 13 height - hidden 0 level 1",
        "col 0 width 12.71 hidden 0 level 0",
        "col 1 width 12.71 hidden 0 level 0",
        "col 2 width 20.71 hidden 0 level 0",
        "col 3 width 20.71 hidden 0 level 0",
        "col 4 width 12.71 hidden 0 level 0",
        "col 5 width 12.71 hidden 1 level 0",
        "col 6 width 12.71 hidden 0 level 0",
        "col 7 width 12.71 hidden 1 level 1",
        "col 8 width 12.71 hidden 1 level 1",
        "col 9 width 12.71 hidden 0 level 0",
        "summary False None",
    };
    EXPECT_EQ(oracle::dump("openpyxl-settings", path), settings);
    EXPECT_EQ(oracle::dump("openpyxl-dims", path), dims);
    if (!oracle::has("soffice")) GTEST_SKIP() << "LibreOffice is not installed";
    EXPECT_EQ(keptByLibreOffice(oracle::dump("libreoffice-settings", path)),
              keptByLibreOffice(settings));
    EXPECT_EQ(keptByLibreOffice(oracle::dump("libreoffice-dims", path)), keptByLibreOffice(dims));
}

} // namespace
