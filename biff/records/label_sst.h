// LabelSst (id 253): a text cell pointing into the shared string table.
#ifndef TABRIX_BIFF_RECORDS_LABEL_SST_H
#define TABRIX_BIFF_RECORDS_LABEL_SST_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {
class LabelSst : public Record<LabelSst> {
public:
    static constexpr uint16_t kId = rid::LabelSst;
    static constexpr const char *kName = "LabelSst";
    uint16_t row = 0, col = 0, xf = 0;
    uint32_t sst = 0; // index into the shared string table
    void reset() { *this = LabelSst(); }
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<LabelSst>::read;
};
} // namespace tabrix
#endif
