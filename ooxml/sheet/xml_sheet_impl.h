// XMLSheetImplT: one worksheet part of an Open XML book.  The cells and the
// bound tree are the cell half's; this half is the sheet as a part of the
// package (its bytes at save), its name and hidden state, which live in the
// workbook's entry for it, and its view selection.  Handed out as
// FramedSheetT<XMLSheetImplT<C>>.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "book/xstring.h"
#include "ooxml/binding/parts/worksheet_facades.h"
#include "ooxml/sheet/sheet_ranges.h"
#include "ooxml/package/xfile.h"
#include "ooxml/sheet/xml_sheet_cells.h"

namespace tabrix {

template <class C> class XMLBookImplT;
class Drawing;

template <class C> class XMLSheetImplT : public XMLSheetCellsT<C>, public XFile {
public:
    using CharType = C;

    XMLSheetImplT(XMLBookImplT<C> &book, binding::e_edition edition);
    XMLSheetImplT(XMLBookImplT<C> &book, binding::e_edition edition, const char *bytes,
                  size_t size);
    // A copy of `source` for a place in `book`.
    XMLSheetImplT(const XMLSheetImplT &source, XMLBookImplT<C> &book);

    // The part's bytes.
    void save(std::string &out) override;

    const C *name() override;
    void setName(const C *name) override;
    SheetState hidden() override;
    bool setHidden(SheetState state) override;

    // The tabSelected flag of every view of the sheet.
    void setSelected(bool selected);
    XMLBookImplT<C> &owner() { return *_owner; }

    // ---- merges (xml_sheet_merges.cpp) ----
    bool getMerge(int row, int col, int *rowFirst, int *rowLast, int *colFirst,
                  int *colLast) override;
    bool setMerge(int rowFirst, int rowLast, int colFirst, int colLast) override;
    bool delMerge(int row, int col) override;

    // ---- columns and rows (xml_sheet_rows_cols.cpp) ----
    double colWidth(int col) override;
    double rowHeight(int row) override;
    bool setCol(int colFirst, int colLast, double width, IFormatT<C> *format, bool hidden) override;
    bool setRow(int row, double height, IFormatT<C> *format, bool hidden) override;
    bool rowHidden(int row) override;
    bool setRowHidden(int row, bool hidden) override;
    bool colHidden(int col) override;
    bool setColHidden(int col, bool hidden) override;
    bool groupRows(int rowFirst, int rowLast, bool collapsed) override;
    bool groupCols(int colFirst, int colLast, bool collapsed) override;
    bool groupSummaryBelow() override;
    void setGroupSummaryBelow(bool below) override;
    bool groupSummaryRight() override;
    void setGroupSummaryRight(bool right) override;

    // ---- insertion and removal (xml_sheet_shift.cpp) ----
    bool insertRow(int rowFirst, int rowLast) override;
    bool removeRow(int rowFirst, int rowLast) override;
    bool insertCol(int colFirst, int colLast) override;
    bool removeCol(int colFirst, int colLast) override;

    // ---- views (xml_sheet_view.cpp) ----
    void split(int row, int col) override;
    void getTopLeftView(int *row, int *col) override;
    void setTopLeftView(int row, int col) override;
    bool rightToLeft() override;
    void setRightToLeft(bool rightToLeft) override;
    bool displayGridlines() override;
    void setDisplayGridlines(bool show) override;
    int zoom() override;
    void setZoom(int zoom) override;

    // ---- page setup, breaks and protection (xml_sheet_setup.cpp) ----
    int getHorPageBreak(int index) override;
    int getHorPageBreakSize() override;
    int getVerPageBreak(int index) override;
    int getVerPageBreakSize() override;
    bool setHorPageBreak(int row, bool pageBreak) override;
    bool setVerPageBreak(int col, bool pageBreak) override;
    bool printGridlines() override;
    void setPrintGridlines(bool print) override;
    int printZoom() override;
    void setPrintZoom(int zoom) override;
    bool getPrintFit(int *wPages, int *hPages) override;
    void setPrintFit(int wPages, int hPages) override;
    bool landscape() override;
    void setLandscape(bool landscape) override;
    Paper paper() override;
    void setPaper(Paper paper) override;
    const C *header() override;
    bool setHeader(const C *header, double margin) override;
    double headerMargin() override;
    const C *footer() override;
    bool setFooter(const C *footer, double margin) override;
    double footerMargin() override;
    bool hCenter() override;
    void setHCenter(bool center) override;
    bool vCenter() override;
    void setVCenter(bool center) override;
    double marginLeft() override;
    void setMarginLeft(double margin) override;
    double marginRight() override;
    void setMarginRight(double margin) override;
    double marginTop() override;
    void setMarginTop(double margin) override;
    double marginBottom() override;
    void setMarginBottom(double margin) override;
    bool printRowCol() override;
    void setPrintRowCol(bool print) override;
    bool protect() override;
    void setProtect(bool protect) override;
    // Notes live only in binary books.
    const C *readComment(int row, int col) override;
    void writeComment(int row, int col, const C *value, const C *author, int width,
                      int height) override;

    // ---- print area, titles and named ranges (xml_sheet_names.cpp) ----
    void setPrintRepeatRows(int rowFirst, int rowLast) override;
    void setPrintRepeatCols(int colFirst, int colLast) override;
    void setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) override;
    void clearPrintRepeats() override;
    void clearPrintArea() override;
    bool getNamedRange(const C *name, int *rowFirst, int *rowLast, int *colFirst, int *colLast,
                       int scopeId, bool *hidden) override;
    bool setNamedRange(const C *name, int rowFirst, int rowLast, int colFirst, int colLast,
                       int scopeId) override;
    bool delNamedRange(const C *name, int scopeId) override;
    int namedRangeSize() override;
    const C *namedRange(int index, int *rowFirst, int *rowLast, int *colFirst, int *colLast,
                        int *scopeId, bool *hidden) override;
    // ---- pictures (xml_sheet_pictures.cpp) ----
    int pictureSize() override;
    int getPicture(int index, int *rowTop, int *colLeft, int *rowBottom, int *colRight, int *width,
                   int *height, int *offsetX, int *offsetY) override;
    void setPicture(int row, int col, int pictureId, double scale, int offsetX,
                    int offsetY) override;
    void setPicture2(int row, int col, int pictureId, int width, int height, int offsetX,
                     int offsetY) override;
    // The drawing a relation of the sheet names, or null.
    Drawing *getDrawing(const std::wstring &relationId);

protected:
    XString &frameMessage();
    // A read's conversion warning goes into the book's message.
    void noteWarning(const char *text) override { frameMessage().assign(text); }

private:
    // The first sheet view, made with workbookViewId 0 when there is none.
    binding::c_node &firstView();
    const binding::c_node *firstViewIfAny();
    // The row of zero-based number `row`, made in its place when missing.
    binding::c_row overwriteRow(int row);
    binding::c_row findRow(int row);
    std::vector<binding::c_node *> overwriteCols(int first, int last);
    binding::c_node &pageMargins();
    double margin(const char *which);
    void setMargin(const char *which, double value);
    bool setPageBreak(const char *list, int id, int max);
    void delPageBreak(const char *list, int id);
    int pageBreak(const char *list, int index);
    const C *headerText(const char *which);
    void setHeaderText(const char *which, const C *text);
    // The merge list rebuilt with each rectangle replaced by what `move` gives.
    void moveMerges(const std::function<std::vector<CellRect>(const CellRect &)> &move);
    void setRepeat(bool rows, int first, int last);
    bool defineName(const std::wstring &name, int rowFirst, int rowLast, int colFirst, int colLast,
                    int scopeId);
    std::wstring sheetName();
    const C *result(const std::wstring &text);

    XMLBookImplT<C> *_owner;
    XString _text;
};

extern template class XMLSheetImplT<char>;
extern template class XMLSheetImplT<wchar_t>;

} // namespace tabrix
