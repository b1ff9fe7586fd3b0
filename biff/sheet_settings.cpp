// SheetImplT: page breaks, panes, printout, window and protection.  Each
// operation runs in the failure frame over the sheet's SheetSetup.
#include "biff/sheet_frame.h"

namespace tabrix {

// ---- page breaks and panes ----

template <class C> int SheetImplT<C>::getHorPageBreak(int index) {
    return _setup.horPageBreak(index);
}

template <class C> int SheetImplT<C>::getHorPageBreakSize() { return _setup.horPageBreakSize(); }

template <class C> int SheetImplT<C>::getVerPageBreak(int index) {
    return _setup.verPageBreak(index);
}

template <class C> int SheetImplT<C>::getVerPageBreakSize() { return _setup.verPageBreakSize(); }

template <class C> bool SheetImplT<C>::setHorPageBreak(int row, bool pageBreak) {
    _setup.setHorPageBreak(row, pageBreak);
    return true;
}

template <class C> bool SheetImplT<C>::setVerPageBreak(int col, bool pageBreak) {
    _setup.setVerPageBreak(col, pageBreak);
    return true;
}

template <class C> void SheetImplT<C>::split(int row, int col) {
    checkRanges(row, col);
    _setup.split(row, col);
}

template <class C> bool SheetImplT<C>::groupSummaryBelow() { return _setup.groupSummaryBelow(); }

template <class C> void SheetImplT<C>::setGroupSummaryBelow(bool below) {
    _setup.setGroupSummaryBelow(below);
}

template <class C> bool SheetImplT<C>::groupSummaryRight() { return _setup.groupSummaryRight(); }

template <class C> void SheetImplT<C>::setGroupSummaryRight(bool right) {
    _setup.setGroupSummaryRight(right);
}

// ---- window ----

template <class C> bool SheetImplT<C>::displayGridlines() { return _setup.displayGridlines(); }

template <class C> void SheetImplT<C>::setDisplayGridlines(bool show) {
    _setup.setDisplayGridlines(show);
}

template <class C> int SheetImplT<C>::zoom() { return _setup.zoom(); }

template <class C> void SheetImplT<C>::setZoom(int zoom) { _setup.setZoom(zoom); }

template <class C> void SheetImplT<C>::getTopLeftView(int *row, int *col) {
    _setup.getTopLeftView(row, col);
}

template <class C> void SheetImplT<C>::setTopLeftView(int row, int col) {
    _setup.setTopLeftView(row, col);
}

template <class C> bool SheetImplT<C>::rightToLeft() { return _setup.rightToLeft(); }

template <class C> void SheetImplT<C>::setRightToLeft(bool rightToLeft) {
    _setup.setRightToLeft(rightToLeft);
}

// ---- printout ----

template <class C> bool SheetImplT<C>::printGridlines() { return _setup.printGridlines(); }

template <class C> void SheetImplT<C>::setPrintGridlines(bool print) {
    _setup.setPrintGridlines(print);
}

template <class C> int SheetImplT<C>::printZoom() { return _setup.printZoom(); }

template <class C> void SheetImplT<C>::setPrintZoom(int zoom) { _setup.setPrintZoom(zoom); }

template <class C> bool SheetImplT<C>::getPrintFit(int *wPages, int *hPages) {
    return _setup.getPrintFit(wPages, hPages);
}

template <class C> void SheetImplT<C>::setPrintFit(int wPages, int hPages) {
    _setup.setPrintFit(wPages, hPages);
}

template <class C> bool SheetImplT<C>::landscape() { return _setup.landscape(); }

template <class C> void SheetImplT<C>::setLandscape(bool landscape) {
    _setup.setLandscape(landscape);
}

template <class C> Paper SheetImplT<C>::paper() { return _setup.paper(); }

template <class C> void SheetImplT<C>::setPaper(Paper paper) { _setup.setPaper(paper); }

template <class C> const C *SheetImplT<C>::header() { return textResult(_setup.header()); }

template <class C> bool SheetImplT<C>::setHeader(const C *header, double margin) {
    _setup.setHeader(header ? wideArg(header).c_str() : nullptr, margin);
    return true;
}

template <class C> double SheetImplT<C>::headerMargin() { return _setup.headerMargin(); }

template <class C> const C *SheetImplT<C>::footer() { return textResult(_setup.footer()); }

template <class C> bool SheetImplT<C>::setFooter(const C *footer, double margin) {
    _setup.setFooter(footer ? wideArg(footer).c_str() : nullptr, margin);
    return true;
}

template <class C> double SheetImplT<C>::footerMargin() { return _setup.footerMargin(); }

template <class C> bool SheetImplT<C>::hCenter() { return _setup.hCenter(); }

template <class C> void SheetImplT<C>::setHCenter(bool center) { _setup.setHCenter(center); }

template <class C> bool SheetImplT<C>::vCenter() { return _setup.vCenter(); }

template <class C> void SheetImplT<C>::setVCenter(bool center) { _setup.setVCenter(center); }

template <class C> double SheetImplT<C>::marginLeft() { return _setup.marginLeft(); }

template <class C> void SheetImplT<C>::setMarginLeft(double margin) {
    _setup.setMarginLeft(margin);
}

template <class C> double SheetImplT<C>::marginRight() { return _setup.marginRight(); }

template <class C> void SheetImplT<C>::setMarginRight(double margin) {
    _setup.setMarginRight(margin);
}

template <class C> double SheetImplT<C>::marginTop() { return _setup.marginTop(); }

template <class C> void SheetImplT<C>::setMarginTop(double margin) { _setup.setMarginTop(margin); }

template <class C> double SheetImplT<C>::marginBottom() { return _setup.marginBottom(); }

template <class C> void SheetImplT<C>::setMarginBottom(double margin) {
    _setup.setMarginBottom(margin);
}

template <class C> bool SheetImplT<C>::printRowCol() { return _setup.printRowCol(); }

template <class C> void SheetImplT<C>::setPrintRowCol(bool print) { _setup.setPrintRowCol(print); }

// ---- protection ----

template <class C> bool SheetImplT<C>::protect() { return _setup.protect(); }

template <class C> void SheetImplT<C>::setProtect(bool protect) { _setup.setProtect(protect); }

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
