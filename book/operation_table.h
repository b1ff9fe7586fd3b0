// The operations of a book and of a sheet, one row each: result type, name,
// parameter list, argument list, and the neutral result a failed call
// answers (empty for operations without a result).  The failure frame, the
// placeholder bases and the Open XML proxy are generated from these rows, so
// a back end writes only the work of an operation; `override` checks every
// generated method against the interfaces.  `C` is the character type of the
// class the rows expand in.
//
// Not in the tables: errorMessage and release, which each class writes
// itself because they are outside the frame.
#ifndef TABRIX_OPERATION_TABLE_H
#define TABRIX_OPERATION_TABLE_H

// Removes one pair of parentheses: TABRIX_UNPAREN (a, b) is a, b.
#define TABRIX_UNPAREN(...) __VA_ARGS__

// X(result, name, (parameters), (arguments), (neutral)).  L marks the load
// from a file, which the Open XML proxy writes itself (it tries both forms).
#define TABRIX_BOOK_OPERATIONS(X, L)                                                               \
    L(bool, load, (const C *filename), (filename), (false))                                        \
    X(bool, save, (const C *filename), (filename), (false))                                        \
    X(bool, loadRaw, (const char *data, unsigned size), (data, size), (false))                     \
    X(bool, saveRaw, (const char **data, unsigned *size), (data, size), (false))                   \
    X(ISheetT<C> *, addSheet, (const C *name, ISheetT<C> *initSheet), (name, initSheet),           \
      (nullptr))                                                                                   \
    X(ISheetT<C> *, insertSheet, (int index, const C *name, ISheetT<C> *initSheet),                \
      (index, name, initSheet), (nullptr))                                                         \
    X(ISheetT<C> *, getSheet, (int index), (index), (nullptr))                                     \
    X(SheetType, sheetType, (int index), (index), (SHEETTYPE_UNKNOWN))                             \
    X(bool, delSheet, (int index), (index), (false))                                               \
    X(int, sheetCount, (), (), (0))                                                                \
    X(IFormatT<C> *, addFormat, (IFormatT<C> * initFormat), (initFormat), (nullptr))               \
    X(IFontT<C> *, addFont, (IFontT<C> * initFont), (initFont), (nullptr))                         \
    X(int, addCustomNumFormat, (const C *customNumFormat), (customNumFormat), (0))                 \
    X(const C *, customNumFormat, (int fmt), (fmt), (nullptr))                                     \
    X(IFormatT<C> *, format, (int index), (index), (nullptr))                                      \
    X(int, formatSize, (), (), (0))                                                                \
    X(IFontT<C> *, font, (int index), (index), (nullptr))                                          \
    X(int, fontSize, (), (), (0))                                                                  \
    X(double, datePack, (int year, int month, int day, int hour, int min, int sec, int msec),      \
      (year, month, day, hour, min, sec, msec), (0.0))                                             \
    X(bool, dateUnpack,                                                                            \
      (double value, int *year, int *month, int *day, int *hour, int *min, int *sec, int *msec),   \
      (value, year, month, day, hour, min, sec, msec), (false))                                    \
    X(Color, colorPack, (int red, int green, int blue), (red, green, blue), (COLOR_NONE))          \
    X(void, colorUnpack, (Color color, int *red, int *green, int *blue),                           \
      (color, red, green, blue), ())                                                               \
    X(int, activeSheet, (), (), (0))                                                               \
    X(void, setActiveSheet, (int index), (index), ())                                              \
    X(int, pictureSize, (), (), (0))                                                               \
    X(int, getPicture, (int index, const char **data, unsigned *size), (index, data, size), (0))   \
    X(int, addPicture, (const C *filename), (filename), (-1))                                      \
    X(int, addPicture2, (const char *data, unsigned size), (data, size), (-1))                     \
    X(const C *, defaultFont, (int *fontSize), (fontSize), (nullptr))                              \
    X(void, setDefaultFont, (const C *fontName, int fontSize), (fontName, fontSize), ())           \
    X(bool, refR1C1, (), (), (false))                                                              \
    X(void, setRefR1C1, (bool refR1C1), (refR1C1), ())                                             \
    X(bool, rgbMode, (), (), (false))                                                              \
    X(void, setRgbMode, (bool rgbMode), (rgbMode), ())                                             \
    X(int, version, (), (), (0))                                                                   \
    X(int, biffVersion, (), (), (0))                                                               \
    X(bool, isDate1904, (), (), (false))                                                           \
    X(void, setDate1904, (bool date1904), (date1904), ())                                          \
    X(bool, isTemplate, (), (), (false))                                                           \
    X(void, setTemplate, (bool tmpl), (tmpl), ())                                                  \
    X(bool, setLocale, (const char *locale), (locale), (false))

