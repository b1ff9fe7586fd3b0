#include "biff/strings/xl_unicode_string_no_cch.h"
#include "biff/strings/xl_unicode_string.h"
#include "book/tberror.h"

#include <algorithm>
#include <cwchar>
#include <vector>

namespace tabrix {

void XLUnicodeStringNoCch::setString(const wchar_t *s, MemPool &pool) {
    if (!s) return;
    size_t n = std::wcslen(s);
    if (n > 0xFFFFFFFFu) throw tberror("string is too long");
    cch = uint32_t(n);
    flags = 0x01;
    text = poolCopy(s, n, pool);
}

void XLUnicodeStringNoCch::read(XlsRecords &xls, uint32_t count, MemPool &pool, bool _noFlags,
                                unsigned short &remaining) {
    noFlags = _noFlags;
    cch = count;
    // No more characters than the stream can hold.
    if (cch > xls.size()) throw tberror("error in XLUnicodeString record #1");
    flags = 0;
    if (!noFlags) xls.readWithContinueRecords(&flags, 1, remaining);
    wchar_t *t = poolText(cch, pool);
    size_t width = (flags & 1) ? 2 : 1;
    size_t got = 0;
    std::vector<uint8_t> buf;
    while (got < cch) {
        if (remaining == 0) {
            uint16_t id = 0;
            xls.XlsCore::readInt16(id);
            xls.XlsCore::readInt16(remaining);
            if (id != XlsRecords::kContinueId || xls.eof())
                throw tberror("error in XLUnicodeString record #1");
            if (remaining && !noFlags) {
                uint8_t f = 0;
                xls.read(&f, 1);
                --remaining;
                width = (f & 1) ? 2 : 1;
            }
            continue;
        }
        size_t n = std::min<size_t>((cch - got) * width, remaining);
        if (width == 2 && (n & 1)) throw tberror("error in XLUnicodeString record #2");
        buf.assign(n, 0);
        xls.read(buf.data(), n);
        remaining = static_cast<unsigned short>(remaining - n);
        for (size_t i = 0; i < n; i += width)
            t[got++] = width == 2 ? wchar_t(buf[i] | (buf[i + 1] << 8)) : wchar_t(buf[i]);
        if (xls.eof()) break;
    }
    t[got] = 0;
    text = t;
}

void XLUnicodeStringNoCch::write(XlsRecords &xls, unsigned short &remaining) const {
    if (!noFlags) {
        xls.write(&flags, 1);
        --remaining;
    }
    bool wide = (flags & 1) && !noFlags;
    std::vector<uint8_t> b;
    for (uint32_t i = 0; i < cch; ++i) {
        b.push_back(uint8_t(text[i]));
        if (wide) b.push_back(uint8_t(uint32_t(text[i]) >> 8));
    }
    size_t done = 0;
    while (done < b.size()) {
        if (remaining == 0) {
            size_t chunk = std::min<size_t>(b.size() - done, noFlags ? 8223 : 8222);
            // Keeps 2-byte characters whole.
            if (wide && (chunk & 1) && chunk > 1) --chunk;
            if (wide && chunk > 2 && done + chunk < b.size() &&
                splitsPair(text, (done + chunk) / 2))
                chunk -= 2;
            xls.write(XlsRecords::kContinueId, uint16_t(noFlags ? chunk : chunk + 1));
            if (!noFlags) xls.write(&flags, 1);
            remaining = uint16_t(chunk);
        }
        size_t n = std::min<size_t>(remaining, b.size() - done);
        xls.write(b.data() + done, n);
        done += n;
        remaining = static_cast<unsigned short>(remaining - n);
    }
}

} // namespace tabrix
