// SheetImplT: the operations that later work brings (comments, pictures,
// page breaks, grouping, moving rows and columns, page setup, names,
// protection, visibility and view settings).  Each runs in the failure
// frame and answers its neutral value with "not supported yet".
#include "biff/sheet_frame.h"

namespace tabrix {

namespace {
template <class Message, class R> R notYet(Message &message, R neutral) {
    return guarded(message, neutral, []() -> R { throw tberror(kNotSupportedYet); });
}
template <class Message> void notYet(Message &message) {
    guarded(message, []() { throw tberror(kNotSupportedYet); });
}
} // namespace

template <class C> const C *SheetImplT<C>::readComment(int, int) {
    return notYet(_owner->message(), static_cast<const C *>(nullptr));
}

template <class C> void SheetImplT<C>::writeComment(int, int, const C *, const C *, int, int) {
    notYet(_owner->message());
}

template <class C> int SheetImplT<C>::pictureSize() { return notYet(_owner->message(), 0); }

template <class C>
int SheetImplT<C>::getPicture(int, int *, int *, int *, int *, int *, int *, int *, int *) {
    return notYet(_owner->message(), 0);
}

template <class C> void SheetImplT<C>::setPicture(int, int, int, double, int, int) {
    notYet(_owner->message());
}

template <class C> void SheetImplT<C>::setPicture2(int, int, int, int, int, int, int) {
    notYet(_owner->message());
}

template <class C> int SheetImplT<C>::getHorPageBreak(int) { return notYet(_owner->message(), 0); }

template <class C> int SheetImplT<C>::getHorPageBreakSize() { return notYet(_owner->message(), 0); }

template <class C> int SheetImplT<C>::getVerPageBreak(int) { return notYet(_owner->message(), 0); }

template <class C> int SheetImplT<C>::getVerPageBreakSize() { return notYet(_owner->message(), 0); }

template <class C> bool SheetImplT<C>::setHorPageBreak(int, bool) {
    return notYet(_owner->message(), false);
}

template <class C> bool SheetImplT<C>::setVerPageBreak(int, bool) {
    return notYet(_owner->message(), false);
}

template <class C> void SheetImplT<C>::split(int, int) { notYet(_owner->message()); }

template <class C> bool SheetImplT<C>::groupRows(int, int, bool) {
    return notYet(_owner->message(), false);
}

template <class C> bool SheetImplT<C>::groupCols(int, int, bool) {
    return notYet(_owner->message(), false);
}

template <class C> bool SheetImplT<C>::groupSummaryBelow() {
    return notYet(_owner->message(), false);
}

template <class C> void SheetImplT<C>::setGroupSummaryBelow(bool) { notYet(_owner->message()); }

template <class C> bool SheetImplT<C>::groupSummaryRight() {
    return notYet(_owner->message(), false);
}

template <class C> void SheetImplT<C>::setGroupSummaryRight(bool) { notYet(_owner->message()); }

template <class C> bool SheetImplT<C>::insertCol(int, int) {
    return notYet(_owner->message(), false);
}

template <class C> bool SheetImplT<C>::insertRow(int, int) {
    return notYet(_owner->message(), false);
}

template <class C> bool SheetImplT<C>::removeCol(int, int) {
    return notYet(_owner->message(), false);
}

template <class C> bool SheetImplT<C>::removeRow(int, int) {
    return notYet(_owner->message(), false);
}

template <class C> bool SheetImplT<C>::displayGridlines() {
    return notYet(_owner->message(), false);
}

template <class C> void SheetImplT<C>::setDisplayGridlines(bool) { notYet(_owner->message()); }

template <class C> bool SheetImplT<C>::printGridlines() { return notYet(_owner->message(), false); }

template <class C> void SheetImplT<C>::setPrintGridlines(bool) { notYet(_owner->message()); }

template <class C> int SheetImplT<C>::zoom() { return notYet(_owner->message(), 0); }

template <class C> void SheetImplT<C>::setZoom(int) { notYet(_owner->message()); }

template <class C> int SheetImplT<C>::printZoom() { return notYet(_owner->message(), 0); }

template <class C> void SheetImplT<C>::setPrintZoom(int) { notYet(_owner->message()); }

template <class C> bool SheetImplT<C>::getPrintFit(int *, int *) {
    return notYet(_owner->message(), false);
}

template <class C> void SheetImplT<C>::setPrintFit(int, int) { notYet(_owner->message()); }

template <class C> bool SheetImplT<C>::landscape() { return notYet(_owner->message(), false); }

template <class C> void SheetImplT<C>::setLandscape(bool) { notYet(_owner->message()); }

template <class C> Paper SheetImplT<C>::paper() { return notYet(_owner->message(), PAPER_DEFAULT); }

template <class C> void SheetImplT<C>::setPaper(Paper) { notYet(_owner->message()); }

template <class C> const C *SheetImplT<C>::header() {
    return notYet(_owner->message(), static_cast<const C *>(nullptr));
}

template <class C> bool SheetImplT<C>::setHeader(const C *, double) {
    return notYet(_owner->message(), false);
}

template <class C> double SheetImplT<C>::headerMargin() { return notYet(_owner->message(), 0.0); }

template <class C> const C *SheetImplT<C>::footer() {
    return notYet(_owner->message(), static_cast<const C *>(nullptr));
}

template <class C> bool SheetImplT<C>::setFooter(const C *, double) {
    return notYet(_owner->message(), false);
}

template <class C> double SheetImplT<C>::footerMargin() { return notYet(_owner->message(), 0.0); }

template <class C> bool SheetImplT<C>::hCenter() { return notYet(_owner->message(), false); }

template <class C> void SheetImplT<C>::setHCenter(bool) { notYet(_owner->message()); }

template <class C> bool SheetImplT<C>::vCenter() { return notYet(_owner->message(), false); }

template <class C> void SheetImplT<C>::setVCenter(bool) { notYet(_owner->message()); }

template <class C> double SheetImplT<C>::marginLeft() { return notYet(_owner->message(), 0.0); }

template <class C> void SheetImplT<C>::setMarginLeft(double) { notYet(_owner->message()); }

template <class C> double SheetImplT<C>::marginRight() { return notYet(_owner->message(), 0.0); }

template <class C> void SheetImplT<C>::setMarginRight(double) { notYet(_owner->message()); }

template <class C> double SheetImplT<C>::marginTop() { return notYet(_owner->message(), 0.0); }

template <class C> void SheetImplT<C>::setMarginTop(double) { notYet(_owner->message()); }

template <class C> double SheetImplT<C>::marginBottom() { return notYet(_owner->message(), 0.0); }

template <class C> void SheetImplT<C>::setMarginBottom(double) { notYet(_owner->message()); }

template <class C> bool SheetImplT<C>::printRowCol() { return notYet(_owner->message(), false); }

template <class C> void SheetImplT<C>::setPrintRowCol(bool) { notYet(_owner->message()); }

template <class C> void SheetImplT<C>::setPrintRepeatRows(int, int) { notYet(_owner->message()); }

template <class C> void SheetImplT<C>::setPrintRepeatCols(int, int) { notYet(_owner->message()); }

template <class C> void SheetImplT<C>::setPrintArea(int, int, int, int) {
    notYet(_owner->message());
}

template <class C> void SheetImplT<C>::clearPrintRepeats() { notYet(_owner->message()); }

template <class C> void SheetImplT<C>::clearPrintArea() { notYet(_owner->message()); }

template <class C>
bool SheetImplT<C>::getNamedRange(const C *, int *, int *, int *, int *, int, bool *) {
    return notYet(_owner->message(), false);
}

template <class C> bool SheetImplT<C>::setNamedRange(const C *, int, int, int, int, int) {
    return notYet(_owner->message(), false);
}

template <class C> bool SheetImplT<C>::delNamedRange(const C *, int) {
    return notYet(_owner->message(), false);
}

template <class C> int SheetImplT<C>::namedRangeSize() { return notYet(_owner->message(), 0); }

template <class C>
const C *SheetImplT<C>::namedRange(int, int *, int *, int *, int *, int *, bool *) {
    return notYet(_owner->message(), static_cast<const C *>(nullptr));
}

template <class C> bool SheetImplT<C>::protect() { return notYet(_owner->message(), false); }

template <class C> void SheetImplT<C>::setProtect(bool) { notYet(_owner->message()); }

template <class C> SheetState SheetImplT<C>::hidden() {
    return notYet(_owner->message(), SHEETSTATE_VISIBLE);
}

template <class C> bool SheetImplT<C>::setHidden(SheetState) {
    return notYet(_owner->message(), false);
}

template <class C> void SheetImplT<C>::getTopLeftView(int *, int *) { notYet(_owner->message()); }

template <class C> void SheetImplT<C>::setTopLeftView(int, int) { notYet(_owner->message()); }

template <class C> bool SheetImplT<C>::rightToLeft() { return notYet(_owner->message(), false); }

template <class C> void SheetImplT<C>::setRightToLeft(bool) { notYet(_owner->message()); }

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
