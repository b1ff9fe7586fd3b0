// The books the creation entry points hand out.  Each back end defines its
// own maker, so that the floor never includes a back end.
#ifndef TABRIX_BOOK_FACTORY_H
#define TABRIX_BOOK_FACTORY_H

#include "tabrix/IBookT.h"

namespace tabrix {

// A new, empty binary workbook (biff/).
template <class C> IBookT<C> *newBinaryBook();
// A new Open XML workbook, Transitional until a load says otherwise (ooxml/).
template <class C> IBookT<C> *newXMLBook();

} // namespace tabrix

#endif
