// Row (id 520): one row's column span, height, flags and format, eight
// 16-bit fields as stored.
#ifndef TABRIX_BIFF_RECORDS_ROW_H
#define TABRIX_BIFF_RECORDS_ROW_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {
class Row : public Record<Row> {
public:
    static constexpr uint16_t kId = rid::Row;
    static constexpr const char *kName = "Row";
    uint16_t row = 0, firstCol = 0, lastCol = 1, height = 255;
    uint16_t reserved1 = 0, reserved2 = 0, flags = 0x100, xf = 15;
    void reset() { *this = Row(); }
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<Row>::read;

private:
    uint16_t *field(int i);
};
} // namespace tabrix
#endif
