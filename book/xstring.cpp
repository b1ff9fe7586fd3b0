#include "book/xstring.h"

#include "book/encoding.h"

namespace tabrix {

void XString::assign(const char *text) {
    if (text) assign(std::string_view(text));
}

void XString::assign(std::string_view text) {
    _narrow.assign(text);
    _narrowStale = false;
    _wideStale = true;
    _ok = false;
}

void XString::assign(const wchar_t *text) {
    if (!text) return;
    _wide = text;
    _wideStale = false;
    _narrowStale = true;
    _ok = false;
}

void XString::clear() {
    _narrow.clear();
    _wide.clear();
    _narrowStale = _wideStale = false;
    _ok = false;
}

template <> const char *XString::c_str<char>(bool utf8Mode) {
    if (_narrowStale) {
        _conversionFailed = !toNarrow(_wide.c_str(), utf8Mode, _narrow);
        _narrowStale = false;
    }
    return _narrow.c_str();
}

template <> const wchar_t *XString::c_str<wchar_t>(bool utf8Mode) {
    if (_wideStale) {
        _conversionFailed = !toWide(_narrow.c_str(), utf8Mode, _wide);
        _wideStale = false;
    }
    return _wide.c_str();
}

} // namespace tabrix
