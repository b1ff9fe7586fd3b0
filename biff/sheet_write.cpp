// SheetImplT::write: a sheet's record substream in save order.  Cells are
// written by walking the index, row by row and column by column, one record
// per cell; elements that no index code reaches are left out.
#include "biff/sheet_frame.h"
#include "biff/record_ids.h"

#include <algorithm>

namespace tabrix {

namespace {

void writeWord(XlsRecords &xls, uint16_t id, uint16_t value) {
    xls.write(id, 2);
    xls.writeInt16(value);
}

void writeAll(XlsRecords &xls, const std::vector<Biff> &records) {
    for (const Biff &b : records) b.write(xls);
}

void writeIfPresent(XlsRecords &xls, const OptionalRecord &o) {
    if (!o.absent) o.record.write(xls);
}

const char *const kOldSheetNotSavable =
    "a worksheet loaded from a format older than BIFF8 can't be saved";

} // namespace

template <class C> void SheetImplT<C>::write(XlsRecords &xls) {
    if (_bof.dt != SubstreamHeader::kWorksheet) {
        // A chart or macro sheet: its records as read, BOF to EOF.
        writeAll(xls, _unknown);
        return;
    }
    // Its records are written in the current layout: an older header over
    // them would make a sheet of neither format.
    if (_bof.vers < 0x0600 || oldFormat()) throw tberror(kOldSheetNotSavable);
    _bof.write(xls);
    if (_hasUncalced) writeWord(xls, rid::Uncalced, _uncalced);
    _indexRecord.write(xls);

    writeWord(xls, rid::CalcMode, _calcMode);
    writeWord(xls, rid::CalcCount, _calcCount);
    writeWord(xls, rid::CalcRefMode, _calcRefMode);
    writeWord(xls, rid::CalcIter, _calcIter);
    xls.write(rid::CalcDelta, 8);
    xls.writeDouble(_calcDelta);
    writeWord(xls, rid::CalcSaveRecalc, _calcSaveRecalc);
    _setup.writePrintRowCol(xls);
    _setup.writePrintGrid(xls);
    writeWord(xls, rid::GridSet, _gridSet);
    xls.write(rid::Guts, 8);
    for (uint16_t g : _guts) xls.writeInt16(g);
    xls.write(rid::DefaultRowHeight, 4);
    xls.writeInt16(_defaultRowHeightFlags);
    xls.writeInt16(_defaultRowHeight);
    _setup.writeWsBool(xls);

    _setup.writeBreaks(xls);
    writeIfPresent(xls, _opaque2204);
    _setup.writePageSetup(xls);
    writeWord(xls, rid::DefColWidth, _defColWidth);
    writeColInfos(xls);
    writeIfPresent(xls, _opaque144);
    writeIfPresent(xls, _opaque2164);
    writeIfPresent(xls, _opaque157);

    recalcDimensions();
    _dimensions.write(xls);
    for (const Row &row : _rowList) {
        Row copy = row;
        copy.firstCol = 0;
        copy.lastCol = 0;
        copy.write(xls);
    }
    writeCells(xls);

    writeIfPresent(xls, _opaque450);
    writeAll(xls, _objects);
    writeAll(xls, _notes);
    writeIfPresent(xls, _opaque80);
    _setup.writeWindow2(xls);
    writeIfPresent(xls, _opaque2187);
    _setup.writeScl(xls);
    _setup.writePaneSelections(xls);
    writeIfPresent(xls, _opaque153);
    for (const MergeCells &m : _mergeCells)
        if (!m.areas.empty()) m.write(xls);
    if (_hasPhoneticInfo) _phoneticInfo.write(xls);
    writeIfPresent(xls, _opaque442);
    writeAll(xls, _unknown);
    xls.write(rid::Eof, 0);
}

// Sorted by first column, equal neighbours that touch merged into one run.
template <class C> void SheetImplT<C>::writeColInfos(XlsRecords &xls) {
    std::vector<ColInfo> cols = _colInfos;
    std::stable_sort(cols.begin(), cols.end(),
                     [](const ColInfo &a, const ColInfo &b) { return a.colFirst < b.colFirst; });
    std::vector<ColInfo> merged;
    for (const ColInfo &ci : cols) {
        if (!merged.empty() && merged.back().isEqual(ci) &&
            unsigned(merged.back().colLast) + 1 == ci.colFirst)
            merged.back().colLast = ci.colLast;
        else
            merged.push_back(ci);
    }
    for (const ColInfo &ci : merged) ci.write(xls);
}

template <class C> void SheetImplT<C>::writeCells(XlsRecords &xls) {
    for (unsigned r = 0; r < SheetIndex::kRows; ++r) {
        if (!_index.hasRow(r)) continue;
        const unsigned bound = _index.lastColBound(r);
        for (unsigned c = 0; c <= bound; ++c) {
            const uint32_t code = _index.get(r, c);
            if (!SheetIndex::exists(code)) continue;
            const uint32_t p = SheetIndex::position(code);
            switch (SheetIndex::kind(code)) {
            case SheetIndex::kRK: _rk[p].write(xls); break;
            case SheetIndex::kNumber: _numbers[p].write(xls); break;
            case SheetIndex::kLabelSst: _labelSst[p].write(xls); break;
            case SheetIndex::kBlank: _blanks[p].write(xls); break;
            case SheetIndex::kBoolErr: _boolErrs[p].write(xls); break;
            case SheetIndex::kFormula: _formulas[p].write(xls); break;
            case SheetIndex::kLabel: _labels[p].write(xls); break;
            default: break;
            }
        }
    }
}

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