#define TABRIX_SHEET_OPERATIONS(X)                                                                 \
    X(CellType, cellType, (int row, int col), (row, col), (CELLTYPE_EMPTY))                        \
    X(bool, isFormula, (int row, int col), (row, col), (false))                                    \
    X(IFormatT<C> *, cellFormat, (int row, int col), (row, col), (nullptr))                        \
    X(void, setCellFormat, (int row, int col, IFormatT<C> *format), (row, col, format), ())        \
    X(const C *, readStr, (int row, int col, IFormatT<C> **format), (row, col, format), (nullptr)) \
    X(bool, writeStr, (int row, int col, const C *value, IFormatT<C> *format),                     \
      (row, col, value, format), (false))                                                          \
    X(double, readNum, (int row, int col, IFormatT<C> **format), (row, col, format), (0.0))        \
    X(bool, writeNum, (int row, int col, double value, IFormatT<C> *format),                       \
      (row, col, value, format), (false))                                                          \
    X(bool, readBool, (int row, int col, IFormatT<C> **format), (row, col, format), (false))       \
    X(bool, writeBool, (int row, int col, bool value, IFormatT<C> *format),                        \
      (row, col, value, format), (false))                                                          \
    X(bool, readBlank, (int row, int col, IFormatT<C> **format), (row, col, format), (false))      \
    X(bool, writeBlank, (int row, int col, IFormatT<C> *format), (row, col, format), (false))      \
    X(const C *, readFormula, (int row, int col, IFormatT<C> **format), (row, col, format),        \
      (nullptr))                                                                                   \
    X(bool, writeFormula, (int row, int col, const C *expr, IFormatT<C> *format),                  \
      (row, col, expr, format), (false))                                                           \
    X(const C *, readComment, (int row, int col), (row, col), (nullptr))                           \
    X(void, writeComment,                                                                          \
      (int row, int col, const C *value, const C *author, int width, int height),                  \
      (row, col, value, author, width, height), ())                                                \
    X(bool, isDate, (int row, int col), (row, col), (false))                                       \
    X(ErrorCode, readError, (int row, int col), (row, col), (ERRORTYPE_NOERROR))                   \
    X(double, colWidth, (int col), (col), (0.0))                                                   \
    X(double, rowHeight, (int row), (row), (0.0))                                                  \
    X(bool, setCol, (int colFirst, int colLast, double width, IFormatT<C> *format, bool hidden),   \
      (colFirst, colLast, width, format, hidden), (false))                                         \
    X(bool, setRow, (int row, double height, IFormatT<C> *format, bool hidden),                    \
      (row, height, format, hidden), (false))                                                      \
    X(bool, rowHidden, (int row), (row), (false))                                                  \
    X(bool, setRowHidden, (int row, bool hidden), (row, hidden), (false))                          \
    X(bool, colHidden, (int col), (col), (false))                                                  \
    X(bool, setColHidden, (int col, bool hidden), (col, hidden), (false))                          \
    X(bool, getMerge,                                                                              \
      (int row, int col, int *rowFirst, int *rowLast, int *colFirst, int *colLast),                \
      (row, col, rowFirst, rowLast, colFirst, colLast), (false))                                   \
    X(bool, setMerge, (int rowFirst, int rowLast, int colFirst, int colLast),                      \
      (rowFirst, rowLast, colFirst, colLast), (false))                                             \
    X(bool, delMerge, (int row, int col), (row, col), (false))                                     \
    X(int, pictureSize, (), (), (0))                                                               \
    X(int, getPicture,                                                                             \
      (int index, int *rowTop, int *colLeft, int *rowBottom, int *colRight, int *width,            \
       int *height, int *offsetX, int *offsetY),                                                   \
      (index, rowTop, colLeft, rowBottom, colRight, width, height, offsetX, offsetY), (0))         \
    X(void, setPicture, (int row, int col, int pictureId, double scale, int offsetX, int offsetY), \
      (row, col, pictureId, scale, offsetX, offsetY), ())                                          \
    X(void, setPicture2,                                                                           \
      (int row, int col, int pictureId, int width, int height, int offsetX, int offsetY),          \
      (row, col, pictureId, width, height, offsetX, offsetY), ())                                  \
    X(int, getHorPageBreak, (int index), (index), (0))                                             \
    X(int, getHorPageBreakSize, (), (), (0))                                                       \
    X(int, getVerPageBreak, (int index), (index), (0))                                             \
    X(int, getVerPageBreakSize, (), (), (0))                                                       \
    X(bool, setHorPageBreak, (int row, bool pageBreak), (row, pageBreak), (false))                 \
    X(bool, setVerPageBreak, (int col, bool pageBreak), (col, pageBreak), (false))                 \
    X(void, split, (int row, int col), (row, col), ())                                             \
    X(bool, groupRows, (int rowFirst, int rowLast, bool collapsed),                                \
      (rowFirst, rowLast, collapsed), (false))                                                     \
    X(bool, groupCols, (int colFirst, int colLast, bool collapsed),                                \
      (colFirst, colLast, collapsed), (false))                                                     \
    X(bool, groupSummaryBelow, (), (), (false))                                                    \
    X(void, setGroupSummaryBelow, (bool below), (below), ())                                       \
    X(bool, groupSummaryRight, (), (), (false))                                                    \
    X(void, setGroupSummaryRight, (bool right), (right), ())                                       \
    X(bool, clear, (int rowFirst, int rowLast, int colFirst, int colLast),                         \
      (rowFirst, rowLast, colFirst, colLast), (false))                                             \
    X(bool, insertCol, (int colFirst, int colLast), (colFirst, colLast), (false))                  \
    X(bool, insertRow, (int rowFirst, int rowLast), (rowFirst, rowLast), (false))                  \
    X(bool, removeCol, (int colFirst, int colLast), (colFirst, colLast), (false))                  \
    X(bool, removeRow, (int rowFirst, int rowLast), (rowFirst, rowLast), (false))                  \
    X(bool, copyCell, (int rowSrc, int colSrc, int rowDst, int colDst),                            \
      (rowSrc, colSrc, rowDst, colDst), (false))                                                   \
    X(int, firstRow, (), (), (-1))                                                                 \
    X(int, lastRow, (), (), (-1))                                                                  \
    X(int, firstCol, (), (), (-1))                                                                 \
    X(int, lastCol, (), (), (-1))                                                                  \
    X(bool, displayGridlines, (), (), (false))                                                     \
    X(void, setDisplayGridlines, (bool show), (show), ())                                          \
    X(bool, printGridlines, (), (), (false))                                                       \
    X(void, setPrintGridlines, (bool print), (print), ())                                          \
    X(int, zoom, (), (), (0))                                                                      \
    X(void, setZoom, (int zoom), (zoom), ())                                                       \
    X(int, printZoom, (), (), (0))                                                                 \
    X(void, setPrintZoom, (int zoom), (zoom), ())                                                  \
    X(bool, getPrintFit, (int *wPages, int *hPages), (wPages, hPages), (false))                    \
    X(void, setPrintFit, (int wPages, int hPages), (wPages, hPages), ())                           \
    X(bool, landscape, (), (), (false))                                                            \
    X(void, setLandscape, (bool landscape), (landscape), ())                                       \
    X(Paper, paper, (), (), (PAPER_DEFAULT))                                                       \
    X(void, setPaper, (Paper paper), (paper), ())                                                  \
    X(const C *, header, (), (), (nullptr))                                                        \
    X(bool, setHeader, (const C *header, double margin), (header, margin), (false))                \
    X(double, headerMargin, (), (), (0.0))                                                         \
    X(const C *, footer, (), (), (nullptr))                                                        \
    X(bool, setFooter, (const C *footer, double margin), (footer, margin), (false))                \
    X(double, footerMargin, (), (), (0.0))                                                         \
    X(bool, hCenter, (), (), (false))                                                              \
    X(void, setHCenter, (bool center), (center), ())                                               \
    X(bool, vCenter, (), (), (false))                                                              \
    X(void, setVCenter, (bool center), (center), ())                                               \
    X(double, marginLeft, (), (), (0.0))                                                           \
    X(void, setMarginLeft, (double margin), (margin), ())                                          \
    X(double, marginRight, (), (), (0.0))                                                          \
    X(void, setMarginRight, (double margin), (margin), ())                                         \
    X(double, marginTop, (), (), (0.0))                                                            \
    X(void, setMarginTop, (double margin), (margin), ())                                           \
    X(double, marginBottom, (), (), (0.0))                                                         \
    X(void, setMarginBottom, (double margin), (margin), ())                                        \
    X(bool, printRowCol, (), (), (false))                                                          \
    X(void, setPrintRowCol, (bool print), (print), ())                                             \
    X(void, setPrintRepeatRows, (int rowFirst, int rowLast), (rowFirst, rowLast), ())              \
    X(void, setPrintRepeatCols, (int colFirst, int colLast), (colFirst, colLast), ())              \
    X(void, setPrintArea, (int rowFirst, int rowLast, int colFirst, int colLast),                  \
      (rowFirst, rowLast, colFirst, colLast), ())                                                  \
    X(void, clearPrintRepeats, (), (), ())                                                         \
    X(void, clearPrintArea, (), (), ())                                                            \
    X(bool, getNamedRange,                                                                         \
      (const C *name, int *rowFirst, int *rowLast, int *colFirst, int *colLast, int scopeId,       \
       bool *hidden),                                                                              \
      (name, rowFirst, rowLast, colFirst, colLast, scopeId, hidden), (false))                      \
    X(bool, setNamedRange,                                                                         \
      (const C *name, int rowFirst, int rowLast, int colFirst, int colLast, int scopeId),          \
      (name, rowFirst, rowLast, colFirst, colLast, scopeId), (false))                              \
    X(bool, delNamedRange, (const C *name, int scopeId), (name, scopeId), (false))                 \
    X(int, namedRangeSize, (), (), (0))                                                            \
    X(const C *, namedRange,                                                                       \
      (int index, int *rowFirst, int *rowLast, int *colFirst, int *colLast, int *scopeId,          \
       bool *hidden),                                                                              \
      (index, rowFirst, rowLast, colFirst, colLast, scopeId, hidden), (nullptr))                   \
    X(const C *, name, (), (), (nullptr))                                                          \
    X(void, setName, (const C *name), (name), ())                                                  \
    X(bool, protect, (), (), (false))                                                              \
    X(void, setProtect, (bool protect), (protect), ())                                             \
    X(SheetState, hidden, (), (), (SHEETSTATE_VISIBLE))                                            \
    X(bool, setHidden, (SheetState state), (state), (false))                                       \
    X(void, getTopLeftView, (int *row, int *col), (row, col), ())                                  \
    X(void, setTopLeftView, (int row, int col), (row, col), ())                                    \
    X(bool, rightToLeft, (), (), (false))                                                          \
    X(void, setRightToLeft, (bool rightToLeft), (rightToLeft), ())                                 \
    X(void, addrToRowCol,                                                                          \
      (const C *addr, int *row, int *col, bool *rowRelative, bool *colRelative),                   \
      (addr, row, col, rowRelative, colRelative), ())                                              \
    X(const C *, rowColToAddr, (int row, int col, bool rowRelative, bool colRelative),             \
      (row, col, rowRelative, colRelative), (nullptr))

#endif
