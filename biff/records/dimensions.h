// Dimensions (id 512): the used range of a sheet, last row and column
// stored one past the end; first equal to last means empty.
#ifndef TABRIX_BIFF_RECORDS_DIMENSIONS_H
#define TABRIX_BIFF_RECORDS_DIMENSIONS_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {
class Dimensions : public Record<Dimensions> {
public:
    static constexpr uint16_t kId = rid::Dimensions;
    static constexpr const char *kName = "Dimensions";
    uint32_t firstRow = 0, lastRow = 0;
    uint16_t firstCol = 0, lastCol = 0, reserved = 0;
    void reset() { *this = Dimensions(); }
    // Widens the range so that it holds (row, col).
    void update(uint32_t row, uint16_t col);
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<Dimensions>::read;
};
} // namespace tabrix
#endif
