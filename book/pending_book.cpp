#include "book/pending_book.h"

#include <clocale>
#include <cstring>

#include "book/failure_frame.h"
#include "book/tberror.h"

namespace tabrix {

int libraryVersion();

namespace {
const char *const kIndexOutOfRange = "index is out of range";
}

template <class C> PendingBookT<C>::PendingBookT(const char *unavailable)
    : _unavailable(unavailable) {
    setLocale("");
}

template <class C> template <class R> R PendingBookT<C>::unavailable(R neutral) {
    return guarded(_message, neutral, [this]() -> R { throw tberror(_unavailable); });
}

template <class C> void PendingBookT<C>::unavailable() {
    guarded(_message, [this]() { throw tberror(_unavailable); });
}

template <class C> bool PendingBookT<C>::load(const C *) { return unavailable(false); }
template <class C> bool PendingBookT<C>::save(const C *) { return unavailable(false); }
template <class C> bool PendingBookT<C>::loadRaw(const char *, unsigned) {
    return unavailable(false);
}
template <class C> bool PendingBookT<C>::saveRaw(const char **, unsigned *) {
    return unavailable(false);
}
template <class C> ISheetT<C> *PendingBookT<C>::addSheet(const C *, ISheetT<C> *) {
    return unavailable<ISheetT<C> *>(nullptr);
}
template <class C> ISheetT<C> *PendingBookT<C>::insertSheet(int, const C *, ISheetT<C> *) {
    return unavailable<ISheetT<C> *>(nullptr);
}

// This book never holds a sheet, so every index is out of range.
template <class C> ISheetT<C> *PendingBookT<C>::getSheet(int) {
    return guarded(_message, static_cast<ISheetT<C> *>(nullptr),
                   []() -> ISheetT<C> * { throw tberror(kIndexOutOfRange); });
}
template <class C> SheetType PendingBookT<C>::sheetType(int) {
    return guarded(_message, SHEETTYPE_UNKNOWN,
                   []() -> SheetType { throw tberror(kIndexOutOfRange); });
}
template <class C> bool PendingBookT<C>::delSheet(int) {
    return guarded(_message, false, []() -> bool { throw tberror(kIndexOutOfRange); });
}

template <class C> IFormatT<C> *PendingBookT<C>::addFormat(IFormatT<C> *) {
    return unavailable<IFormatT<C> *>(nullptr);
}
template <class C> IFontT<C> *PendingBookT<C>::addFont(IFontT<C> *) {
    return unavailable<IFontT<C> *>(nullptr);
}
template <class C> int PendingBookT<C>::addCustomNumFormat(const C *) { return unavailable(0); }
template <class C> const C *PendingBookT<C>::customNumFormat(int) {
    return unavailable<const C *>(nullptr);
}
template <class C> IFormatT<C> *PendingBookT<C>::format(int) {
    return unavailable<IFormatT<C> *>(nullptr);
}
template <class C> IFontT<C> *PendingBookT<C>::font(int) {
    return unavailable<IFontT<C> *>(nullptr);
}
template <class C> double PendingBookT<C>::datePack(int, int, int, int, int, int, int) {
    return unavailable(0.0);
}
template <class C>
bool PendingBookT<C>::dateUnpack(double, int *, int *, int *, int *, int *, int *, int *) {
    return unavailable(false);
}
template <class C> Color PendingBookT<C>::colorPack(int, int, int) {
    return unavailable(COLOR_NONE);
}
template <class C> void PendingBookT<C>::colorUnpack(Color, int *, int *, int *) {
    unavailable();
}
template <class C> int PendingBookT<C>::getPicture(int, const char **, unsigned *) {
    return unavailable(0);
}
template <class C> int PendingBookT<C>::addPicture(const C *) { return unavailable(0); }
template <class C> int PendingBookT<C>::addPicture2(const char *, unsigned) {
    return unavailable(0);
}
template <class C> const C *PendingBookT<C>::defaultFont(int *) {
    return unavailable<const C *>(nullptr);
}
template <class C> void PendingBookT<C>::setDefaultFont(const C *, int) { unavailable(); }

template <class C> int PendingBookT<C>::version() { return libraryVersion(); }

// "UTF-8" selects UTF-8 mode; any other text is handed to the C library as
// the process's locale.
template <class C> bool PendingBookT<C>::setLocale(const char *locale) {
    return guarded(_message, false, [&]() -> bool {
        if (locale && std::strcmp(locale, "UTF-8") == 0) {
            _utf8Mode = true;
            return true;
        }
        _utf8Mode = false;
        const char *current = std::setlocale(LC_ALL, nullptr);
        _savedLocale = current ? current : "";
        if (!locale || !std::setlocale(LC_ALL, locale))
            throw tberror("setlocale error");
        return true;
    });
}

template <class C> const C *PendingBookT<C>::errorMessage() {
    return _message.template c_str<C>(_utf8Mode);
}

template class PendingBookT<char>;
template class PendingBookT<wchar_t>;

} // namespace tabrix
