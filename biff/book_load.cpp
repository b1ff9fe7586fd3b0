// BookImplT: loading a workbook from a file or from memory.  The globals
// are read record by record up to their EOF, then each sheet's substream in
// the order of the BoundSheet8 list.  A failure anywhere leaves a new book,
// never a half-loaded one.
#include "biff/book_impl.h"
#include "biff/record_ids.h"

#include "biff/records/book_ext.h"
#include "biff/records/ext_sst.h"
#include "book/file_window.h"
#include "book/memory_stream.h"
#include "biff/sheet_impl.h"
#include "book/code_page.h"
#include "book/failure_frame.h"
#include "book/tberror.h"

#include <algorithm>
#include <cwchar>
#include <memory>
#include <sstream>

namespace tabrix {

namespace {

const char *const kTooManySheets = "workbook has too many sheets";

// The globals that are one 16-bit word, with the text of a wrong size.
struct WordGlobal {
    uint16_t id;
    const char *sizeError;
    uint16_t BookWords::*word;
};

const WordGlobal kWordGlobals[] = {
    {rid::CodePage, "CodePage size is incorrect", &BookWords::codePage},
    {rid::DSF, "DSF size is incorrect", &BookWords::dsf},
    {rid::BuiltInFnGroupCount, "BuiltInFnGroupCount size is incorrect",
     &BookWords::builtInFnGroupCount},
    {rid::Backup, "Backup size is incorrect", &BookWords::backup},
    {rid::HideObj, "HideObj size is incorrect", &BookWords::hideObj},
    {rid::Date1904, "Date1904 size is incorrect", &BookWords::date1904},
    {rid::CalcPrecision, "CalcPrecision size is incorrect", &BookWords::calcPrecision},
    {rid::RefreshAll, "RefreshAll size is incorrect", &BookWords::refreshAll},
    {rid::BookBool, "BookBool size is incorrect", &BookWords::bookBool},
    {rid::UsesELFs, "UsesELFs size is incorrect", &BookWords::usesELFs},
};

const WordGlobal *wordGlobal(uint16_t id) {
    for (const WordGlobal &w : kWordGlobals)
        if (w.id == id) return &w;
    return nullptr;
}

// Unknown records are kept one by one; room is made for a number that the
// file's size could hold, never for more than this.
const size_t kUnknownReserve = 100000;

void skip(XlsRecords &xls, uint16_t size) {
    uint8_t buf[256];
    while (size > 0) {
        uint16_t n = std::min<uint16_t>(size, sizeof buf);
        if (xls.read(buf, n) < n) return;
        size = uint16_t(size - n);
    }
}

uint16_t word(XlsRecords &xls) {
    uint16_t v = 0;
    xls.readInt16(v);
    return v;
}

} // namespace

template <class C> KeptRecord *BookImplT<C>::opaque(uint16_t id) {
    for (int i = 0; i < kOpaqueCount; ++i)
        if (kOpaqueIds[i] == id) return &_opaque[i];
    return nullptr;
}

template <class C> bool BookImplT<C>::load(const C *filename) {
    return loadOrClear([&] {
        std::string path;
        FileWindow stream;
        if (!narrowPath(filename, path) || !stream.open(path.c_str()))
            throw tberror("can't open file for reading");
        loadFrom(stream);
    });
}

template <class C> bool BookImplT<C>::loadRaw(const char *data, unsigned size) {
    return loadOrClear([&] {
        MemoryStream stream(data ? data : "", data ? size : 0);
        loadFrom(stream);
    });
}

// A failed load leaves a new book behind; the frame then sets the failure's
// text.
template <class C> template <class Work> bool BookImplT<C>::loadOrClear(Work &&work) {
    free();
    reset();
    try {
        work();
    } catch (...) {
        clear();
        throw;
    }
    return true;
}

template <class C> bool BookImplT<C>::loadFrom(std::iostream &stream) {
    _xls.setStreamPtr(&stream);
    _xls.calcFileSize();
    unsigned total = 0;
    _xls.readHeader(total);
    readStream();
    _xls.readSections();
    _xls.setStreamPtr(nullptr);
    calcMaxDigWidth();
    message().assign("ok");
    return true;
}

template <class C> void BookImplT<C>::readStream() {
    // A record takes at least its 4-byte header.
    _unknown.reserve(std::min<size_t>(kUnknownReserve, _xls.fileSize() / 4));
    bool bofSeen = false;
    for (;;) {
        uint16_t id = 0, size = 0;
        _xls.readInt16(id);
        _xls.readInt16(size);
        if (_xls.eof()) break;
        if (id == 0) throw tberror("read error: record id can't be 0");
        if (id == Bof::kId && bofSeen) {
            // Only the first one heads the globals; a later one (globals
            // without their EOF) is carried as it stands.
            keepUnknown(id, size);
            continue;
        }
        bofSeen = bofSeen || id == Bof::kId;
        if (!readGlobal(id, size)) break;
    }
    _unknown.shrink_to_fit();
    readSheets();
    // Records that run past the end of the stream were cut short: what was
    // kept of them could not be written back as a valid file.
    if (_xls.eof()) throw tberror("read error: workbook stream is truncated");
}

// One record of the globals whose header was read; false at their EOF.
template <class C> bool BookImplT<C>::readGlobal(uint16_t id, uint16_t size) {
    if (const WordGlobal *w = wordGlobal(id)) {
        if (size != 2) throw tberror(w->sizeError);
        _words.*(w->word) = word(_xls);
        return true;
    }
    if (KeptRecord *k = opaque(id)) {
        k->record.read(_xls, size);
        k->absent = false;
        return true;
    }
    switch (id) {
    case rid::Eof: skip(_xls, size); return false;
    case Bof::kId:
        _bof.read(_xls, size);
        if (_bof.vers != 0x0600 && _bof.vers != 0x0500)
            throw tberror("This file format isn't supported");
        break;
    case rid::FilePass: throw tberror("workbook is encrypted");
    case rid::InterfaceHdr: // InterfaceHdr
        if (size != 0 && size != 2) throw tberror("InterfaceHdr size is incorrect");
        if (size == 2) _words.interfaceHdr = word(_xls);
        break;
    case rid::InterfaceEnd: // InterfaceEnd
        if (size != 0 && size != 2) throw tberror("InterfaceEnd size is incorrect");
        skip(_xls, size);
        break;
    case rid::Mms: // Mms
        if (size != 0 && size != 2) throw tberror("Mms size is incorrect");
        if (size == 2) _xls.read(_mms, 2);
        break;
    case WriteAccess::kId: _writeAccess.read(_xls, size); break;
    case rid::RRTabId: { // RRTabId
        if (size % 2) throw tberror("RRTabId size is incorrect");
        _rrTabId.assign(size / 2, 0);
        for (uint16_t &t : _rrTabId) t = word(_xls);
        break;
    }
    case WinProtect::kId: _winProtect.read(_xls, size); break;
    case Protect::kId: _protect.read(_xls, size); break;
    case Password::kId: _password.read(_xls, size); break;
    case Prot4Rev::kId: _prot4Rev.read(_xls, size); break;
    case Prot4RevPass::kId: _prot4RevPass.read(_xls, size); break;
    case rid::Window1: { // Window1
        if (size != 18) throw tberror("Window1 size is incorrect");
        uint16_t *w[] = {&_window1.xWn,       &_window1.yWn,     &_window1.dxWn,
                         &_window1.dyWn,      &_window1.flags,   &_window1.itabCur,
                         &_window1.itabFirst, &_window1.ctabSel, &_window1.wTabRatio};
        for (uint16_t *f : w) *f = word(_xls);
        break;
    }
    case rid::Font: _styles.readFont(_xls, size, _bof.vers); break;
    case rid::Format:
        if (size < 3) throw tberror("Format size is incorrect");
        _styles.readFormat(_xls, size, _bof.vers);
        break;
    case rid::XF: _styles.readXF(_xls, size, _bof.vers); break;
    case rid::Style: _styles.readStyle(_xls, size, _bof.vers); break;
    case rid::Palette: _styles.readPalette(_xls, size); break;
    case BoundSheet8::kId: {
        if (size < 8) throw tberror("BoundSheet8 size is incorrect");
        if (_boundSheets.size() >= size_t(kMaxSheets)) throw tberror(kTooManySheets);
        BoundSheet8 b;
        b.read(_xls, size, pool(), _bof.vers == 0x0500);
        _boundSheets.push_back(b);
        break;
    }
    case rid::Country: // Country
        if (size != 4) throw tberror("Country size is incorrect");
        _country[0] = word(_xls);
        _country[1] = word(_xls);
        break;
    case rid::SupBook: { // SupBook and the records that belong to it
        SupBookBlock block;
        block.read(_xls, size);
        _supBookBlocks.push_back(std::move(block));
        break;
    }
    case Lbl::kId: {
        Lbl name;
        name.read(_xls, size, pool(), _bof.vers == 0x0500);
        _names.push_back(std::move(name));
        break;
    }
    case rid::RecalcId: { // RecalcId
        if (size != 8) throw tberror("RecalcId size is incorrect");
        _recalcRt = word(_xls);
        _recalcReserved = word(_xls);
        uint32_t b = 0;
        _xls.readInt32(b);
        _recalcBuild = b;
        break;
    }
    case rid::Excel9File: // Excel9File
        if (size != 0) throw tberror("Excel9File size is incorrect");
        break;
    case rid::MsoDrawingGroup: { // joined with the MsoDrawingGroup and CONTINUE records after it
        std::vector<uint8_t> bytes(size);
        if (size) bytes.resize(_xls.read(bytes.data(), size));
        _drawingGroupPieces.assign(1, {rid::MsoDrawingGroup, uint16_t(bytes.size())});
        while (!_xls.eof() &&
               (_xls.peekInt16() == rid::Continue || _xls.peekInt16() == rid::MsoDrawingGroup)) {
            uint16_t cid = 0, csize = 0;
            _xls.readInt16(cid);
            _xls.readInt16(csize);
            size_t at = bytes.size();
            bytes.resize(at + csize);
            if (csize) bytes.resize(at + _xls.read(bytes.data() + at, csize));
            _drawingGroupPieces.push_back({cid, uint16_t(bytes.size() - at)});
        }
        _drawingGroup.read(bytes.data(), bytes.size());
        break;
    }
    case SST::kId: _sst.read(_xls, size); break;
    case ExtSST::kId: {
        // Rebuilt by nobody: a save leaves it out.
        ExtSST ext;
        ext.read(_xls, size);
        break;
    }
    case BookExt::kId: {
        // Checked, then dropped: a save doesn't write it.
        BookExt ext;
        ext.read(_xls, size);
        _hasBookExt = true;
        break;
    }
    case rid::Template: // Template
        if (size != 0 && size != 2) throw tberror("Template size is incorrect");
        skip(_xls, size);
        _template = true;
        break;
    default: keepUnknown(id, size);
    }
    return true;
}

// A record the book only carries, kept in the list its save slot takes.
template <class C> void BookImplT<C>::keepUnknown(uint16_t id, uint16_t size) {
    Biff b;
    b.id = id;
    b.read(_xls, size);
    if (id == rid::XFExt)
        _xfExt.push_back(std::move(b));
    else if (id == rid::HFPicture)
        _hfPictures.push_back(std::move(b));
    else
        _unknown.push_back(std::move(b));
}

// Each sheet's substream follows the previous one; the stream positions in
// the BoundSheet8 entries are not needed for reading.
template <class C> void BookImplT<C>::readSheets() {
    _sheets.reserve(_boundSheets.size());
    for (const BoundSheet8 &b : _boundSheets) {
        std::wstring name;
        if (b.name.text) name.assign(b.name.text, wcsnlen(b.name.text, b.name.cch));
        // The older format's names are bytes in the book's code page.
        if (_bof.vers < 0x0600) name = codePageToUnits(name.c_str(), name.size(), _words.codePage);
        std::unique_ptr<SheetImplT<C>> sheet(new BinarySheetT<C>(*this, name));
        sheet->read(_xls);
        _sheets.push_back(sheet.release());
    }
}

template class BookImplT<char>;
template class BookImplT<wchar_t>;

} // namespace tabrix
