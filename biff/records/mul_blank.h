// MulBlank (id 190): a run of blank cells in one row: row, first column,
// one xf per cell, last column.
#ifndef TABRIX_BIFF_RECORDS_MUL_BLANK_H
#define TABRIX_BIFF_RECORDS_MUL_BLANK_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include "biff/records/blank.h"
#include <cstdint>
#include <vector>
namespace tabrix {
class MulBlank : public Record<MulBlank> {
public:
    static constexpr uint16_t kId = rid::MulBlank;
    static constexpr const char *kName = "MulBlank";
    uint16_t row = 0, firstCol = 0, lastCol = 0;
    std::vector<uint16_t> xfs;
    void reset() { *this = MulBlank(); }
    // One Blank per xf, at columns firstCol, firstCol + 1, ...
    std::vector<Blank> expand() const;
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<MulBlank>::read;
};
} // namespace tabrix
#endif
