#include "book/code_page.h"
#include "book/encoding.h"

#include <iconv.h>

#include <cstdint>
#include <cstdio>
#include <vector>

namespace tabrix {

namespace {

// The converter's name of a CodePage value; null for those whose bytes are
// already the characters (UTF-16 books, plain ASCII).
const char *iconvName(unsigned codePage, char *buf, size_t room) {
    switch (codePage) {
    case 367:
    case 1200: return nullptr;
    case 10000:
    case 32768: return "MACINTOSH";
    case 32769: return "CP1252";
    case 65001: return "UTF-8";
    default: std::snprintf(buf, room, "CP%u", codePage); return buf;
    }
}

std::wstring asLatin1(const wchar_t *bytes, size_t n) { return std::wstring(bytes, n); }

} // namespace

std::wstring codePageToUnits(const wchar_t *bytes, size_t n, unsigned codePage) {
    bool ascii = true;
    for (size_t i = 0; i < n && ascii; ++i) ascii = unsigned(bytes[i]) < 0x80;
    char nameBuf[16];
    const char *name = iconvName(codePage, nameBuf, sizeof nameBuf);
    if (ascii || !name) return asLatin1(bytes, n);
    iconv_t cd = iconv_open("WCHAR_T", name);
    if (cd == iconv_t(-1)) return asLatin1(bytes, n);
    std::vector<char> in(n);
    for (size_t i = 0; i < n; ++i) in[i] = char(uint8_t(bytes[i]));
    std::vector<wchar_t> out(n + 1);
    char *src = in.data();
    size_t srcLeft = n;
    char *dst = reinterpret_cast<char *>(out.data());
    size_t dstLeft = out.size() * sizeof(wchar_t);
    size_t r = iconv(cd, &src, &srcLeft, &dst, &dstLeft);
    iconv_close(cd);
    if (r == size_t(-1) || srcLeft != 0) return asLatin1(bytes, n);
    size_t got = out.size() - dstLeft / sizeof(wchar_t);
    out.resize(got);
    out.push_back(0);
    std::wstring units;
    codePointsToUnits(out.data(), units);
    return units;
}

} // namespace tabrix
