#include "biff/strings/short_xl_unicode_string.h"
#include "biff/strings/xl_unicode_string.h"
#include "book/tberror.h"

#include <cwchar>
#include <vector>

namespace tabrix {

void ShortXLUnicodeString::setString(const wchar_t *s, MemPool &pool) {
    if (!s) return;
    size_t n = std::wcslen(s);
    if (n > 255) throw tberror("string is too long");
    cch = uint8_t(n);
    flags = 0x01;
    text = poolCopy(s, n, pool);
}

void ShortXLUnicodeString::decode(const uint8_t *b, MemPool &pool) {
    wchar_t *t = poolText(cch, pool);
    bool wide = flags & 1;
    for (unsigned i = 0; i < cch; ++i)
        t[i] = wide ? wchar_t(b[2 * i] | (b[2 * i + 1] << 8)) : wchar_t(b[i]);
    text = t;
}

void ShortXLUnicodeString::read(XlsRecords &xls, bool _noFlags, MemPool &pool) {
    noFlags = _noFlags;
    uint8_t head[2] = {0, 0};
    xls.read(head, noFlags ? 1 : 2);
    cch = head[0];
    flags = noFlags ? 0 : head[1];
    std::vector<uint8_t> b(size_t(cch) * ((flags & 1) ? 2 : 1) + 1, 0);
    xls.read(b.data(), b.size() - 1);
    decode(b.data(), pool);
}

void ShortXLUnicodeString::read(std::deque<unsigned char> &q, bool _noFlags, MemPool &pool) {
    noFlags = _noFlags;
    auto pop = [&q]() -> uint8_t {
        if (q.empty()) throw tberror("ShortXLUnicodeString: string is truncated");
        uint8_t c = q.front();
        q.pop_front();
        return c;
    };
    cch = pop();
    flags = noFlags ? 0 : pop();
    std::vector<uint8_t> b(size_t(cch) * ((flags & 1) ? 2 : 1) + 1, 0);
    for (size_t i = 0; i + 1 < b.size(); ++i) b[i] = pop();
    decode(b.data(), pool);
}

std::deque<unsigned char> ShortXLUnicodeString::encode() {
    if (noFlags) flags = 0;
    std::deque<unsigned char> q;
    q.push_back(cch);
    if (!noFlags) q.push_back(flags);
    for (unsigned i = 0; i < cch; ++i) {
        q.push_back(uint8_t(text[i]));
        if (flags & 1) q.push_back(uint8_t(uint32_t(text[i]) >> 8));
    }
    return q;
}

void ShortXLUnicodeString::write(XlsRecords &xls) {
    std::deque<unsigned char> q = encode();
    std::vector<uint8_t> b(q.begin(), q.end());
    xls.write(b.data(), b.size());
}

void ShortXLUnicodeString::write(std::deque<unsigned char> &q) {
    std::deque<unsigned char> e = encode();
    q.insert(q.end(), e.begin(), e.end());
}

} // namespace tabrix
