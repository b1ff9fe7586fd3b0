// SheetImplT: writing and reading cell values, format resolution, cell
// types, dates and errors.
#include "biff/sheet_frame.h"

#include "book/encoding.h"
#include "book/text_result.h"

#include <cstring>
#include <cwchar>
#include <type_traits>

namespace tabrix {

namespace {

const char *const kStringTooLong = "string is too long";
const size_t kMaxText = 32767;
// Positions must fit the 28 bits of a cell code.
const size_t kMaxPosition = (size_t(1) << 28) - 1;

// UTF-16 units held in wide characters to UTF-8, reusing `out`.  An unpaired
// surrogate answers false and leaves the work to the general converter.
bool fastUtf8(const wchar_t *text, std::string &out) {
    const size_t n = std::wcslen(text);
    // Three bytes at most for each unit; a surrogate pair takes four for two.
    out.resize(3 * n);
    char *o = &out[0];
    for (const wchar_t *p = text; *p; ++p) {
        uint32_t u = uint32_t(*p) & 0xFFFFu;
        if (u < 0x80) {
            *o++ = char(u);
        } else if (u < 0x800) {
            *o++ = char(0xC0 | (u >> 6));
            *o++ = char(0x80 | (u & 0x3F));
        } else if (u >= 0xD800 && u <= 0xDFFF) {
            uint32_t lo = uint32_t(p[1]) & 0xFFFFu;
            if (u > 0xDBFF || lo < 0xDC00 || lo > 0xDFFF) return false;
            uint32_t cp = 0x10000 + ((u - 0xD800) << 10) + (lo - 0xDC00);
            *o++ = char(0xF0 | (cp >> 18));
            *o++ = char(0x80 | ((cp >> 12) & 0x3F));
            *o++ = char(0x80 | ((cp >> 6) & 0x3F));
            *o++ = char(0x80 | (cp & 0x3F));
            ++p;
        } else {
            *o++ = char(0xE0 | (u >> 12));
            *o++ = char(0x80 | ((u >> 6) & 0x3F));
            *o++ = char(0x80 | (u & 0x3F));
        }
    }
    out.resize(size_t(o - out.data()));
    return true;
}

const char *callerText(const wchar_t *wide, std::string &narrow, std::wstring &, bool utf8,
                       XString &message, const char *) {
    if (!wide) return nullptr;
    if (utf8 && fastUtf8(wide, narrow)) return narrow.c_str();
    if (!toNarrow(wide, utf8, narrow)) message.assign(kConversionWarning);
    return narrow.c_str();
}

// Wide texts of the sheet live as long as the book; one with a character
// beyond 0xFFFF goes to the caller as code points through `points`.
const wchar_t *callerText(const wchar_t *wide, std::string &, std::wstring &points, bool, XString &,
                          const wchar_t *) {
    return wide ? unitsToCodePoints(wide, points) : nullptr;
}

} // namespace

// ---- helpers ----

template <class C> int SheetImplT<C>::formatPosition(IFormatT<C> *format) const {
    const auto &formats = _owner->styles().formats();
    for (size_t i = 0; i < formats.size(); ++i)
        if (static_cast<IFormatT<C> *>(formats[i]) == format) return int(i);
    return -1;
}

template <class C> IFormatT<C> *SheetImplT<C>::formatAt(uint16_t xf) const {
    const auto &formats = _owner->styles().formats();
    return xf < formats.size() ? formats[xf] : nullptr;
}

template <class C>
uint16_t SheetImplT<C>::resolveFormat(IFormatT<C> *format, uint16_t present) const {
    if (!format) return present;
    int pos = formatPosition(format);
    if (pos < 0) throw tberror(kFormatNotFound);
    return uint16_t(pos);
}

template <class C> uint16_t SheetImplT<C>::xfOf(uint32_t code) const {
    uint32_t p = SheetIndex::position(code);
    switch (SheetIndex::kind(code)) {
    case SheetIndex::kRK: return _rk[p].xf;
    case SheetIndex::kNumber: return _numbers[p].xf;
    case SheetIndex::kLabelSst: return _labelSst[p].xf;
    case SheetIndex::kBlank: return _blanks[p].xf;
    case SheetIndex::kBoolErr: return _boolErrs[p].xf;
    case SheetIndex::kFormula: return _formulas[p].formula.xf;
    case SheetIndex::kLabel: return _labels[p].xf;
    default: return 15;
    }
}

template <class C> void SheetImplT<C>::setXf(uint32_t code, uint16_t xf) {
    uint32_t p = SheetIndex::position(code);
    switch (SheetIndex::kind(code)) {
    case SheetIndex::kRK: _rk[p].xf = xf; break;
    case SheetIndex::kNumber: _numbers[p].xf = xf; break;
    case SheetIndex::kLabelSst: _labelSst[p].xf = xf; break;
    case SheetIndex::kBlank: _blanks[p].xf = xf; break;
    case SheetIndex::kBoolErr: _boolErrs[p].xf = xf; break;
    case SheetIndex::kFormula: _formulas[p].formula.xf = xf; break;
    case SheetIndex::kLabel: _labels[p].xf = xf; break;
    default: break;
    }
}

template <class C> uint32_t SheetImplT<C>::appendPosition(size_t size) const {
    if (size > kMaxPosition) throw tberror("too many cells in a sheet");
    return uint32_t(size);
}

template <class C> uint32_t SheetImplT<C>::lookup(int row, int col, IFormatT<C> **format) {
    if (format) *format = nullptr;
    checkRanges(row, col);
    uint32_t code = _index.findAhead(unsigned(row), unsigned(col));
    if (format && SheetIndex::exists(code)) *format = formatAt(xfOf(code));
    return code;
}

template <class C> const C *SheetImplT<C>::textResult(const wchar_t *wide) {
    return callerText(wide, _narrow, _wideResult, _owner->utf8Mode(), _owner->message(),
                      static_cast<const C *>(nullptr));
}

// ---- writing ----

template <class C>
void SheetImplT<C>::writeNumCell(int row, int col, double value, IFormatT<C> *format) {
    checkRanges(row, col);
    const unsigned r = unsigned(row), c = unsigned(col);
    const uint32_t code = codeAt(row, col);
    const bool exists = SheetIndex::exists(code);
    const uint16_t xf = resolveFormat(format, exists ? xfOf(code) : 15);
    const SheetIndex::Kind kind = SheetIndex::kind(code);
    if (rkExact(value)) {
        if (exists && kind == SheetIndex::kRK) {
            RK &e = _rk[SheetIndex::position(code)];
            e.setValue(value);
            e.xf = xf;
        } else {
            if (exists) delSharedFormula(row, col);
            uint32_t pos = appendPosition(_rk.size());
            _rk.emplace_back();
            RK &e = _rk.back();
            e.row = uint16_t(r);
            e.col = uint16_t(c);
            e.xf = xf;
            e.setValue(value);
            _index.at(r, c) = SheetIndex::code(SheetIndex::kRK, pos);
        }
    } else if (exists && kind == SheetIndex::kNumber) {
        Number &e = _numbers[SheetIndex::position(code)];
        e.value = value;
        e.xf = xf;
    } else {
        if (exists) delSharedFormula(row, col);
        uint32_t pos = appendPosition(_numbers.size());
        _numbers.emplace_back();
        Number &e = _numbers.back();
        e.row = uint16_t(r);
        e.col = uint16_t(c);
        e.xf = xf;
        e.value = value;
        _index.at(r, c) = SheetIndex::code(SheetIndex::kNumber, pos);
    }
    _dimensions.update(r, uint16_t(c));
}

template <class C>
bool SheetImplT<C>::writeNum(int row, int col, double value, IFormatT<C> *format) {
    writeNumCell(row, col, value, format);
    return true;
}

// Whether a LabelSst other than `self`, in this sheet or another sheet of
// the book, refers to string `sstIndex`.
template <class C> bool SheetImplT<C>::sstShared(uint32_t sstIndex, const LabelSst *self) const {
    for (const LabelSst &e : _labelSst)
        if (&e != self && e.sst == sstIndex) return true;
    int n = _owner->sheetCount();
    for (int i = 0; i < n; ++i) {
        const SheetImplT<C> *other = _owner->sheetAt(i);
        if (!other || other == this) continue;
        for (const LabelSst &e : other->labelSst())
            if (e.sst == sstIndex) return true;
    }
    return false;
}

template <class C>
void SheetImplT<C>::putLabelSst(int row, int col, uint32_t sstIndex, uint16_t xf) {
    uint32_t pos = appendPosition(_labelSst.size());
    _labelSst.emplace_back();
    LabelSst &e = _labelSst.back();
    e.row = uint16_t(row);
    e.col = uint16_t(col);
    e.xf = xf;
    e.sst = sstIndex;
    _index.at(unsigned(row), unsigned(col)) = SheetIndex::code(SheetIndex::kLabelSst, pos);
}

template <class C>
uint32_t SheetImplT<C>::writeStrCell(int row, int col, const std::wstring &text,
                                     IFormatT<C> *format) {
    const uint32_t code = codeAt(row, col);
    const bool exists = SheetIndex::exists(code);
    const uint16_t xf = resolveFormat(format, exists ? xfOf(code) : 15);
    SST &sst = _owner->sst();
    uint32_t index = 0;
    if (exists && SheetIndex::kind(code) == SheetIndex::kLabelSst) {
        LabelSst &e = _labelSst[SheetIndex::position(code)];
        const ExtString &present = sst.strings().extract(e.sst);
        const bool same = !(present.flags & (ExtString::kRichText | ExtString::kPhonetic)) &&
                          text == (present.text ? present.text : L"");
        // The same text again changes nothing but the format.
        if (!same) {
            if (sstShared(e.sst, &e))
                e.sst = sst.insert(text.c_str(), false);
            else
                sst.insert(e.sst, text.c_str());
        }
        e.xf = xf;
        index = e.sst;
    } else {
        if (exists) delSharedFormula(row, col);
        index = sst.insert(text.c_str(), false);
        putLabelSst(row, col, index, xf);
    }
    _dimensions.update(uint32_t(row), uint16_t(col));
    return index;
}

template <class C> bool SheetImplT<C>::sstHolds(uint32_t index, const C *text, size_t len) const {
    const StrMap &strings = _owner->sst().strings();
    if (index >= strings.count()) return false;
    const ExtString &e = strings.extract(index);
    if (e.flags & (ExtString::kRichText | ExtString::kPhonetic)) return false;
    const wchar_t *t = e.text ? e.text : L"";
    typedef typename std::make_unsigned<C>::type Unit;
    for (size_t i = 0; i < len; ++i)
        if (uint32_t(t[i]) != uint32_t(Unit(text[i]))) return false;
    return t[len] == 0;
}

template <class C>
bool SheetImplT<C>::writeStr(int row, int col, const C *value, IFormatT<C> *format) {
    checkRanges(row, col);
    static const C empty[1] = {0};
    const C *text = value ? value : empty;
    // One pass for the length and whether a narrow text is plain ASCII,
    // which reads the same in every encoding.
    size_t len = 0;
    bool ascii = true;
    for (; text[len]; ++len) ascii = ascii && uint32_t(text[len]) < 0x80;
    // The limit counts UTF-16 units, which a narrow text may take up to
    // four bytes apiece to spell: only a text past that bound is refused
    // unconverted.
    if (len > kMaxText * (sizeof(C) == 1 ? 4 : 1)) throw tberror(kStringTooLong);
    const bool cacheable = len <= StringCache<C>::kMaxKey &&
                           (sizeof(C) == sizeof(wchar_t) || (ascii && _owner->utf8Mode())) &&
                           _strings.active();
    uint32_t hash = 0;
    if (cacheable) {
        hash = StringCache<C>::hash(text, len);
        const uint32_t code = codeAt(row, col);
        const bool exists = SheetIndex::exists(code);
        const int64_t found = exists && SheetIndex::kind(code) == SheetIndex::kLabelSst
                                  ? -1
                                  : _strings.find(text, len, hash);
        // A new string cell whose text the table holds already: what
        // SST::insert would answer, without converting or copying.
        if (found >= 0 && sstHolds(uint32_t(found), text, len)) {
            const uint16_t xf = resolveFormat(format, exists ? xfOf(code) : 15);
            if (exists) delSharedFormula(row, col);
            ++_owner->sst().cstTotal;
            putLabelSst(row, col, uint32_t(found), xf);
            _dimensions.update(uint32_t(row), uint16_t(col));
            return true;
        }
    }
    wideText(text, _owner->utf8Mode(), _wide);
    if (_wide.size() > kMaxText) throw tberror(kStringTooLong);
    const uint32_t index = writeStrCell(row, col, _wide, format);
    if (cacheable) _strings.put(text, len, hash, index);
    return true;
}

template <class C>
bool SheetImplT<C>::writeBool(int row, int col, bool value, IFormatT<C> *format) {
    checkRanges(row, col);
    const uint32_t code = codeAt(row, col);
    const bool exists = SheetIndex::exists(code);
    const uint16_t xf = resolveFormat(format, exists ? xfOf(code) : 15);
    if (exists && SheetIndex::kind(code) == SheetIndex::kBoolErr) {
        BoolErr &e = _boolErrs[SheetIndex::position(code)];
        e.value = value ? 1 : 0;
        e.isError = 0;
        e.xf = xf;
    } else {
        if (exists) delSharedFormula(row, col);
        uint32_t pos = appendPosition(_boolErrs.size());
        _boolErrs.emplace_back();
        BoolErr &e = _boolErrs.back();
        e.row = uint16_t(row);
        e.col = uint16_t(col);
        e.xf = xf;
        e.value = value ? 1 : 0;
        _index.at(unsigned(row), unsigned(col)) = SheetIndex::code(SheetIndex::kBoolErr, pos);
    }
    _dimensions.update(uint32_t(row), uint16_t(col));
    return true;
}

template <class C> void SheetImplT<C>::setBlank(int row, int col, uint16_t xf) {
    const uint32_t code = codeAt(row, col);
    const bool exists = SheetIndex::exists(code);
    if (exists && SheetIndex::kind(code) == SheetIndex::kBlank) {
        _blanks[SheetIndex::position(code)].xf = xf;
    } else {
        if (exists) delSharedFormula(row, col);
        uint32_t pos = appendPosition(_blanks.size());
        _blanks.emplace_back();
        Blank &e = _blanks.back();
        e.row = uint16_t(row);
        e.col = uint16_t(col);
        e.xf = xf;
        _index.at(unsigned(row), unsigned(col)) = SheetIndex::code(SheetIndex::kBlank, pos);
    }
    _dimensions.update(uint32_t(row), uint16_t(col));
}

template <class C> bool SheetImplT<C>::writeBlank(int row, int col, IFormatT<C> *format) {
    checkRanges(row, col);
    setBlank(row, col, resolveFormat(format, getFormatID(row, col)));
    return true;
}

// ---- reading ----

template <class C> double SheetImplT<C>::readNum(int row, int col, IFormatT<C> **format) {
    const uint32_t code = lookup(row, col, format);
    if (SheetIndex::exists(code)) {
        const uint32_t p = SheetIndex::position(code);
        switch (SheetIndex::kind(code)) {
        case SheetIndex::kRK: return _rk[p].value();
        case SheetIndex::kNumber: return _numbers[p].value;
        case SheetIndex::kFormula:
            if (_formulas[p].formula.isNumber()) return _formulas[p].formula.doubleValue();
            break;
        default: break;
        }
    }
    fail("this cell doesn't contain a number");
    return 0.0;
}

template <class C> const wchar_t *SheetImplT<C>::formulaText(const FormulaBlock &block) const {
    const wchar_t *text = block.cachedText ? block.cachedText : L"";
    int ar = 0, ac = 0;
    if (!*text && block.formula.isExp(&ar, &ac) && ar < SheetIndex::kRows &&
        ac < SheetIndex::kCols) {
        uint32_t anchor = codeAt(ar, ac);
        if (SheetIndex::exists(anchor) && SheetIndex::kind(anchor) == SheetIndex::kFormula) {
            const FormulaBlock &a = _formulas[SheetIndex::position(anchor)];
            if (&a != &block && a.cachedText) text = a.cachedText;
        }
    }
    return text;
}

// The text of a string cell, or null for any other cell.
template <class C> const wchar_t *SheetImplT<C>::cellText(uint32_t code) const {
    if (!SheetIndex::exists(code)) return nullptr;
    const uint32_t p = SheetIndex::position(code);
    switch (SheetIndex::kind(code)) {
    case SheetIndex::kLabelSst: return _owner->sst().extract(_labelSst[p].sst);
    case SheetIndex::kLabel: return _labels[p].text.text ? _labels[p].text.text : L"";
    case SheetIndex::kFormula:
        if (_formulas[p].formula.stringValue()) return formulaText(_formulas[p]);
        return nullptr;
    default: return nullptr;
    }
}

template <class C> const C *SheetImplT<C>::readStr(int row, int col, IFormatT<C> **format) {
    const wchar_t *text = cellText(lookup(row, col, format));
    if (!text) {
        fail("this cell doesn't contain a string");
        return nullptr;
    }
    return textResult(text);
}

template <class C> bool SheetImplT<C>::readBool(int row, int col, IFormatT<C> **format) {
    const uint32_t code = lookup(row, col, format);
    if (SheetIndex::exists(code)) {
        const uint32_t p = SheetIndex::position(code);
        if (SheetIndex::kind(code) == SheetIndex::kBoolErr && !_boolErrs[p].isError)
            return _boolErrs[p].value != 0;
        if (SheetIndex::kind(code) == SheetIndex::kFormula &&
            _formulas[p].formula.cellType() == CELLTYPE_BOOLEAN)
            return _formulas[p].formula.boolValue();
    }
    fail("this cell doesn't contain a bool");
    return false;
}

template <class C> bool SheetImplT<C>::readBlank(int row, int col, IFormatT<C> **format) {
    if (!format) {
        fail("format mustn't be NULL");
        return false;
    }
    const uint32_t code = lookup(row, col, format);
    if (SheetIndex::exists(code)) {
        const uint32_t p = SheetIndex::position(code);
        if (SheetIndex::kind(code) == SheetIndex::kBlank) return true;
        if (SheetIndex::kind(code) == SheetIndex::kFormula &&
            _formulas[p].formula.cellType() == CELLTYPE_BLANK)
            return true;
    }
    fail("this cell doesn't contain a blank");
    return false;
}

// ---- types, dates, errors ----

template <class C> CellType SheetImplT<C>::cellType(int row, int col) {
    // Past the last row or column there is nothing: the cell is empty.
    const unsigned r = unsigned(row), c = unsigned(col);
    if (r >= unsigned(SheetIndex::kRows) || c >= unsigned(SheetIndex::kCols)) return CELLTYPE_EMPTY;
    const uint32_t code = _index.find(r, c);
    if (!SheetIndex::exists(code)) return CELLTYPE_EMPTY;
    const uint32_t p = SheetIndex::position(code);
    switch (SheetIndex::kind(code)) {
    case SheetIndex::kRK:
    case SheetIndex::kNumber: return CELLTYPE_NUMBER;
    case SheetIndex::kLabelSst:
    case SheetIndex::kLabel: return CELLTYPE_STRING;
    case SheetIndex::kBlank: return CELLTYPE_BLANK;
    case SheetIndex::kBoolErr: return _boolErrs[p].isError ? CELLTYPE_ERROR : CELLTYPE_BOOLEAN;
    case SheetIndex::kFormula: return CellType(_formulas[p].formula.cellType());
    default: return CELLTYPE_EMPTY;
    }
}

template <class C> bool SheetImplT<C>::isFormula(int row, int col) {
    checkRanges(row, col);
    const uint32_t code = codeAt(row, col);
    return SheetIndex::exists(code) && SheetIndex::kind(code) == SheetIndex::kFormula;
}

template <class C> bool SheetImplT<C>::isDate(int row, int col) {
    if (cellType(row, col) != CELLTYPE_NUMBER) return false;
    IFormatT<C> *format = nullptr;
    readNum(row, col, &format);
    _owner->message().assign("ok");
    if (!format) return false;
    const int id = format->numFormat();
    if (id < 50) return isDateNumFormat(id, nullptr);
    // Any id from 50 up is judged by its format code, when the book has
    // one; the custom-format id makes the helper look at the code.
    for (const Format &f : _owner->styles().numFormats())
        if (f.ifmt == id && f.code.text)
            return isDateNumFormat(StyleTable<C>::kFirstCustomFormat, f.code.text);
    return false;
}

template <class C> ErrorCode SheetImplT<C>::readError(int row, int col) {
    const uint32_t code = lookup(row, col, nullptr);
    if (SheetIndex::exists(code)) {
        const uint32_t p = SheetIndex::position(code);
        if (SheetIndex::kind(code) == SheetIndex::kBoolErr && _boolErrs[p].isError)
            return ErrorCode(_boolErrs[p].value);
        if (SheetIndex::kind(code) == SheetIndex::kFormula &&
            _formulas[p].formula.cellType() == CELLTYPE_ERROR)
            return ErrorCode(_formulas[p].formula.errorValue());
    }
    return ERRORTYPE_NOERROR;
}

// ---- formats of cells ----

template <class C> int SheetImplT<C>::rowIndexOf(int row) const {
    for (size_t i = 0; i < _rowList.size(); ++i)
        if (_rowList[i].row == row) return int(i);
    return -1;
}

template <class C> IFormatT<C> *SheetImplT<C>::cellFormatOf(int row, int col) {
    checkRanges(row, col);
    const uint32_t code = codeAt(row, col);
    if (code & 1u) {
        if (SheetIndex::kind(code) == SheetIndex::kNone) throw tberror("unknown type of cell");
        IFormatT<C> *f = formatAt(xfOf(code));
        if (!f) throw tberror("format not found");
        return f;
    }
    int ri = rowIndexOf(row);
    if (ri >= 0 && (_rowList[size_t(ri)].flags & 0x80)) {
        IFormatT<C> *f = formatAt(_rowList[size_t(ri)].xf & 0x0FFF);
        if (!f) throw tberror("format not found");
        return f;
    }
    for (const ColInfo &ci : _colInfos)
        if (ci.covers(col)) {
            IFormatT<C> *f = formatAt(ci.ixfe);
            if (!f) throw tberror("format not found");
            return f;
        }
    IFormatT<C> *f = formatAt(15);
    if (!f) throw tberror("formats are not found");
    return f;
}

template <class C> IFormatT<C> *SheetImplT<C>::cellFormat(int row, int col) {
    return cellFormatOf(row, col);
}

template <class C> void SheetImplT<C>::setCellFormat(int row, int col, IFormatT<C> *format) {
    checkRanges(row, col);
    int pos = formatPosition(format);
    if (!format || pos < 0) throw tberror("specified format is not found");
    const uint32_t code = codeAt(row, col);
    if (SheetIndex::exists(code))
        setXf(code, uint16_t(pos));
    else
        setBlank(row, col, uint16_t(pos));
}

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
