#include "book/encoding.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <utf8.h>

namespace tabrix {

namespace {

bool isHigh(uint32_t u) { return u >= 0xD800 && u <= 0xDBFF; }
bool isLow(uint32_t u) { return u >= 0xDC00 && u <= 0xDFFF; }

void pushUnits(uint32_t cp, std::wstring &out) {
    if (cp > 0xFFFF && cp <= 0x10FFFF) {
        cp -= 0x10000;
        out.push_back(static_cast<wchar_t>(0xD800 + (cp >> 10)));
        out.push_back(static_cast<wchar_t>(0xDC00 + (cp & 0x3FF)));
    } else {
        out.push_back(static_cast<wchar_t>(cp));
    }
}

} // namespace

void codePointsToUnits(const wchar_t *text, std::wstring &out) {
    out.clear();
    for (const wchar_t *p = text; *p; ++p) pushUnits(static_cast<uint32_t>(*p), out);
}

const wchar_t *unitsToCodePoints(const wchar_t *units, std::wstring &buffer) {
    const wchar_t *p = units;
    while (*p && !(isHigh(static_cast<uint32_t>(p[0])) && isLow(static_cast<uint32_t>(p[1])))) ++p;
    if (!*p) return units;
    buffer.assign(units, p);
    for (; *p; ++p) {
        uint32_t u = static_cast<uint32_t>(p[0]);
        if (isHigh(u) && isLow(static_cast<uint32_t>(p[1]))) {
            buffer.push_back(static_cast<wchar_t>(0x10000 + ((u - 0xD800) << 10) +
                                                  (static_cast<uint32_t>(p[1]) - 0xDC00)));
            ++p;
        } else {
            buffer.push_back(p[0]);
        }
    }
    return buffer.c_str();
}

void utf8ToWide(const char *text, std::wstring &out) {
    out.clear();
    const char *it = text;
    const char *end = text + std::strlen(text);
    while (it != end) {
        pushUnits(utf8::next(it, end), out);
    }
}

void wideToUtf8(const wchar_t *text, std::string &out) {
    out.clear();
    std::u16string units;
    for (const wchar_t *p = text; *p; ++p) units.push_back(static_cast<char16_t>(*p));
    utf8::utf16to8(units.begin(), units.end(), std::back_inserter(out));
}

bool localeToWide(const char *text, std::wstring &out) {
    out.clear();
    size_t n = std::mbstowcs(nullptr, text, 0);
    if (n == static_cast<size_t>(-1)) return false;
    std::wstring points(n + 1, L'\0');
    std::mbstowcs(&points[0], text, n + 1);
    points.resize(n);
    codePointsToUnits(points.c_str(), out);
    return true;
}

bool wideToLocale(const wchar_t *units, std::string &out) {
    out.clear();
    std::wstring buffer;
    const wchar_t *text = unitsToCodePoints(units, buffer);
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
