// WriteAccess (id 92): the name of the user who last saved the book, kept
// as the block of 112 bytes the record holds and written out whole.
#ifndef TABRIX_BIFF_RECORDS_WRITE_ACCESS_H
#define TABRIX_BIFF_RECORDS_WRITE_ACCESS_H

#include "biff/biff_record.h"
#include "biff/record_ids.h"

#include <cstdint>

namespace tabrix {

class WriteAccess : public Record<WriteAccess> {
public:
    static constexpr uint16_t kId = rid::WriteAccess;
    static constexpr const char *kName = "WriteAccess";
    static constexpr uint16_t kSize = 112;

    uint8_t block[kSize];

    WriteAccess() { reset(); }
    // A one-character user name "T", padded with blanks.
    void reset();
    using Record<WriteAccess>::read;
    // The record's bytes go to the start of the block (the rest stays as a
    // new book has it); bytes past 112 are skipped.
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
};

} // namespace tabrix

#endif
