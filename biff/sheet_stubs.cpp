// SheetImplT: the operations that later work brings (comments, pictures,
// grouping, moving rows and columns).  Each runs in the failure frame and
// answers its neutral value with "not supported yet".
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

template <class C> bool SheetImplT<C>::groupRows(int, int, bool) {
    return notYet(_owner->message(), false);
}

template <class C> bool SheetImplT<C>::groupCols(int, int, bool) {
    return notYet(_owner->message(), false);
}

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

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
