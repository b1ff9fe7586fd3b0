// BookImplT: construction, the fresh state, styling, dates, colours and
// settings.  Loading, saving and the sheet list live in book_load.cpp,
// book_save.cpp and book_sheets.cpp.
#include "biff/book_impl.h"

#include "biff/sheet_impl.h"
#include "book/book_factory.h"
#include "book/date_serial.h"
#include "book/encoding.h"
#include "book/failure_frame.h"
#include "book/tberror.h"
#include "book/text_result.h"
#include "book/units.h"

#include <clocale>
#include <cstring>
#include <fstream>
#include <iterator>

namespace tabrix {

int libraryVersion();

template <class C>
const uint16_t BookImplT<C>::kOpaqueIds[11] = {211,  445,  442,  2172, 2190, 4188,
                                               2202, 2211, 2198, 2203, 2188};

template <class C> BookImplT<C>::BookImplT() : _sst(_styles.pool()) {
    for (int i = 0; i < kOpaqueCount; ++i) _opaque[i].record.id = kOpaqueIds[i];
    setLocale("");
    reset();
    init();
}

template <class C> BookImplT<C>::~BookImplT() { free(); }

template <class C> void BookImplT<C>::free() {
    for (SheetImplT<C> *s : _sheets) delete s;
    for (SheetImplT<C> *s : _removedSheets) delete s;
    _sheets.clear();
    _removedSheets.clear();
    _styles.clear();
    // Everything below keeps text in the pool, which goes next.
    _sst.reset();
    _boundSheets.clear();
    _names.clear();
    _supBookBlocks.clear();
    pool().free();
}

template <class C> void BookImplT<C>::reset() {
    _xls.reset(true);
    _bof.reset();
    _mms[0] = _mms[1] = 0;
    _writeAccess.reset();
    _words = BookWords();
    _rrTabId.assign(1, 1);
    _winProtect.reset();
    _protect.reset();
    _password.reset();
    _prot4Rev.reset();
    _prot4RevPass.reset();
    _window1 = Window1();
    _country[0] = _country[1] = 1;
    _recalcRt = 449;
    _recalcReserved = 0;
    _recalcBuild = 114210;
    _sst.reset();
    _hasBookExt = false;
    _drawingGroup.clear();
    _drawingGroupPieces.clear();
    _supBookBlocks.clear();
    _boundSheets.clear();
    _unknown.clear();
    _unknown.shrink_to_fit();
    _names.clear();
    _hfPictures.clear();
    for (KeptRecord &k : _opaque) {
        k.absent = true;
        k.record.data.clear();
    }
    _xfExt.clear();
    _template = false;
    _refR1C1 = false;
}

template <class C> void BookImplT<C>::init() {
    _styles.init();
    _styles.setUtf8Mode(_utf8Mode);
    calcMaxDigWidth();
}

template <class C> void BookImplT<C>::clear() {
    free();
    reset();
    init();
}

template <class C> void BookImplT<C>::calcMaxDigWidth() {
    const auto &fonts = _styles.fonts();
    _maxDigWidth = fonts.empty() ? 7 : getMaxDigWidth(fonts[0]->wideName(), fonts[0]->size());
}

// ---- the sheet owner's side ----

template <class C> SheetImplT<C> *BookImplT<C>::sheetAt(int index) {
    return index >= 0 && size_t(index) < _sheets.size() ? _sheets[size_t(index)] : nullptr;
}

template <class C> int BookImplT<C>::getTabIndex(const SheetImplT<C> *sheet) {
    for (size_t i = 0; i < _sheets.size(); ++i)
        if (_sheets[i] == sheet) return int(i);
    return 0;
}

template <class C> const C *BookImplT<C>::tc(const wchar_t *wide) {
    return textResult<C>(_textBuf, message(), wide, _utf8Mode);
}

// ---- styling: the table's own operations set the shared message ----

template <class C> IFormatT<C> *BookImplT<C>::addFormat(IFormatT<C> *initFormat) {
    return _styles.addFormat(initFormat);
}

template <class C> IFontT<C> *BookImplT<C>::addFont(IFontT<C> *initFont) {
    return _styles.addFont(initFont);
}

template <class C> int BookImplT<C>::addCustomNumFormat(const C *text) {
    return _styles.addCustomNumFormat(text);
}

template <class C> const C *BookImplT<C>::customNumFormat(int fmt) {
    return _styles.customNumFormat(fmt);
}

template <class C> IFormatT<C> *BookImplT<C>::format(int index) { return _styles.format(index); }

template <class C> IFontT<C> *BookImplT<C>::font(int index) { return _styles.font(index); }

template <class C> const C *BookImplT<C>::defaultFont(int *size) {
    return _styles.defaultFont(size);
}

template <class C> void BookImplT<C>::setDefaultFont(const C *name, int size) {
    _styles.setDefaultFont(name, size);
    calcMaxDigWidth();
}

template <class C> Color BookImplT<C>::colorPack(int red, int green, int blue) {
    return Color(_styles.colorPack(red, green, blue));
}

template <class C> void BookImplT<C>::colorUnpack(Color color, int *red, int *green, int *blue) {
    _styles.colorUnpack(int(color), red, green, blue);
}

// ---- dates, in the book's date system ----

template <class C>
double BookImplT<C>::datePack(int year, int month, int day, int hour, int min, int sec, int msec) {
    return tabrix::datePack(isDate1904(), year, month, day, hour, min, sec, msec);
}

template <class C>
bool BookImplT<C>::dateUnpack(double value, int *year, int *month, int *day, int *hour, int *min,
                              int *sec, int *msec) {
    return tabrix::dateUnpack(isDate1904(), value, year, month, day, hour, min, sec, msec);
}

// ---- pictures, kept in the drawing group's store ----

template <class C> int BookImplT<C>::getPicture(int index, const char **data, unsigned *size) {
    if (data) *data = nullptr;
    if (size) *size = 0;
    if (index < 0) throw tberror("index is out of range");
    const OfficeArtBlip *blip = _drawingGroup.picture(size_t(index)).blip();
    if (!blip) throw tberror("unknown picture format");
    if (data) *data = reinterpret_cast<const char *>(blip->image().data());
    if (size) *size = unsigned(blip->image().size());
    return blipKindInfo(blip->kind()).pictureCode;
}

template <class C> int BookImplT<C>::addPicture(const C *filename) {
    std::string path;
    if (!filename || !narrowPath(filename, path)) throw tberror("can't open file");
    BlipKind kind = pictureKindOfName(path);
    std::ifstream in(path, std::ios::binary);
    if (!in) throw tberror("can't open file");
    std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)),
                               std::istreambuf_iterator<char>());
    if (in.bad()) throw tberror("can't open file");
    return _drawingGroup.addPicture(kind, std::move(bytes));
}

