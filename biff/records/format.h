// Format (id 1054): a custom number format, its id and its code.
#ifndef TABRIX_BIFF_RECORDS_FORMAT_H
#define TABRIX_BIFF_RECORDS_FORMAT_H
#include "biff/record_ids.h"
#include "biff/strings/xl_unicode_string.h"
#include "biff/xls.h"
#include "book/mem_pool.h"
#include <cstdint>
namespace tabrix {
class Format {
public:
    static const uint16_t kId = rid::Format;
    uint16_t ifmt = 0;
    XLUnicodeString code;
    // `oldFormat`: BOF version below 0x0501, an 8-bit count and no flags.
    void read(XlsRecords &xls, uint16_t size, bool oldFormat, MemPool &pool);
    void write(XlsRecords &xls) const;
};
} // namespace tabrix
#endif
