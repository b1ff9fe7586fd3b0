// SheetImplT: inserting and removing rows and columns.  Cells, the anchors
// of notes and merged areas move; for rows, so do the sheet's range names.
// Row heights and column widths are copied from their old places.  Formula
// tokens, shared formula ranges and drawing objects are left as they were:
// a caller that needs shifted references rewrites its formulas itself.
#include "biff/sheet_frame.h"

#include "book/units.h"

#include <algorithm>

namespace tabrix {

namespace {

const int kLastRow = SheetIndex::kRows - 1;
const int kLastCol = SheetIndex::kCols - 1;
const uint16_t kRowHidden = 0x20;
const uint16_t kRowFlags = 0x140;
const uint16_t kNewRowTwips = 255; // 12.75 points
const double kNewColWidth = 8.43;
const char *const kRowOrder = "rowLast must be greater than or equal to rowFirst";
const char *const kColOrder = "colLast must be greater than or equal to colFirst";

// One direction of the sheet: the two fields of an area along it and its
// last position.
struct Axis {
    uint16_t Ref8::*first;
    uint16_t Ref8::*last;
    int limit;
};
const Axis kRows{&Ref8::rwFirst, &Ref8::rwLast, kLastRow};
const Axis kCols{&Ref8::colFirst, &Ref8::colLast, kLastCol};

void dropDeleted(std::vector<MergeCells> &merges) {
    for (MergeCells &m : merges) m.eraseDeleted();
    merges.erase(std::remove_if(merges.begin(), merges.end(),
                                [](const MergeCells &m) { return m.areas.empty(); }),
                 merges.end());
}

// Positions first..last were inserted along `axis`.  Areas at or past
// `first` move whole; an area the insertion cuts keeps its first part, and
// its second part, past the inserted positions, is answered for the caller
// to add, so that inserted positions never join a merge.  What is pushed
// past the limit is cut off.
std::vector<Ref8> insertIntoMerges(std::vector<MergeCells> &merges, const Axis &axis, int first,
                                   int last) {
    const int n = last - first + 1;
    std::vector<Ref8> tails;
    for (MergeCells &m : merges)
        for (MergeCells::Area &a : m.areas) {
            const int lo = a.ref.*axis.first, hi = a.ref.*axis.last;
            if (lo >= first) {
                if (lo + n > axis.limit) {
                    a.deleted = true;
                    continue;
                }
                a.ref.*axis.first = uint16_t(lo + n);
                a.ref.*axis.last = uint16_t(std::min(hi + n, axis.limit));
            } else if (hi >= first) {
                a.ref.*axis.last = uint16_t(first - 1);
                if (last + 1 > axis.limit) continue;
                Ref8 tail = a.ref;
                tail.*axis.first = uint16_t(last + 1);
                tail.*axis.last = uint16_t(std::min(hi + n, axis.limit));
                tails.push_back(tail);
            }
        }
    dropDeleted(merges);
    return tails;
}

// Positions first..last were removed along `axis`: an area below them moves
// up, one they cut shrinks, one they cover goes.
void removeFromMerges(std::vector<MergeCells> &merges, const Axis &axis, int first, int last) {
    const int n = last - first + 1;
    for (MergeCells &m : merges)
        for (MergeCells::Area &a : m.areas) {
            const int lo = a.ref.*axis.first, hi = a.ref.*axis.last;
            if (lo >= first && hi <= last) {
                a.deleted = true;
            } else if (first <= lo) {
                // Removed positions before the area.
                const int before = std::min(last, lo - 1) - first + 1;
                a.ref.*axis.first = uint16_t(std::max(lo - before, 0));
                a.ref.*axis.last = uint16_t(hi - n);
            } else if (first <= hi) {
                a.ref.*axis.last = uint16_t(hi - (std::min(last, hi) - first + 1));
            }
        }
    dropDeleted(merges);
}

// A NoteSh record begins with its row and its column, 16 bits each.
int anchorOf(const Biff &note, size_t at) { return note.data[at] | (note.data[at + 1] << 8); }

void setAnchor(Biff &note, size_t at, int value) {
    note.data[at] = uint8_t(value);
    note.data[at + 1] = uint8_t(value >> 8);
}

} // namespace

template <class C> void SheetImplT<C>::placeCells(int rowFirst, int rowLast, int colFirst) {
    for (int r = rowFirst; r <= rowLast; ++r) {
        if (!_index.hasRow(unsigned(r))) continue;
        const unsigned bound = _index.lastColBound(unsigned(r));
        for (unsigned c = unsigned(colFirst); c <= bound; ++c) {
            const uint32_t code = _index.get(unsigned(r), c);
            if (!SheetIndex::exists(code)) continue;
            const uint32_t p = SheetIndex::position(code);
            const uint16_t row = uint16_t(r), col = uint16_t(c);
            auto put = [&](auto &cell) {
                cell.row = row;
                cell.col = col;
            };
            switch (SheetIndex::kind(code)) {
            case SheetIndex::kRK: put(_rk[p]); break;
            case SheetIndex::kNumber: put(_numbers[p]); break;
            case SheetIndex::kLabelSst: put(_labelSst[p]); break;
            case SheetIndex::kBlank: put(_blanks[p]); break;
            case SheetIndex::kBoolErr: put(_boolErrs[p]); break;
            case SheetIndex::kLabel: put(_labels[p]); break;
            case SheetIndex::kFormula:
                _formulas[p].formula.rw = row;
                _formulas[p].formula.colIndex = col;
                break;
            default: break;
            }
        }
    }
}

template <class C>
void SheetImplT<C>::copyRowLook(std::vector<int> &at, int to, int from, uint16_t twips,
                                bool hidden) {
    if (from >= 0) {
        const int i = at[size_t(from)];
        twips = i >= 0 ? _rowList[size_t(i)].height : _defaultRowHeight;
        hidden = i >= 0 && (_rowList[size_t(i)].flags & kRowHidden);
        const int j = at[size_t(to)];
        const uint16_t ownTwips = j >= 0 ? _rowList[size_t(j)].height : _defaultRowHeight;
        const bool ownHidden = j >= 0 && (_rowList[size_t(j)].flags & kRowHidden);
        if (twips == ownTwips && hidden == ownHidden) return;
    }
    // As setRow without a format: every field of the row is set again.
    if (at[size_t(to)] < 0) {
        at[size_t(to)] = int(_rowList.size());
        _rowList.emplace_back();
    }
    Row &row = _rowList[size_t(at[size_t(to)])];
    row.row = uint16_t(to);
    row.firstCol = 0;
    row.lastCol = 1;
    row.height = twips;
    row.flags = uint16_t(kRowFlags | (hidden ? kRowHidden : 0));
    row.xf = 0;
}

template <class C> void SheetImplT<C>::copyColLook(int to, int from) {
    const double width = colWidth(from);
    const bool hidden = colHidden(from);
    if (width != colWidth(to) || hidden != colHidden(to)) setCol(to, to, width, nullptr, hidden);
}

template <class C> void SheetImplT<C>::moveNotes(bool rows, int first, int n, bool insert) {
    const size_t field = rows ? 0 : 2;
    const int limit = rows ? kLastRow : kLastCol;
    auto gone = [&](Biff &note) {
        if (note.data.size() < 4) return false;
        const int pos = anchorOf(note, field);
        if (pos < first) return false;
        const int moved = insert ? pos + n : pos - n;
        if (moved < 0 || moved > limit) return true;
        setAnchor(note, field, moved);
        return false;
    };
    _notes.erase(std::remove_if(_notes.begin(), _notes.end(), gone), _notes.end());
}

template <class C>
void SheetImplT<C>::eraseNotes(int rowFirst, int rowLast, int colFirst, int colLast) {
    auto inside = [&](const Biff &note) {
        if (note.data.size() < 4) return false;
        const int r = anchorOf(note, 0), c = anchorOf(note, 2);
        return r >= rowFirst && r <= rowLast && c >= colFirst && c <= colLast;
    };
    _notes.erase(std::remove_if(_notes.begin(), _notes.end(), inside), _notes.end());
}

// Row operations keep a table from row to its Row entry, so that copying
// heights over the whole sheet costs one pass.
template <class C> bool SheetImplT<C>::insertRow(int rowFirst, int rowLast) {
    if (rowLast < rowFirst) throw tberror(kRowOrder);
    checkRanges(rowFirst, 0);
    checkRanges(rowLast, 0);
    const int n = rowLast - rowFirst + 1;
    _index.insertRows(unsigned(rowFirst), unsigned(n));
    placeCells(rowLast + 1, kLastRow, 0);
    moveNotes(true, rowFirst, n, true);
    for (const Ref8 &tail : insertIntoMerges(_mergeCells, kRows, rowFirst, rowLast))
        setMerge(tail.rwFirst, tail.rwLast, tail.colFirst, tail.colLast);

    std::vector<int> at(SheetIndex::kRows, -1);
    for (size_t i = _rowList.size(); i-- > 0;) at[_rowList[i].row] = int(i);
    for (int r = kLastRow; r > rowLast; --r) copyRowLook(at, r, r - n, 0, false);
    for (int r = rowFirst; r <= rowLast; ++r) copyRowLook(at, r, -1, kNewRowTwips, false);

    updateNames(rowFirst, rowLast, true);
    _dirty = true;
    return true;
}

template <class C> bool SheetImplT<C>::removeRow(int rowFirst, int rowLast) {
    if (rowLast < rowFirst) throw tberror(kRowOrder);
    checkRanges(rowFirst, 0);
    checkRanges(rowLast, 0);
    const int n = rowLast - rowFirst + 1;
    std::vector<int> at(SheetIndex::kRows, -1);
    for (size_t i = _rowList.size(); i-- > 0;) at[_rowList[i].row] = int(i);
    for (int r = rowFirst; r + n <= kLastRow; ++r) copyRowLook(at, r, r + n, 0, false);

    _index.removeRows(unsigned(rowFirst), unsigned(n));
    placeCells(rowFirst, kLastRow - n, 0);
    moveNotes(true, rowFirst, n, false);
    removeFromMerges(_mergeCells, kRows, rowFirst, rowLast);
    updateNames(rowFirst, rowLast, false);
    _dirty = true;
    return true;
}

template <class C> bool SheetImplT<C>::insertCol(int colFirst, int colLast) {
    if (colLast < colFirst) throw tberror(kColOrder);
    checkRanges(0, colFirst);
    checkRanges(0, colLast);
    const int n = colLast - colFirst + 1;
    _index.insertCols(unsigned(colFirst), unsigned(n));
    placeCells(0, kLastRow, colLast + 1);
    moveNotes(false, colFirst, n, true);
    for (const Ref8 &tail : insertIntoMerges(_mergeCells, kCols, colFirst, colLast))
        setMerge(tail.rwFirst, tail.rwLast, tail.colFirst, tail.colLast);

    splitColInfos();
    for (int c = kLastCol; c > colLast; --c) copyColLook(c, c - n);
    for (int c = colFirst; c <= colLast; ++c) setCol(c, c, kNewColWidth, nullptr, false);
    _dirty = true;
    return true;
}

template <class C> bool SheetImplT<C>::removeCol(int colFirst, int colLast) {
    if (colLast < colFirst) throw tberror(kColOrder);
    checkRanges(0, colFirst);
    checkRanges(0, colLast);
    const int n = colLast - colFirst + 1;
    splitColInfos();
    for (int c = colFirst; c + n <= kLastCol; ++c) copyColLook(c, c + n);

    _index.removeCols(unsigned(colFirst), unsigned(n));
    placeCells(0, kLastRow, colFirst);
    moveNotes(false, colFirst, n, false);
    removeFromMerges(_mergeCells, kCols, colFirst, colLast);
    _dirty = true;
    return true;
}

// Runs of columns become one entry a column, so that each column's width
// can be set alone; saving joins equal neighbours again.
template <class C> void SheetImplT<C>::splitColInfos() {
    std::vector<ColInfo> single;
    std::vector<bool> seen(SheetIndex::kCols, false);
    for (const ColInfo &ci : _colInfos)
        for (int c = ci.colFirst; c <= std::min(int(ci.colLast), kLastCol); ++c) {
            if (seen[size_t(c)]) continue;
            seen[size_t(c)] = true;
            ColInfo one = ci;
            one.colFirst = one.colLast = uint16_t(c);
            single.push_back(one);
        }
    _colInfos.swap(single);
}

// A sheet outside a book has no names to move.
template <class C> void SheetImplT<C>::updateNames(int first, int last, bool insert) {
    std::vector<Lbl> *names = nullptr;
    try {
        names = &_owner->names();
    } catch (const tberror &) {
        return;
    }
    if (names->empty()) return;
    this->names().updateNamedRange(first, last, insert);
}

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
