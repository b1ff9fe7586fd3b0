// ISheetT: one sheet of a book.  Rows and columns are zero-based.  A text
// result stays owned by the sheet until its next text result.
#ifndef TABRIX_ISHEETT_H
#define TABRIX_ISHEETT_H

#include "tabrix/IFormatT.h"

namespace tabrix {

template <class C> class ISheetT {
public:
    // What the cell holds: empty, number, string, boolean, blank (a format only) or error.
    virtual CellType cellType(int row, int col) = 0;
    // Whether the cell holds a formula.
    virtual bool isFormula(int row, int col) = 0;
    // The cell's format; null for an empty cell.
    virtual IFormatT<C> *cellFormat(int row, int col) = 0;
    // Gives an existing cell another format of the same book.
    virtual void setCellFormat(int row, int col, IFormatT<C> *format) = 0;
    // The cell's text, or null when it holds none; *format (may be null) gets its format.
    virtual const C *readStr(int row, int col, IFormatT<C> **format) = 0;
    // Writes a text cell; format may be null for the default format.
    virtual bool writeStr(int row, int col, const C *value, IFormatT<C> *format) = 0;
    // The cell's number, or 0.0 when it holds none; *format (may be null) gets its format.
    virtual double readNum(int row, int col, IFormatT<C> **format) = 0;
    // Writes a number cell; format may be null for the default format.
    virtual bool writeNum(int row, int col, double value, IFormatT<C> *format) = 0;
    // The cell's boolean, or false when it holds none; *format gets its format.
    virtual bool readBool(int row, int col, IFormatT<C> **format) = 0;
    // Writes a boolean cell; format may be null for the default format.
    virtual bool writeBool(int row, int col, bool value, IFormatT<C> *format) = 0;
    // True when the cell is blank (a format only); *format gets that format.
    virtual bool readBlank(int row, int col, IFormatT<C> **format) = 0;
    // Writes a blank cell: a format without a value.
    virtual bool writeBlank(int row, int col, IFormatT<C> *format) = 0;
    // The cell's formula without the leading "=", or null when it holds none.
    virtual const C *readFormula(int row, int col, IFormatT<C> **format) = 0;
    // Writes a formula cell, "SUM(A1:A3)" without "="; false when it cannot be parsed.
    virtual bool writeFormula(int row, int col, const C *expr, IFormatT<C> *format) = 0;
    // The text of the comment on the cell, or null when it has none.
    virtual const C *readComment(int row, int col) = 0;
    // Puts a comment on the cell with its author and box size in pixels.
    virtual void writeComment(int row, int col, const C *value, const C *author, int width,
                              int height) = 0;
    // Whether the cell holds a number with a date or time format.
    virtual bool isDate(int row, int col) = 0;
    // The error code the cell stores, or ERRORTYPE_NOERROR when it holds no error.
    virtual ErrorCode readError(int row, int col) = 0;
    // The column's width in characters of the default font's digit width.
    virtual double colWidth(int col) = 0;
    // The row's height in points.
    virtual double rowHeight(int row) = 0;
    // Width in characters, format (may be null) and hidden state of columns colFirst to colLast.
    virtual bool setCol(int colFirst, int colLast, double width, IFormatT<C> *format,
                        bool hidden) = 0;
    // Height in points, format (may be null) and hidden state of one row.
    virtual bool setRow(int row, double height, IFormatT<C> *format, bool hidden) = 0;
    // Whether the row is hidden.
    virtual bool rowHidden(int row) = 0;
    // Hides or shows the row.
    virtual bool setRowHidden(int row, bool hidden) = 0;
    // Whether the column is hidden.
    virtual bool colHidden(int col) = 0;
    // Hides or shows the column.
    virtual bool setColHidden(int col, bool hidden) = 0;
    // The merged area that holds the cell, into the four outputs; false when there is none.
    virtual bool getMerge(int row, int col, int *rowFirst, int *rowLast, int *colFirst,
                          int *colLast) = 0;
    // Merges the cells of rowFirst to rowLast and colFirst to colLast into one.
    virtual bool setMerge(int rowFirst, int rowLast, int colFirst, int colLast) = 0;
    // Removes the merged area that holds the cell; false when there is none.
    virtual bool delMerge(int row, int col) = 0;
    // The number of pictures placed on the sheet.
    virtual int pictureSize() = 0;
    // Anchor cells, size and offsets in pixels of picture index; answers its book identifier.
    virtual int getPicture(int index, int *rowTop, int *colLeft, int *rowBottom, int *colRight,
                           int *width, int *height, int *offsetX, int *offsetY) = 0;
    // Places a book picture with its top left in the cell, scaled, offsets in pixels.
    virtual void setPicture(int row, int col, int pictureId, double scale, int offsetX,
                            int offsetY) = 0;
    // Places a book picture at a width and height in pixels; -1 sizes it to the cells.
    virtual void setPicture2(int row, int col, int pictureId, int width, int height, int offsetX,
                             int offsetY) = 0;
    // The row of horizontal page break index, from 0.
    virtual int getHorPageBreak(int index) = 0;
    // The number of horizontal page breaks.
    virtual int getHorPageBreakSize() = 0;
    // The column of vertical page break index, from 0.
    virtual int getVerPageBreak(int index) = 0;
    // The number of vertical page breaks.
    virtual int getVerPageBreakSize() = 0;
    // Sets (true) or removes a page break above the row.
    virtual bool setHorPageBreak(int row, bool pageBreak) = 0;
    // Sets (true) or removes a page break left of the column.
    virtual bool setVerPageBreak(int col, bool pageBreak) = 0;
    // Freezes the rows above row and the columns left of col.
    virtual void split(int row, int col) = 0;
    // Groups rows rowFirst to rowLast one outline level deeper, collapsed or open.
    virtual bool groupRows(int rowFirst, int rowLast, bool collapsed) = 0;
    // Groups columns colFirst to colLast one outline level deeper, collapsed or open.
    virtual bool groupCols(int colFirst, int colLast, bool collapsed) = 0;
    // Whether the summary row of a group stands below it (true) or above.
    virtual bool groupSummaryBelow() = 0;
    // Puts the summary row of groups below them (true) or above.
    virtual void setGroupSummaryBelow(bool below) = 0;
    // Whether the summary column of a group stands right of it (true) or left.
    virtual bool groupSummaryRight() = 0;
    // Puts the summary column of groups right of them (true) or left.
    virtual void setGroupSummaryRight(bool right) = 0;
    // Removes the cells, values and formats, of rowFirst to rowLast and colFirst to colLast.
    virtual bool clear(int rowFirst, int rowLast, int colFirst, int colLast) = 0;
    // Inserts columns colFirst to colLast; the columns from colFirst on move right.
    virtual bool insertCol(int colFirst, int colLast) = 0;
    // Inserts rows rowFirst to rowLast; the rows from rowFirst on move down.
    virtual bool insertRow(int rowFirst, int rowLast) = 0;
    // Removes columns colFirst to colLast; the columns right of them move left.
    virtual bool removeCol(int colFirst, int colLast) = 0;
    // Removes rows rowFirst to rowLast; the rows below them move up.
    virtual bool removeRow(int rowFirst, int rowLast) = 0;
    // Copies value and format of a cell that exists to another cell.
    virtual bool copyCell(int rowSrc, int colSrc, int rowDst, int colDst) = 0;
    // The first row that holds a cell.
    virtual int firstRow() = 0;
    // One past the last row that holds a cell, 0 on an empty sheet.
    virtual int lastRow() = 0;
    // The first column that holds a cell.
    virtual int firstCol() = 0;
    // One past the last column that holds a cell, 0 on an empty sheet.
    virtual int lastCol() = 0;
    // Whether the gridlines are shown on screen.
    virtual bool displayGridlines() = 0;
    // Shows or hides the gridlines on screen.
    virtual void setDisplayGridlines(bool show) = 0;
    // Whether the gridlines are printed.
    virtual bool printGridlines() = 0;
    // Prints the gridlines (true) or not.
    virtual void setPrintGridlines(bool print) = 0;
    // The screen zoom in percent.
    virtual int zoom() = 0;
    // Sets the screen zoom in percent.
    virtual void setZoom(int zoom) = 0;
    // The print scale in percent.
    virtual int printZoom() = 0;
    // Prints at a scale in percent, instead of fitting to pages.
    virtual void setPrintZoom(int zoom) = 0;
    // The pages across and down that printing fits to; true when fitting is on.
    virtual bool getPrintFit(int *wPages, int *hPages) = 0;
    // Fits the print to wPages across and hPages down (0: as many as needed).
    virtual void setPrintFit(int wPages, int hPages) = 0;
    // Whether the page is printed landscape.
    virtual bool landscape() = 0;
    // Prints landscape (true) or portrait.
    virtual void setLandscape(bool landscape) = 0;
    // The paper code of the page setup.
    virtual Paper paper() = 0;
    // Sets the paper code of the page setup.
    virtual void setPaper(Paper paper) = 0;
    // The page header text with its formatting codes; null when there is none.
    virtual const C *header() = 0;
    // Sets the page header text and its margin in inches; false for a text too long.
    virtual bool setHeader(const C *header, double margin) = 0;
    // The header margin in inches.
    virtual double headerMargin() = 0;
    // The page footer text with its formatting codes; null when there is none.
    virtual const C *footer() = 0;
    // Sets the page footer text and its margin in inches; false for a text too long.
    virtual bool setFooter(const C *footer, double margin) = 0;
    // The footer margin in inches.
    virtual double footerMargin() = 0;
    // Whether the print is centred across the page.
    virtual bool hCenter() = 0;
    // Centres the print across the page (true) or not.
    virtual void setHCenter(bool center) = 0;
    // Whether the print is centred down the page.
    virtual bool vCenter() = 0;
    // Centres the print down the page (true) or not.
    virtual void setVCenter(bool center) = 0;
    // The left page margin in inches.
    virtual double marginLeft() = 0;
    // Sets the left page margin in inches.
    virtual void setMarginLeft(double margin) = 0;
    // The right page margin in inches.
    virtual double marginRight() = 0;
    // Sets the right page margin in inches.
    virtual void setMarginRight(double margin) = 0;
    // The top page margin in inches.
    virtual double marginTop() = 0;
    // Sets the top page margin in inches.
    virtual void setMarginTop(double margin) = 0;
    // The bottom page margin in inches.
    virtual double marginBottom() = 0;
    // Sets the bottom page margin in inches.
    virtual void setMarginBottom(double margin) = 0;
    // Whether row numbers and column letters are printed.
    virtual bool printRowCol() = 0;
    // Prints row numbers and column letters (true) or not.
    virtual void setPrintRowCol(bool print) = 0;
    // Repeats rows rowFirst to rowLast at the top of every printed page.
    virtual void setPrintRepeatRows(int rowFirst, int rowLast) = 0;
    // Repeats columns colFirst to colLast at the left of every printed page.
    virtual void setPrintRepeatCols(int colFirst, int colLast) = 0;
    // Prints only the cells of rowFirst to rowLast and colFirst to colLast.
    virtual void setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) = 0;
    // Removes the repeated rows and columns of printing.
    virtual void clearPrintRepeats() = 0;
    // Removes the print area: the whole sheet is printed.
    virtual void clearPrintArea() = 0;
    // Cells and hidden flag of a name; scopeId -1 the book, -2 any, or a sheet index.
    virtual bool getNamedRange(const C *name, int *rowFirst, int *rowLast, int *colFirst,
                               int *colLast, int scopeId, bool *hidden) = 0;
    // Makes the name refer to the cells; scopeId -1 the book, -2 this sheet, or a sheet index.
    virtual bool setNamedRange(const C *name, int rowFirst, int rowLast, int colFirst, int colLast,
                               int scopeId) = 0;
    // Deletes the name of scope scopeId (as for setNamedRange); false when there is none.
    virtual bool delNamedRange(const C *name, int scopeId) = 0;
    // The number of names that refer to cells of this sheet.
    virtual int namedRangeSize() = 0;
    // Name index, from 0: its text, its cells and scope into the outputs; null outside.
    virtual const C *namedRange(int index, int *rowFirst, int *rowLast, int *colFirst, int *colLast,
                                int *scopeId, bool *hidden) = 0;
    // The sheet's name.
    virtual const C *name() = 0;
    // Renames the sheet; a longer name is cut to 31 characters, with a warning.
    virtual void setName(const C *name) = 0;
    // Whether the sheet is protected against changes.
    virtual bool protect() = 0;
    // Protects the sheet against changes (true) or not.
    virtual void setProtect(bool protect) = 0;
    // Whether the sheet is visible, hidden or very hidden (shown only by a program).
    virtual SheetState hidden() = 0;
    // Makes the sheet visible, hidden or very hidden.
    virtual bool setHidden(SheetState state) = 0;
    // The first row and column shown in the sheet's window.
    virtual void getTopLeftView(int *row, int *col) = 0;
    // Scrolls the sheet's window so that the cell is at its top left.
    virtual void setTopLeftView(int row, int col) = 0;
    // Whether the sheet is laid out from right to left.
    virtual bool rightToLeft() = 0;
    // Lays the sheet out from right to left (true) or left to right.
    virtual void setRightToLeft(bool rightToLeft) = 0;
    // Reads an A1 address ("$B$3") into row, column and relative flags; -1 for a missing part.
    virtual void addrToRowCol(const C *addr, int *row, int *col, bool *rowRelative,
                              bool *colRelative) = 0;
    // The A1 address of a cell, "$" before absolute parts; row -1 gives a whole column.
    virtual const C *rowColToAddr(int row, int col, bool rowRelative, bool colRelative) = 0;
    virtual ~ISheetT() {}
};

} // namespace tabrix

#endif
