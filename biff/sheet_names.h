// SheetNames: the defined names of a binary book as one sheet sees them:
// print area, print titles and named ranges.  Names are the book's Lbl
// records; a name that points at sheets does so through a 3D reference,
// an index into the ExternSheet list of the book's reference to itself (a
// SupBook of 4 bytes: sheet count, 01 04).  Each name made here gets an XTI
// of its own that spans this sheet alone.
//
// A range name's formula is one of two forms:
//   area, 11 bytes:  0x3B, ixti, rwFirst, rwLast, colFirst, colLast
//   cell, 7 bytes:   0x3A, ixti, rw, col
// (all 16-bit).  Print titles over rows and columns at once take the
// union form, 26 bytes: 0x29, 23 (16-bit), an area of the rows over all
// columns, an area of the columns over all rows, 0x10.
//
// SheetNames holds references only; make one for each operation.
// Failures throw tberror with the texts the sheet reports.
#ifndef TABRIX_BIFF_SHEET_NAMES_H
#define TABRIX_BIFF_SHEET_NAMES_H

#include "biff/records/lbl.h"
#include "biff/records/sup_book_block.h"
#include "book/mem_pool.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tabrix {

class SheetNames {
public:
    // Scopes of a named range besides a sheet's index.
    static constexpr int kScopeBook = -1;
    static constexpr int kScopeThisSheet = -2;
    // Codes of the built-in names used here.
    static constexpr wchar_t kPrintArea = 6;
    static constexpr wchar_t kPrintTitles = 7;

    // `sheetIndex`: this sheet's position in the book; `sheetCount`: the
    // number of sheets, which a new self-reference records.
    SheetNames(std::vector<Lbl> &names, std::vector<SupBookBlock> &supBooks, MemPool &pool,
               int sheetIndex, int sheetCount);

    // ---- print area and titles (built-in names local to this sheet) ----
    // Overwrites this sheet's print area, or adds one.
    void setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast);
    void clearPrintArea();
    // Rows (or columns) repeated on each printed page.  Set next to titles
    // of the other kind, both are kept in the union form.
    void setPrintRepeatRows(int rowFirst, int rowLast);
    void setPrintRepeatCols(int colFirst, int colLast);
    void clearPrintRepeats();

    // ---- named ranges ----
    // scope: kScopeBook, kScopeThisSheet or a sheet's index.  An existing
    // name of that scope keeps its form: an area takes the four numbers, a
    // cell only the first corner.  A new name is a cell when the range is
    // one cell, else an area.  A blank in the name fails with "space symbol
    // isn't allowed".
    void setNamedRange(const wchar_t *name, int rowFirst, int rowLast, int colFirst, int colLast,
                       int scope);
    // The first range name of this sheet called `name` (any case; built-in
    // names by their text) in that scope.  Pointers may be null.  None:
    // "named range is not found".
    void getNamedRange(const wchar_t *name, int *rowFirst, int *rowLast, int *colFirst,
                       int *colLast, int scope, bool *hidden) const;
    // Erases every range name called `name` (any case) of that scope: with
    // kScopeThisSheet, those whose reference spans this sheet.  None erased:
    // "named range is not found".
    void delNamedRange(const wchar_t *name, int scope);
    // The range names that point at this sheet, in the book's order.
    int namedRangeSize() const;
    // The index-th of them: its name, range, scope (-1 for the book) and
    // hidden flag.  A bad index fails with "index is out of range".
    std::wstring namedRange(int index, int *rowFirst, int *rowLast, int *colFirst, int *colLast,
                            int *scope, bool *hidden) const;
    // Whether name `index` of the book is a range name whose reference
    // reaches this sheet through the self-reference.
    bool isNamedRangeFoundInSheet(size_t index) const;

    // Rows first..last were inserted (insert) or removed: range names of
    // this sheet follow.  An area moves only on insertion and never when it
    // covers whole columns; a cell at or past `first` moves down in both
    // cases.  Other forms are left alone.
    void updateNamedRange(int first, int last, bool insert);

    // ---- the self-reference ----
    // The first block that holds the ExternSheet, or null.
    static SupBookBlock *externSheetBlock(std::vector<SupBookBlock> &supBooks);
    static const SupBookBlock *externSheetBlock(const std::vector<SupBookBlock> &supBooks);
    // Appends an XTI spanning this sheet to the ExternSheet, making the
    // self-reference block first if the book has none; answers its index.
    uint16_t addSheetRef();
    // The index of an XTI spanning sheets first to last (-1: no sheet) of
    // the self-reference, appended unless `reuse` finds an equal one.
    uint16_t sheetRef(int first, int last, bool reuse);

private:
    // Index of this sheet's built-in name of `code`, or -1.
    int findBuiltin(wchar_t code) const;
    void eraseBuiltin(wchar_t code);
    Lbl &addBuiltin(wchar_t code, const std::vector<uint8_t> &rgce);
    void setPrintTitles(int first, int last, bool rows);
    // The XTI a name's first reference uses, or null when it doesn't go
    // through the self-reference.
    const XTI *xtiOf(const Lbl &lbl) const;
    bool spansThisSheet(const Lbl &lbl) const;
    bool scopeMatches(const Lbl &lbl, int scope) const;

    std::vector<Lbl> &_names;
    std::vector<SupBookBlock> &_supBooks;
    MemPool &_pool;
    int _sheet;
    int _sheetCount;
};

} // namespace tabrix

#endif
