// A test double of ISheetT<char> that writes each call, with its arguments,
// into a log, and answers values the test sets beforehand.  Int and bool out
// pointers receive outInt / outBool.
#ifndef TABRIX_TEST_RECORDING_SHEET_H
#define TABRIX_TEST_RECORDING_SHEET_H

#include <sstream>
#include <string>
#include <type_traits>

#include "tabrix/ISheetT.h"

namespace tabrix {

class RecordingSheet : public ISheetT<char> {
public:
    using C = char;

    std::string log;        // the last call, e.g. "writeBool(1,2,true,null)"
    bool answerBool = false;
    int answerInt = 0;
    double answerDouble = 0.0;
    const char *answerText = nullptr;
    void *answerPointer = nullptr;
    const void *marker = nullptr; // a pointer argument equal to it logs as "M"
    int outInt = 0;
    bool outBool = false;

private:
    void put(std::ostream &o, int v) { o << v; }
    void put(std::ostream &o, double v) { o << v; }
    void put(std::ostream &o, bool v) { o << (v ? "true" : "false"); }
    void put(std::ostream &o, const char *v) {
        if (v)
            o << '"' << v << '"';
        else
            o << "null";
    }
    void put(std::ostream &o, int *v) {
        putPointer(o, v);
        if (v)
            *v = outInt;
    }
    void put(std::ostream &o, bool *v) {
        putPointer(o, v);
        if (v)
            *v = outBool;
    }
    template <class T> void put(std::ostream &o, T v) {
        if constexpr (std::is_enum_v<T>)
            o << static_cast<int>(v);
        else
            putPointer(o, v);
    }
    void putPointer(std::ostream &o, const void *p) {
        o << (p == nullptr ? "null" : p == marker ? "M" : "p");
    }
    template <class... A> void record(const char *name, A... args) {
        std::ostringstream o;
        o << name << '(';
        int i = 0;
        ((o << (i++ ? "," : ""), put(o, args)), ...);
        o << ')';
        log = o.str();
    }
    template <class R> R answer() {
        if constexpr (std::is_same_v<R, bool>)
            return answerBool;
        else if constexpr (std::is_same_v<R, int>)
            return answerInt;
        else if constexpr (std::is_same_v<R, double>)
            return answerDouble;
        else if constexpr (std::is_enum_v<R>)
            return static_cast<R>(answerInt);
        else if constexpr (std::is_same_v<R, const char *>)
            return answerText;
        else
            return static_cast<R>(answerPointer);
    }

public:
    CellType cellType(int row, int col) override {
        record("cellType", row, col);
        return answer<CellType>();
    }
    bool isFormula(int row, int col) override {
        record("isFormula", row, col);
        return answer<bool>();
    }
    IFormatT<C> * cellFormat(int row, int col) override {
        record("cellFormat", row, col);
        return answer<IFormatT<C> *>();
    }
    void setCellFormat(int row, int col, IFormatT<C> *format) override { record("setCellFormat", row, col, format); }
    const C * readStr(int row, int col, IFormatT<C> **format) override {
        record("readStr", row, col, format);
        return answer<const C *>();
    }
    bool writeStr(int row, int col, const C *value, IFormatT<C> *format) override {
        record("writeStr", row, col, value, format);
        return answer<bool>();
    }
    double readNum(int row, int col, IFormatT<C> **format) override {
        record("readNum", row, col, format);
        return answer<double>();
    }
    bool writeNum(int row, int col, double value, IFormatT<C> *format) override {
        record("writeNum", row, col, value, format);
        return answer<bool>();
    }
    bool readBool(int row, int col, IFormatT<C> **format) override {
        record("readBool", row, col, format);
        return answer<bool>();
    }
    bool writeBool(int row, int col, bool value, IFormatT<C> *format) override {
        record("writeBool", row, col, value, format);
        return answer<bool>();
    }
    bool readBlank(int row, int col, IFormatT<C> **format) override {
        record("readBlank", row, col, format);
        return answer<bool>();
    }
    bool writeBlank(int row, int col, IFormatT<C> *format) override {
        record("writeBlank", row, col, format);
        return answer<bool>();
    }
    const C * readFormula(int row, int col, IFormatT<C> **format) override {
        record("readFormula", row, col, format);
        return answer<const C *>();
    }
    bool writeFormula(int row, int col, const C *expr, IFormatT<C> *format) override {
        record("writeFormula", row, col, expr, format);
        return answer<bool>();
    }
    const C * readComment(int row, int col) override {
        record("readComment", row, col);
        return answer<const C *>();
    }
    void writeComment(int row, int col, const C *value, const C *author, int width, int height) override { record("writeComment", row, col, value, author, width, height); }
    bool isDate(int row, int col) override {
        record("isDate", row, col);
        return answer<bool>();
    }
    ErrorCode readError(int row, int col) override {
        record("readError", row, col);
        return answer<ErrorCode>();
    }
    double colWidth(int col) override {
        record("colWidth", col);
        return answer<double>();
    }
    double rowHeight(int row) override {
        record("rowHeight", row);
        return answer<double>();
    }
    bool setCol(int colFirst, int colLast, double width, IFormatT<C> *format, bool hidden) override {
        record("setCol", colFirst, colLast, width, format, hidden);
        return answer<bool>();
    }
    bool setRow(int row, double height, IFormatT<C> *format, bool hidden) override {
        record("setRow", row, height, format, hidden);
        return answer<bool>();
    }
    bool rowHidden(int row) override {
        record("rowHidden", row);
        return answer<bool>();
    }
    bool setRowHidden(int row, bool hidden) override {
        record("setRowHidden", row, hidden);
        return answer<bool>();
    }
    bool colHidden(int col) override {
        record("colHidden", col);
        return answer<bool>();
    }
    bool setColHidden(int col, bool hidden) override {
        record("setColHidden", col, hidden);
        return answer<bool>();
    }
    bool getMerge(int row, int col, int *rowFirst, int *rowLast, int *colFirst, int *colLast) override {
        record("getMerge", row, col, rowFirst, rowLast, colFirst, colLast);
        return answer<bool>();
    }
    bool setMerge(int rowFirst, int rowLast, int colFirst, int colLast) override {
        record("setMerge", rowFirst, rowLast, colFirst, colLast);
        return answer<bool>();
    }
    bool delMerge(int row, int col) override {
        record("delMerge", row, col);
        return answer<bool>();
    }
    int pictureSize() override {
        record("pictureSize");
        return answer<int>();
    }
    int getPicture(int index, int *rowTop, int *colLeft, int *rowBottom, int *colRight, int *width, int *height, int *offsetX, int *offsetY) override {
        record("getPicture", index, rowTop, colLeft, rowBottom, colRight, width, height, offsetX, offsetY);
        return answer<int>();
    }
    void setPicture(int row, int col, int pictureId, double scale, int offsetX, int offsetY) override { record("setPicture", row, col, pictureId, scale, offsetX, offsetY); }
    void setPicture2(int row, int col, int pictureId, int width, int height, int offsetX, int offsetY) override { record("setPicture2", row, col, pictureId, width, height, offsetX, offsetY); }
    int getHorPageBreak(int index) override {
        record("getHorPageBreak", index);
        return answer<int>();
    }
    int getHorPageBreakSize() override {
        record("getHorPageBreakSize");
        return answer<int>();
    }
    int getVerPageBreak(int index) override {
        record("getVerPageBreak", index);
        return answer<int>();
    }
    int getVerPageBreakSize() override {
        record("getVerPageBreakSize");
        return answer<int>();
    }
    bool setHorPageBreak(int row, bool pageBreak) override {
        record("setHorPageBreak", row, pageBreak);
        return answer<bool>();
    }
    bool setVerPageBreak(int col, bool pageBreak) override {
        record("setVerPageBreak", col, pageBreak);
        return answer<bool>();
    }
    void split(int row, int col) override { record("split", row, col); }
    bool groupRows(int rowFirst, int rowLast, bool collapsed) override {
        record("groupRows", rowFirst, rowLast, collapsed);
        return answer<bool>();
    }
    bool groupCols(int colFirst, int colLast, bool collapsed) override {
        record("groupCols", colFirst, colLast, collapsed);
        return answer<bool>();
    }
    bool groupSummaryBelow() override {
        record("groupSummaryBelow");
        return answer<bool>();
    }
    void setGroupSummaryBelow(bool below) override { record("setGroupSummaryBelow", below); }
    bool groupSummaryRight() override {
        record("groupSummaryRight");
        return answer<bool>();
    }
    void setGroupSummaryRight(bool right) override { record("setGroupSummaryRight", right); }
    bool clear(int rowFirst, int rowLast, int colFirst, int colLast) override {
        record("clear", rowFirst, rowLast, colFirst, colLast);
        return answer<bool>();
    }
    bool insertCol(int colFirst, int colLast) override {
        record("insertCol", colFirst, colLast);
        return answer<bool>();
    }
    bool insertRow(int rowFirst, int rowLast) override {
        record("insertRow", rowFirst, rowLast);
        return answer<bool>();
    }
    bool removeCol(int colFirst, int colLast) override {
        record("removeCol", colFirst, colLast);
        return answer<bool>();
    }
    bool removeRow(int rowFirst, int rowLast) override {
        record("removeRow", rowFirst, rowLast);
        return answer<bool>();
    }
    bool copyCell(int rowSrc, int colSrc, int rowDst, int colDst) override {
        record("copyCell", rowSrc, colSrc, rowDst, colDst);
        return answer<bool>();
    }
    int firstRow() override {
        record("firstRow");
        return answer<int>();
    }
    int lastRow() override {
        record("lastRow");
        return answer<int>();
    }
    int firstCol() override {
        record("firstCol");
        return answer<int>();
    }
    int lastCol() override {
        record("lastCol");
        return answer<int>();
    }
    bool displayGridlines() override {
        record("displayGridlines");
        return answer<bool>();
    }
    void setDisplayGridlines(bool show) override { record("setDisplayGridlines", show); }
    bool printGridlines() override {
        record("printGridlines");
        return answer<bool>();
    }
    void setPrintGridlines(bool print) override { record("setPrintGridlines", print); }
    int zoom() override {
        record("zoom");
        return answer<int>();
    }
    void setZoom(int zoom) override { record("setZoom", zoom); }
    int printZoom() override {
        record("printZoom");
        return answer<int>();
    }
    void setPrintZoom(int zoom) override { record("setPrintZoom", zoom); }
    bool getPrintFit(int *wPages, int *hPages) override {
        record("getPrintFit", wPages, hPages);
        return answer<bool>();
    }
    void setPrintFit(int wPages, int hPages) override { record("setPrintFit", wPages, hPages); }
    bool landscape() override {
        record("landscape");
        return answer<bool>();
    }
    void setLandscape(bool landscape) override { record("setLandscape", landscape); }
    Paper paper() override {
        record("paper");
        return answer<Paper>();
    }
    void setPaper(Paper paper) override { record("setPaper", paper); }
    const C * header() override {
        record("header");
        return answer<const C *>();
    }
    bool setHeader(const C *header, double margin) override {
        record("setHeader", header, margin);
        return answer<bool>();
    }
    double headerMargin() override {
        record("headerMargin");
        return answer<double>();
    }
    const C * footer() override {
        record("footer");
        return answer<const C *>();
    }
    bool setFooter(const C *footer, double margin) override {
        record("setFooter", footer, margin);
        return answer<bool>();
    }
    double footerMargin() override {
        record("footerMargin");
        return answer<double>();
    }
    bool hCenter() override {
        record("hCenter");
        return answer<bool>();
    }
    void setHCenter(bool center) override { record("setHCenter", center); }
    bool vCenter() override {
        record("vCenter");
        return answer<bool>();
    }
    void setVCenter(bool center) override { record("setVCenter", center); }
    double marginLeft() override {
        record("marginLeft");
        return answer<double>();
    }
    void setMarginLeft(double margin) override { record("setMarginLeft", margin); }
    double marginRight() override {
        record("marginRight");
        return answer<double>();
    }
    void setMarginRight(double margin) override { record("setMarginRight", margin); }
    double marginTop() override {
        record("marginTop");
        return answer<double>();
    }
    void setMarginTop(double margin) override { record("setMarginTop", margin); }
    double marginBottom() override {
        record("marginBottom");
        return answer<double>();
    }
    void setMarginBottom(double margin) override { record("setMarginBottom", margin); }
    bool printRowCol() override {
        record("printRowCol");
        return answer<bool>();
    }
    void setPrintRowCol(bool print) override { record("setPrintRowCol", print); }
    void setPrintRepeatRows(int rowFirst, int rowLast) override { record("setPrintRepeatRows", rowFirst, rowLast); }
    void setPrintRepeatCols(int colFirst, int colLast) override { record("setPrintRepeatCols", colFirst, colLast); }
    void setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) override { record("setPrintArea", rowFirst, rowLast, colFirst, colLast); }
    void clearPrintRepeats() override { record("clearPrintRepeats"); }
    void clearPrintArea() override { record("clearPrintArea"); }
    bool getNamedRange(const C *name, int *rowFirst, int *rowLast, int *colFirst, int *colLast, int scopeId, bool *hidden) override {
        record("getNamedRange", name, rowFirst, rowLast, colFirst, colLast, scopeId, hidden);
        return answer<bool>();
    }
    bool setNamedRange(const C *name, int rowFirst, int rowLast, int colFirst, int colLast, int scopeId) override {
        record("setNamedRange", name, rowFirst, rowLast, colFirst, colLast, scopeId);
        return answer<bool>();
    }
    bool delNamedRange(const C *name, int scopeId) override {
        record("delNamedRange", name, scopeId);
        return answer<bool>();
    }
    int namedRangeSize() override {
        record("namedRangeSize");
        return answer<int>();
    }
    const C * namedRange(int index, int *rowFirst, int *rowLast, int *colFirst, int *colLast, int *scopeId, bool *hidden) override {
        record("namedRange", index, rowFirst, rowLast, colFirst, colLast, scopeId, hidden);
        return answer<const C *>();
    }
    const C * name() override {
        record("name");
        return answer<const C *>();
    }
    void setName(const C *name) override { record("setName", name); }
    bool protect() override {
        record("protect");
        return answer<bool>();
    }
    void setProtect(bool protect) override { record("setProtect", protect); }
    SheetState hidden() override {
        record("hidden");
        return answer<SheetState>();
    }
    bool setHidden(SheetState state) override {
        record("setHidden", state);
        return answer<bool>();
    }
    void getTopLeftView(int *row, int *col) override { record("getTopLeftView", row, col); }
    void setTopLeftView(int row, int col) override { record("setTopLeftView", row, col); }
    bool rightToLeft() override {
        record("rightToLeft");
        return answer<bool>();
    }
    void setRightToLeft(bool rightToLeft) override { record("setRightToLeft", rightToLeft); }
    void addrToRowCol(const C *addr, int *row, int *col, bool *rowRelative, bool *colRelative) override { record("addrToRowCol", addr, row, col, rowRelative, colRelative); }
    const C * rowColToAddr(int row, int col, bool rowRelative, bool colRelative) override {
        record("rowColToAddr", row, col, rowRelative, colRelative);
        return answer<const C *>();
    }
};

} // namespace tabrix

#endif
