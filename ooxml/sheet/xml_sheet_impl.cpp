#include "ooxml/sheet/xml_sheet_impl.h"

#include "book/mapped_memory.h"
#include "book/text_result.h"
#include "ooxml/binding/parts/worksheet_facades.h"
#include "ooxml/book/xml_book_impl.h"
#include "ooxml/package/flat_part.h"

namespace tabrix {

template <class C>
XMLSheetImplT<C>::XMLSheetImplT(XMLBookImplT<C> &book, binding::e_edition edition)
    : XMLSheetCellsT<C>(book, edition), _owner(&book) {}

template <class C>
XMLSheetImplT<C>::XMLSheetImplT(XMLBookImplT<C> &book, binding::e_edition edition,
                                const char *bytes, size_t size)
    : XMLSheetCellsT<C>(book, edition, bytes, size), _owner(&book) {}

template <class C>
XMLSheetImplT<C>::XMLSheetImplT(const XMLSheetImplT &source, XMLBookImplT<C> &book)
    : XMLSheetCellsT<C>(source, book), XFile(), _owner(&book) {}

template <class C> XString &XMLSheetImplT<C>::frameMessage() { return _owner->message(); }

// Row spans go stale with any cell edit and are only a hint to readers, so
// they are dropped; a sheet without row format properties gets the default
// row height readers expect.  Foreign attributes and extension lists of the
// source are written back as read.
template <class C> void XMLSheetImplT<C>::save(std::string &out) {
    binding::c_node &root = this->document().root();
    // Room for the part, so that a large sheet is not copied as it grows:
    // a plain cell takes some 24 to 40 bytes, a row some 20.  Pages of the
    // room left unwritten are never touched, so the bound is generous.
    size_t room = 4096;
    if (binding::c_node *data = root.child("sheetData"))
        for (binding::c_child &c : data->_children)
            if (c.kind == binding::K_HAND)
                if (auto *row = dynamic_cast<binding::c_row_data *>(c.hand.get())) {
                    row->unset_attribute("spans");
                    room += 32 + 48 * row->cells().size();
                }
    if (!root.child("sheetFormatPr")) {
        if (binding::c_node *pr = root.append("sheetFormatPr"))
            pr->set_attribute("defaultRowHeight", "15");
    }
    out.clear();
    out.reserve(room);
    adviseHugePages(out.data(), out.capacity());
    throwXmlError(this->document().marshal(out));
}

template <class C> const C *XMLSheetImplT<C>::name() {
    const std::string utf8(_owner->sheetEntry(this).attribute_or_default("name"));
    std::wstring wide;
    utf8ToWide(utf8.c_str(), wide);
    return textResult<C>(_text, _owner->message(), wide.c_str(), _owner->utf8Mode());
}

// Defined names citing the sheet follow the new name.
template <class C> void XMLSheetImplT<C>::setName(const C *name) {
    const std::wstring before = sheetName();
    const bool cut = _owner->renameSheet(this, name);
    _owner->changeDependencies(before, sheetName());
    if (cut) _owner->message().assign("warning: sheet's name is cut to 31 characters");
}

template <class C> SheetState XMLSheetImplT<C>::hidden() { return _owner->sheetState(this); }

template <class C> bool XMLSheetImplT<C>::setHidden(SheetState state) {
    _owner->setSheetState(this, state);
    return true;
}

template <class C> void XMLSheetImplT<C>::setSelected(bool selected) {
    binding::c_worksheet sheet(&this->document().root());
    if (!sheet.isset_sheetViews()) {
        if (!selected) return;
        sheet.get_sheetViews().append_sheetView().set_workbookViewId(0);
    }
    binding::c_sheet_views views = sheet.get_sheetViews();
    if (views.size_sheetView() == 0) views.append_sheetView().set_workbookViewId(0);
    for (size_t i = 0; i < views.size_sheetView(); ++i) {
        binding::c_sheet_view view = views.get_sheetView(i);
        if (selected)
            view.set_tabSelected(true);
        else
            view.unset_tabSelected();
    }
}

template class XMLSheetImplT<char>;
template class XMLSheetImplT<wchar_t>;

} // namespace tabrix
