#include "ooxml/sheet/xml_sheet_cells.h"

#include "book/tberror.h"
#include "ooxml/package/flat_part.h"

namespace tabrix {

template <class C>
XMLSheetCellsT<C>::XMLSheetCellsT(SheetServicesT<C> &book, binding::e_edition edition)
    : _book(&book) {
    _document.create(edition, binding::PART_WORKSHEET);
    _document.root().append("sheetData");
}

template <class C>
XMLSheetCellsT<C>::XMLSheetCellsT(SheetServicesT<C> &book, binding::e_edition edition,
                                  const char *bytes, size_t size)
    : _book(&book) {
    if (size == 0) throw tberror("data is empty");
    throwXmlError(_document.unmarshal(bytes, size, edition, binding::PART_WORKSHEET));
}

template <class C>
XMLSheetCellsT<C>::XMLSheetCellsT(const XMLSheetCellsT &source, SheetServicesT<C> &book)
    : UnsupportedSheetT<C>(), _book(&book), _document(source._document) {}

template <class C> binding::c_document &XMLSheetCellsT<C>::document() { return _document; }
template <class C> SheetServicesT<C> &XMLSheetCellsT<C>::book() { return *_book; }
template <class C> void XMLSheetCellsT<C>::markDimensionsStale() {}

template class XMLSheetCellsT<char>;
template class XMLSheetCellsT<wchar_t>;

} // namespace tabrix
