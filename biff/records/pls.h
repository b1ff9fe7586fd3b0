// Pls (id 77): the printer driver's settings for a sheet, a 16-bit word and
// a block of bytes in the driver's own form, carried through unread.  The
// block may go on in CONTINUE records, which reading appends to it.
#ifndef TABRIX_BIFF_RECORDS_PLS_H
#define TABRIX_BIFF_RECORDS_PLS_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
#include <vector>
namespace tabrix {
class Pls : public Record<Pls> {
public:
    static constexpr uint16_t kId = rid::Pls;
    static constexpr const char *kName = "Pls";
    uint16_t word = 0;
    std::vector<uint8_t> bytes;

    void reset() { *this = Pls(); }
    // Reads the record and every CONTINUE right behind it; stops in front
    // of the first other record.  A record shorter than its size fails
    // with "Pls size is incorrect".
    void read(XlsRecords &xls, uint16_t size);
    // At most 8224 bytes in a record, the rest in CONTINUE records of up to
    // 8224 bytes each.
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<Pls>::read;
};
} // namespace tabrix
#endif
