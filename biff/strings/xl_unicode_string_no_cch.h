// XLUnicodeStringNoCch: characters whose count the enclosing record gives;
// every segment, the first and each one behind a CONTINUE, starts with its
// own flags byte (absent in the old format).
#ifndef TABRIX_BIFF_STRINGS_XL_UNICODE_STRING_NO_CCH_H
#define TABRIX_BIFF_STRINGS_XL_UNICODE_STRING_NO_CCH_H

#include "biff/xls.h"
#include "book/mem_pool.h"

#include <cstdint>

namespace tabrix {

class XLUnicodeStringNoCch {
public:
    uint32_t cch = 0;
    uint8_t flags = 0x01;
    const wchar_t *text = nullptr;
    bool noFlags = false;

    void setString(const wchar_t *s, MemPool &pool);
    unsigned size() const { return 1u + ((flags & 1) ? 2u : 1u) * cch; }

    void read(XlsRecords &xls, uint32_t cch, MemPool &pool, bool noFlags,
              unsigned short &remaining);
    // Opens CONTINUE records of exact size as needed.
    void write(XlsRecords &xls, unsigned short &remaining) const;
};

} // namespace tabrix

#endif
