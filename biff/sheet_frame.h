// The failure frame of a sheet's public operations and the texts they share.
// Only for the sheet's own source files.
#ifndef TABRIX_BIFF_SHEET_FRAME_H
#define TABRIX_BIFF_SHEET_FRAME_H

#include "biff/sheet_impl.h"
#include "biff/sheet_owner.h"
#include "book/failure_frame.h"
#include "book/tberror.h"

#include <utility>

namespace tabrix {

extern const char *const kNotSupportedYet;
extern const char *const kFormatNotFound;

template <class C>
template <class R, class Work>
R SheetImplT<C>::run(R neutral, Work &&work) {
    return guarded(_owner->message(), neutral, std::forward<Work>(work));
}

template <class C>
template <class Work>
void SheetImplT<C>::run(Work &&work) {
    guarded(_owner->message(), std::forward<Work>(work));
}

template <class C> void SheetImplT<C>::fail(const char *message) {
    _owner->message().assign(message);
}

} // namespace tabrix

#endif
