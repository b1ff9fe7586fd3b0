#include "ooxml/book/part_generator.h"

#include "ooxml/book/xml_book_impl.h"
#include "ooxml/drawing/drawing.h"
#include "ooxml/package/package_names.h"
#include "ooxml/sheet/xml_sheet_impl.h"

namespace tabrix {

template <class C> bool XGenerator<C>::isWorkbookType(const std::wstring &type) {
    return type == pkg::kCtWorkbook || type == pkg::kCtWorkbookMacro || type == pkg::kCtTemplate ||
           type == pkg::kCtTemplateMacro;
}

template <class C>
XFile *XGenerator<C>::create(XMLBookImplT<C> &book, const char *bytes, size_t size,
                             const std::wstring &type) {
    if (isWorkbookType(type)) return nullptr;
    const binding::e_edition edition = book.edition();
    if (type == pkg::kCtRelationships) return new Relationships(bytes, size);
    if (type == pkg::kCtStyles) return new Styles<C>(edition, bytes, size, book.utf8Mode());
    if (type == pkg::kCtSharedStrings) return new SharedStrings(edition, bytes, size);
    if (type == pkg::kCtWorksheet)
        return new FramedSheetT<XMLSheetImplT<C>>(book, edition, bytes, size);
    if (type == pkg::kCtChartsheet) return new XMLChartSheet(bytes, size);
    if (type == pkg::kCtDrawing) {
        // A drawing the binding can't read still comes through a save as
        // bytes; its pictures are then not listed.
        try {
            return new Drawing(edition, bytes, size);
        } catch (const std::exception &) {
            return new BinaryFile(bytes, size);
        }
    }
    // Theme, properties, printer settings, comments, tables, VBA
    // and anything unknown stay as they are.
    return new BinaryFile(bytes, size);
}

template class XGenerator<char>;
template class XGenerator<wchar_t>;

} // namespace tabrix
