// SheetImplT: page breaks, panes, printout, window and protection.  Each
// operation runs in the failure frame over the sheet's SheetSetup.
#include "biff/sheet_frame.h"

namespace tabrix {

// ---- page breaks and panes ----

template <class C> int SheetImplT<C>::getHorPageBreak(int index) {
    return run(0, [&] { return _setup.horPageBreak(index); });
}

template <class C> int SheetImplT<C>::getHorPageBreakSize() {
    return run(0, [&] { return _setup.horPageBreakSize(); });
}

template <class C> int SheetImplT<C>::getVerPageBreak(int index) {
    return run(0, [&] { return _setup.verPageBreak(index); });
}

template <class C> int SheetImplT<C>::getVerPageBreakSize() {
    return run(0, [&] { return _setup.verPageBreakSize(); });
}

template <class C> bool SheetImplT<C>::setHorPageBreak(int row, bool pageBreak) {
    return run(false, [&] {
        _setup.setHorPageBreak(row, pageBreak);
        return true;
    });
}

template <class C> bool SheetImplT<C>::setVerPageBreak(int col, bool pageBreak) {
    return run(false, [&] {
        _setup.setVerPageBreak(col, pageBreak);
        return true;
    });
}

template <class C> void SheetImplT<C>::split(int row, int col) {
    run([&] {
        checkRanges(row, col);
        _setup.split(row, col);
    });
}

template <class C> bool SheetImplT<C>::groupSummaryBelow() {
    return run(false, [&] { return _setup.groupSummaryBelow(); });
}

template <class C> void SheetImplT<C>::setGroupSummaryBelow(bool below) {
    run([&] { _setup.setGroupSummaryBelow(below); });
}

template <class C> bool SheetImplT<C>::groupSummaryRight() {
    return run(false, [&] { return _setup.groupSummaryRight(); });
}

template <class C> void SheetImplT<C>::setGroupSummaryRight(bool right) {
    run([&] { _setup.setGroupSummaryRight(right); });
}

// ---- window ----

template <class C> bool SheetImplT<C>::displayGridlines() {
    return run(false, [&] { return _setup.displayGridlines(); });
}

template <class C> void SheetImplT<C>::setDisplayGridlines(bool show) {
    run([&] { _setup.setDisplayGridlines(show); });
}

template <class C> int SheetImplT<C>::zoom() {
    return run(0, [&] { return _setup.zoom(); });
}

template <class C> void SheetImplT<C>::setZoom(int zoom) {
    run([&] { _setup.setZoom(zoom); });
}

template <class C> void SheetImplT<C>::getTopLeftView(int *row, int *col) {
    run([&] { _setup.getTopLeftView(row, col); });
}

template <class C> void SheetImplT<C>::setTopLeftView(int row, int col) {
    run([&] { _setup.setTopLeftView(row, col); });
}

template <class C> bool SheetImplT<C>::rightToLeft() {
    return run(false, [&] { return _setup.rightToLeft(); });
}

template <class C> void SheetImplT<C>::setRightToLeft(bool rightToLeft) {
    run([&] { _setup.setRightToLeft(rightToLeft); });
}

// ---- printout ----

template <class C> bool SheetImplT<C>::printGridlines() {
    return run(false, [&] { return _setup.printGridlines(); });
}

template <class C> void SheetImplT<C>::setPrintGridlines(bool print) {
    run([&] { _setup.setPrintGridlines(print); });
}

template <class C> int SheetImplT<C>::printZoom() {
    return run(0, [&] { return _setup.printZoom(); });
}

template <class C> void SheetImplT<C>::setPrintZoom(int zoom) {
    run([&] { _setup.setPrintZoom(zoom); });
}

template <class C> bool SheetImplT<C>::getPrintFit(int *wPages, int *hPages) {
    return run(false, [&] { return _setup.getPrintFit(wPages, hPages); });
}

template <class C> void SheetImplT<C>::setPrintFit(int wPages, int hPages) {
    run([&] { _setup.setPrintFit(wPages, hPages); });
}

template <class C> bool SheetImplT<C>::landscape() {
    return run(false, [&] { return _setup.landscape(); });
}

template <class C> void SheetImplT<C>::setLandscape(bool landscape) {
    run([&] { _setup.setLandscape(landscape); });
}

template <class C> Paper SheetImplT<C>::paper() {
    return run(PAPER_DEFAULT, [&] { return _setup.paper(); });
}

template <class C> void SheetImplT<C>::setPaper(Paper paper) {
    run([&] { _setup.setPaper(paper); });
}

template <class C> const C *SheetImplT<C>::header() {
    return run(static_cast<const C *>(nullptr), [&] { return textResult(_setup.header()); });
}

template <class C> bool SheetImplT<C>::setHeader(const C *header, double margin) {
    return run(false, [&] {
        _setup.setHeader(header ? wideArg(header).c_str() : nullptr, margin);
        return true;
    });
}

template <class C> double SheetImplT<C>::headerMargin() {
    return run(0.0, [&] { return _setup.headerMargin(); });
}

template <class C> const C *SheetImplT<C>::footer() {
    return run(static_cast<const C *>(nullptr), [&] { return textResult(_setup.footer()); });
}

template <class C> bool SheetImplT<C>::setFooter(const C *footer, double margin) {
    return run(false, [&] {
        _setup.setFooter(footer ? wideArg(footer).c_str() : nullptr, margin);
        return true;
    });
}

template <class C> double SheetImplT<C>::footerMargin() {
    return run(0.0, [&] { return _setup.footerMargin(); });
}

template <class C> bool SheetImplT<C>::hCenter() {
    return run(false, [&] { return _setup.hCenter(); });
}

template <class C> void SheetImplT<C>::setHCenter(bool center) {
    run([&] { _setup.setHCenter(center); });
}

template <class C> bool SheetImplT<C>::vCenter() {
    return run(false, [&] { return _setup.vCenter(); });
}

template <class C> void SheetImplT<C>::setVCenter(bool center) {
    run([&] { _setup.setVCenter(center); });
}

template <class C> double SheetImplT<C>::marginLeft() {
    return run(0.0, [&] { return _setup.marginLeft(); });
}

template <class C> void SheetImplT<C>::setMarginLeft(double margin) {
    run([&] { _setup.setMarginLeft(margin); });
}

template <class C> double SheetImplT<C>::marginRight() {
    return run(0.0, [&] { return _setup.marginRight(); });
}

template <class C> void SheetImplT<C>::setMarginRight(double margin) {
    run([&] { _setup.setMarginRight(margin); });
}

template <class C> double SheetImplT<C>::marginTop() {
    return run(0.0, [&] { return _setup.marginTop(); });
}

template <class C> void SheetImplT<C>::setMarginTop(double margin) {
    run([&] { _setup.setMarginTop(margin); });
}

template <class C> double SheetImplT<C>::marginBottom() {
    return run(0.0, [&] { return _setup.marginBottom(); });
}

template <class C> void SheetImplT<C>::setMarginBottom(double margin) {
    run([&] { _setup.setMarginBottom(margin); });
}

template <class C> bool SheetImplT<C>::printRowCol() {
    return run(false, [&] { return _setup.printRowCol(); });
}

template <class C> void SheetImplT<C>::setPrintRowCol(bool print) {
    run([&] { _setup.setPrintRowCol(print); });
}

// ---- protection ----

template <class C> bool SheetImplT<C>::protect() {
    return run(false, [&] { return _setup.protect(); });
}

template <class C> void SheetImplT<C>::setProtect(bool protect) {
    run([&] { _setup.setProtect(protect); });
}

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
