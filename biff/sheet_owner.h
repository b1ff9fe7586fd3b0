// ISheetOwner: what a binary sheet needs from the book that owns it — the
// book's message, text mode and pool, the shared string table, the styling
// (formats by position, custom number format texts), the other sheets,
// which a string rewrite must search before it replaces a shared entry, the
// book's defined names with the references they go through, and the
// sheets' visibility, which the book keeps in its sheet list.
// BookImplT implements it; tests may hand a sheet a small fake.
#ifndef TABRIX_BIFF_SHEET_OWNER_H
#define TABRIX_BIFF_SHEET_OWNER_H

#include "biff/records/lbl.h"
#include "biff/records/sst.h"
#include "biff/records/sup_book_block.h"
#include "biff/style_table.h"
#include "book/mem_pool.h"
#include "book/tberror.h"
#include "book/xstring.h"
#include "tabrix/enums.h"

#include <vector>

namespace tabrix {

template <class C> class SheetImplT;
class MsoDrawingGroup;

template <class C> class ISheetOwner {
public:
    virtual ~ISheetOwner() {}
    // The message every sheet operation leaves ("ok" or the failure).
    virtual XString &message() = 0;
    virtual bool utf8Mode() const = 0;
    virtual MemPool &pool() = 0;
    virtual SST &sst() = 0;
    // Formats by position (the xf of a cell), fonts, custom number formats.
    virtual StyleTable<C> &styles() = 0;
    virtual int sheetCount() = 0;
    // The sheet at `index`, or null when out of range.
    virtual SheetImplT<C> *sheetAt(int index) = 0;
    // Position of `sheet` in the book, 0 when not found.
    virtual int getTabIndex(const SheetImplT<C> *sheet) = 0;
    // The version of the globals' header and the book's code page.  A book
    // of the older format (below 0x0600) reads every sheet in that format,
    // whatever the sheet's own header claims: texts without a flags byte in
    // the code page, 16-bit rows in Index.
    virtual int globalsVersion() { return 0x0600; }
    virtual unsigned codePage() { return 1200; }
    virtual bool refR1C1() = 0;
    virtual bool isDate1904() = 0;
    // The book's defined names and its external reference blocks.  An
    // owner that is no book (a benchmark's, a fuzzer's) has none.
    virtual std::vector<Lbl> &names() { throw tberror(kNoBook); }
    virtual std::vector<SupBookBlock> &supBooks() { throw tberror(kNoBook); }
    // The visibility of the sheet at `index`; the setter throws with the
    // text the sheet reports when the change is refused.
    virtual SheetState sheetHidden(int) { return SHEETSTATE_VISIBLE; }
    virtual void setSheetHidden(int, SheetState) { throw tberror(kNoBook); }

    // The book's drawing group: its pictures and shape id clusters.
    virtual MsoDrawingGroup &drawingGroup() { throw tberror(kNoBook); }

    static constexpr const char *kNoBook = "book not found";
};

} // namespace tabrix

#endif
