/* The flat entry points of the tabrix library, usable from C and C++.
 *
 * Handles are the interface pointers, passed as void*.  A bool is an int
 * (any non-zero value is true, results are 0 or 1), an enumeration an int.
 * Texts are zero-terminated and, when returned, stay owned by the book (or
 * the sheet) until the next call that returns a text.  A book ends only with
 * tbBookReleaseA.
 *
 * Each entry point is one row of the tables below: result type, name
 * (tbBook<Name>A / tbSheet<Name>A), the operation of the interface it
 * reaches, the C parameter list and the argument list handed on.
 */
#ifndef TABRIX_H
#define TABRIX_H

#ifdef __cplusplus
extern "C" {
#endif

/* The entry points stay visible even when the library is built with hidden
 * default visibility. */
#if defined(__GNUC__)
#define TABRIX_API __attribute__((visibility("default")))
#else
#define TABRIX_API
#endif

typedef void *TBBook;
typedef void *TBSheet;
typedef void *TBFormat;
typedef void *TBFont;

#define TB_BOOK_ENTRIES(X)                                                                         \
    X(int, Load, load, (TBBook b, const char *filename), (b, filename))                            \
    X(int, Save, save, (TBBook b, const char *filename), (b, filename))                            \
    X(int, LoadRaw, loadRaw, (TBBook b, const char *data, unsigned size), (b, data, size))         \
    X(int, SaveRaw, saveRaw, (TBBook b, const char **data, unsigned *size), (b, data, size))       \
    X(TBSheet, AddSheet, addSheet, (TBBook b, const char *name, TBSheet initSheet),                \
      (b, name, initSheet))                                                                        \
    X(TBSheet, InsertSheet, insertSheet,                                                           \
      (TBBook b, int index, const char *name, TBSheet initSheet), (b, index, name, initSheet))     \
    X(TBSheet, GetSheet, getSheet, (TBBook b, int index), (b, index))                              \
    X(int, SheetType, sheetType, (TBBook b, int index), (b, index))                                \
    X(int, DelSheet, delSheet, (TBBook b, int index), (b, index))                                  \
    X(int, SheetCount, sheetCount, (TBBook b), (b))                                                \
    X(TBFormat, AddFormat, addFormat, (TBBook b, TBFormat initFormat), (b, initFormat))            \
    X(TBFont, AddFont, addFont, (TBBook b, TBFont initFont), (b, initFont))                        \
    X(int, AddCustomNumFormat, addCustomNumFormat, (TBBook b, const char *customNumFormat),        \
      (b, customNumFormat))                                                                        \
    X(const char *, CustomNumFormat, customNumFormat, (TBBook b, int fmt), (b, fmt))               \
    X(TBFormat, Format, format, (TBBook b, int index), (b, index))                                 \
    X(int, FormatSize, formatSize, (TBBook b), (b))                                                \
    X(TBFont, Font, font, (TBBook b, int index), (b, index))                                       \
    X(int, FontSize, fontSize, (TBBook b), (b))                                                    \
    X(double, DatePack, datePack,                                                                  \
      (TBBook b, int year, int month, int day, int hour, int min, int sec, int msec),              \
      (b, year, month, day, hour, min, sec, msec))                                                 \
    X(int, DateUnpack, dateUnpack,                                                                 \
      (TBBook b, double value, int *year, int *month, int *day, int *hour, int *min, int *sec,     \
       int *msec),                                                                                 \
      (b, value, year, month, day, hour, min, sec, msec))                                          \
    X(int, ColorPack, colorPack, (TBBook b, int red, int green, int blue), (b, red, green, blue))  \
    X(void, ColorUnpack, colorUnpack, (TBBook b, int color, int *red, int *green, int *blue),      \
      (b, color, red, green, blue))                                                                \
    X(int, ActiveSheet, activeSheet, (TBBook b), (b))                                              \
    X(void, SetActiveSheet, setActiveSheet, (TBBook b, int index), (b, index))                     \
    X(int, PictureSize, pictureSize, (TBBook b), (b))                                              \
    X(int, GetPicture, getPicture, (TBBook b, int index, const char **data, unsigned *size),       \
      (b, index, data, size))                                                                      \
    X(int, AddPicture, addPicture, (TBBook b, const char *filename), (b, filename))                \
    X(int, AddPicture2, addPicture2, (TBBook b, const char *data, unsigned size), (b, data, size)) \
    X(const char *, DefaultFont, defaultFont, (TBBook b, int *fontSize), (b, fontSize))            \
    X(void, SetDefaultFont, setDefaultFont, (TBBook b, const char *fontName, int fontSize),        \
      (b, fontName, fontSize))                                                                     \
    X(int, RefR1C1, refR1C1, (TBBook b), (b))                                                      \
    X(void, SetRefR1C1, setRefR1C1, (TBBook b, int refR1C1), (b, refR1C1))                         \
    X(int, RgbMode, rgbMode, (TBBook b), (b))                                                      \
    X(void, SetRgbMode, setRgbMode, (TBBook b, int rgbMode), (b, rgbMode))                         \
    X(int, Version, version, (TBBook b), (b))                                                      \
    X(int, BiffVersion, biffVersion, (TBBook b), (b))                                              \
    X(int, IsDate1904, isDate1904, (TBBook b), (b))                                                \
    X(void, SetDate1904, setDate1904, (TBBook b, int date1904), (b, date1904))                     \
    X(int, IsTemplate, isTemplate, (TBBook b), (b))                                                \
    X(void, SetTemplate, setTemplate, (TBBook b, int tmpl), (b, tmpl))                             \
    X(int, SetLocale, setLocale, (TBBook b, const char *locale), (b, locale))                      \
    X(const char *, ErrorMessage, errorMessage, (TBBook b), (b))                                   \
    X(void, Release, release, (TBBook b), (b))

/* The sheet operations, except tbSheetAddrToRowColA and tbSheetRowColToAddrA,
 * which convert their flags differently and are declared below. */
#define TB_SHEET_ENTRIES(X)                                                                        \
    X(int, CellType, cellType, (TBSheet s, int row, int col), (s, row, col))                       \
    X(int, IsFormula, isFormula, (TBSheet s, int row, int col), (s, row, col))                     \
    X(TBFormat, CellFormat, cellFormat, (TBSheet s, int row, int col), (s, row, col))              \
    X(void, SetCellFormat, setCellFormat, (TBSheet s, int row, int col, TBFormat format),          \
      (s, row, col, format))                                                                       \
    X(const char *, ReadStr, readStr, (TBSheet s, int row, int col, TBFormat *format),             \
      (s, row, col, format))                                                                       \
    X(int, WriteStr, writeStr, (TBSheet s, int row, int col, const char *value, TBFormat format),  \
      (s, row, col, value, format))                                                                \
    X(double, ReadNum, readNum, (TBSheet s, int row, int col, TBFormat *format),                   \
      (s, row, col, format))                                                                       \
    X(int, WriteNum, writeNum, (TBSheet s, int row, int col, double value, TBFormat format),       \
      (s, row, col, value, format))                                                                \
    X(int, ReadBool, readBool, (TBSheet s, int row, int col, TBFormat *format),                    \
      (s, row, col, format))                                                                       \
    X(int, WriteBool, writeBool, (TBSheet s, int row, int col, int value, TBFormat format),        \
      (s, row, col, value, format))                                                                \
    X(int, ReadBlank, readBlank, (TBSheet s, int row, int col, TBFormat *format),                  \
      (s, row, col, format))                                                                       \
    X(int, WriteBlank, writeBlank, (TBSheet s, int row, int col, TBFormat format),                 \
      (s, row, col, format))                                                                       \
    X(const char *, ReadFormula, readFormula, (TBSheet s, int row, int col, TBFormat *format),     \
      (s, row, col, format))                                                                       \
    X(int, WriteFormula, writeFormula,                                                             \
      (TBSheet s, int row, int col, const char *expr, TBFormat format),                            \
      (s, row, col, expr, format))                                                                 \
    X(const char *, ReadComment, readComment, (TBSheet s, int row, int col), (s, row, col))        \
    X(void, WriteComment, writeComment,                                                            \
      (TBSheet s, int row, int col, const char *value, const char *author, int width, int height), \
      (s, row, col, value, author, width, height))                                                 \
    X(int, IsDate, isDate, (TBSheet s, int row, int col), (s, row, col))                           \
    X(int, ReadError, readError, (TBSheet s, int row, int col), (s, row, col))                     \
    X(double, ColWidth, colWidth, (TBSheet s, int col), (s, col))                                  \
    X(double, RowHeight, rowHeight, (TBSheet s, int row), (s, row))                                \
    X(int, SetCol, setCol,                                                                         \
      (TBSheet s, int colFirst, int colLast, double width, TBFormat format, int hidden),           \
      (s, colFirst, colLast, width, format, hidden))                                               \
    X(int, SetRow, setRow, (TBSheet s, int row, double height, TBFormat format, int hidden),       \
      (s, row, height, format, hidden))                                                            \
    X(int, RowHidden, rowHidden, (TBSheet s, int row), (s, row))                                   \
    X(int, SetRowHidden, setRowHidden, (TBSheet s, int row, int hidden), (s, row, hidden))         \
    X(int, ColHidden, colHidden, (TBSheet s, int col), (s, col))                                   \
    X(int, SetColHidden, setColHidden, (TBSheet s, int col, int hidden), (s, col, hidden))         \
    X(int, GetMerge, getMerge,                                                                     \
      (TBSheet s, int row, int col, int *rowFirst, int *rowLast, int *colFirst, int *colLast),     \
      (s, row, col, rowFirst, rowLast, colFirst, colLast))                                         \
    X(int, SetMerge, setMerge, (TBSheet s, int rowFirst, int rowLast, int colFirst, int colLast),  \
      (s, rowFirst, rowLast, colFirst, colLast))                                                   \
    X(int, DelMerge, delMerge, (TBSheet s, int row, int col), (s, row, col))                       \
    X(int, PictureSize, pictureSize, (TBSheet s), (s))                                             \
    X(int, GetPicture, getPicture,                                                                 \
      (TBSheet s, int index, int *rowTop, int *colLeft, int *rowBottom, int *colRight, int *width, \
       int *height, int *offsetX, int *offsetY),                                                   \
      (s, index, rowTop, colLeft, rowBottom, colRight, width, height, offsetX, offsetY))           \
    X(void, SetPicture, setPicture,                                                                \
      (TBSheet s, int row, int col, int pictureId, double scale, int offsetX, int offsetY),        \
      (s, row, col, pictureId, scale, offsetX, offsetY))                                           \
    X(void, SetPicture2, setPicture2,                                                              \
      (TBSheet s, int row, int col, int pictureId, int width, int height, int offsetX,             \
       int offsetY),                                                                               \
      (s, row, col, pictureId, width, height, offsetX, offsetY))                                   \
    X(int, GetHorPageBreak, getHorPageBreak, (TBSheet s, int index), (s, index))                   \
    X(int, GetHorPageBreakSize, getHorPageBreakSize, (TBSheet s), (s))                             \
    X(int, GetVerPageBreak, getVerPageBreak, (TBSheet s, int index), (s, index))                   \
    X(int, GetVerPageBreakSize, getVerPageBreakSize, (TBSheet s), (s))                             \
    X(int, SetHorPageBreak, setHorPageBreak, (TBSheet s, int row, int pageBreak),                  \
      (s, row, pageBreak))                                                                         \
    X(int, SetVerPageBreak, setVerPageBreak, (TBSheet s, int col, int pageBreak),                  \
      (s, col, pageBreak))                                                                         \
    X(void, Split, split, (TBSheet s, int row, int col), (s, row, col))                            \
    X(int, GroupRows, groupRows, (TBSheet s, int rowFirst, int rowLast, int collapsed),            \
      (s, rowFirst, rowLast, collapsed))                                                           \
    X(int, GroupCols, groupCols, (TBSheet s, int colFirst, int colLast, int collapsed),            \
      (s, colFirst, colLast, collapsed))                                                           \
    X(int, GroupSummaryBelow, groupSummaryBelow, (TBSheet s), (s))                                 \
    X(void, SetGroupSummaryBelow, setGroupSummaryBelow, (TBSheet s, int below), (s, below))        \
    X(int, GroupSummaryRight, groupSummaryRight, (TBSheet s), (s))                                 \
    X(void, SetGroupSummaryRight, setGroupSummaryRight, (TBSheet s, int right), (s, right))        \
    X(int, Clear, clear, (TBSheet s, int rowFirst, int rowLast, int colFirst, int colLast),        \
      (s, rowFirst, rowLast, colFirst, colLast))                                                   \
    X(int, InsertCol, insertCol, (TBSheet s, int colFirst, int colLast), (s, colFirst, colLast))   \
    X(int, InsertRow, insertRow, (TBSheet s, int rowFirst, int rowLast), (s, rowFirst, rowLast))   \
    X(int, RemoveCol, removeCol, (TBSheet s, int colFirst, int colLast), (s, colFirst, colLast))   \
    X(int, RemoveRow, removeRow, (TBSheet s, int rowFirst, int rowLast), (s, rowFirst, rowLast))   \
    X(int, CopyCell, copyCell, (TBSheet s, int rowSrc, int colSrc, int rowDst, int colDst),        \
      (s, rowSrc, colSrc, rowDst, colDst))                                                         \
    X(int, FirstRow, firstRow, (TBSheet s), (s))                                                   \
    X(int, LastRow, lastRow, (TBSheet s), (s))                                                     \
    X(int, FirstCol, firstCol, (TBSheet s), (s))                                                   \
    X(int, LastCol, lastCol, (TBSheet s), (s))                                                     \
    X(int, DisplayGridlines, displayGridlines, (TBSheet s), (s))                                   \
    X(void, SetDisplayGridlines, setDisplayGridlines, (TBSheet s, int show), (s, show))            \
    X(int, PrintGridlines, printGridlines, (TBSheet s), (s))                                       \
    X(void, SetPrintGridlines, setPrintGridlines, (TBSheet s, int print), (s, print))              \
    X(int, Zoom, zoom, (TBSheet s), (s))                                                           \
    X(void, SetZoom, setZoom, (TBSheet s, int zoom), (s, zoom))                                    \
    X(int, PrintZoom, printZoom, (TBSheet s), (s))                                                 \
    X(void, SetPrintZoom, setPrintZoom, (TBSheet s, int zoom), (s, zoom))                          \
    X(int, GetPrintFit, getPrintFit, (TBSheet s, int *wPages, int *hPages), (s, wPages, hPages))   \
    X(void, SetPrintFit, setPrintFit, (TBSheet s, int wPages, int hPages), (s, wPages, hPages))    \
    X(int, Landscape, landscape, (TBSheet s), (s))                                                 \
    X(void, SetLandscape, setLandscape, (TBSheet s, int landscape), (s, landscape))                \
    X(int, Paper, paper, (TBSheet s), (s))                                                         \
    X(void, SetPaper, setPaper, (TBSheet s, int paper), (s, paper))                                \
    X(const char *, Header, header, (TBSheet s), (s))                                              \
    X(int, SetHeader, setHeader, (TBSheet s, const char *header, double margin),                   \
      (s, header, margin))                                                                         \
    X(double, HeaderMargin, headerMargin, (TBSheet s), (s))                                        \
    X(const char *, Footer, footer, (TBSheet s), (s))                                              \
    X(int, SetFooter, setFooter, (TBSheet s, const char *footer, double margin),                   \
      (s, footer, margin))                                                                         \
    X(double, FooterMargin, footerMargin, (TBSheet s), (s))                                        \
    X(int, HCenter, hCenter, (TBSheet s), (s))                                                     \
    X(void, SetHCenter, setHCenter, (TBSheet s, int center), (s, center))                          \
    X(int, VCenter, vCenter, (TBSheet s), (s))                                                     \
    X(void, SetVCenter, setVCenter, (TBSheet s, int center), (s, center))                          \
    X(double, MarginLeft, marginLeft, (TBSheet s), (s))                                            \
    X(void, SetMarginLeft, setMarginLeft, (TBSheet s, double margin), (s, margin))                 \
    X(double, MarginRight, marginRight, (TBSheet s), (s))                                          \
    X(void, SetMarginRight, setMarginRight, (TBSheet s, double margin), (s, margin))               \
    X(double, MarginTop, marginTop, (TBSheet s), (s))                                              \
    X(void, SetMarginTop, setMarginTop, (TBSheet s, double margin), (s, margin))                   \
    X(double, MarginBottom, marginBottom, (TBSheet s), (s))                                        \
    X(void, SetMarginBottom, setMarginBottom, (TBSheet s, double margin), (s, margin))             \
    X(int, PrintRowCol, printRowCol, (TBSheet s), (s))                                             \
    X(void, SetPrintRowCol, setPrintRowCol, (TBSheet s, int print), (s, print))                    \
    X(void, SetPrintRepeatRows, setPrintRepeatRows, (TBSheet s, int rowFirst, int rowLast),        \
      (s, rowFirst, rowLast))                                                                      \
    X(void, SetPrintRepeatCols, setPrintRepeatCols, (TBSheet s, int colFirst, int colLast),        \
      (s, colFirst, colLast))                                                                      \
    X(void, SetPrintArea, setPrintArea,                                                            \
      (TBSheet s, int rowFirst, int rowLast, int colFirst, int colLast),                           \
      (s, rowFirst, rowLast, colFirst, colLast))                                                   \
    X(void, ClearPrintRepeats, clearPrintRepeats, (TBSheet s), (s))                                \
    X(void, ClearPrintArea, clearPrintArea, (TBSheet s), (s))                                      \
    X(int, GetNamedRange, getNamedRange,                                                           \
      (TBSheet s, const char *name, int *rowFirst, int *rowLast, int *colFirst, int *colLast,      \
       int scopeId, int *hidden),                                                                  \
      (s, name, rowFirst, rowLast, colFirst, colLast, scopeId, hidden))                            \
    X(int, SetNamedRange, setNamedRange,                                                           \
      (TBSheet s, const char *name, int rowFirst, int rowLast, int colFirst, int colLast,          \
       int scopeId),                                                                               \
      (s, name, rowFirst, rowLast, colFirst, colLast, scopeId))                                    \
    X(int, DelNamedRange, delNamedRange, (TBSheet s, const char *name, int scopeId),               \
      (s, name, scopeId))                                                                          \
    X(int, NamedRangeSize, namedRangeSize, (TBSheet s), (s))                                       \
    X(const char *, NamedRange, namedRange,                                                        \
      (TBSheet s, int index, int *rowFirst, int *rowLast, int *colFirst, int *colLast,             \
       int *scopeId, int *hidden),                                                                 \
      (s, index, rowFirst, rowLast, colFirst, colLast, scopeId, hidden))                           \
    X(const char *, Name, name, (TBSheet s), (s))                                                  \
    X(void, SetName, setName, (TBSheet s, const char *name), (s, name))                            \
    X(int, Protect, protect, (TBSheet s), (s))                                                     \
    X(void, SetProtect, setProtect, (TBSheet s, int protect), (s, protect))                        \
    X(int, Hidden, hidden, (TBSheet s), (s))                                                       \
    X(int, SetHidden, setHidden, (TBSheet s, int state), (s, state))                               \
    X(void, GetTopLeftView, getTopLeftView, (TBSheet s, int *row, int *col), (s, row, col))        \
    X(void, SetTopLeftView, setTopLeftView, (TBSheet s, int row, int col), (s, row, col))          \
    X(int, RightToLeft, rightToLeft, (TBSheet s), (s))                                             \
    X(void, SetRightToLeft, setRightToLeft, (TBSheet s, int rightToLeft), (s, rightToLeft))

#define TB_DECLARE_BOOK_ENTRY(ret, Name, op, params, args) TABRIX_API ret tbBook##Name##A params;
#define TB_DECLARE_SHEET_ENTRY(ret, Name, op, params, args) TABRIX_API ret tbSheet##Name##A params;

TB_BOOK_ENTRIES(TB_DECLARE_BOOK_ENTRY)
TB_SHEET_ENTRIES(TB_DECLARE_SHEET_ENTRY)

/* rowRelative and colRelative may be null; they receive 0 or 1. */
TABRIX_API void tbSheetAddrToRowColA(TBSheet s, const char *addr, int *row, int *col,
                                     int *rowRelative, int *colRelative);
/* Here a flag counts as true only when it is above 0. */
TABRIX_API const char *tbSheetRowColToAddrA(TBSheet s, int row, int col, int rowRelative,
                                            int colRelative);

/* Creation.  The A and W forms answer null on any failure; the CA forms let
 * a failure reach a C++ caller as an exception.  A W book has no flat
 * operations: it is driven through the wide C++ interface. */
TABRIX_API TBBook tbCreateBookA(void);
TABRIX_API TBBook tbCreateBookCA(void);
TABRIX_API void *tbCreateBookW(void);
TABRIX_API TBBook tbCreateXMLBookA(void);
TABRIX_API TBBook tbCreateXMLBookCA(void);
TABRIX_API void *tbCreateXMLBookW(void);

#ifdef __cplusplus
}
#endif

#endif
