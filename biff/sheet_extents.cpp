// SheetImplT: extents, clearing and copying cells, and moving a shared
// formula definition away from a cell about to be overwritten.
#include "biff/sheet_frame.h"

#include <algorithm>

namespace tabrix {

template <class C> void SheetImplT<C>::recalcDimensions() {
    _dimensions.reset();
    // A row widens the extents by its first and last cells only, and no
    // cell lies beyond the row's column bound.
    for (unsigned r = 0; r < SheetIndex::kRows; ++r) {
        if (!_index.hasRow(r)) continue;
        const unsigned bound = _index.lastColBound(r);
        unsigned first = 0;
        while (first <= bound && !SheetIndex::exists(_index.get(r, first))) ++first;
        if (first > bound) continue;
        unsigned last = bound;
        while (!SheetIndex::exists(_index.get(r, last))) --last;
        _dimensions.update(r, uint16_t(first));
        _dimensions.update(r, uint16_t(last));
    }
    for (const MergeCells &m : _mergeCells)
        for (const MergeCells::Area &a : m.areas) {
            _dimensions.update(a.ref.rwFirst, a.ref.colFirst);
            _dimensions.update(a.ref.rwLast, a.ref.colLast);
        }
    _dirty = false;
}

template <class C> int SheetImplT<C>::firstRow() {
    if (_dirty) recalcDimensions();
    return int(_dimensions.firstRow);
}

template <class C> int SheetImplT<C>::lastRow() {
    if (_dirty) recalcDimensions();
    return int(_dimensions.lastRow);
}

template <class C> int SheetImplT<C>::firstCol() {
    if (_dirty) recalcDimensions();
    return int(_dimensions.firstCol);
}

template <class C> int SheetImplT<C>::lastCol() {
    if (_dirty) recalcDimensions();
    return int(_dimensions.lastCol);
}

template <class C>
void SheetImplT<C>::clearIndexes(int rowFirst, int rowLast, int colFirst, int colLast,
                                 bool blanksOnly) {
    rowFirst = std::max(rowFirst, 0);
    colFirst = std::max(colFirst, 0);
    rowLast = std::min(rowLast, SheetIndex::kRows - 1);
    colLast = std::min(colLast, SheetIndex::kCols - 1);
    for (int r = rowFirst; r <= rowLast; ++r)
        for (int c = colFirst; c <= colLast; ++c) {
            uint32_t &code = _index.at(unsigned(r), unsigned(c));
            if (!blanksOnly ||
                (SheetIndex::exists(code) && SheetIndex::kind(code) == SheetIndex::kBlank))
                code = 0;
        }
}

template <class C> bool SheetImplT<C>::clear(int rowFirst, int rowLast, int colFirst, int colLast) {
    if (rowLast < rowFirst) throw tberror("rowLast must be greater than or equal to rowFirst");
    if (colLast < colFirst) throw tberror("colLast must be greater than or equal to colFirst");
    rowFirst = std::max(rowFirst, 0);
    colFirst = std::max(colFirst, 0);
    rowLast = std::min(rowLast, SheetIndex::kRows - 1);
    colLast = std::min(colLast, SheetIndex::kCols - 1);
    // Only rows that hold cells need visiting: no page means no cell.
    for (int r = rowFirst; r <= rowLast; ++r) {
        if (!_index.hasRow(unsigned(r))) continue;
        for (int c = colFirst; c <= colLast; ++c) _index.at(unsigned(r), unsigned(c)) = 0;
    }
    eraseNotes(rowFirst, rowLast, colFirst, colLast);
    // Merged areas that overlap go, with the blanks of the whole area.
    for (MergeCells &m : _mergeCells) {
        for (MergeCells::Area &a : m.areas) {
            const Ref8 &ref = a.ref;
            if (ref.rwFirst == 0 && ref.rwLast == 0 && ref.colFirst == 0 && ref.colLast == 255)
                continue;
            if (ref.rwLast < rowFirst || ref.rwFirst > rowLast || ref.colLast < colFirst ||
                ref.colFirst > colLast)
                continue;
            clearIndexes(ref.rwFirst, ref.rwLast, ref.colFirst, ref.colLast, true);
            a.deleted = true;
        }
        m.eraseDeleted();
    }
    _mergeCells.erase(std::remove_if(_mergeCells.begin(), _mergeCells.end(),
                                     [](const MergeCells &m) { return m.areas.empty(); }),
                      _mergeCells.end());
    _dirty = true;
    return true;
}

template <class C> bool SheetImplT<C>::copyCell(int rowSrc, int colSrc, int rowDst, int colDst) {
    checkRanges(rowSrc, colSrc);
    checkRanges(rowDst, colDst);
    const uint32_t src = codeAt(rowSrc, colSrc);
    if (!SheetIndex::exists(src)) throw tberror("empty cell");
    const SheetIndex::Kind kind = SheetIndex::kind(src);
    const uint32_t p = SheetIndex::position(src);
    const uint32_t dst = codeAt(rowDst, colDst);
    const bool inPlace = SheetIndex::exists(dst) && SheetIndex::kind(dst) == kind;
    const uint32_t q = SheetIndex::position(dst);
    if (!inPlace && SheetIndex::exists(dst)) delSharedFormula(rowDst, colDst);
    const uint16_t r = uint16_t(rowDst), c = uint16_t(colDst);
    uint32_t pos = 0;
    // Same kind: overwrite the target's element; otherwise append a copy.
    auto place = [&](auto &vec, uint32_t from) {
        auto copy = vec[from];
        copy.row = r;
        copy.col = c;
        if (inPlace) {
            vec[q] = copy;
            pos = q;
        } else {
            pos = appendPosition(vec.size());
            vec.push_back(copy);
        }
    };
    switch (kind) {
    case SheetIndex::kRK: place(_rk, p); break;
    case SheetIndex::kNumber: place(_numbers, p); break;
    case SheetIndex::kLabelSst: place(_labelSst, p); break;
    case SheetIndex::kBlank: place(_blanks, p); break;
    case SheetIndex::kBoolErr: place(_boolErrs, p); break;
    case SheetIndex::kLabel: place(_labels, p); break;
    case SheetIndex::kFormula: {
        FormulaBlock copy = _formulas[p];
        copy.formula.rw = r;
        copy.formula.colIndex = c;
        if (inPlace) {
            _formulas[q] = copy;
            pos = q;
        } else {
            pos = appendPosition(_formulas.size());
            _formulas.push_back(copy);
        }
        break;
    }
    default: throw tberror("unknown type of cell");
    }
    _index.at(r, c) = SheetIndex::code(kind, pos);
    _dimensions.update(r, c);
    return true;
}

template <class C> void SheetImplT<C>::delSharedFormula(int row, int col) {
    const uint32_t code = codeAt(row, col);
    if (!SheetIndex::exists(code) || SheetIndex::kind(code) != SheetIndex::kFormula) return;
    FormulaBlock &anchor = _formulas[SheetIndex::position(code)];
    int ar = 0, ac = 0, rf = 0, rl = 0, cf = 0, cl = 0;
    if (!anchor.formula.isExp(&ar, &ac) || ar != row || ac != col) return;
    if (!anchor.sharedRange(rf, rl, cf, cl)) return;
    rl = std::min(rl, SheetIndex::kRows - 1);
    cl = std::min(cl, SheetIndex::kCols - 1);
    bool moved = false;
    int nr = 0, nc = 0;
    for (int r = rf; r <= rl; ++r) {
        if (!_index.hasRow(unsigned(r))) continue;
        for (int c = cf; c <= cl; ++c) {
            if (r == row && c == col) continue;
            const uint32_t other = _index.get(unsigned(r), unsigned(c));
            if (!SheetIndex::exists(other) || SheetIndex::kind(other) != SheetIndex::kFormula)
                continue;
            FormulaBlock &f = _formulas[SheetIndex::position(other)];
            int fr = 0, fc = 0;
            if (!f.formula.isExp(&fr, &fc) || fr != row || fc != col) continue;
            if (!moved) {
                // The first user of the definition becomes its anchor.
                f.hasSharedFormula = true;
                f.shrFmla = anchor.shrFmla;
                moved = true;
                nr = r;
                nc = c;
            }
            f.formula.setExp(nr, nc);
        }
    }
    anchor.hasSharedFormula = false;
    anchor.shrFmla.data.clear();
}

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
