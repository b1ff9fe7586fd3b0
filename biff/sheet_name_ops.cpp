// SheetImplT: print area and titles, named ranges and the sheet's
// visibility.  Names are the book's; the sheet reaches them through a
// SheetNames made for each operation.
#include "biff/sheet_frame.h"

namespace tabrix {

template <class C> void SheetImplT<C>::setPrintRepeatRows(int rowFirst, int rowLast) {
    names().setPrintRepeatRows(rowFirst, rowLast);
}

template <class C> void SheetImplT<C>::setPrintRepeatCols(int colFirst, int colLast) {
    names().setPrintRepeatCols(colFirst, colLast);
}

template <class C>
void SheetImplT<C>::setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) {
    names().setPrintArea(rowFirst, rowLast, colFirst, colLast);
}

template <class C> void SheetImplT<C>::clearPrintRepeats() { names().clearPrintRepeats(); }

template <class C> void SheetImplT<C>::clearPrintArea() { names().clearPrintArea(); }

template <class C>
bool SheetImplT<C>::getNamedRange(const C *name, int *rowFirst, int *rowLast, int *colFirst,
                                  int *colLast, int scopeId, bool *hidden) {
    names().getNamedRange(wideArg(name).c_str(), rowFirst, rowLast, colFirst, colLast, scopeId,
                          hidden);
    return true;
}

template <class C>
bool SheetImplT<C>::setNamedRange(const C *name, int rowFirst, int rowLast, int colFirst,
                                  int colLast, int scopeId) {
    names().setNamedRange(wideArg(name).c_str(), rowFirst, rowLast, colFirst, colLast, scopeId);
    return true;
}

template <class C> bool SheetImplT<C>::delNamedRange(const C *name, int scopeId) {
    names().delNamedRange(wideArg(name).c_str(), scopeId);
    return true;
}

template <class C> int SheetImplT<C>::namedRangeSize() { return names().namedRangeSize(); }

template <class C>
const C *SheetImplT<C>::namedRange(int index, int *rowFirst, int *rowLast, int *colFirst,
                                   int *colLast, int *scopeId, bool *hidden) {
    _wide = names().namedRange(index, rowFirst, rowLast, colFirst, colLast, scopeId, hidden);
    return textResult(_wide.c_str());
}

template <class C> SheetState SheetImplT<C>::hidden() { return _owner->sheetHidden(getTab()); }

template <class C> bool SheetImplT<C>::setHidden(SheetState state) {
    _owner->setSheetHidden(getTab(), state);
    return true;
}

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
