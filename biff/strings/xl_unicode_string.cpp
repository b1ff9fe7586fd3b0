#include "biff/strings/xl_unicode_string.h"
#include "book/code_page.h"
#include "book/encoding.h"
#include "book/tberror.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

namespace tabrix {

const wchar_t *poolCopy(const wchar_t *s, size_t n, MemPool &pool) {
    wchar_t *t = pool.allocW(n + 1);
    if (n) std::copy(s, s + n, t);
    t[n] = 0;
    return t;
}

wchar_t *poolText(size_t n, MemPool &pool) {
    wchar_t *t = pool.allocW(n + 1);
    std::fill(t, t + n + 1, wchar_t(0));
    return t;
}

void XLUnicodeString::setString(const char *s, MemPool &pool, bool utf8) {
    if (!s) return;
    size_t count = utf8 ? std::strlen(s) : std::mbstowcs(nullptr, s, 0);
    if (count != size_t(-1) && count > 65535) throw tberror("string is too long");
    std::wstring w;
    toWide(s, utf8, w);
    setString(w.c_str(), pool);
}

void XLUnicodeString::setString(const wchar_t *s, MemPool &pool) {
    if (!s) return;
    size_t n = std::wcslen(s);
    if (n > 65535) throw tberror("string is too long");
    cch = uint16_t(n);
    flags = 0x01;
    text = poolCopy(s, n, pool);
}

unsigned XLUnicodeString::size() const {
    return (shortCount ? 1u : 2u) + (noFlags ? 0u : 1u) + ((flags & 1) ? 2u : 1u) * cch;
}

bool XLUnicodeString::read(XlsRecords &xls, bool _noFlags, bool _shortCount, MemPool &pool,
                           unsigned short &remaining) {
    noFlags = _noFlags;
    shortCount = _shortCount;
    if (shortCount) {
        uint8_t c = 0;
        xls.readWithContinueRecords(&c, 1, remaining);
        cch = c;
    } else {
        xls.readInt16(cch, remaining);
    }
    flags = 0;
    if (cch == 0 && remaining == 0) {
        text = poolText(0, pool);
        return true;
    }
    if (!noFlags) xls.readWithContinueRecords(&flags, 1, remaining);
    wchar_t *t = poolText(cch, pool);
    size_t width = (flags & 1) ? 2 : 1;
    size_t wanted = cch * width, got = 0;
    std::vector<uint8_t> buf;
    while (got < cch) {
        if (remaining == 0) {
            // Producers overstate a count by a character or more: with no
            // CONTINUE behind, the text ends with its record and the next
            // header is left for the caller.
            if (!xls.eof() && xls.peekInt16() != XlsRecords::kContinueId) {
                cch = uint16_t(got);
                break;
            }
            uint16_t id = 0;
            xls.XlsCore::readInt16(id);
            xls.XlsCore::readInt16(remaining);
            if (id != XlsRecords::kContinueId || xls.eof())
                throw tberror("error in XLUnicodeString record #1");
            continue; // a CONTINUE of size 0 carries nothing
        }
        size_t n = std::min<size_t>(wanted - got * width, remaining);
        if (width == 2 && (n & 1)) throw tberror("error in XLUnicodeString record #2");
        buf.resize(n);
        size_t r = xls.read(buf.data(), n);
        if (r < n) std::fill(buf.begin() + long(r), buf.end(), 0);
        remaining = static_cast<unsigned short>(remaining - n);
        for (size_t i = 0; i < n; i += width)
            t[got++] = width == 2 ? wchar_t(buf[i] | (buf[i + 1] << 8)) : wchar_t(buf[i]);
        if (xls.eof()) break;
    }
    t[got] = 0;
    text = t;
    return got == wanted / width;
}

void XLUnicodeString::write(XlsRecords &xls) const {
    if (shortCount) {
        if (cch > 255) throw tberror("string is too long");
        uint8_t c = uint8_t(cch);
        xls.write(&c, 1);
    } else {
        xls.writeInt16(cch);
    }
    if (!noFlags) xls.write(&flags, 1);
    bool wide = (flags & 1) && !noFlags;
    std::vector<uint8_t> b;
    for (uint16_t i = 0; i < cch; ++i) {
        b.push_back(uint8_t(text[i]));
        if (wide) b.push_back(uint8_t(uint32_t(text[i]) >> 8));
    }
    if (!b.empty()) xls.write(b.data(), b.size());
}

void XLUnicodeString::fromCodePage(unsigned codePage, MemPool &pool) {
    if (!noFlags || !text) return;
    std::wstring units = codePageToUnits(text, cch, codePage);
    bool wide = false;
    for (wchar_t u : units) wide = wide || unsigned(u) > 0xFF;
    cch = uint16_t(std::min<size_t>(units.size(), 65535));
    text = poolCopy(units.c_str(), cch, pool);
    flags = wide ? 0x01 : 0x00;
    noFlags = false;
    shortCount = false;
}

} // namespace tabrix
