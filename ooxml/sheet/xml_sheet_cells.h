// The cell-level half of an Open XML sheet: the worksheet's bound tree and every
// cell operation of ISheetT, as plain methods that throw tberror.
#pragma once

#include "book/unsupported_operations.h"
#include "ooxml/binding/engine/document.h"
#include "ooxml/sheet/sheet_services.h"

namespace tabrix {

template <class C> class XMLSheetCellsT : public UnsupportedSheetT<C> {
protected:
    XMLSheetCellsT(SheetServicesT<C> &book, binding::e_edition edition); // an empty worksheet
    XMLSheetCellsT(SheetServicesT<C> &book, binding::e_edition edition, const char *bytes,
                   size_t size); // throws tberror
    XMLSheetCellsT(const XMLSheetCellsT &source,
                   SheetServicesT<C> &book); // a copy for another place in a book
    binding::c_document &document();
    SheetServicesT<C> &book();
    void markDimensionsStale();

private:
    SheetServicesT<C> *_book;
    binding::c_document _document;
};

extern template class XMLSheetCellsT<char>;
extern template class XMLSheetCellsT<wchar_t>;

} // namespace tabrix
