// SheetImplT: construction, the defaults of a new sheet, copying a sheet
// into another book, and the small accessors the book uses.
#include "biff/sheet_frame.h"

#include <cstring>

namespace tabrix {

const char *const kNotSupportedYet = "not supported yet";
const char *const kFormatNotFound = "specified format not found";

namespace {

void put16(std::vector<uint8_t> &d, size_t at, uint16_t v) {
    d[at] = uint8_t(v);
    d[at + 1] = uint8_t(v >> 8);
}

void putDouble(std::vector<uint8_t> &d, size_t at, double v) {
    std::memcpy(&d[at], &v, sizeof v);
}

Biff raw(uint16_t id, size_t size) {
    Biff b;
    b.id = id;
    b.data.assign(size, 0);
    return b;
}

// Window2 flags of a new sheet: gridlines, headers, zeros, outline
// symbols, automatic colours, page layout off; 0x0200 marks it selected.
const uint16_t kWindow2Flags = 0x04B6;
const uint16_t kWindow2Selected = 0x0200;

} // namespace

template <class C>
SheetImplT<C>::SheetImplT(ISheetOwner<C> &owner, const std::wstring &name)
    : _owner(&owner), _name(name) {
    setDefaults();
}

template <class C> SheetImplT<C>::~SheetImplT() = default;

template <class C> void SheetImplT<C>::setDefaults() {
    // Window2: flags, rwTop, colLeft, icvHdr 64, zoom fields and reserved 0.
    _window2.absent = false;
    _window2.record.data.assign(18, 0);
    put16(_window2.record.data, 0, kWindow2Flags);
    put16(_window2.record.data, 6, 64);

    // Selection: pane 3, active cell A1, one RefU A1:A1.
    Biff sel = raw(29, 15);
    sel.data[0] = 3;
    put16(sel.data, 7, 1);
    _selections.assign(1, sel);

    // Page setup: empty Header and Footer, no centring, SetupBIFF with paper
    // 0, scale 100, first page 1, fit 1 x 1, flags 6, margins of 0.5 inch
    // for header and footer.
    _pageSetup.clear();
    _pageSetup.push_back(raw(20, 0));
    _pageSetup.push_back(raw(21, 0));
    _pageSetup.push_back(raw(131, 2));
    _pageSetup.push_back(raw(132, 2));
    Biff setup = raw(161, 34);
    put16(setup.data, 2, 100);
    put16(setup.data, 4, 1);
    put16(setup.data, 6, 1);
    put16(setup.data, 8, 1);
    put16(setup.data, 10, 6);
    putDouble(setup.data, 16, 0.5);
    putDouble(setup.data, 24, 0.5);
    _pageSetup.push_back(setup);
}

template <class C>
SheetImplT<C>::SheetImplT(const SheetImplT &src, ISheetOwner<C> &owner)
    : _owner(&owner), _name(src._name) {
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
    _printRowCol = src._printRowCol;
    _printGrid = src._printGrid;
    _gridSet = src._gridSet;
    std::memcpy(_guts, src._guts, sizeof _guts);
    _defaultRowHeightFlags = src._defaultRowHeightFlags;
    _defaultRowHeight = src._defaultRowHeight;
    _wsBool = src._wsBool;
    _defColWidth = src._defColWidth;
    _dimensions = src._dimensions;
    _phoneticInfo = src._phoneticInfo;
    _hasPhoneticInfo = src._hasPhoneticInfo;
    _pageSetup = src._pageSetup;
    _protection = src._protection;
    _horBreaks = src._horBreaks;
    _verBreaks = src._verBreaks;
    _window2 = src._window2;
    _scl = src._scl;
    _pane = src._pane;
    _selections = src._selections;
    _objects = src._objects;
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

template <class C> bool SheetImplT<C>::selected() const {
    if (_window2.absent || _window2.record.data.size() < 2) return false;
    return (_window2.record.data[0] | _window2.record.data[1] << 8) & kWindow2Selected;
}

template <class C> void SheetImplT<C>::setSelected(bool selected) {
    if (_window2.absent || _window2.record.data.size() < 2) return;
    uint16_t flags = uint16_t(_window2.record.data[0] | _window2.record.data[1] << 8);
    flags = uint16_t(selected ? flags | kWindow2Selected : flags & ~kWindow2Selected);
    put16(_window2.record.data, 0, flags);
}

template <class C> bool SheetImplT<C>::refA1() const { return _calcRefMode == 1; }

template <class C> void SheetImplT<C>::setRefA1(bool a1) { _calcRefMode = a1 ? 1 : 0; }

template <class C> int SheetImplT<C>::getTab() { return _owner->getTabIndex(this); }

template <class C> void SheetImplT<C>::checkRanges(int row, int col) {
    if (unsigned(row) > 65535u) throw tberror("row must be in range 0-65535");
    if (unsigned(col) > 255u) throw tberror("col must be in range 0-255");
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

} // namespace tabrix
