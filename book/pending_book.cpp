#include "book/pending_book.h"

#include <clocale>
#include <cstring>

#include "book/tberror.h"

namespace tabrix {

int libraryVersion();

namespace {
const char *const kIndexOutOfRange = "index is out of range";
}

template <class C>
PendingBookT<C>::PendingBookT(const char *unavailable) : _unavailable(unavailable) {
    setLocale("");
}

// This book never holds a sheet, so every index is out of range.
template <class C> ISheetT<C> *PendingBookT<C>::getSheet(int) { throw tberror(kIndexOutOfRange); }
template <class C> SheetType PendingBookT<C>::sheetType(int) { throw tberror(kIndexOutOfRange); }
template <class C> bool PendingBookT<C>::delSheet(int) { throw tberror(kIndexOutOfRange); }
template <class C> void PendingBookT<C>::setActiveSheet(int) { throw tberror(kIndexOutOfRange); }

template <class C> int PendingBookT<C>::version() { return libraryVersion(); }

// "UTF-8" selects UTF-8 mode; any other text is handed to the C library as
// the process's locale.
template <class C> bool PendingBookT<C>::setLocale(const char *locale) {
    if (locale && std::strcmp(locale, "UTF-8") == 0) {
        _utf8Mode = true;
        return true;
    }
    _utf8Mode = false;
    const char *current = std::setlocale(LC_ALL, nullptr);
    _savedLocale = current ? current : "";
    if (!locale || !std::setlocale(LC_ALL, locale)) throw tberror("setlocale error");
    return true;
}

template <class C> const C *PendingBookT<C>::errorMessage() {
    return _message.template c_str<C>(_utf8Mode);
}

template class PendingBookT<char>;
template class PendingBookT<wchar_t>;

} // namespace tabrix
