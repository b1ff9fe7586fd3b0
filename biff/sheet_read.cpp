// SheetImplT::read: the load dispatch of a sheet's record substream, from
// its BOF to its EOF.  A worksheet's records go to their members; a chart or
// macro sheet is kept whole as raw records.
#include "biff/sheet_frame.h"
#include "biff/record_ids.h"

#include "biff/records/mul_blank.h"
#include "biff/records/mul_rk.h"
#include "book/code_page.h"

#include <algorithm>

namespace tabrix {

namespace {

// A whole record whose header was read.
Biff rawRecord(XlsRecords &xls, uint16_t id, uint16_t size) {
    Biff b;
    b.id = id;
    b.read(xls, size);
    return b;
}

void skipBytes(XlsRecords &xls, uint16_t size) {
    uint8_t buf[256];
    while (size > 0) {
        uint16_t n = std::min<uint16_t>(size, sizeof buf);
        if (xls.read(buf, n) < n) return;
        size = uint16_t(size - n);
    }
}

// A whole record at the stream's position, header included.
Biff nextRaw(XlsRecords &xls) {
    uint16_t id = 0, size = 0;
    xls.readInt16(id);
    xls.readInt16(size);
    return rawRecord(xls, id, size);
}

// A nested substream whose BOF header was read, up to its EOF, into `out`.
// A stream that ends first is corrupt: saved as it stands, the records
// behind it would be taken into the substream on the next load.
void readNested(XlsRecords &xls, uint16_t size, std::vector<Biff> &out, const char *who) {
    out.push_back(rawRecord(xls, SubstreamHeader::kId, size));
    int depth = 1;
    while (depth > 0) {
        uint16_t id = 0, n = 0;
        xls.readInt16(id);
        xls.readInt16(n);
        if (xls.eof()) throw tberror(std::string(who) + ": file is corrupt");
        if (id == 0) {
            // Zero filler or an old-style record: dropped, never written back.
            skipBytes(xls, n);
            continue;
        }
        if (id == SubstreamHeader::kId) ++depth;
        if (id == rid::Eof) --depth;
        out.push_back(rawRecord(xls, id, n));
    }
}

// A record of exactly `expected` bytes holding one 16-bit value.
uint16_t readWord(XlsRecords &xls, uint16_t size, const char *name) {
    if (size != 2) throw tberror(std::string(name) + " size is incorrect");
    uint16_t v = 0;
    xls.readInt16(v);
    return v;
}

// A calculation setting of the expected size replaces `value`; one of
// another size (producers write a 16-byte CalcDelta, the value in its last
// eight) is skipped whole and the setting keeps its default: none of its
// bytes is sure to be the value.
template <class T> void readSetting(XlsRecords &xls, uint16_t size, T &value) {
    if (size != sizeof(T)) return skipBytes(xls, size);
    if (sizeof(T) == 8) {
        double d = 0;
        xls.readDouble(d);
        value = T(d);
    } else {
        uint16_t w = 0;
        xls.readInt16(w);
        value = T(w);
    }
}

void checkCol(uint16_t col) {
    if (col > 255) throw tberror("col must be in range 0-255");
}

} // namespace

template <class C> void SheetImplT<C>::resetForRead() {
    // Everything but the name comes from the stream.
    std::wstring name = _name;
    ISheetOwner<C> *owner = _owner;
    _bof = SubstreamHeader();
    _indexRecord.reset();
    _calcMode = 1;
    _calcCount = 100;
    _calcRefMode = 1;
    _calcIter = 0;
    _calcDelta = 0.001;
    _calcSaveRecalc = 1;
    _gridSet = 1;
    for (uint16_t &g : _guts) g = 0;
    _defaultRowHeightFlags = 0;
    _defaultRowHeight = 255;
    _defColWidth = 8;
    _dimensions.reset();
    _phoneticInfo.reset();
    _hasPhoneticInfo = false;
    _setup.beginRead();
    _objects.clear();
    _notes.clear();
    for (OptionalRecord *o : {&_opaque2204, &_opaque144, &_opaque2164, &_opaque157, &_opaque450,
                              &_opaque80, &_opaque2187, &_opaque153, &_opaque442}) {
        o->absent = true;
        o->record.data.clear();
    }
    _rowList.clear();
    _labelSst.clear();
    _labels.clear();
    _rk.clear();
    _numbers.clear();
    _dbCells.clear();
    _unknown.clear();
    _colInfos.clear();
    _mergeCells.clear();
    _blanks.clear();
    _boolErrs.clear();
    _formulas.clear();
    _index.clear();
    _hasUncalced = false;
    _uncalced = 0;
    _name = name;
    _owner = owner;
}

template <class C> void SheetImplT<C>::read(XlsRecords &xls) {
    resetForRead();
    if (_formulas.capacity() < 11000) _formulas.reserve(11000);
    if (_unknown.capacity() < 6000) _unknown.reserve(6000);
    if (_rowList.capacity() < 1200) _rowList.reserve(1200);
    if (_labelSst.capacity() < 9000) _labelSst.reserve(9000);
    if (_rk.capacity() < 70000) _rk.reserve(70000);
    if (_blanks.capacity() < 800) _blanks.reserve(800);

    int depth = 0;
    bool worksheet = true;
    for (;;) {
        uint16_t id = 0, size = 0;
        xls.readInt16(id);
        xls.readInt16(size);
        if (xls.eof()) break;
        if (id == 0) {
            // Zero filler behind a record, or the dimensions of the oldest
            // format: dropped, so never written back.
            skipBytes(xls, size);
            continue;
        }
        if (id == rid::Eof) {
            if (!worksheet) {
                _unknown.push_back(rawRecord(xls, id, size));
                if (--depth <= 0) break;
                continue;
            }
            if (size != 0) throw tberror("EOF size is incorrect");
            if (depth != 1) return; // an end with no start: nothing to trim
            break;
        }
        if (id == SubstreamHeader::kId) {
            if (depth == 0) {
                ++depth;
                _bof.read(xls, size);
                worksheet = _bof.dt == SubstreamHeader::kWorksheet;
                if (!worksheet) _unknown.push_back(_bof.raw);
            } else if (!worksheet) {
                ++depth;
                _unknown.push_back(rawRecord(xls, id, size));
            } else {
                // A substream inside a worksheet outside a drawing: kept whole.
                readNested(xls, size, _unknown, "Substream");
            }
            continue;
        }
        if (!worksheet) {
            _unknown.push_back(rawRecord(xls, id, size));
            continue;
        }
        if (!readWorksheetRecord(xls, id, size)) _unknown.push_back(rawRecord(xls, id, size));
    }

    _formulas.shrink_to_fit();
    _unknown.shrink_to_fit();
    _rowList.shrink_to_fit();
    _labelSst.shrink_to_fit();
    _rk.shrink_to_fit();
    _numbers.shrink_to_fit();
    _boolErrs.shrink_to_fit();
    _blanks.shrink_to_fit();
    _dirty = true;
}

// The extents a file states bound the cells that follow: number and text
// vectors get room for them at once instead of growing by copies.  Room
// never touched costs address space only, and the trim after the load gives
// it back.  A hostile extent is capped.
template <class C> void SheetImplT<C>::reserveCells() {
    const uint64_t rows =
        _dimensions.lastRow > _dimensions.firstRow ? _dimensions.lastRow - _dimensions.firstRow : 0;
    const uint64_t cols =
        _dimensions.lastCol > _dimensions.firstCol ? _dimensions.lastCol - _dimensions.firstCol : 0;
    const size_t cells = size_t(std::min<uint64_t>(rows * cols, kMaxReservedCells));
    if (_rk.capacity() < cells) _rk.reserve(cells);
    if (_labelSst.capacity() < cells) _labelSst.reserve(cells);
    if (_numbers.capacity() < cells / 4) _numbers.reserve(cells / 4);
}

// The records of a worksheet that have a place of their own; false for
// the others, which the caller keeps raw.
template <class C>
bool SheetImplT<C>::readWorksheetRecord(XlsRecords &xls, uint16_t id, uint16_t size) {
    switch (id) {
    case rid::Formula:
    case rid::MulRk:
    case rid::MulBlank:
    case rid::LabelSst:
    case rid::Blank:
    case rid::Number:
    case rid::Label:
    case rid::BoolErr:
    case rid::RK: readCellRecord(xls, id, size); return true;
    case rid::CalcCount: readSetting(xls, size, _calcCount); return true;
    case rid::CalcMode: readSetting(xls, size, _calcMode); return true;
    case rid::CalcRefMode: readSetting(xls, size, _calcRefMode); return true;
    case rid::CalcDelta: readSetting(xls, size, _calcDelta); return true;
    case rid::CalcIter: readSetting(xls, size, _calcIter); return true;
    case rid::CalcSaveRecalc: readSetting(xls, size, _calcSaveRecalc); return true;
    case rid::GridSet: _gridSet = readWord(xls, size, "GridSet"); return true;
    case rid::Guts:
        if (size != 8) throw tberror("Guts size is incorrect");
        for (uint16_t &g : _guts) xls.readInt16(g);
        return true;
    case rid::DefaultRowHeight:
        if (size != 4) throw tberror("DefaultRowHeight size is incorrect");
        xls.readInt16(_defaultRowHeightFlags);
        xls.readInt16(_defaultRowHeight);
        return true;
    case rid::DefColWidth: {
        if (size != 2 && size != 4) throw tberror("DefColWidth size is incorrect");
        xls.readInt16(_defColWidth);
        uint16_t extra = 0;
        if (size == 4) xls.readInt16(extra);
        return true;
    }
    case rid::Uncalced:
        _uncalced = readWord(xls, size, "Uncalced");
        _hasUncalced = true;
        return true;
    case rid::Note: _notes.push_back(rawRecord(xls, id, size)); return true;
    case rid::ColInfo: {
        ColInfo ci;
        ci.read(xls, size);
        _colInfos.push_back(ci);
        return true;
    }
    case rid::DBCell: {
        DBCell db;
        db.read(xls, size);
        _dbCells.push_back(db);
        return true;
    }
    case rid::MergeCells: {
        MergeCells m;
        m.read(xls, size);
        _mergeCells.push_back(m);
        return true;
    }
    case rid::MsoDrawing: readDrawingRun(xls, id, size); return true;
    case rid::PhoneticInfo:
        _phoneticInfo.read(xls, size);
        _hasPhoneticInfo = true;
        return true;
    case rid::Dimensions:
        if (size == 10) {
            // The old form with 16-bit rows.
            uint16_t first = 0, last = 0;
            xls.readInt16(first);
            xls.readInt16(last);
            _dimensions.firstRow = first;
            _dimensions.lastRow = last;
            xls.readInt16(_dimensions.firstCol);
            xls.readInt16(_dimensions.lastCol);
            xls.readInt16(_dimensions.reserved);
        } else {
            _dimensions.read(xls, size);
        }
        reserveCells();
        return true;
    case rid::Row: {
        Row row;
        row.read(xls, size);
        _rowList.push_back(row);
        return true;
    }
    case rid::Index: _indexRecord.read(xls, size, uint16_t(_owner->globalsVersion())); return true;
    default:
        // Printout, protection, breaks and window records: after the cells,
        // which are most of a sheet's records.
        if (_setup.read(xls, id, size, oldFormat())) return true;
        break;
    }
    for (OptionalRecord *o : {&_opaque2204, &_opaque144, &_opaque2164, &_opaque157, &_opaque450,
                              &_opaque80, &_opaque2187, &_opaque153, &_opaque442})
        if (o->record.id == id) {
            o->record = rawRecord(xls, id, size);
            o->absent = false;
            return true;
        }
    return false;
}

template <class C> bool SheetImplT<C>::oldFormat() const {
    return _owner->globalsVersion() < 0x0600;
}

template <class C> const wchar_t *SheetImplT<C>::oldStringResult(const Biff &record) {
    const std::vector<uint8_t> &d = record.data;
    // A count beyond the record gives the characters present.
    size_t cch = d.size() >= 2 ? std::min(size_t(d[0] | d[1] << 8), d.size() - 2) : 0;
    std::wstring bytes;
    for (size_t i = 0; i < cch; ++i) bytes += wchar_t(d[2 + i]);
    std::wstring units = codePageToUnits(bytes.c_str(), cch, _owner->codePage());
    return poolCopy(units.c_str(), units.size(), _owner->pool());
}

template <class C> void SheetImplT<C>::readCellRecord(XlsRecords &xls, uint16_t id, uint16_t size) {
    switch (id) {
    case rid::Formula: {
        _formulas.emplace_back();
        FormulaBlock &f = _formulas.back();
        f.read(xls, size, _owner->pool());
        if (oldFormat() && f.hasString) f.cachedText = oldStringResult(f.string);
        checkCol(f.formula.colIndex);
        _index.at(f.formula.rw, f.formula.colIndex) =
            SheetIndex::code(SheetIndex::kFormula, appendPosition(_formulas.size() - 1));
        return;
    }
    case rid::MulRk: {
        MulRk m;
        m.read(xls, size);
        for (const RK &rk : m.expand()) {
            checkCol(rk.col);
            _index.at(rk.row, rk.col) =
                SheetIndex::code(SheetIndex::kRK, appendPosition(_rk.size()));
            _rk.push_back(rk);
        }
        return;
    }
    case rid::MulBlank: {
        MulBlank m;
        m.read(xls, size);
        for (const Blank &b : m.expand()) {
            checkCol(b.col);
            _index.at(b.row, b.col) =
                SheetIndex::code(SheetIndex::kBlank, appendPosition(_blanks.size()));
            _blanks.push_back(b);
        }
        return;
    }
    case rid::LabelSst: {
        LabelSst e;
        e.read(xls, size);
        checkCol(e.col);
        _index.at(e.row, e.col) =
            SheetIndex::code(SheetIndex::kLabelSst, appendPosition(_labelSst.size()));
        _labelSst.push_back(e);
        return;
    }
    case rid::Blank: {
        Blank e;
        e.read(xls, size);
        checkCol(e.col);
        _index.at(e.row, e.col) =
            SheetIndex::code(SheetIndex::kBlank, appendPosition(_blanks.size()));
        _blanks.push_back(e);
        return;
    }
    case rid::Number: {
        // 14 bytes; some writers pad to 16 or 18.
        if (size != 14 && size != 16 && size != 18) throw tberror("Number size is incorrect");
        Number e;
        e.read(xls, 14);
        for (uint16_t pad = 0, n = 14; n < size; n += 2) xls.readInt16(pad);
        checkCol(e.col);
        _index.at(e.row, e.col) =
            SheetIndex::code(SheetIndex::kNumber, appendPosition(_numbers.size()));
        _numbers.push_back(e);
        return;
    }
    case rid::Label: {
        Label e(_owner->pool());
        e.read(xls, size, oldFormat(), _owner->codePage());
        checkCol(e.col);
        _index.at(e.row, e.col) =
            SheetIndex::code(SheetIndex::kLabel, appendPosition(_labels.size()));
        _labels.push_back(e);
        return;
    }
    case rid::BoolErr: {
        BoolErr e;
        e.read(xls, size);
        checkCol(e.col);
        _index.at(e.row, e.col) =
            SheetIndex::code(SheetIndex::kBoolErr, appendPosition(_boolErrs.size()));
        _boolErrs.push_back(e);
        return;
    }
    case rid::RK: {
        RK e;
        e.read(xls, size);
        checkCol(e.col);
        _index.at(e.row, e.col) = SheetIndex::code(SheetIndex::kRK, appendPosition(_rk.size()));
        _rk.push_back(e);
        return;
    }
    default: return;
    }
}

// The drawing run: MsoDrawing records with the Obj, TxO and CONTINUE
// records that belong to them and embedded chart substreams, in stream
// order.
template <class C> void SheetImplT<C>::readDrawingRun(XlsRecords &xls, uint16_t id, uint16_t size) {
    _objects.push_back(rawRecord(xls, id, size));
    for (;;) {
        if (xls.eof()) return;
        uint16_t next = xls.peekInt16();
        if (next == rid::MsoDrawing || next == rid::Obj || next == rid::TxO ||
            next == rid::Continue) {
            _objects.push_back(nextRaw(xls));
        } else if (next == SubstreamHeader::kId) {
            uint16_t bofId = 0, n = 0;
            xls.readInt16(bofId);
            xls.readInt16(n);
            readNested(xls, n, _objects, "Objects");
        } else {
            return;
        }
    }
}

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
