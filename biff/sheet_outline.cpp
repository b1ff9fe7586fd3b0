// SheetImplT: outline groups of rows and columns.  A group raises the
// outline level of its rows or columns by one and hides them when it is
// collapsed; the Guts record tells readers how many levels to show.
#include "biff/sheet_frame.h"

#include <algorithm>
#include <map>

namespace tabrix {

namespace {
const uint16_t kRowLevel = 0x07;
const uint16_t kRowCollapsed = 0x10;
const uint16_t kRowHidden = 0x20;
const int kColLevelShift = 8;
const uint16_t kColLevel = 0x0700;
const int kMaxLevel = 7;
const char *const kTooDeep = "outline level can't be more than 7";

int colLevel(const ColInfo &ci) { return (ci.flags & kColLevel) >> kColLevelShift; }
} // namespace

template <class C> bool SheetImplT<C>::groupRows(int rowFirst, int rowLast, bool collapsed) {
    if (rowLast < rowFirst) throw tberror("must be rowFirst <= rowLast");
    checkRanges(rowFirst, 0);
    checkRanges(rowLast, 0);
    // Row -> its Row entry, for the range and the row after it.
    std::map<int, size_t> at;
    for (size_t i = 0; i < _rowList.size(); ++i) {
        const int r = _rowList[i].row;
        if (r >= rowFirst && r <= rowLast + 1) at.emplace(r, i);
    }
    auto level = [&](int r) {
        auto it = at.find(r);
        return it == at.end() ? 0 : _rowList[it->second].flags & kRowLevel;
    };
    const int base = level(rowFirst);
    for (int r = rowFirst; r <= rowLast; ++r)
        if (level(r) != base) throw tberror("detect overlap");
    if (base >= kMaxLevel) throw tberror(kTooDeep);
    for (int r = rowFirst; r <= rowLast; ++r) {
        if (at.count(r)) continue;
        Row fresh;
        fresh.row = uint16_t(r);
        at.emplace(r, _rowList.size());
        _rowList.push_back(fresh);
    }
    for (int r = rowFirst; r <= rowLast; ++r) {
        Row &row = _rowList[at[r]];
        uint16_t flags = uint16_t((row.flags & ~(kRowLevel | kRowHidden)) | (base + 1));
        row.flags = uint16_t(collapsed ? flags | kRowHidden : flags);
    }
    auto next = at.find(rowLast + 1);
    if (next != at.end()) {
        Row &row = _rowList[next->second];
        row.flags = uint16_t(collapsed ? row.flags | kRowCollapsed : row.flags & ~kRowCollapsed);
    }
    // Levels shown: the deepest level plus one.
    _guts[2] = std::max(_guts[2], uint16_t(base + 2));
    return true;
}

template <class C> bool SheetImplT<C>::groupCols(int colFirst, int colLast, bool collapsed) {
    if (colLast < colFirst) throw tberror("must be colFirst <= colLast");
    checkRanges(0, colFirst);
    checkRanges(0, colLast);
    for (const ColInfo &ci : _colInfos)
        if (ci.colFirst >= colFirst && ci.colFirst <= colLast && colLevel(ci) >= kMaxLevel)
            throw tberror(kTooDeep);
    int deepest = 1;
    for (ColInfo &ci : _colInfos) {
        if (ci.colFirst < colFirst || ci.colFirst > colLast) continue;
        const int lv = colLevel(ci) + 1;
        ci.flags = uint16_t((ci.flags & ~kColLevel) | (lv << kColLevelShift));
        ci.setHidden(collapsed);
        deepest = std::max(deepest, lv);
    }
    for (int c = colFirst; c <= colLast; ++c) {
        bool covered = false;
        for (const ColInfo &ci : _colInfos) covered = covered || ci.covers(c);
        if (covered) continue;
        ColInfo ci;
        ci.colFirst = ci.colLast = uint16_t(c);
        ci.coldx = uint16_t((_defColWidth + 1.140625) * 256);
        ci.ixfe = 15;
        ci.flags = uint16_t(1 << kColLevelShift);
        ci.setHidden(collapsed);
        _colInfos.push_back(ci);
    }
    _guts[3] = std::max(_guts[3], uint16_t(deepest + 1));
    return true;
}

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
