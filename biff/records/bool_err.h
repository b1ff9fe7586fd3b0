// BoolErr (id 517): a boolean or error cell; isError 0 means boolean.
#ifndef TABRIX_BIFF_RECORDS_BOOL_ERR_H
#define TABRIX_BIFF_RECORDS_BOOL_ERR_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {
class BoolErr : public Record<BoolErr> {
public:
    static constexpr uint16_t kId = rid::BoolErr;
    static constexpr const char *kName = "BoolErr";
    uint16_t row = 0, col = 0, xf = 0;
    uint8_t value = 0, isError = 0;
    void reset() { *this = BoolErr(); }
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<BoolErr>::read;
};
} // namespace tabrix
#endif
