// MergeCells (id 229): merged areas of a sheet, a count and Ref8 areas.
#ifndef TABRIX_BIFF_RECORDS_MERGE_CELLS_H
#define TABRIX_BIFF_RECORDS_MERGE_CELLS_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include "biff/records/phonetic_info.h"
#include <cstdint>
#include <vector>
namespace tabrix {
class MergeCells : public Record<MergeCells> {
public:
    static constexpr uint16_t kId = rid::MergeCells;
    static constexpr const char *kName = "MergeCells";
    // Areas in one record at most.
    static constexpr size_t kMaxAreas = 1026;
    struct Area {
        Ref8 ref;
        bool deleted = false; // in memory only
        bool holds(int row, int col) const {
            return row >= ref.rwFirst && row <= ref.rwLast && col >= ref.colFirst &&
                   col <= ref.colLast;
        }
    };
    uint16_t count = 0;
    std::vector<Area> areas;
    void reset() { *this = MergeCells(); }
    void add(int rowFirst, int rowLast, int colFirst, int colLast);
    // Drops the areas flagged deleted.
    void eraseDeleted();
    // Areas beyond the record's size are not read; extra bytes are skipped.
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<MergeCells>::read;
};
} // namespace tabrix
#endif
