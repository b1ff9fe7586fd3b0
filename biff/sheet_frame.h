// What the sheet's operations share: the message they set and common texts.
// Only for the sheet's own source files.
#ifndef TABRIX_BIFF_SHEET_FRAME_H
#define TABRIX_BIFF_SHEET_FRAME_H

#include "biff/sheet_impl.h"
#include "biff/sheet_owner.h"
#include "book/tberror.h"

namespace tabrix {

extern const char *const kFormatNotFound;

template <class C> XString &SheetImplT<C>::frameMessage() { return _owner->message(); }

template <class C> void SheetImplT<C>::fail(const char *message) {
    _owner->message().assign(message);
}

} // namespace tabrix

#endif
