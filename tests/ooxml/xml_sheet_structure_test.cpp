// Structure edits of Open XML sheets checked in the saved worksheet part:
// column ranges split and filled, merges split and shrunk, rows and cells
// renumbered with formula texts left alone, panes, views, breaks, groups.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/packages.h"
#include "tabrix.h"
#include "tabrix/IBookT.h"

using namespace tabrix;

namespace {

// A one-sheet book "S" whose worksheet holds `body`, with defined names `names`.
std::string book(const std::string &body, const std::string &names) {
    packages::Parts p = packages::workbook({"worksheets/sheet1.xml"}, names);
    p[L"/xl/workbook.xml"].replace(p[L"/xl/workbook.xml"].find("S1"), 2, "S");
    p[L"/xl/worksheets/sheet1.xml"] =
        std::string("<worksheet xmlns=\"") + packages::kMain + "\">" + body + "</worksheet>";
    return packages::zip(p);
}

// The saved sheet part, then the saved workbook part.
std::string savedParts(IBookT<char> &b) {
    packages::Parts p = packages::saved(b);
    return p[L"/xl/worksheets/sheet1.xml"] + p[L"/xl/workbook.xml"];
}

const std::string kCols9 = "<cols><col min=\"1\" max=\"9\" width=\"20\" customWidth=\"1\"/></cols>";
// B3 holds the formula A5; B2:C5 is merged.
const std::string kData = "<sheetData><row r=\"1\"><c r=\"C1\"><v>1</v></c></row>"
                          "<row r=\"3\"><c r=\"B3\"><f>A5</f><v>0</v></c></row>"
                          "<row r=\"7\"><c r=\"A7\"><v>7</v></c></row></sheetData>";
const std::string kMerge = "<mergeCells count=\"1\"><mergeCell ref=\"B2:C5\"/></mergeCells>";

TEST(XMLSheetStructure, EditsInTheSavedPart) {
    using Sheet = ISheetT<char>;
    struct Case {
        const char *what;
        std::string body;
        std::function<bool(Sheet &)> run;
        std::vector<std::string> present;
        std::vector<std::string> absent = {};
        const char *message = "ok";
        std::string names = "";
    };
    const std::string citing = "<definedNames><definedName name=\"a\">S!$A$1,SS!$B$2</definedName>"
                               "<definedName name=\"b\">SUM(S!$A:$A)</definedName></definedNames>";
    const Case cases[] = {
        {"a range inside a col splits it in three",
         kCols9 + kData,
         [](Sheet &s) { return s.setCol(2, 4, 10, nullptr, true); },
         {"<col min=\"1\" max=\"2\" width=\"20\"", "<col min=\"3\" max=\"5\" width=\"10.7",
          "hidden=\"1\"", "<col min=\"6\" max=\"9\" width=\"20\""},
         {"max=\"9\" width=\"10"}},
        {"gaps of the range get cols of their own",
         "<cols><col min=\"2\" max=\"2\" width=\"20\"/><col min=\"4\" max=\"4\" width=\"30\"/>"
         "</cols>" +
             kData,
         [](Sheet &s) { return s.setColHidden(0, true) && s.setCol(2, 5, 12, nullptr, false); },
         {"<col min=\"1\" max=\"1\" width=\"9.1", "<col min=\"2\" max=\"2\" width=\"20\"",
          "<col min=\"3\" max=\"3\" width=\"12.7", "<col min=\"4\" max=\"4\" width=\"12.7",
          "<col min=\"5\" max=\"6\" width=\"12.7"}},
        {"a row made by its height takes the cells written into it",
         kData,
         [](Sheet &s) {
             return s.setRow(4, 30, nullptr, false) && s.writeNum(4, 1, 5, nullptr) &&
                    s.writeNum(4, 0, 4, nullptr);
         },
         {"<row r=\"5\" ht=\"30\" customHeight=\"1\"><c r=\"A5\"><v>4</v></c><c r=\"B5\">"},
         {"<row r=\"5\"><c"}},
        {"rows inserted inside a merge split it; formulas keep their text",
         kData + kMerge,
         [](Sheet &s) { return s.insertRow(2, 3); },
         {"<mergeCell ref=\"B2:C2\"/>", "<mergeCell ref=\"B5:C7\"/>", "count=\"2\"",
          "<row r=\"5\"><c r=\"B5\"><f>A5</f>", "<row r=\"9\"><c r=\"A9\"", "<row r=\"1\">"},
         {"B2:C5", "r=\"B3\""}},
        {"rows inserted above a merge move it",
         kData + kMerge,
         [](Sheet &s) { return s.insertRow(0, 0); },
         {"<mergeCell ref=\"B3:C6\"/>", "<row r=\"2\"><c r=\"C2\""}},
        {"removed rows shrink a merge and take their cells",
         kData + kMerge,
         [](Sheet &s) { return s.removeRow(2, 5); },
         {"<mergeCell ref=\"B2:C2\"/>", "<row r=\"3\"><c r=\"A3\"", "<row r=\"1\">"},
         {"<f>", "r=\"7\""}},
        {"a merge wholly removed goes with its list",
         kData + kMerge,
         [](Sheet &s) { return s.removeRow(0, 6); },
         {},
         {"mergeCell", "<row"}},
        {"columns inserted split a col range, move cells and merges",
         kCols9 + kData + kMerge,
         [](Sheet &s) { return s.insertCol(2, 3); },
         {"<col min=\"1\" max=\"2\"", "<col min=\"5\" max=\"11\"", "<c r=\"E1\"",
          "<c r=\"B3\"><f>A5</f>", "<mergeCell ref=\"B2:B5\"/>", "<mergeCell ref=\"E2:E5\"/>"},
         {"<c r=\"C1\"", "max=\"9\""}},
        {"removed columns shrink cols and merges",
         kCols9 + kData + kMerge,
         [](Sheet &s) { return s.removeCol(0, 1); },
         {"<col min=\"1\" max=\"7\"", "<c r=\"A1\"", "<mergeCell ref=\"A2:A5\"/>"},
         {"<c r=\"B3\"", "<c r=\"A7\""}},
        {"a merge set twice is kept twice",
         kData,
         [](Sheet &s) { return s.setMerge(0, 1, 0, 1) && s.setMerge(0, 1, 0, 1); },
         {"<mergeCells count=\"2\"><mergeCell ref=\"A1:B2\"/><mergeCell ref=\"A1:B2\"/>"}},
        {"deleting the last merge drops the list",
         kData + kMerge,
         [](Sheet &s) { return s.delMerge(4, 2); },
         {},
         {"mergeCell"}},
        {"a cell outside every merge",
         kData + kMerge,
         [](Sheet &s) { return s.delMerge(0, 0); },
         {"B2:C5"},
         {},
         "this cell isn't in merging block"},
        {"merge with reversed rows",
         kData,
         [](Sheet &s) { return s.setMerge(3, 2, 0, 0); },
         {},
         {"mergeCell"},
         "rowLast must be greater than or equal to rowFirst"},
        {"merge past the last column",
         kData,
         [](Sheet &s) { return s.setMerge(0, 0, 0, 16384); },
         {},
         {"mergeCell"},
         "col must be less than 16384"},
        {"groups that overlap partly",
         kData,
         [](Sheet &s) { return s.groupRows(3, 4, false) && s.groupRows(2, 5, false); },
         {"<row r=\"3\" outlineLevel=\"1\"", "<row r=\"4\" outlineLevel=\"1\"/>"},
         {},
         "detect overlap"},
        {"a collapsed group hides its rows and marks the next",
         kData,
         [](Sheet &s) { return s.groupRows(1, 2, true); },
         {"<row r=\"2\" hidden=\"1\" outlineLevel=\"1\"/>", "<row r=\"4\" collapsed=\"1\"/>"}},
        {"column groups",
         kCols9 + kData,
         [](Sheet &s) { return s.groupCols(1, 2, false) && s.groupCols(3, 1, false); },
         {"<col min=\"2\" max=\"2\" width=\"20\" customWidth=\"1\" outlineLevel=\"1\"/>",
          "<col min=\"3\" max=\"3\" width=\"20\" customWidth=\"1\" outlineLevel=\"1\"/>"},
         {},
         "must be colFirst <= colLast"},
        {"frozen panes",
         kData,
         [](Sheet &s) { return s.split(3, 2), true; },
         {"<sheetViews><sheetView workbookViewId=\"0\"><pane xSplit=\"2\" ySplit=\"3\" "
          "topLeftCell=\"C4\" activePane=\"bottomRight\" state=\"frozenSplit\"/>"}},
        {"zoom makes a view",
         kData,
         [](Sheet &s) { return s.setZoom(80), s.zoom() == 80; },
         {"<sheetView zoomScale=\"80\" zoomScaleNormal=\"80\" workbookViewId=\"0\"/>"}},
        {"breaks keep the order of the calls",
         kData,
         [](Sheet &s) {
             return s.setHorPageBreak(9, true) && s.setHorPageBreak(3, true) &&
                    s.setHorPageBreak(9, true) && s.getHorPageBreak(1) == 3;
         },
         {"<rowBreaks count=\"2\" manualBreakCount=\"2\"><brk id=\"9\" max=\"16383\" man=\"1\"/>"
          "<brk id=\"3\" max=\"16383\" man=\"1\"/></rowBreaks>"}},
        {"a break index past the list",
         kData,
         [](Sheet &s) { return s.getVerPageBreak(0) != -1; },
         {},
         {"colBreaks"},
         "index is out of range"},
        {"unprotecting an unprotected sheet adds nothing",
         kData,
         [](Sheet &s) { return s.setProtect(false), !s.protect(); },
         {},
         {"sheetProtection"}},
        {"margins start from their defaults",
         kData,
         [](Sheet &s) { return s.setMarginTop(2), s.marginLeft() == 0.7; },
         {"<pageMargins left=\"0.7\" right=\"0.7\" top=\"2\" bottom=\"0.75\" header=\"0.3\" "
          "footer=\"0.3\"/>"}},
        {"a rename follows into names citing the sheet, not into other sheets' names",
         kData,
         [](Sheet &s) { return s.setName("New S"), true; },
         {"&apos;New S&apos;!$A$1,SS!$B$2", "SUM(&apos;New S&apos;!$A:$A)"},
         {},
         "ok",
         citing},
        {"notes are not kept here",
         kData,
         [](Sheet &s) {
             return s.writeComment(0, 0, "note", "me", 100, 50), s.readComment(0, 0) != nullptr;
         },
         {"<c r=\"C1\"><v>1</v></c>"},
         {"comment", "legacy"},
         "not supported"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        auto *b = static_cast<IBookT<char> *>(tbCreateXMLBookA());
        const std::string bytes = book(c.body, c.names);
        ASSERT_TRUE(b->loadRaw(bytes.data(), unsigned(bytes.size()))) << b->errorMessage();
        Sheet *s = b->getSheet(0);
        ASSERT_NE(s, nullptr);
        const bool ok = c.run(*s);
        EXPECT_STREQ(b->errorMessage(), c.message);
        EXPECT_EQ(ok, std::string(c.message) == "ok");
        const std::string xml = savedParts(*b);
        for (const std::string &p : c.present)
            EXPECT_NE(xml.find(p), std::string::npos) << p << "\n" << xml;
        for (const std::string &p : c.absent)
            EXPECT_EQ(xml.find(p), std::string::npos) << p << "\n" << xml;
        b->release();
    }
}

} // namespace
