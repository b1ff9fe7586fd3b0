// SheetImplT: row and column properties, merged areas, the sheet's name and
// cell addresses.
#include "biff/sheet_frame.h"

#include "book/excel_util.h"
#include "book/text_result.h"
#include "book/units.h"

#include <algorithm>

namespace tabrix {

namespace {
const uint16_t kRowHidden = 0x20;
const uint16_t kRowFormatted = 0x80;
const uint16_t kRowFlags = 0x140;
const int kMaxRowTwips = 8192;
const size_t kMaxNameLength = 31;
const char *const kNotInMerge = "this cell isn't in merging block";

void checkCol(int col) {
    if (unsigned(col) > 255u) throw tberror("col must be in range 0-255");
}
} // namespace

// ---- rows ----

template <class C>
bool SheetImplT<C>::setRow(int row, double height, IFormatT<C> *format, bool hidden) {
    checkRanges(row, 0);
    if (!(height >= 0)) throw tberror("height can't be negative");
    if (height * 20 >= kMaxRowTwips + 1) throw tberror("height is too big");
    int twips = int(height * 20);
    uint16_t flags = uint16_t(kRowFlags | (hidden ? kRowHidden : 0));
    uint16_t xf = 0;
    if (format) {
        int pos = formatPosition(format);
        if (pos < 0) throw tberror(kFormatNotFound);
        xf = uint16_t(pos);
        flags |= kRowFormatted;
    }
    int i = rowIndexOf(row);
    Row fresh;
    Row &entry = i >= 0 ? _rowList[size_t(i)] : fresh;
    entry.row = uint16_t(row);
    entry.firstCol = 0;
    entry.lastCol = 1;
    entry.height = uint16_t(twips);
    entry.flags = flags;
    entry.xf = xf;
    if (i < 0) {
        _rowList.push_back(fresh);
        _dimensions.update(uint32_t(row), 0);
    }
    return true;
}

template <class C> double SheetImplT<C>::rowHeight(int row) {
    checkRanges(row, 0);
    int i = rowIndexOf(row);
    return (i >= 0 ? _rowList[size_t(i)].height : _defaultRowHeight) / 20.0;
}

template <class C> bool SheetImplT<C>::rowHidden(int row) {
    checkRanges(row, 0);
    int i = rowIndexOf(row);
    return i >= 0 && (_rowList[size_t(i)].flags & kRowHidden) != 0;
}

template <class C> bool SheetImplT<C>::setRowHidden(int row, bool hidden) {
    checkRanges(row, 0);
    int i = rowIndexOf(row);
    if (i >= 0) {
        Row &entry = _rowList[size_t(i)];
        entry.flags = uint16_t(hidden ? entry.flags | kRowHidden : entry.flags & ~kRowHidden);
    } else if (hidden) {
        Row entry;
        entry.row = uint16_t(row);
        entry.flags = uint16_t(entry.flags | kRowHidden);
        _rowList.push_back(entry);
    }
    return true;
}

// ---- columns ----

template <class C>
bool SheetImplT<C>::setCol(int colFirst, int colLast, double width, IFormatT<C> *format,
                           bool hidden) {
    checkCol(colFirst);
    checkCol(colLast);
    if (colLast < colFirst) throw tberror("colLast must be greater than or equal to colFirst");
    // The record holds 1/256 of a character in 16 bits.
    if (!(width >= 0 && width <= 255)) throw tberror("width must be in range 0-255");
    int xf = format ? formatPosition(format) : 15;
    if (xf < 0) throw tberror(kFormatNotFound);
    const int w = _owner->styles().maxDigWidth();
    const int px = ExcelUnitsConverter::numCharsToPx(width, w);
    const uint16_t coldx = uint16_t(int(px * 256.0 / w + 0.5));
    for (ColInfo &ci : _colInfos) {
        if (ci.colFirst < colFirst || ci.colFirst > colLast) continue;
        ci.coldx = coldx;
        if (format) ci.ixfe = uint16_t(xf);
        ci.setHidden(hidden);
    }
    for (int col = colFirst; col <= colLast; ++col) {
        bool covered = false;
        for (const ColInfo &ci : _colInfos) covered = covered || ci.covers(col);
        if (covered) continue;
        ColInfo ci;
        ci.colFirst = ci.colLast = uint16_t(col);
        ci.coldx = coldx;
        ci.ixfe = uint16_t(xf);
        ci.setHidden(hidden);
        _colInfos.push_back(ci);
    }
    return true;
}

template <class C> double SheetImplT<C>::colWidth(int col) {
    checkCol(col);
    const int w = _owner->styles().maxDigWidth();
    for (const ColInfo &ci : _colInfos)
        if (ci.covers(col))
            return ExcelUnitsConverter::pxToNumChars(int(ci.coldx * double(w) / 256 + 0.5), w);
    return ExcelUnitsConverter::pxToNumChars(
        ExcelUnitsConverter::defaultColWidthPx(_defColWidth, w), w);
}

template <class C> bool SheetImplT<C>::colHidden(int col) {
    checkCol(col);
    for (const ColInfo &ci : _colInfos)
        if (ci.covers(col)) return ci.hidden();
    return false;
}

template <class C> bool SheetImplT<C>::setColHidden(int col, bool hidden) {
    checkCol(col);
    double width = colWidth(col);
    return setCol(col, col, width, nullptr, hidden);
}

// ---- merged areas ----

template <class C>
bool SheetImplT<C>::getMerge(int row, int col, int *rowFirst, int *rowLast, int *colFirst,
                             int *colLast) {
    checkRanges(row, col);
    for (const MergeCells &m : _mergeCells)
        for (const MergeCells::Area &a : m.areas)
            if (a.holds(row, col)) {
                if (rowFirst) *rowFirst = a.ref.rwFirst;
                if (rowLast) *rowLast = a.ref.rwLast;
                if (colFirst) *colFirst = a.ref.colFirst;
                if (colLast) *colLast = a.ref.colLast;
                return true;
            }
    fail(kNotInMerge);
    return false;
}

template <class C>
bool SheetImplT<C>::setMerge(int rowFirst, int rowLast, int colFirst, int colLast) {
    checkRanges(rowFirst, colFirst);
    checkRanges(rowLast, colLast);
    if (rowLast < rowFirst) throw tberror("rowLast must be greater than or equal to rowFirst");
    if (colLast < colFirst) throw tberror("colLast must be greater than or equal to colFirst");
    if (_mergeCells.empty() || _mergeCells.back().areas.size() >= MergeCells::kMaxAreas)
        _mergeCells.emplace_back();
    _mergeCells.back().add(rowFirst, rowLast, colFirst, colLast);
    // Blank cells in the format of the top-left cell, so that borders
    // show across the area.
    const uint16_t xf = getFormatID(rowFirst, colFirst);
    for (int r = rowFirst; r <= rowLast; ++r)
        for (int c = colFirst; c <= colLast; ++c)
            if (!SheetIndex::exists(codeAt(r, c))) setBlank(r, c, xf);
    _dimensions.update(uint32_t(rowFirst), uint16_t(colFirst));
    _dimensions.update(uint32_t(rowLast), uint16_t(colLast));
    return true;
}

template <class C> bool SheetImplT<C>::delMerge(int row, int col) {
    checkRanges(row, col);
    bool removed = false;
    for (MergeCells &m : _mergeCells) {
        for (MergeCells::Area &a : m.areas)
            if (a.holds(row, col)) a.deleted = removed = true;
        m.eraseDeleted();
    }
    _mergeCells.erase(std::remove_if(_mergeCells.begin(), _mergeCells.end(),
                                     [](const MergeCells &m) { return m.areas.empty(); }),
                      _mergeCells.end());
    if (!removed) fail(kNotInMerge);
    return removed;
}

// ---- name and addresses ----

template <class C> const C *SheetImplT<C>::name() { return textResult(_name.c_str()); }

template <class C> std::wstring SheetImplT<C>::sheetName(const C *name, bool utf8Mode, bool &cut) {
    if (!name) throw tberror("sheet's name is empty");
    std::wstring wide;
    if (!wideText(name, utf8Mode, wide))
        throw tberror("sheet's name doesn't convert in this locale");
    if (wide.empty()) throw tberror("sheet's name is empty");
    cut = wide.size() > kMaxNameLength;
    if (cut) {
        // Never half a surrogate pair.
        size_t keep = kMaxNameLength;
        uint32_t last = uint32_t(wide[keep - 1]);
        if (last >= 0xD800 && last < 0xDC00) --keep;
        wide.resize(keep);
    }
    return wide;
}

template <class C> void SheetImplT<C>::setName(const C *name) {
    if (!name) return;
    bool cut = false;
    _name = sheetName(name, _owner->utf8Mode(), cut);
    if (cut) _owner->message().assign("warning: sheet's name is cut to 31 characters");
}

template <class C>
void SheetImplT<C>::addrToRowCol(const C *addr, int *row, int *col, bool *rowRelative,
                                 bool *colRelative) {
    wideText(addr, _owner->utf8Mode(), _wide);
    ExcelUtil::addrToRowCol(_wide.c_str(), row, col, rowRelative, colRelative);
}

template <class C>
const C *SheetImplT<C>::rowColToAddr(int row, int col, bool rowRelative, bool colRelative) {
    _addr = ExcelUtil::rowColToAddr(row, col, rowRelative, colRelative);
    return textResult(_addr.c_str());
}

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
