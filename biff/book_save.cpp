// BookImplT: saving to a file or to memory.  The globals go out in a fixed
// order, then each sheet's substream; the BoundSheet8 records are written
// first with whatever position they hold and patched once the sheets' places
// are known.  A failed save leaves the book as it was.
#include "biff/book_impl.h"
#include "biff/record_ids.h"

#include "biff/sheet_impl.h"
#include "book/failure_frame.h"
#include "book/tberror.h"

#include <cstring>
#include <cwchar>

namespace tabrix {

namespace {
// RRTabId carries 2 bytes a sheet in one record.
const size_t kMaxRRTabIds = XlsRecords::kMaxRecordData / 2;
} // namespace

// A book read from the older format holds records of both layouts; writing
// them as they are would make a file of neither.
template <class C> void BookImplT<C>::checkSavable() const {
    if (_bof.vers == 0x0500)
        throw tberror("a workbook loaded from the BIFF5 format can't be saved");
}

template <class C> bool BookImplT<C>::save(const C *filename) {
    checkSavable();
    std::fstream file;
    if (!openFile(file, filename, std::ios::out | std::ios::binary | std::ios::trunc)) {
        message().assign("can't open file for writing");
        return false;
    }
    return saveTo(&file);
}

template <class C> bool BookImplT<C>::saveRaw(const char **data, unsigned *size) {
    if (data) *data = nullptr;
    if (size) *size = 0;
    checkSavable();
    saveTo(nullptr);
    size_t n = 0;
    _rawOut = _xls.takeOutput(n);
    if (data) *data = _rawOut.bytes();
    if (size) *size = unsigned(n);
    return true;
}

// To the stream, or to memory when there is none.
template <class C> bool BookImplT<C>::saveTo(std::iostream *stream) {
    _xls.reset(false);
    if (stream)
        _xls.setStreamPtr(stream);
    else
        _xls.writeToMemory();
    try {
        writeStream();
    } catch (...) {
        _xls.setStreamPtr(nullptr);
        throw;
    }
    _xls.setStreamPtr(nullptr);
    message().assign("ok");
    return true;
}

template <class C> void BookImplT<C>::writeWord(uint16_t id, uint16_t value) {
    _xls.write(id, 2);
    _xls.writeInt16(value);
}

template <class C> void BookImplT<C>::writeOpaque(uint16_t id) {
    KeptRecord *k = opaque(id);
    if (k && !k->absent) k->record.write(_xls);
}

// The drawing group goes out as MsoDrawingGroup continued by CONTINUE records.  An
// unchanged group is cut where it was cut when read, so it comes back byte
// for byte; a changed one is cut at the largest record size.
template <class C> void BookImplT<C>::writeDrawingGroup() {
    if (!_drawingGroup.present()) return;
    std::vector<uint8_t> bytes = _drawingGroup.write();
    std::vector<std::pair<uint16_t, uint16_t>> pieces;
    size_t kept = 0;
    for (const auto &p : _drawingGroupPieces) kept += p.second;
    if (!_drawingGroup.dirty() && kept == bytes.size()) {
        pieces = _drawingGroupPieces;
    } else {
        for (size_t left = bytes.size(); left > 0 || pieces.empty();) {
            uint16_t n =
                uint16_t(left < XlsRecords::kMaxRecordData ? left : XlsRecords::kMaxRecordData);
            pieces.push_back({pieces.empty() ? rid::MsoDrawingGroup : rid::Continue, n});
            left -= n;
        }
    }
    size_t at = 0;
    for (const auto &p : pieces) {
        _xls.write(p.first, p.second);
        if (p.second) _xls.write(bytes.data() + at, p.second);
        at += p.second;
    }
}

template <class C> void BookImplT<C>::writeGlobals(std::vector<uint32_t> &boundPos) {
    _bof.write(_xls);
    if (_template) _xls.write(rid::Template, 0);
    writeWord(rid::InterfaceHdr, _words.interfaceHdr);
    _xls.write(rid::Mms, _mms, 2);
    _xls.write(rid::InterfaceEnd, 0);
    _writeAccess.write(_xls);
    writeWord(rid::CodePage, _words.codePage);
    writeWord(rid::DSF, _words.dsf);

    if (_rrTabId.size() > kMaxRRTabIds) throw tberror("too many sheets in workbook");
    _xls.write(rid::RRTabId, uint16_t(_rrTabId.size() * 2));
    for (uint16_t t : _rrTabId) _xls.writeInt16(t);

    for (uint16_t id : {211, 445, 442}) writeOpaque(id);
    writeWord(rid::BuiltInFnGroupCount, _words.builtInFnGroupCount);
    _winProtect.write(_xls);
    _protect.write(_xls);
    _password.write(_xls);
    _prot4Rev.write(_xls);
    _prot4RevPass.write(_xls);

    _xls.write(rid::Window1, 18);
    for (uint16_t w : {_window1.xWn, _window1.yWn, _window1.dxWn, _window1.dyWn, _window1.flags,
                       _window1.itabCur, _window1.itabFirst, _window1.ctabSel, _window1.wTabRatio})
        _xls.writeInt16(w);

    writeWord(rid::Backup, _words.backup);
    writeWord(rid::HideObj, _words.hideObj);
    writeWord(rid::Date1904, _words.date1904);
    writeWord(rid::CalcPrecision, _words.calcPrecision);
    writeWord(rid::RefreshAll, _words.refreshAll);
    writeWord(rid::BookBool, _words.bookBool);

    for (FontImplT<C> *f : _styles.fonts()) f->write(_xls);
    for (const Format &f : _styles.numFormats()) f.write(_xls);
    for (FormatImplT<C> *f : _styles.formats()) f->write(_xls);
    writeOpaque(2172);
    for (const Biff &b : _xfExt) b.write(_xls);
    for (const StyleBlock &s : _styles.styles()) s.write(_xls);
    writeOpaque(2190);
    if (_styles.paletteChanged()) _styles.palette().write(_xls);
    writeOpaque(4188);
    writeWord(rid::UsesELFs, _words.usesELFs);

    boundPos.assign(_boundSheets.size(), 0);
    for (size_t i = 0; i < _boundSheets.size(); ++i) {
        BoundSheet8 &b = _boundSheets[i];
        boundPos[i] = _xls.writePos();
        if (i < _sheets.size()) {
            const std::wstring &name = _sheets[i]->wideName();
            bool same = b.name.text && wcsnlen(b.name.text, b.name.cch) == name.size() &&
                        name.compare(0, name.size(), b.name.text, name.size()) == 0;
            if (!same) b.name.setString(name.c_str(), pool());
        }
        b.write(_xls);
    }

    writeOpaque(2202);
    writeOpaque(2211);
    _xls.write(rid::Country, 4);
    _xls.writeInt16(_country[0]);
    _xls.writeInt16(_country[1]);
    for (SupBookBlock &s : _supBookBlocks) s.write(_xls);
    for (Lbl &l : _names) l.write(_xls);
    _xls.write(rid::RecalcId, 8);
    _xls.writeInt16(_recalcRt);
    _xls.writeInt16(_recalcReserved);
    _xls.writeInt32(_recalcBuild);
    for (const Biff &b : _hfPictures) b.write(_xls);
    writeDrawingGroup();
    _sst.write(_xls);
    for (uint16_t id : {2198, 2203, 2188}) writeOpaque(id);
    for (const Biff &b : _unknown) b.write(_xls);
    _xls.write(rid::Eof, 0);
}

template <class C> void BookImplT<C>::writeStream() {
    if (_boundSheets.size() != _sheets.size())
        throw tberror("integrity error: _boundSheets.size() != _sheets.size()");
    _xls.writeHeader();
    std::vector<uint32_t> boundPos;
    writeGlobals(boundPos);

    std::vector<uint32_t> sheetPos(_sheets.size(), 0);
    for (size_t i = 0; i < _sheets.size(); ++i) {
        sheetPos[i] = _xls.writePos();
        _sheets[i]->write(_xls);
    }
    // lbPlyPos sits right behind each BoundSheet8's header.
    for (size_t i = 0; i < boundPos.size(); ++i) {
        _xls.patchInt16(boundPos[i] + 4, uint16_t(sheetPos[i]));
        _xls.patchInt16(boundPos[i] + 6, uint16_t(sheetPos[i] >> 16));
        _boundSheets[i].lbPlyPos = sheetPos[i];
    }
    _xls.close();
}

template class BookImplT<char>;
template class BookImplT<wchar_t>;

} // namespace tabrix
