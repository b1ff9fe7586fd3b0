// ShortXLUnicodeString: 8-bit count, flags byte (absent in the old
// format), characters; never crosses a CONTINUE.  Also kept in formula
// token queues, with the same bytes.
#ifndef TABRIX_BIFF_STRINGS_SHORT_XL_UNICODE_STRING_H
#define TABRIX_BIFF_STRINGS_SHORT_XL_UNICODE_STRING_H

#include "biff/xls.h"
#include "book/mem_pool.h"

#include <cstdint>
#include <deque>

namespace tabrix {

class ShortXLUnicodeString {
public:
    uint8_t cch = 0;
    uint8_t flags = 0x01;
    const wchar_t *text = nullptr;
    bool noFlags = false;

    ShortXLUnicodeString() = default;
    // 256 characters and more fail with "string is too long".
    ShortXLUnicodeString(const wchar_t *s, MemPool &pool) { setString(s, pool); }
    void setString(const wchar_t *s, MemPool &pool);
    unsigned size() const { return 2u + ((flags & 1) ? 2u : 1u) * cch; }

    void read(XlsRecords &xls, bool noFlags, MemPool &pool);
    void write(XlsRecords &xls);
    void read(std::deque<unsigned char> &q, bool noFlags, MemPool &pool);
    void write(std::deque<unsigned char> &q);

private:
    void decode(const uint8_t *b, MemPool &pool);
    std::deque<unsigned char> encode();
};

} // namespace tabrix

#endif
