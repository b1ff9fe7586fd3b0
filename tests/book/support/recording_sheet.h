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

    std::string log; // the last call, e.g. "writeBool(1,2,true,null)"
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
    template <class R, class... A> R call(const char *name, A... args) {
        record(name, args...);
        if constexpr (std::is_void_v<R>)
            return;
        else if constexpr (std::is_same_v<R, bool>)
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
    CellType cellType(int row, int col) override { return call<CellType>("cellType", row, col); }
    bool isFormula(int row, int col) override { return call<bool>("isFormula", row, col); }
    IFormatT<C> *cellFormat(int row, int col) override {
        return call<IFormatT<C> *>("cellFormat", row, col);
    }
    void setCellFormat(int row, int col, IFormatT<C> *format) override {
        return call<void>("setCellFormat", row, col, format);
    }
    const C *readStr(int row, int col, IFormatT<C> **format) override {
        return call<const C *>("readStr", row, col, format);
    }
    bool writeStr(int row, int col, const C *value, IFormatT<C> *format) override {
        return call<bool>("writeStr", row, col, value, format);
    }
    double readNum(int row, int col, IFormatT<C> **format) override {
        return call<double>("readNum", row, col, format);
    }
    bool writeNum(int row, int col, double value, IFormatT<C> *format) override {
        return call<bool>("writeNum", row, col, value, format);
    }
    bool readBool(int row, int col, IFormatT<C> **format) override {
        return call<bool>("readBool", row, col, format);
    }
    bool writeBool(int row, int col, bool value, IFormatT<C> *format) override {
        return call<bool>("writeBool", row, col, value, format);
    }
    bool readBlank(int row, int col, IFormatT<C> **format) override {
        return call<bool>("readBlank", row, col, format);
    }
    bool writeBlank(int row, int col, IFormatT<C> *format) override {
        return call<bool>("writeBlank", row, col, format);
    }
    const C *readFormula(int row, int col, IFormatT<C> **format) override {
        return call<const C *>("readFormula", row, col, format);
    }
    bool writeFormula(int row, int col, const C *expr, IFormatT<C> *format) override {
        return call<bool>("writeFormula", row, col, expr, format);
    }
    const C *readComment(int row, int col) override {
        return call<const C *>("readComment", row, col);
    }
    void writeComment(int row, int col, const C *value, const C *author, int width,
                      int height) override {
        return call<void>("writeComment", row, col, value, author, width, height);
    }
    bool isDate(int row, int col) override { return call<bool>("isDate", row, col); }
    ErrorCode readError(int row, int col) override {
        return call<ErrorCode>("readError", row, col);
    }
    double colWidth(int col) override { return call<double>("colWidth", col); }
    double rowHeight(int row) override { return call<double>("rowHeight", row); }
    bool setCol(int colFirst, int colLast, double width, IFormatT<C> *format,
                bool hidden) override {
        return call<bool>("setCol", colFirst, colLast, width, format, hidden);
    }
    bool setRow(int row, double height, IFormatT<C> *format, bool hidden) override {
        return call<bool>("setRow", row, height, format, hidden);
    }
    bool rowHidden(int row) override { return call<bool>("rowHidden", row); }
    bool setRowHidden(int row, bool hidden) override {
        return call<bool>("setRowHidden", row, hidden);
    }
    bool colHidden(int col) override { return call<bool>("colHidden", col); }
    bool setColHidden(int col, bool hidden) override {
        return call<bool>("setColHidden", col, hidden);
    }
    bool getMerge(int row, int col, int *rowFirst, int *rowLast, int *colFirst,
                  int *colLast) override {
        return call<bool>("getMerge", row, col, rowFirst, rowLast, colFirst, colLast);
    }
    bool setMerge(int rowFirst, int rowLast, int colFirst, int colLast) override {
        return call<bool>("setMerge", rowFirst, rowLast, colFirst, colLast);
    }
    bool delMerge(int row, int col) override { return call<bool>("delMerge", row, col); }
    int pictureSize() override { return call<int>("pictureSize"); }
    int getPicture(int index, int *rowTop, int *colLeft, int *rowBottom, int *colRight, int *width,
                   int *height, int *offsetX, int *offsetY) override {
        return call<int>("getPicture", index, rowTop, colLeft, rowBottom, colRight, width, height,
                         offsetX, offsetY);
    }
    void setPicture(int row, int col, int pictureId, double scale, int offsetX,
                    int offsetY) override {
        return call<void>("setPicture", row, col, pictureId, scale, offsetX, offsetY);
    }
    void setPicture2(int row, int col, int pictureId, int width, int height, int offsetX,
                     int offsetY) override {
        return call<void>("setPicture2", row, col, pictureId, width, height, offsetX, offsetY);
    }
    int getHorPageBreak(int index) override { return call<int>("getHorPageBreak", index); }
    int getHorPageBreakSize() override { return call<int>("getHorPageBreakSize"); }
    int getVerPageBreak(int index) override { return call<int>("getVerPageBreak", index); }
    int getVerPageBreakSize() override { return call<int>("getVerPageBreakSize"); }
    bool setHorPageBreak(int row, bool pageBreak) override {
        return call<bool>("setHorPageBreak", row, pageBreak);
    }
    bool setVerPageBreak(int col, bool pageBreak) override {
        return call<bool>("setVerPageBreak", col, pageBreak);
    }
    void split(int row, int col) override { return call<void>("split", row, col); }
    bool groupRows(int rowFirst, int rowLast, bool collapsed) override {
        return call<bool>("groupRows", rowFirst, rowLast, collapsed);
    }
    bool groupCols(int colFirst, int colLast, bool collapsed) override {
        return call<bool>("groupCols", colFirst, colLast, collapsed);
    }
    bool groupSummaryBelow() override { return call<bool>("groupSummaryBelow"); }
    void setGroupSummaryBelow(bool below) override {
        return call<void>("setGroupSummaryBelow", below);
    }
    bool groupSummaryRight() override { return call<bool>("groupSummaryRight"); }
    void setGroupSummaryRight(bool right) override {
        return call<void>("setGroupSummaryRight", right);
    }
    bool clear(int rowFirst, int rowLast, int colFirst, int colLast) override {
        return call<bool>("clear", rowFirst, rowLast, colFirst, colLast);
    }
    bool insertCol(int colFirst, int colLast) override {
        return call<bool>("insertCol", colFirst, colLast);
    }
    bool insertRow(int rowFirst, int rowLast) override {
        return call<bool>("insertRow", rowFirst, rowLast);
    }
    bool removeCol(int colFirst, int colLast) override {
        return call<bool>("removeCol", colFirst, colLast);
    }
    bool removeRow(int rowFirst, int rowLast) override {
        return call<bool>("removeRow", rowFirst, rowLast);
    }
    bool copyCell(int rowSrc, int colSrc, int rowDst, int colDst) override {
        return call<bool>("copyCell", rowSrc, colSrc, rowDst, colDst);
    }
    int firstRow() override { return call<int>("firstRow"); }
    int lastRow() override { return call<int>("lastRow"); }
    int firstCol() override { return call<int>("firstCol"); }
    int lastCol() override { return call<int>("lastCol"); }
    bool displayGridlines() override { return call<bool>("displayGridlines"); }
    void setDisplayGridlines(bool show) override { return call<void>("setDisplayGridlines", show); }
    bool printGridlines() override { return call<bool>("printGridlines"); }
    void setPrintGridlines(bool print) override { return call<void>("setPrintGridlines", print); }
    int zoom() override { return call<int>("zoom"); }
    void setZoom(int zoom) override { return call<void>("setZoom", zoom); }
    int printZoom() override { return call<int>("printZoom"); }
    void setPrintZoom(int zoom) override { return call<void>("setPrintZoom", zoom); }
    bool getPrintFit(int *wPages, int *hPages) override {
        return call<bool>("getPrintFit", wPages, hPages);
    }
    void setPrintFit(int wPages, int hPages) override {
        return call<void>("setPrintFit", wPages, hPages);
    }
    bool landscape() override { return call<bool>("landscape"); }
    void setLandscape(bool landscape) override { return call<void>("setLandscape", landscape); }
    Paper paper() override { return call<Paper>("paper"); }
    void setPaper(Paper paper) override { return call<void>("setPaper", paper); }
    const C *header() override { return call<const C *>("header"); }
    bool setHeader(const C *header, double margin) override {
        return call<bool>("setHeader", header, margin);
    }
    double headerMargin() override { return call<double>("headerMargin"); }
    const C *footer() override { return call<const C *>("footer"); }
    bool setFooter(const C *footer, double margin) override {
        return call<bool>("setFooter", footer, margin);
    }
    double footerMargin() override { return call<double>("footerMargin"); }
    bool hCenter() override { return call<bool>("hCenter"); }
    void setHCenter(bool center) override { return call<void>("setHCenter", center); }
    bool vCenter() override { return call<bool>("vCenter"); }
    void setVCenter(bool center) override { return call<void>("setVCenter", center); }
    double marginLeft() override { return call<double>("marginLeft"); }
    void setMarginLeft(double margin) override { return call<void>("setMarginLeft", margin); }
    double marginRight() override { return call<double>("marginRight"); }
    void setMarginRight(double margin) override { return call<void>("setMarginRight", margin); }
    double marginTop() override { return call<double>("marginTop"); }
    void setMarginTop(double margin) override { return call<void>("setMarginTop", margin); }
    double marginBottom() override { return call<double>("marginBottom"); }
    void setMarginBottom(double margin) override { return call<void>("setMarginBottom", margin); }
    bool printRowCol() override { return call<bool>("printRowCol"); }
    void setPrintRowCol(bool print) override { return call<void>("setPrintRowCol", print); }
    void setPrintRepeatRows(int rowFirst, int rowLast) override {
        return call<void>("setPrintRepeatRows", rowFirst, rowLast);
    }
    void setPrintRepeatCols(int colFirst, int colLast) override {
        return call<void>("setPrintRepeatCols", colFirst, colLast);
    }
    void setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) override {
        return call<void>("setPrintArea", rowFirst, rowLast, colFirst, colLast);
    }
    void clearPrintRepeats() override { return call<void>("clearPrintRepeats"); }
    void clearPrintArea() override { return call<void>("clearPrintArea"); }
    bool getNamedRange(const C *name, int *rowFirst, int *rowLast, int *colFirst, int *colLast,
                       int scopeId, bool *hidden) override {
        return call<bool>("getNamedRange", name, rowFirst, rowLast, colFirst, colLast, scopeId,
                          hidden);
    }
    bool setNamedRange(const C *name, int rowFirst, int rowLast, int colFirst, int colLast,
                       int scopeId) override {
        return call<bool>("setNamedRange", name, rowFirst, rowLast, colFirst, colLast, scopeId);
    }
    bool delNamedRange(const C *name, int scopeId) override {
        return call<bool>("delNamedRange", name, scopeId);
    }
    int namedRangeSize() override { return call<int>("namedRangeSize"); }
    const C *namedRange(int index, int *rowFirst, int *rowLast, int *colFirst, int *colLast,
                        int *scopeId, bool *hidden) override {
        return call<const C *>("namedRange", index, rowFirst, rowLast, colFirst, colLast, scopeId,
                               hidden);
    }
    const C *name() override { return call<const C *>("name"); }
    void setName(const C *name) override { return call<void>("setName", name); }
    bool protect() override { return call<bool>("protect"); }
    void setProtect(bool protect) override { return call<void>("setProtect", protect); }
    SheetState hidden() override { return call<SheetState>("hidden"); }
    bool setHidden(SheetState state) override { return call<bool>("setHidden", state); }
    void getTopLeftView(int *row, int *col) override {
        return call<void>("getTopLeftView", row, col);
    }
    void setTopLeftView(int row, int col) override {
        return call<void>("setTopLeftView", row, col);
    }
    bool rightToLeft() override { return call<bool>("rightToLeft"); }
    void setRightToLeft(bool rightToLeft) override {
        return call<void>("setRightToLeft", rightToLeft);
    }
    void addrToRowCol(const C *addr, int *row, int *col, bool *rowRelative,
                      bool *colRelative) override {
        return call<void>("addrToRowCol", addr, row, col, rowRelative, colRelative);
    }
    const C *rowColToAddr(int row, int col, bool rowRelative, bool colRelative) override {
        return call<const C *>("rowColToAddr", row, col, rowRelative, colRelative);
    }
};

} // namespace tabrix

#endif
