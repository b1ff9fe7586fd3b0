// Selection (id 29): the selected cells of one pane of a sheet's window:
// the pane, the active cell, which of the ranges holds it, and the ranges.
#ifndef TABRIX_BIFF_RECORDS_SELECTION_H
#define TABRIX_BIFF_RECORDS_SELECTION_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
#include <vector>
namespace tabrix {

// A cell range with 16-bit rows and 8-bit columns.
struct RefU {
    uint16_t rwFirst = 0, rwLast = 0;
    uint8_t colFirst = 0, colLast = 0;
};

class Selection : public Record<Selection> {
public:
    static constexpr uint16_t kId = rid::Selection;
    static constexpr const char *kName = "Selection";
    // Ranges that one record holds at most.
    static constexpr size_t kMaxRefs = (XlsRecords::kMaxRecordData - 9) / 6;

    uint8_t pnn = 3;
    uint16_t rwAct = 0;
    uint16_t colAct = 0;
    uint16_t irefAct = 0;
    uint16_t cref = 1;
    std::vector<RefU> refs = std::vector<RefU>(1);

    void reset() { *this = Selection(); }
    // At least 9 bytes.  Ranges beyond the record's size are not read;
    // bytes behind the ranges are skipped.
    void read(XlsRecords &xls, uint16_t size);
    // 9 bytes and 6 for each range; the count follows the ranges.
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<Selection>::read;
};
} // namespace tabrix
#endif
