// DBCell (id 215): offsets of a block of rows.  Kept from a load only;
// a save writes none.
#ifndef TABRIX_BIFF_RECORDS_DB_CELL_H
#define TABRIX_BIFF_RECORDS_DB_CELL_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
#include <vector>
namespace tabrix {
class DBCell : public Record<DBCell> {
public:
    static constexpr uint16_t kId = rid::DBCell;
    static constexpr const char *kName = "DBCell";
    uint32_t dbRtrw = 0;
    std::vector<uint16_t> offsets;
    void reset() { *this = DBCell(); }
    // 4 bytes and a whole number of 16-bit offsets.
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<DBCell>::read;
};
} // namespace tabrix
#endif
