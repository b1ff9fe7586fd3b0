// FormulaPrinter: stored tokens back to formula text.  Each token becomes
// a word of the reverse Polish form and the words fold into infix text on
// a stack of strings.  Parentheses come only from parenthesis tokens, never
// from operator priority; arguments are separated by ";".  Numbers print
// in the shortest fixed form that reads back as the same double, error
// constants as their text, double quotes in strings doubled.
//
// A printer keeps its buffers between calls; use one per thread.
#ifndef TABRIX_FORMULA_FORMULA_PRINTER_H
#define TABRIX_FORMULA_FORMULA_PRINTER_H

#include "formula/formula_book.h"
#include "formula/func_map.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tabrix {

class FormulaPrinter {
public:
    explicit FormulaPrinter(const FuncMap &funcs = FuncMap::instance()) : _funcs(funcs) {}

    // The text of `n` token bytes, valid until the next call.  With
    // `relative` (shared formulas) relative references are offsets from
    // the cell (baseRow, baseCol).  `book` may be null: three-dimensional
    // references then print without their sheet.  Failures throw tberror
    // with the printer's messages.
    const std::wstring &print(const uint8_t *tokens, size_t n, FormulaBook *book,
                              bool relative = false, int baseRow = 0, int baseCol = 0);

private:
    void push(const wchar_t *text, size_t len);
    void pushWord(const std::wstring &word) { push(word.data(), word.size()); }
    // Replaces the top `count` strings by `open`, them joined by `sep`,
    // `close`.
    void fold(size_t count, const std::wstring &open, const std::wstring &sep,
              const std::wstring &close);
    void operand(const uint8_t *p, uint8_t op, FormulaBook *book, bool relative, int baseRow,
                 int baseCol);
    void function(const wchar_t *name, int count);
    void sheetPrefix(uint16_t index, FormulaBook *book, bool &bad);

    const FuncMap &_funcs;
    std::wstring _buf;
    std::vector<std::pair<size_t, size_t>> _stack;
    std::wstring _tmp, _word, _first, _last, _result;
};

// "A1", "$A$1"; with columnOnly just the column part ("$A").
void appendAddress(std::wstring &out, int row, int col, bool rowRelative, bool colRelative,
                   bool columnOnly = false);
// A sheet name as a formula writes it: in single quotes, quotes doubled,
// when it holds anything but letters, digits, "_" and ".".
std::wstring quoteSheetName(const std::wstring &name);

} // namespace tabrix

#endif
