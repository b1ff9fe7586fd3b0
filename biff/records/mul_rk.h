// MulRk (id 189): a run of RK number cells in one row, each with its own
// format: row, first column, n pairs of (xf, rk), last column.
#ifndef TABRIX_BIFF_RECORDS_MUL_RK_H
#define TABRIX_BIFF_RECORDS_MUL_RK_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include "biff/records/rk.h"
#include <cstdint>
#include <vector>
namespace tabrix {
class MulRk : public Record<MulRk> {
public:
    static constexpr uint16_t kId = rid::MulRk;
    static constexpr const char *kName = "MulRk";
    struct Cell {
        uint16_t xf = 0;
        uint32_t rk = 0;
    };
    uint16_t row = 0, firstCol = 0, lastCol = 0;
    std::vector<Cell> cells;
    void reset() { *this = MulRk(); }
    // One RK cell per pair, at columns firstCol, firstCol + 1, ...
    std::vector<RK> expand() const;
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<MulRk>::read;
};
} // namespace tabrix
#endif
