// SheetImplT: construction, the defaults of a new sheet, copying a sheet
// into another book, and the small accessors the book uses.
#include "biff/sheet_frame.h"
#include "book/text_result.h"

#include <cstring>

namespace tabrix {

const char *const kFormatNotFound = "specified format not found";

template <class C>
SheetImplT<C>::SheetImplT(ISheetOwner<C> &owner, const std::wstring &name)
    : _owner(&owner), _name(name), _setup(owner.pool()) {
    setDefaults();
}

template <class C> SheetImplT<C>::~SheetImplT() = default;

// A new sheet's printout and window settings are those SheetSetup starts
// with; the rest of the defaults are the members' initial values.
template <class C> void SheetImplT<C>::setDefaults() { _setup.reset(); }

template <class C>
SheetImplT<C>::SheetImplT(const SheetImplT &src, ISheetOwner<C> &owner)
    : _owner(&owner), _name(src._name), _setup(src._setup, owner.pool()) {
    copyFrom(src);
}

template <class C> uint16_t SheetImplT<C>::mapXf(const SheetImplT &src, uint16_t xf) {
    if (src._owner == _owner) return xf;
    auto it = _xfMap.find(xf);
    if (it != _xfMap.end()) return it->second;
    const auto &formats = src._owner->styles().formats();
    uint16_t mapped = 15;
    if (xf < formats.size()) {
        IFormatT<C> *added = _owner->styles().addFormat(formats[xf]);
        int pos = added ? formatPosition(added) : -1;
        if (pos >= 0) mapped = uint16_t(pos);
    }
    _xfMap[xf] = mapped;
    return mapped;
}

template <class C> void SheetImplT<C>::copyFrom(const SheetImplT &src) {
    const bool foreign = src._owner != _owner;
    _bof = src._bof;
    _indexRecord = src._indexRecord;
    _calcMode = src._calcMode;
    _calcCount = src._calcCount;
    _calcRefMode = src._calcRefMode;
    _calcIter = src._calcIter;
    _calcDelta = src._calcDelta;
    _calcSaveRecalc = src._calcSaveRecalc;
    _gridSet = src._gridSet;
    std::memcpy(_guts, src._guts, sizeof _guts);
    _defaultRowHeightFlags = src._defaultRowHeightFlags;
    _defaultRowHeight = src._defaultRowHeight;
    _defColWidth = src._defColWidth;
    _dimensions = src._dimensions;
    _phoneticInfo = src._phoneticInfo;
    _hasPhoneticInfo = src._hasPhoneticInfo;
    _objects = src._objects;
    renumberDrawing();
    _notes = src._notes;
    _opaque2204 = src._opaque2204;
    _opaque144 = src._opaque144;
    _opaque2164 = src._opaque2164;
    _opaque157 = src._opaque157;
    _opaque450 = src._opaque450;
    _opaque80 = src._opaque80;
    _opaque2187 = src._opaque2187;
    _opaque153 = src._opaque153;
    _opaque442 = src._opaque442;
    _rowList = src._rowList;
    _labelSst = src._labelSst;
    _rk = src._rk;
    _numbers = src._numbers;
    _dbCells = src._dbCells;
    _unknown = src._unknown;
    _colInfos = src._colInfos;
    _mergeCells = src._mergeCells;
    _blanks = src._blanks;
    _boolErrs = src._boolErrs;
    _formulas = src._formulas;
    _index = src._index;
    _hasUncalced = src._hasUncalced;
    _uncalced = src._uncalced;
    _dirty = src._dirty;

    // Texts owned by the source's pool are copied into this owner's pool.
    MemPool &pool = _owner->pool();
    _labels.clear();
    _labels.reserve(src._labels.size());
    for (const Label &l : src._labels) {
        Label copy(pool);
        copy.row = l.row;
        copy.col = l.col;
        copy.xf = l.xf;
        copy.text = l.text;
        if (l.text.text) copy.text.text = poolCopy(l.text.text, std::wcslen(l.text.text), pool);
        _labels.push_back(copy);
    }
    for (FormulaBlock &f : _formulas)
        if (f.cachedText) f.cachedText = poolCopy(f.cachedText, std::wcslen(f.cachedText), pool);
    if (!foreign) return;

    // From another book: strings into this book's table, formats into its
    // styles.  Only live cells matter; dead elements are never written.
    SST &sst = _owner->sst();
    const SST &srcSst = src._owner->sst();
    for (unsigned r = 0; r < SheetIndex::kRows; ++r) {
        if (!_index.hasRow(r)) continue;
        for (unsigned c = 0; c < SheetIndex::kCols; ++c) {
            uint32_t code = _index.get(r, c);
            if (!SheetIndex::exists(code)) continue;
            if (SheetIndex::kind(code) == SheetIndex::kLabelSst) {
                LabelSst &e = _labelSst[SheetIndex::position(code)];
                e.sst = sst.insert(srcSst.extract(e.sst), false);
            }
            setXf(code, mapXf(src, xfOf(code)));
        }
    }
    for (Row &row : _rowList)
        if (row.flags & 0x80)
            row.xf = uint16_t((row.xf & 0xF000) | (mapXf(src, row.xf & 0x0FFF) & 0x0FFF));
    for (ColInfo &ci : _colInfos) ci.ixfe = mapXf(src, ci.ixfe);
}

template <class C> bool SheetImplT<C>::selected() const { return _setup.selected(); }

template <class C> void SheetImplT<C>::setSelected(bool selected) { _setup.setSelected(selected); }

template <class C> bool SheetImplT<C>::refA1() const { return _calcRefMode == 1; }

template <class C> void SheetImplT<C>::setRefA1(bool a1) { _calcRefMode = a1 ? 1 : 0; }

template <class C> SheetNames SheetImplT<C>::names() {
    return SheetNames(_owner->names(), _owner->supBooks(), _owner->pool(), getTab(),
                      _owner->sheetCount());
}

template <class C> std::wstring SheetImplT<C>::wideArg(const C *text) const {
    std::wstring wide;
    wideText(text, _owner->utf8Mode(), wide);
    return wide;
}

template <class C> int SheetImplT<C>::getTab() { return _owner->getTabIndex(this); }

// The row is checked first: both out of range names the row.
template <class C> void SheetImplT<C>::rangeError(int row) {
    if (unsigned(row) > 65535u) throw tberror("row must be in range 0-65535");
    throw tberror("col must be in range 0-255");
}

template <class C> uint16_t SheetImplT<C>::getFormatID(int row, int col) const {
    if (unsigned(row) > 65535u || unsigned(col) > 255u) return 15;
    uint32_t code = codeAt(row, col);
    return SheetIndex::exists(code) ? xfOf(code) : 15;
}

template <class C> size_t SheetImplT<C>::cellMemory() const {
    size_t bytes = sizeof(uint32_t *) * SheetIndex::kRows +
                   size_t(_index.pageCount()) * SheetIndex::kCols * sizeof(uint32_t);
    bytes += _labelSst.capacity() * sizeof(LabelSst) + _labels.capacity() * sizeof(Label) +
             _rk.capacity() * sizeof(RK) + _numbers.capacity() * sizeof(Number) +
             _blanks.capacity() * sizeof(Blank) + _boolErrs.capacity() * sizeof(BoolErr) +
             _formulas.capacity() * sizeof(FormulaBlock) + _rowList.capacity() * sizeof(Row);
    return bytes;
}

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;
template class FramedSheetT<SheetImplT<char>>;
template class FramedSheetT<SheetImplT<wchar_t>>;

} // namespace tabrix
