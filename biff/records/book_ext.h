// BookExt (id 2147): the book's extended properties, 20 to 22 bytes; `cb`
// is the record's own size, and the one or two flag bytes past the first
// 20 are present as it says.
#ifndef TABRIX_BIFF_RECORDS_BOOK_EXT_H
#define TABRIX_BIFF_RECORDS_BOOK_EXT_H

#include "biff/record_ids.h"
#include "biff/biff_record.h"

#include <cstdint>

namespace tabrix {

class BookExt : public Record<BookExt> {
public:
    static constexpr uint16_t kId = rid::BookExt;
    static constexpr const char *kName = "BookExt";
    static constexpr uint16_t kMinSize = 20;
    static constexpr uint16_t kMaxSize = 22;

    uint16_t rt = 2147;
    uint16_t grbitFrt = 0;
    uint8_t reserved[8] = {0, 0, 0, 0, 0, 0, 0, 0};
    uint32_t cb = 21;
    uint32_t flags = 0;
    uint8_t grbit1 = 158;
    uint8_t grbit2 = 0;

    void reset() { *this = BookExt(); }
    using Record<BookExt>::read;
    void read(XlsRecords &xls, uint16_t size);
    // The record's size is `cb`, bounded to 20..22.
    void write(XlsRecords &xls) const;
    uint16_t size() const;
    void dumpTo(std::wostream &os) const;
};

} // namespace tabrix

#endif
