// The ids of the workbook records this library reads, writes or names, with
// their names in the published format.  Load dispatch, writers and dumps
// use these names instead of numbers; recordName() gives the text of one
// for dumps and messages.
#ifndef TABRIX_BIFF_RECORD_IDS_H
#define TABRIX_BIFF_RECORD_IDS_H

#include <cstdint>

namespace tabrix {

#define TABRIX_RECORD_IDS(X)                                                                       \
    X(Formula, 6)                                                                                  \
    X(Eof, 10)                                                                                     \
    X(CalcCount, 12)                                                                               \
    X(CalcMode, 13)                                                                                \
    X(CalcPrecision, 14)                                                                           \
    X(CalcRefMode, 15)                                                                             \
    X(CalcDelta, 16)                                                                               \
    X(CalcIter, 17)                                                                                \
    X(Protect, 18)                                                                                 \
    X(Password, 19)                                                                                \
    X(Header, 20)                                                                                  \
    X(Footer, 21)                                                                                  \
    X(ExternSheet, 23)                                                                             \
    X(Lbl, 24)                                                                                     \
    X(WinProtect, 25)                                                                              \
    X(VerticalPageBreaks, 26)                                                                      \
    X(HorizontalPageBreaks, 27)                                                                    \
    X(Note, 28)                                                                                    \
    X(Selection, 29)                                                                               \
    X(Date1904, 34)                                                                                \
    X(LeftMargin, 38)                                                                              \
    X(RightMargin, 39)                                                                             \
    X(TopMargin, 40)                                                                               \
    X(BottomMargin, 41)                                                                            \
    X(PrintRowCol, 42)                                                                             \
    X(PrintGrid, 43)                                                                               \
    X(FilePass, 47)                                                                                \
    X(Font, 49)                                                                                    \
    X(Continue, 60)                                                                                \
    X(Window1, 61)                                                                                 \
    X(Backup, 64)                                                                                  \
    X(Pane, 65)                                                                                    \
    X(CodePage, 66)                                                                                \
    X(Pls, 77)                                                                                     \
    X(DefColWidth, 85)                                                                             \
    X(Obj, 93)                                                                                     \
    X(Uncalced, 94)                                                                                \
    X(CalcSaveRecalc, 95)                                                                          \
    X(WriteAccess, 92)                                                                             \
    X(Template, 96)                                                                                \
    X(ObjProtect, 99)                                                                              \
    X(ColInfo, 125)                                                                                \
    X(Guts, 128)                                                                                   \
    X(WsBool, 129)                                                                                 \
    X(GridSet, 130)                                                                                \
    X(HCenter, 131)                                                                                \
    X(VCenter, 132)                                                                                \
    X(BoundSheet8, 133)                                                                            \
    X(Country, 140)                                                                                \
    X(HideObj, 141)                                                                                \
    X(Palette, 146)                                                                                \
    X(BuiltInFnGroupCount, 156)                                                                    \
    X(Scl, 160)                                                                                    \
    X(Setup, 161)                                                                                  \
    X(MulRk, 189)                                                                                  \
    X(MulBlank, 190)                                                                               \
    X(Mms, 193)                                                                                    \
    X(ObProj, 211)                                                                                 \
    X(DBCell, 215)                                                                                 \
    X(BookBool, 218)                                                                               \
    X(ScenarioProtect, 221)                                                                        \
    X(XF, 224)                                                                                     \
    X(InterfaceHdr, 225)                                                                           \
    X(InterfaceEnd, 226)                                                                           \
    X(MergeCells, 229)                                                                             \
    X(MsoDrawingGroup, 235)                                                                        \
    X(MsoDrawing, 236)                                                                             \
    X(PhoneticInfo, 239)                                                                           \
    X(SST, 252)                                                                                    \
    X(LabelSst, 253)                                                                               \
    X(ExtSST, 255)                                                                                 \
    X(RRTabId, 317)                                                                                \
    X(UsesELFs, 352)                                                                               \
    X(DSF, 353)                                                                                    \
    X(SupBook, 430)                                                                                \
    X(Prot4Rev, 431)                                                                               \
    X(TxO, 438)                                                                                    \
    X(RefreshAll, 439)                                                                             \
    X(Prot4RevPass, 444)                                                                           \
    X(Excel9File, 448)                                                                             \
    X(RecalcId, 449)                                                                               \
    X(Dimensions, 512)                                                                             \
    X(Blank, 513)                                                                                  \
    X(Number, 515)                                                                                 \
    X(Label, 516)                                                                                  \
    X(BoolErr, 517)                                                                                \
    X(String, 519)                                                                                 \
    X(Row, 520)                                                                                    \
    X(Index, 523)                                                                                  \
    X(Array, 545)                                                                                  \
    X(DefaultRowHeight, 549)                                                                       \
    X(Table, 566)                                                                                  \
    X(Window2, 574)                                                                                \
    X(RK, 638)                                                                                     \
    X(Style, 659)                                                                                  \
    X(Format, 1054)                                                                                \
    X(ShrFmla, 1212)                                                                               \
    X(BOF, 2057)                                                                                   \
    X(BookExt, 2147)                                                                               \
    X(HFPicture, 2150)                                                                             \
    X(XFExt, 2173)                                                                                 \
    X(StyleExt, 2194)                                                                              \
    X(Theme, 2198)

// rid::Formula, rid::Eof ...: one constant a record.
namespace rid {
#define TABRIX_RECORD_ID_CONSTANT(name, id) constexpr uint16_t name = id;
TABRIX_RECORD_IDS(TABRIX_RECORD_ID_CONSTANT)
#undef TABRIX_RECORD_ID_CONSTANT
} // namespace rid

// The record's name, or null for an id this library does not name.
const char *recordName(uint16_t id);

} // namespace tabrix

#endif
