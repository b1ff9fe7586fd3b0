// XLUnicodeString: a counted string (16-bit count, or 8-bit in short mode)
// with a flags byte (absent in the old format) and 1- or 2-byte characters.
#ifndef TABRIX_BIFF_STRINGS_XL_UNICODE_STRING_H
#define TABRIX_BIFF_STRINGS_XL_UNICODE_STRING_H

#include "biff/xls.h"
#include "book/mem_pool.h"

#include <cstdint>

namespace tabrix {

class XLUnicodeString {
public:
    uint16_t cch = 0;
    uint8_t flags = 0x01;
    const wchar_t *text = nullptr; // terminated, pool-owned
    bool noFlags = false;
    bool shortCount = false;

    // Narrow text (UTF-8, or the locale's multibyte text); null changes
    // nothing.  Above 65535 characters fails with "string is too long".
    void setString(const char *s, MemPool &pool, bool utf8);
    void setString(const wchar_t *s, MemPool &pool);
    unsigned size() const;

    // False when the text was cut: its record ended with no CONTINUE behind
    // it, and `cch` was lowered to the characters present.
    bool read(XlsRecords &xls, bool noFlags, bool shortCount, MemPool &pool,
              unsigned short &remaining);
    void write(XlsRecords &xls) const;
    // A text read without a flags byte holds bytes of the book's code page:
    // it becomes UTF-16 units, to be written in the current form.
    void fromCodePage(unsigned codePage, MemPool &pool);
};

// Pool copy of `n` wide characters, terminated.
const wchar_t *poolCopy(const wchar_t *s, size_t n, MemPool &pool);
// Whether a record boundary before unit `at` (above 0) of `text` parts a
// surrogate pair.
inline bool splitsPair(const wchar_t *text, size_t at) {
    uint32_t hi = uint32_t(text[at - 1]), lo = uint32_t(text[at]);
    return hi >= 0xD800 && hi < 0xDC00 && lo >= 0xDC00 && lo < 0xE000;
}
// `n` zeroed wide characters and the terminator, from the pool.
wchar_t *poolText(size_t n, MemPool &pool);

} // namespace tabrix

#endif
