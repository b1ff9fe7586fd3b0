#include "book/encoding.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <utf8.h>

namespace tabrix {

void utf8ToWide(const char *text, std::wstring &out) {
    out.clear();
    const char *it = text;
    const char *end = text + std::strlen(text);
    while (it != end) {
        uint32_t cp = utf8::next(it, end);
        if (cp > 0xFFFF) {
            out.push_back(static_cast<wchar_t>(((cp >> 10) - 10304) & 0xFFFF));
            out.push_back(static_cast<wchar_t>(((cp & 0x3FF) - 9216) & 0xFFFF));
        } else {
            out.push_back(static_cast<wchar_t>(cp));
        }
    }
}

void wideToUtf8(const wchar_t *text, std::string &out) {
    out.clear();
    std::u16string units;
    for (const wchar_t *p = text; *p; ++p)
        units.push_back(static_cast<char16_t>(*p));
    utf8::utf16to8(units.begin(), units.end(), std::back_inserter(out));
}

bool localeToWide(const char *text, std::wstring &out) {
    out.clear();
    size_t n = std::mbstowcs(nullptr, text, 0);
    if (n == static_cast<size_t>(-1))
        return false;
    out.resize(n + 1);
    std::mbstowcs(&out[0], text, n + 1);
    out.resize(n);
    return true;
}

bool wideToLocale(const wchar_t *text, std::string &out) {
    out.clear();
    size_t n = std::wcstombs(nullptr, text, 0);
    if (n != static_cast<size_t>(-1)) {
        out.resize(n + 1);
        std::wcstombs(&out[0], text, n + 1);
        out.resize(n);
        return true;
    }
    bool ok = true;
    std::mbstate_t state{};
    char buf[MB_LEN_MAX];
    for (const wchar_t *p = text; *p; ++p) {
        size_t k = std::wcrtomb(buf, *p, &state);
        if (k == static_cast<size_t>(-1)) {
            out.push_back('?');
            ok = false;
            state = std::mbstate_t{};
        } else {
            out.append(buf, k);
        }
    }
    return ok;
}

} // namespace tabrix
