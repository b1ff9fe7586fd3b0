// ISheetT: one sheet of a book.  Rows and columns are zero-based.  A text
// result stays owned by the sheet until its next text result.
#ifndef TABRIX_ISHEETT_H
#define TABRIX_ISHEETT_H

#include "tabrix/IFormatT.h"

namespace tabrix {

template <class C> class ISheetT {
public:
    virtual CellType cellType(int row, int col) = 0;
    virtual bool isFormula(int row, int col) = 0;
    virtual IFormatT<C> *cellFormat(int row, int col) = 0;
    virtual void setCellFormat(int row, int col, IFormatT<C> *format) = 0;
    virtual const C *readStr(int row, int col, IFormatT<C> **format) = 0;
    virtual bool writeStr(int row, int col, const C *value, IFormatT<C> *format) = 0;
    virtual double readNum(int row, int col, IFormatT<C> **format) = 0;
    virtual bool writeNum(int row, int col, double value, IFormatT<C> *format) = 0;
    virtual bool readBool(int row, int col, IFormatT<C> **format) = 0;
    virtual bool writeBool(int row, int col, bool value, IFormatT<C> *format) = 0;
    virtual bool readBlank(int row, int col, IFormatT<C> **format) = 0;
    virtual bool writeBlank(int row, int col, IFormatT<C> *format) = 0;
    virtual const C *readFormula(int row, int col, IFormatT<C> **format) = 0;
    virtual bool writeFormula(int row, int col, const C *expr, IFormatT<C> *format) = 0;
    virtual const C *readComment(int row, int col) = 0;
    virtual void writeComment(int row, int col, const C *value, const C *author, int width,
                              int height) = 0;
    virtual bool isDate(int row, int col) = 0;
    virtual ErrorCode readError(int row, int col) = 0;
    virtual double colWidth(int col) = 0;
    virtual double rowHeight(int row) = 0;
    virtual bool setCol(int colFirst, int colLast, double width, IFormatT<C> *format,
                        bool hidden) = 0;
    virtual bool setRow(int row, double height, IFormatT<C> *format, bool hidden) = 0;
    virtual bool rowHidden(int row) = 0;
    virtual bool setRowHidden(int row, bool hidden) = 0;
    virtual bool colHidden(int col) = 0;
    virtual bool setColHidden(int col, bool hidden) = 0;
    virtual bool getMerge(int row, int col, int *rowFirst, int *rowLast, int *colFirst,
                          int *colLast) = 0;
    virtual bool setMerge(int rowFirst, int rowLast, int colFirst, int colLast) = 0;
    virtual bool delMerge(int row, int col) = 0;
    virtual int pictureSize() = 0;
    virtual int getPicture(int index, int *rowTop, int *colLeft, int *rowBottom, int *colRight,
                           int *width, int *height, int *offsetX, int *offsetY) = 0;
    virtual void setPicture(int row, int col, int pictureId, double scale, int offsetX,
                            int offsetY) = 0;
    virtual void setPicture2(int row, int col, int pictureId, int width, int height,
                             int offsetX, int offsetY) = 0;
    virtual int getHorPageBreak(int index) = 0;
    virtual int getHorPageBreakSize() = 0;
    virtual int getVerPageBreak(int index) = 0;
    virtual int getVerPageBreakSize() = 0;
    virtual bool setHorPageBreak(int row, bool pageBreak) = 0;
    virtual bool setVerPageBreak(int col, bool pageBreak) = 0;
    virtual void split(int row, int col) = 0;
    virtual bool groupRows(int rowFirst, int rowLast, bool collapsed) = 0;
    virtual bool groupCols(int colFirst, int colLast, bool collapsed) = 0;
    virtual bool groupSummaryBelow() = 0;
    virtual void setGroupSummaryBelow(bool below) = 0;
    virtual bool groupSummaryRight() = 0;
    virtual void setGroupSummaryRight(bool right) = 0;
    virtual bool clear(int rowFirst, int rowLast, int colFirst, int colLast) = 0;
    virtual bool insertCol(int colFirst, int colLast) = 0;
    virtual bool insertRow(int rowFirst, int rowLast) = 0;
    virtual bool removeCol(int colFirst, int colLast) = 0;
    virtual bool removeRow(int rowFirst, int rowLast) = 0;
    virtual bool copyCell(int rowSrc, int colSrc, int rowDst, int colDst) = 0;
    virtual int firstRow() = 0;
    virtual int lastRow() = 0;
    virtual int firstCol() = 0;
    virtual int lastCol() = 0;
    virtual bool displayGridlines() = 0;
    virtual void setDisplayGridlines(bool show) = 0;
    virtual bool printGridlines() = 0;
    virtual void setPrintGridlines(bool print) = 0;
    virtual int zoom() = 0;
    virtual void setZoom(int zoom) = 0;
    virtual int printZoom() = 0;
    virtual void setPrintZoom(int zoom) = 0;
    virtual bool getPrintFit(int *wPages, int *hPages) = 0;
    virtual void setPrintFit(int wPages, int hPages) = 0;
    virtual bool landscape() = 0;
    virtual void setLandscape(bool landscape) = 0;
    virtual Paper paper() = 0;
    virtual void setPaper(Paper paper) = 0;
    virtual const C *header() = 0;
    virtual bool setHeader(const C *header, double margin) = 0;
    virtual double headerMargin() = 0;
    virtual const C *footer() = 0;
    virtual bool setFooter(const C *footer, double margin) = 0;
    virtual double footerMargin() = 0;
    virtual bool hCenter() = 0;
    virtual void setHCenter(bool center) = 0;
    virtual bool vCenter() = 0;
    virtual void setVCenter(bool center) = 0;
    virtual double marginLeft() = 0;
    virtual void setMarginLeft(double margin) = 0;
    virtual double marginRight() = 0;
    virtual void setMarginRight(double margin) = 0;
    virtual double marginTop() = 0;
    virtual void setMarginTop(double margin) = 0;
    virtual double marginBottom() = 0;
    virtual void setMarginBottom(double margin) = 0;
    virtual bool printRowCol() = 0;
    virtual void setPrintRowCol(bool print) = 0;
    virtual void setPrintRepeatRows(int rowFirst, int rowLast) = 0;
    virtual void setPrintRepeatCols(int colFirst, int colLast) = 0;
    virtual void setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) = 0;
    virtual void clearPrintRepeats() = 0;
    virtual void clearPrintArea() = 0;
    virtual bool getNamedRange(const C *name, int *rowFirst, int *rowLast, int *colFirst,
                               int *colLast, int scopeId, bool *hidden) = 0;
    virtual bool setNamedRange(const C *name, int rowFirst, int rowLast, int colFirst,
                               int colLast, int scopeId) = 0;
    virtual bool delNamedRange(const C *name, int scopeId) = 0;
    virtual int namedRangeSize() = 0;
    virtual const C *namedRange(int index, int *rowFirst, int *rowLast, int *colFirst,
                                int *colLast, int *scopeId, bool *hidden) = 0;
    virtual const C *name() = 0;
    virtual void setName(const C *name) = 0;
    virtual bool protect() = 0;
    virtual void setProtect(bool protect) = 0;
    virtual SheetState hidden() = 0;
    virtual bool setHidden(SheetState state) = 0;
    virtual void getTopLeftView(int *row, int *col) = 0;
    virtual void setTopLeftView(int row, int col) = 0;
    virtual bool rightToLeft() = 0;
    virtual void setRightToLeft(bool rightToLeft) = 0;
    virtual void addrToRowCol(const C *addr, int *row, int *col, bool *rowRelative,
                              bool *colRelative) = 0;
    virtual const C *rowColToAddr(int row, int col, bool rowRelative, bool colRelative) = 0;
    virtual ~ISheetT() {}
};

} // namespace tabrix

#endif
