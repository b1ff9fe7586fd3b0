// The flat sheet entry points against a recording test double: each reaches
// its own operation with its arguments in order, and the flat conversions of
// flags, results and handles hold.
#include <gtest/gtest.h>

#include "support/recording_sheet.h"
#include "tabrix.h"

using tabrix::RecordingSheet;

namespace {

using Call = void (*)(TBSheet s, TBFormat m, TBFormat &f, int &i);
#define CALL(expr)                                                                                 \
    [](TBSheet s, TBFormat m, TBFormat &f, int &i) {                                               \
        (void)m;                                                                                   \
        (void)f;                                                                                   \
        (void)i;                                                                                   \
        expr;                                                                                      \
    }

struct Forward {
    const char *entry;
    Call call;
    const char *log;
};

// Every bool argument is given as -1, which must arrive as true.
const Forward kForwards[] = {
    {"CellType", CALL(tbSheetCellTypeA(s, 1, 2)), "cellType(1,2)"},
    {"IsFormula", CALL(tbSheetIsFormulaA(s, 1, 2)), "isFormula(1,2)"},
    {"CellFormat", CALL(tbSheetCellFormatA(s, 1, 2)), "cellFormat(1,2)"},
    {"SetCellFormat", CALL(tbSheetSetCellFormatA(s, 1, 2, m)), "setCellFormat(1,2,M)"},
    {"ReadStr", CALL(tbSheetReadStrA(s, 1, 2, &f)), "readStr(1,2,p)"},
    {"WriteStr", CALL(tbSheetWriteStrA(s, 1, 2, "t3", m)), "writeStr(1,2,\"t3\",M)"},
    {"ReadNum", CALL(tbSheetReadNumA(s, 1, 2, &f)), "readNum(1,2,p)"},
    {"WriteNum", CALL(tbSheetWriteNumA(s, 1, 2, 3.5, m)), "writeNum(1,2,3.5,M)"},
    {"ReadBool", CALL(tbSheetReadBoolA(s, 1, 2, &f)), "readBool(1,2,p)"},
    {"WriteBool", CALL(tbSheetWriteBoolA(s, 1, 2, -1, m)), "writeBool(1,2,true,M)"},
    {"ReadBlank", CALL(tbSheetReadBlankA(s, 1, 2, &f)), "readBlank(1,2,p)"},
    {"WriteBlank", CALL(tbSheetWriteBlankA(s, 1, 2, m)), "writeBlank(1,2,M)"},
    {"ReadFormula", CALL(tbSheetReadFormulaA(s, 1, 2, &f)), "readFormula(1,2,p)"},
    {"WriteFormula", CALL(tbSheetWriteFormulaA(s, 1, 2, "t3", m)), "writeFormula(1,2,\"t3\",M)"},
    {"ReadComment", CALL(tbSheetReadCommentA(s, 1, 2)), "readComment(1,2)"},
    {"WriteComment", CALL(tbSheetWriteCommentA(s, 1, 2, "t3", "t4", 5, 6)),
     "writeComment(1,2,\"t3\",\"t4\",5,6)"},
    {"IsDate", CALL(tbSheetIsDateA(s, 1, 2)), "isDate(1,2)"},
    {"ReadError", CALL(tbSheetReadErrorA(s, 1, 2)), "readError(1,2)"},
    {"ColWidth", CALL(tbSheetColWidthA(s, 1)), "colWidth(1)"},
    {"RowHeight", CALL(tbSheetRowHeightA(s, 1)), "rowHeight(1)"},
    {"SetCol", CALL(tbSheetSetColA(s, 1, 2, 3.5, m, -1)), "setCol(1,2,3.5,M,true)"},
    {"SetRow", CALL(tbSheetSetRowA(s, 1, 2.5, m, -1)), "setRow(1,2.5,M,true)"},
    {"RowHidden", CALL(tbSheetRowHiddenA(s, 1)), "rowHidden(1)"},
    {"SetRowHidden", CALL(tbSheetSetRowHiddenA(s, 1, -1)), "setRowHidden(1,true)"},
    {"ColHidden", CALL(tbSheetColHiddenA(s, 1)), "colHidden(1)"},
    {"SetColHidden", CALL(tbSheetSetColHiddenA(s, 1, -1)), "setColHidden(1,true)"},
    {"GetMerge", CALL(tbSheetGetMergeA(s, 1, 2, &i, &i, &i, &i)), "getMerge(1,2,p,p,p,p)"},
    {"SetMerge", CALL(tbSheetSetMergeA(s, 1, 2, 3, 4)), "setMerge(1,2,3,4)"},
    {"DelMerge", CALL(tbSheetDelMergeA(s, 1, 2)), "delMerge(1,2)"},
    {"PictureSize", CALL(tbSheetPictureSizeA(s)), "pictureSize()"},
    {"GetPicture", CALL(tbSheetGetPictureA(s, 1, &i, &i, &i, &i, &i, &i, &i, &i)),
     "getPicture(1,p,p,p,p,p,p,p,p)"},
    {"SetPicture", CALL(tbSheetSetPictureA(s, 1, 2, 3, 4.5, 5, 6)), "setPicture(1,2,3,4.5,5,6)"},
    {"SetPicture2", CALL(tbSheetSetPicture2A(s, 1, 2, 3, 4, 5, 6, 7)),
     "setPicture2(1,2,3,4,5,6,7)"},
    {"GetHorPageBreak", CALL(tbSheetGetHorPageBreakA(s, 1)), "getHorPageBreak(1)"},
    {"GetHorPageBreakSize", CALL(tbSheetGetHorPageBreakSizeA(s)), "getHorPageBreakSize()"},
    {"GetVerPageBreak", CALL(tbSheetGetVerPageBreakA(s, 1)), "getVerPageBreak(1)"},
    {"GetVerPageBreakSize", CALL(tbSheetGetVerPageBreakSizeA(s)), "getVerPageBreakSize()"},
    {"SetHorPageBreak", CALL(tbSheetSetHorPageBreakA(s, 1, -1)), "setHorPageBreak(1,true)"},
    {"SetVerPageBreak", CALL(tbSheetSetVerPageBreakA(s, 1, -1)), "setVerPageBreak(1,true)"},
    {"Split", CALL(tbSheetSplitA(s, 1, 2)), "split(1,2)"},
    {"GroupRows", CALL(tbSheetGroupRowsA(s, 1, 2, -1)), "groupRows(1,2,true)"},
    {"GroupCols", CALL(tbSheetGroupColsA(s, 1, 2, -1)), "groupCols(1,2,true)"},
    {"GroupSummaryBelow", CALL(tbSheetGroupSummaryBelowA(s)), "groupSummaryBelow()"},
    {"SetGroupSummaryBelow", CALL(tbSheetSetGroupSummaryBelowA(s, -1)),
     "setGroupSummaryBelow(true)"},
    {"GroupSummaryRight", CALL(tbSheetGroupSummaryRightA(s)), "groupSummaryRight()"},
    {"SetGroupSummaryRight", CALL(tbSheetSetGroupSummaryRightA(s, -1)),
     "setGroupSummaryRight(true)"},
    {"Clear", CALL(tbSheetClearA(s, 1, 2, 3, 4)), "clear(1,2,3,4)"},
    {"InsertCol", CALL(tbSheetInsertColA(s, 1, 2)), "insertCol(1,2)"},
    {"InsertRow", CALL(tbSheetInsertRowA(s, 1, 2)), "insertRow(1,2)"},
    {"RemoveCol", CALL(tbSheetRemoveColA(s, 1, 2)), "removeCol(1,2)"},
    {"RemoveRow", CALL(tbSheetRemoveRowA(s, 1, 2)), "removeRow(1,2)"},
    {"CopyCell", CALL(tbSheetCopyCellA(s, 1, 2, 3, 4)), "copyCell(1,2,3,4)"},
    {"FirstRow", CALL(tbSheetFirstRowA(s)), "firstRow()"},
    {"LastRow", CALL(tbSheetLastRowA(s)), "lastRow()"},
    {"FirstCol", CALL(tbSheetFirstColA(s)), "firstCol()"},
    {"LastCol", CALL(tbSheetLastColA(s)), "lastCol()"},
    {"DisplayGridlines", CALL(tbSheetDisplayGridlinesA(s)), "displayGridlines()"},
    {"SetDisplayGridlines", CALL(tbSheetSetDisplayGridlinesA(s, -1)), "setDisplayGridlines(true)"},
    {"PrintGridlines", CALL(tbSheetPrintGridlinesA(s)), "printGridlines()"},
    {"SetPrintGridlines", CALL(tbSheetSetPrintGridlinesA(s, -1)), "setPrintGridlines(true)"},
    {"Zoom", CALL(tbSheetZoomA(s)), "zoom()"},
    {"SetZoom", CALL(tbSheetSetZoomA(s, 1)), "setZoom(1)"},
    {"PrintZoom", CALL(tbSheetPrintZoomA(s)), "printZoom()"},
    {"SetPrintZoom", CALL(tbSheetSetPrintZoomA(s, 1)), "setPrintZoom(1)"},
    {"GetPrintFit", CALL(tbSheetGetPrintFitA(s, &i, &i)), "getPrintFit(p,p)"},
    {"SetPrintFit", CALL(tbSheetSetPrintFitA(s, 1, 2)), "setPrintFit(1,2)"},
    {"Landscape", CALL(tbSheetLandscapeA(s)), "landscape()"},
    {"SetLandscape", CALL(tbSheetSetLandscapeA(s, -1)), "setLandscape(true)"},
    {"Paper", CALL(tbSheetPaperA(s)), "paper()"},
    {"SetPaper", CALL(tbSheetSetPaperA(s, 1)), "setPaper(1)"},
    {"Header", CALL(tbSheetHeaderA(s)), "header()"},
    {"SetHeader", CALL(tbSheetSetHeaderA(s, "t1", 2.5)), "setHeader(\"t1\",2.5)"},
    {"HeaderMargin", CALL(tbSheetHeaderMarginA(s)), "headerMargin()"},
    {"Footer", CALL(tbSheetFooterA(s)), "footer()"},
    {"SetFooter", CALL(tbSheetSetFooterA(s, "t1", 2.5)), "setFooter(\"t1\",2.5)"},
    {"FooterMargin", CALL(tbSheetFooterMarginA(s)), "footerMargin()"},
    {"HCenter", CALL(tbSheetHCenterA(s)), "hCenter()"},
    {"SetHCenter", CALL(tbSheetSetHCenterA(s, -1)), "setHCenter(true)"},
    {"VCenter", CALL(tbSheetVCenterA(s)), "vCenter()"},
    {"SetVCenter", CALL(tbSheetSetVCenterA(s, -1)), "setVCenter(true)"},
    {"MarginLeft", CALL(tbSheetMarginLeftA(s)), "marginLeft()"},
    {"SetMarginLeft", CALL(tbSheetSetMarginLeftA(s, 1.5)), "setMarginLeft(1.5)"},
    {"MarginRight", CALL(tbSheetMarginRightA(s)), "marginRight()"},
    {"SetMarginRight", CALL(tbSheetSetMarginRightA(s, 1.5)), "setMarginRight(1.5)"},
    {"MarginTop", CALL(tbSheetMarginTopA(s)), "marginTop()"},
    {"SetMarginTop", CALL(tbSheetSetMarginTopA(s, 1.5)), "setMarginTop(1.5)"},
    {"MarginBottom", CALL(tbSheetMarginBottomA(s)), "marginBottom()"},
    {"SetMarginBottom", CALL(tbSheetSetMarginBottomA(s, 1.5)), "setMarginBottom(1.5)"},
    {"PrintRowCol", CALL(tbSheetPrintRowColA(s)), "printRowCol()"},
    {"SetPrintRowCol", CALL(tbSheetSetPrintRowColA(s, -1)), "setPrintRowCol(true)"},
    {"SetPrintRepeatRows", CALL(tbSheetSetPrintRepeatRowsA(s, 1, 2)), "setPrintRepeatRows(1,2)"},
    {"SetPrintRepeatCols", CALL(tbSheetSetPrintRepeatColsA(s, 1, 2)), "setPrintRepeatCols(1,2)"},
    {"SetPrintArea", CALL(tbSheetSetPrintAreaA(s, 1, 2, 3, 4)), "setPrintArea(1,2,3,4)"},
    {"ClearPrintRepeats", CALL(tbSheetClearPrintRepeatsA(s)), "clearPrintRepeats()"},
    {"ClearPrintArea", CALL(tbSheetClearPrintAreaA(s)), "clearPrintArea()"},
    {"GetNamedRange", CALL(tbSheetGetNamedRangeA(s, "t1", &i, &i, &i, &i, 2, &i)),
     "getNamedRange(\"t1\",p,p,p,p,2,p)"},
    {"SetNamedRange", CALL(tbSheetSetNamedRangeA(s, "t1", 2, 3, 4, 5, 6)),
     "setNamedRange(\"t1\",2,3,4,5,6)"},
    {"DelNamedRange", CALL(tbSheetDelNamedRangeA(s, "t1", 2)), "delNamedRange(\"t1\",2)"},
    {"NamedRangeSize", CALL(tbSheetNamedRangeSizeA(s)), "namedRangeSize()"},
    {"NamedRange", CALL(tbSheetNamedRangeA(s, 1, &i, &i, &i, &i, &i, &i)),
     "namedRange(1,p,p,p,p,p,p)"},
    {"Name", CALL(tbSheetNameA(s)), "name()"},
    {"SetName", CALL(tbSheetSetNameA(s, "t1")), "setName(\"t1\")"},
    {"Protect", CALL(tbSheetProtectA(s)), "protect()"},
    {"SetProtect", CALL(tbSheetSetProtectA(s, -1)), "setProtect(true)"},
    {"Hidden", CALL(tbSheetHiddenA(s)), "hidden()"},
    {"SetHidden", CALL(tbSheetSetHiddenA(s, 1)), "setHidden(1)"},
    {"GetTopLeftView", CALL(tbSheetGetTopLeftViewA(s, &i, &i)), "getTopLeftView(p,p)"},
    {"SetTopLeftView", CALL(tbSheetSetTopLeftViewA(s, 1, 2)), "setTopLeftView(1,2)"},
    {"RightToLeft", CALL(tbSheetRightToLeftA(s)), "rightToLeft()"},
    {"SetRightToLeft", CALL(tbSheetSetRightToLeftA(s, -1)), "setRightToLeft(true)"},
};

TEST(FlatSheet, EveryEntryReachesItsOperationWithItsArguments) {
    int marker = 0;
    for (const Forward &row : kForwards) {
        RecordingSheet sheet;
        sheet.marker = &marker;
        TBFormat f = nullptr;
        int i = 0;
        row.call(static_cast<tabrix::ISheetT<char> *>(&sheet), &marker, f, i);
        EXPECT_EQ(sheet.log, row.log) << row.entry;
    }
    EXPECT_EQ(sizeof(kForwards) / sizeof(kForwards[0]), 110u);
}

TBSheet handle(RecordingSheet &sheet) { return static_cast<tabrix::ISheetT<char> *>(&sheet); }

TEST(FlatSheet, FlagConversions) {
    struct Case {
        int flag;
        const char *writeBool;    // any non-zero is true
        const char *rowColToAddr; // only a value above 0 is true
    };
    const Case cases[] = {
        {-1, "writeBool(0,0,true,null)", "rowColToAddr(0,0,false,false)"},
        {0, "writeBool(0,0,false,null)", "rowColToAddr(0,0,false,false)"},
        {1, "writeBool(0,0,true,null)", "rowColToAddr(0,0,true,true)"},
        {256, "writeBool(0,0,true,null)", "rowColToAddr(0,0,true,true)"},
    };
    for (const Case &c : cases) {
        RecordingSheet sheet;
        tbSheetWriteBoolA(handle(sheet), 0, 0, c.flag, nullptr);
        EXPECT_EQ(sheet.log, c.writeBool) << c.flag;
        tbSheetRowColToAddrA(handle(sheet), 0, 0, c.flag, c.flag);
        EXPECT_EQ(sheet.log, c.rowColToAddr) << c.flag;
    }
}

TEST(FlatSheet, AddrToRowColGivesRealFlagPointersAndCopiesBack) {
    RecordingSheet sheet;
    sheet.outInt = 7;
    sheet.outBool = true;
    int row = -1, col = -1;
    tbSheetAddrToRowColA(handle(sheet), "B3", &row, &col, nullptr, nullptr);
    EXPECT_EQ(sheet.log, "addrToRowCol(\"B3\",p,p,p,p)");
    EXPECT_EQ(row, 7);
    EXPECT_EQ(col, 7);

    int rowRel = 42, colRel = 42;
    tbSheetAddrToRowColA(handle(sheet), "B3", &row, &col, &rowRel, &colRel);
    EXPECT_EQ(rowRel, 1);
    EXPECT_EQ(colRel, 1);
    sheet.outBool = false;
    tbSheetAddrToRowColA(handle(sheet), "B3", &row, &col, &rowRel, &colRel);
    EXPECT_EQ(rowRel, 0);
    EXPECT_EQ(colRel, 0);
}

TEST(FlatSheet, NamedRangeHiddenComesBackAsInt) {
    RecordingSheet sheet;
    sheet.outBool = true;
    sheet.answerText = "Data";
    int r1, r2, c1, c2, scope = -1, hidden = 0;
    EXPECT_STREQ(tbSheetNamedRangeA(handle(sheet), 0, &r1, &r2, &c1, &c2, &scope, &hidden), "Data");
    EXPECT_EQ(hidden, 1);
    hidden = 5;
    sheet.outBool = false;
    sheet.answerBool = true;
    EXPECT_EQ(tbSheetGetNamedRangeA(handle(sheet), "Data", &r1, &r2, &c1, &c2, 0, &hidden), 1);
    EXPECT_EQ(hidden, 0);
}

TEST(FlatSheet, ResultConversions) {
    RecordingSheet sheet;
    TBSheet s = handle(sheet);
    sheet.answerBool = true;
    EXPECT_EQ(tbSheetIsDateA(s, 0, 0), 1);
    sheet.answerBool = false;
    EXPECT_EQ(tbSheetIsDateA(s, 0, 0), 0);
    sheet.answerInt = tabrix::ERRORTYPE_NOERROR;
    EXPECT_EQ(tbSheetReadErrorA(s, 0, 0), 255);
    sheet.answerInt = tabrix::CELLTYPE_BLANK;
    EXPECT_EQ(tbSheetCellTypeA(s, 0, 0), 4);
    sheet.answerInt = tabrix::SHEETSTATE_VERYHIDDEN;
    EXPECT_EQ(tbSheetHiddenA(s), 2);
    sheet.answerDouble = 2.25;
    EXPECT_EQ(tbSheetReadNumA(s, 0, 0, nullptr), 2.25);
    int format = 0;
    sheet.answerPointer = &format;
    EXPECT_EQ(tbSheetCellFormatA(s, 0, 0), static_cast<void *>(&format));
}

} // namespace
