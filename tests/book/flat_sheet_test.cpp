// The flat sheet entry points against a recording test double: each reaches
// its own operation with its arguments in order, and the flat conversions of
// flags and handles hold.
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

// One entry of each argument shape (the entries are generated from one
// table); every bool argument is given as -1, which must arrive as true.
const Forward kForwards[] = {
    {"CellType", CALL(tbSheetCellTypeA(s, 1, 2)), "cellType(1,2)"},
    {"ReadStr", CALL(tbSheetReadStrA(s, 1, 2, &f)), "readStr(1,2,p)"},
    {"WriteStr", CALL(tbSheetWriteStrA(s, 1, 2, "t3", m)), "writeStr(1,2,\"t3\",M)"},
    {"WriteNum", CALL(tbSheetWriteNumA(s, 1, 2, 3.5, m)), "writeNum(1,2,3.5,M)"},
    {"WriteBool", CALL(tbSheetWriteBoolA(s, 1, 2, -1, m)), "writeBool(1,2,true,M)"},
    {"WriteComment", CALL(tbSheetWriteCommentA(s, 1, 2, "t3", "t4", 5, 6)),
     "writeComment(1,2,\"t3\",\"t4\",5,6)"},
    {"SetCol", CALL(tbSheetSetColA(s, 1, 2, 3.5, m, -1)), "setCol(1,2,3.5,M,true)"},
    {"GetMerge", CALL(tbSheetGetMergeA(s, 1, 2, &i, &i, &i, &i)), "getMerge(1,2,p,p,p,p)"},
    {"SetPicture", CALL(tbSheetSetPictureA(s, 1, 2, 3, 4.5, 5, 6)), "setPicture(1,2,3,4.5,5,6)"},
    {"SetHeader", CALL(tbSheetSetHeaderA(s, "t1", 2.5)), "setHeader(\"t1\",2.5)"},
    {"GetNamedRange", CALL(tbSheetGetNamedRangeA(s, "t1", &i, &i, &i, &i, 2, &i)),
     "getNamedRange(\"t1\",p,p,p,p,2,p)"},
    {"SetNamedRange", CALL(tbSheetSetNamedRangeA(s, "t1", 2, 3, 4, 5, 6)),
     "setNamedRange(\"t1\",2,3,4,5,6)"},
    {"SetHidden", CALL(tbSheetSetHiddenA(s, 1)), "setHidden(1)"},
    {"GetTopLeftView", CALL(tbSheetGetTopLeftViewA(s, &i, &i)), "getTopLeftView(p,p)"},
};

TEST(FlatSheet, EntriesReachTheirOperationWithTheirArguments) {
    int marker = 0;
    for (const Forward &row : kForwards) {
        RecordingSheet sheet;
        sheet.marker = &marker;
        TBFormat f = nullptr;
        int i = 0;
        row.call(static_cast<tabrix::ISheetT<char> *>(&sheet), &marker, f, i);
        EXPECT_EQ(sheet.log, row.log) << row.entry;
    }
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

} // namespace