template <class C> int BookImplT<C>::addPicture2(const char *data, unsigned size) {
    return _drawingGroup.addPicture2(reinterpret_cast<const uint8_t *>(data), size);
}

// ---- settings ----

template <class C> bool BookImplT<C>::refR1C1() {
    return _sheets.empty() ? _refR1C1 : !_sheets.back()->refA1();
}

template <class C> void BookImplT<C>::setRefR1C1(bool r1c1) {
    for (SheetImplT<C> *s : _sheets) s->setRefA1(!r1c1);
    _refR1C1 = r1c1;
}

template <class C> int BookImplT<C>::version() { return libraryVersion(); }

// "UTF-8" selects UTF-8 mode; any other text is handed to the C library as
// the process's locale.
template <class C> bool BookImplT<C>::setLocale(const char *locale) {
    if (locale && std::strcmp(locale, "UTF-8") == 0) {
        _utf8Mode = true;
        _styles.setUtf8Mode(true);
        return true;
    }
    _utf8Mode = false;
    _styles.setUtf8Mode(false);
    const char *current = std::setlocale(LC_ALL, nullptr);
    _savedLocale = current ? current : "";
    if (!locale || !std::setlocale(LC_ALL, locale)) throw tberror("setlocale error");
    return true;
}

template <class C> const C *BookImplT<C>::errorMessage() {
    return message().template c_str<C>(_utf8Mode);
}

// A file name in the form the C library opens: narrow names as they are,
// wide ones through the book's encoding.
template <class C> bool BookImplT<C>::narrowPath(const C *name, std::string &narrow) {
    if (!name) return false;
    if constexpr (std::is_same<C, char>::value) {
        narrow = name;
        return true;
    } else {
        return toNarrow(name, _utf8Mode, narrow);
    }
}

template <class C>
bool BookImplT<C>::openFile(std::fstream &file, const C *name, std::ios::openmode mode) {
    std::string narrow;
    if (!narrowPath(name, narrow)) return false;
    file.open(narrow, mode);
    return file.is_open();
}

// ---- the visible sheets ----

template <class C> int BookImplT<C>::visibleSheetCount() const {
    int n = 0;
    for (const BoundSheet8 &b : _boundSheets)
        if ((b.hsState & 3) == 0) ++n;
    return n;
}

template <class C> int BookImplT<C>::getNextVisibleSheet(int index) const {
    int n = int(_boundSheets.size());
    if (index < 0 || index >= n) return index;
    for (int k = 1; k < n; ++k) {
        int i = (index + k) % n;
        if ((_boundSheets[size_t(i)].hsState & 3) == 0) return i;
    }
    return index;
}

template <class C> void BookImplT<C>::calcFirstTab() {
    for (size_t i = 0; i < _boundSheets.size(); ++i)
        if ((_boundSheets[i].hsState & 3) == 0) {
            _window1.itabFirst = uint16_t(i);
            return;
        }
}

template <class C> void BookImplT<C>::calcActiveSheet() {
    size_t active = _window1.itabCur;
    if (active < _boundSheets.size() && (_boundSheets[active].hsState & 3) != 0)
        selectOnly(getNextVisibleSheet(int(active)));
}

template class BookImplT<char>;
template class BookImplT<wchar_t>;
template class FramedBookT<BookImplT<char>>;
template class FramedBookT<BookImplT<wchar_t>>;

template <class C> IBookT<C> *newBinaryBook() { return new BinaryBookT<C>(); }
template IBookT<char> *newBinaryBook<char>();
template IBookT<wchar_t> *newBinaryBook<wchar_t>();

} // namespace tabrix
