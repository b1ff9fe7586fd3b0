// FormulaBook: what the formula parser and printer need from the book that
// holds the formula — its sheets, by name and position, the external sheet
// references of three-dimensional tokens, and its defined names.  The
// binary book implements it; tests use small fakes.
#ifndef TABRIX_FORMULA_FORMULA_BOOK_H
#define TABRIX_FORMULA_FORMULA_BOOK_H

#include <cstdint>
#include <string>

namespace tabrix {

class FormulaBook {
public:
    virtual ~FormulaBook() {}
    // The position of the sheet called `name` (any case), -1 when none is.
    virtual int sheetIndex(const std::wstring &name) = 0;
    // The index of the external sheet entry that spans sheets `first` to
    // `last` of this book (-1: no such sheet), made when missing.
    virtual uint16_t sheetRef(int first, int last) = 0;
    // The sheet range of external sheet entry `index`: false when the book
    // has no entries at all; otherwise true, with `first` and `last` the
    // sheet names, or `bad` set when the entry points nowhere printable.
    virtual bool sheetRange(uint16_t index, std::wstring &first, std::wstring &last, bool &bad) = 0;
    // The text of defined name `index` (from 1); false when there is none.
    virtual bool definedName(uint32_t index, std::wstring &name) = 0;
};

} // namespace tabrix

#endif
