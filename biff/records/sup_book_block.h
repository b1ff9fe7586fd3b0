// SupBookBlock: one external book reference as the globals hold it: the
// SupBook record (430) kept raw, the ExternName/ExternCount/Xct records
// (35, 89, 90) behind it kept raw, an ExternSheet parsed, and CONTINUE
// records met at the block's level kept raw.
#ifndef TABRIX_BIFF_RECORDS_SUP_BOOK_BLOCK_H
#define TABRIX_BIFF_RECORDS_SUP_BOOK_BLOCK_H

#include "biff/biff_record.h"
#include "biff/record_ids.h"
#include "biff/records/extern_sheet.h"

#include <cstdint>
#include <vector>

namespace tabrix {

class SupBookBlock {
public:
    static constexpr uint16_t kSupBookId = rid::SupBook;
    static constexpr const char *kName = "SupBookBlock";

    bool hasExternSheet = false;
    Biff supBook;
    std::vector<Biff> followers;
    ExternSheet externSheet;
    std::vector<Biff> continues;

    SupBookBlock() { supBook.id = kSupBookId; }

    static bool checkBegin(uint16_t id) { return id == kSupBookId; }
    // Whether a record of `id` met behind a SupBook belongs to its block.
    static bool isMember(uint16_t id);

    // The SupBook header has been read: reads its `supBookSize` bytes, then
    // every record that belongs to the block.  The first record that
    // doesn't is left unread for the caller.  Fails with "SupBookBlock: file
    // is corrupt" when the block's bytes add up past the file's size.
    void read(XlsRecords &xls, uint16_t supBookSize);
    void write(XlsRecords &xls) const;

    // The reference of the book to itself: a SupBook of 4 bytes, the sheet
    // count and then 01 04.
    bool isSelfRef() const;
    void dump() const;
};

} // namespace tabrix

#endif
