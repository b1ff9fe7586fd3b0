// Number (id 515): one number cell stored as a full double.
#ifndef TABRIX_BIFF_RECORDS_NUMBER_H
#define TABRIX_BIFF_RECORDS_NUMBER_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {
class Number : public Record<Number> {
public:
    static constexpr uint16_t kId = rid::Number;
    static constexpr const char *kName = "Number";
    uint16_t row = 0, col = 0, xf = 0;
    double value = 0;
    void reset() { *this = Number(); }
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<Number>::read;
};
} // namespace tabrix
#endif
