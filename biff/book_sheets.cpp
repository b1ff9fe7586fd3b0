// BookImplT: the sheet list.  Inserting or deleting a sheet keeps the
// BoundSheet8 list beside it, moves the active sheet with its sheet, and
// shifts the sheet numbers held by names and by the book's reference to
// itself, so that names keep pointing at the same sheets.
#include "biff/book_impl.h"

#include "biff/sheet_impl.h"
#include "book/failure_frame.h"
#include "book/str_util.h"
#include "book/tberror.h"
#include "book/text_result.h"

#include <memory>

namespace tabrix {

namespace {

const char *const kOutOfRange = "index is out of range";
// XTI sheet numbers that refer to no sheet of this book.
const uint16_t kNoSheet = 0xFFFE;

} // namespace

template <class C> ISheetT<C> *BookImplT<C>::addSheet(const C *name, ISheetT<C> *initSheet) {
    if (_boundSheets.size() != _sheets.size())
        throw tberror("integrity error: _boundSheets.size() != _sheets.size()");
    return insertSheet(sheetCount(), name, initSheet);
}

template <class C>
SheetImplT<C> *BookImplT<C>::newSheet(const std::wstring &name, ISheetT<C> *initSheet) {
    if (!initSheet) {
        std::unique_ptr<SheetImplT<C>> sheet(new BinarySheetT<C>(*this, name));
        sheet->setRefA1(!_refR1C1);
        return sheet.release();
    }
    auto *src = dynamic_cast<SheetImplT<C> *>(initSheet);
    if (!src)
        throw tberror("a sheet of a binary workbook can only be copied from a binary workbook");
    // From another book the copy brings its strings and formats over.
    std::unique_ptr<SheetImplT<C>> sheet(new BinarySheetT<C>(*src, *this));
    sheet->setWideName(name);
    sheet->setSelected(false);
    return sheet.release();
}

template <class C>
ISheetT<C> *BookImplT<C>::insertSheet(int index, const C *name, ISheetT<C> *initSheet) {
    if (index < 0 || index > sheetCount()) throw tberror(kOutOfRange);
    if (sheetCount() >= kMaxSheets) throw tberror("workbook has too many sheets");
    bool cut = false;
    std::wstring wide = SheetImplT<C>::sheetName(name, _utf8Mode, cut);
    for (SheetImplT<C> *s : _sheets)
        if (sicmp(s->wideName(), wide) == 0) throw tberror("book already contains such sheet name");

    BoundSheet8 entry;
    entry.hsState = 0;
    entry.dt = 0;
    entry.name.setString(wide.c_str(), pool());
    std::unique_ptr<SheetImplT<C>> sheet(newSheet(wide, initSheet));
    _boundSheets.insert(_boundSheets.begin() + index, entry);
    _sheets.insert(_sheets.begin() + index, sheet.get());
    SheetImplT<C> *added = sheet.release();

    int active = activeSheet();
    if (_sheets.size() == 1)
        selectOnly(0);
    else if (index <= active)
        selectOnly(active + 1);
    shiftNamesOnInsert(index);
    rebuildRRTabId();
    message().assign(cut ? "warning: sheet's name is cut to 31 characters" : "ok");
    return added;
}

// Names bound to a sheet at or behind the new one move with their sheet;
// so do the sheet ranges of the book's reference to itself.
template <class C> void BookImplT<C>::shiftNamesOnInsert(int index) {
    for (Lbl &l : _names)
        if (l.itab > index) ++l.itab;
    for (SupBookBlock &b : _supBookBlocks) {
        if (!b.hasExternSheet || !b.isSelfRef()) continue;
        for (XTI &x : b.externSheet.rgXTI) {
            if (x.itabFirst >= kNoSheet) continue;
            if (index > x.itabFirst) {
                if (index <= x.itabLast && x.itabLast < kNoSheet) ++x.itabLast;
            } else {
                ++x.itabFirst;
                if (x.itabLast < kNoSheet) ++x.itabLast;
            }
        }
    }
}

// Names of sheets behind the removed one move down; of the names of the
// removed sheet the last found goes.  References to the removed sheet in
// the book's reference to itself point at no sheet any more.
template <class C> void BookImplT<C>::shiftNamesOnDelete(int index) {
    int tab = index + 1;
    size_t victim = _names.size();
    for (size_t i = 0; i < _names.size(); ++i) {
        Lbl &l = _names[i];
        if (l.itab > tab)
            --l.itab;
        else if (l.itab == tab)
            victim = i;
    }
    if (victim < _names.size()) _names.erase(_names.begin() + long(victim));

    for (SupBookBlock &b : _supBookBlocks) {
        if (!b.hasExternSheet || !b.isSelfRef()) continue;
        // The self-reference's first two bytes count the book's sheets.
        uint16_t count = uint16_t(_sheets.size() - 1);
        b.supBook.data[0] = uint8_t(count);
        b.supBook.data[1] = uint8_t(count >> 8);
        for (XTI &x : b.externSheet.rgXTI) {
            if (x.itabFirst >= kNoSheet) continue;
            if (index < x.itabFirst) {
                --x.itabFirst;
                if (index < x.itabLast && x.itabLast < kNoSheet) --x.itabLast;
            } else if (index <= x.itabLast) {
                x.itabFirst = 0xFFFF;
                x.itabLast = 0xFFFF;
            }
        }
        break;
    }
}

template <class C> void BookImplT<C>::rebuildRRTabId() {
    _rrTabId.resize(_sheets.size());
    for (size_t i = 0; i < _rrTabId.size(); ++i) _rrTabId[i] = uint16_t(i + 1);
}

template <class C> bool BookImplT<C>::delSheet(int index) {
    if (index < 0 || index >= sheetCount()) throw tberror(kOutOfRange);
    if (sheetCount() == 1) throw tberror("can't remove the last sheet in workbook");
    shiftNamesOnDelete(index);
    // A caller may still hold the sheet: it lives on until the book is
    // cleared.
    _removedSheets.push_back(_sheets[size_t(index)]);
    _sheets.erase(_sheets.begin() + index);
    _boundSheets.erase(_boundSheets.begin() + index);
    int active = activeSheet();
    selectOnly(active >= sheetCount() ? sheetCount() - 1 : active);
    rebuildRRTabId();
    return true;
}

template <class C> ISheetT<C> *BookImplT<C>::getSheet(int index) {
    if (index < 0 || index >= sheetCount()) throw tberror(kOutOfRange);
    return _sheets[size_t(index)];
}

template <class C> SheetType BookImplT<C>::sheetType(int index) {
    if (index < 0 || index >= sheetCount()) throw tberror(kOutOfRange);
    switch (_sheets[size_t(index)]->docType()) {
    case 16: return SHEETTYPE_SHEET;
    case 32: return SHEETTYPE_CHART;
    default: return SHEETTYPE_UNKNOWN;
    }
}

template <class C> SheetState BookImplT<C>::sheetHidden(int index) {
    if (index < 0 || size_t(index) >= _boundSheets.size()) throw tberror(kOutOfRange);
    return SheetState(_boundSheets[size_t(index)].hsState & 3);
}

// Hiding the last visible sheet is refused: a book always shows one.
template <class C> void BookImplT<C>::setSheetHidden(int index, SheetState state) {
    if (index < 0 || size_t(index) >= _boundSheets.size()) throw tberror(kOutOfRange);
    if (state != SHEETSTATE_VISIBLE && state != SHEETSTATE_HIDDEN && state != SHEETSTATE_VERYHIDDEN)
        throw tberror("sheet state is invalid");
    BoundSheet8 &entry = _boundSheets[size_t(index)];
    if (state != SHEETSTATE_VISIBLE && (entry.hsState & 3) == 0 && visibleSheetCount() < 2)
        throw tberror("a workbook must contain at least one visible worksheet");
    entry.hsState = uint8_t((entry.hsState & ~3) | state);
    calcFirstTab();
    calcActiveSheet();
}

template <class C> void BookImplT<C>::setActiveSheet(int index) {
    if (index < 0 || index >= sheetCount()) throw tberror(kOutOfRange);
    selectOnly(index);
}

template <class C> void BookImplT<C>::selectOnly(int index) {
    _window1.itabCur = uint16_t(index);
    for (size_t i = 0; i < _sheets.size(); ++i) _sheets[i]->setSelected(int(i) == index);
}

template class BookImplT<char>;
template class BookImplT<wchar_t>;

} // namespace tabrix
