// Index (id 523): the row range of a sheet and the offsets of its DBCell
// records.  Kept as read; a new sheet writes zeros.
#ifndef TABRIX_BIFF_RECORDS_INDEX_H
#define TABRIX_BIFF_RECORDS_INDEX_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
#include <vector>
namespace tabrix {
class Index : public Record<Index> {
public:
    static constexpr uint16_t kId = rid::Index;
    static constexpr const char *kName = "Index";
    // Format versions below this one store 16-bit rows.
    static constexpr uint16_t kFirst32BitVersion = 1281;
    uint32_t reserved1 = 0, rwMic = 0, rwMac = 0, reserved2 = 0;
    std::vector<uint32_t> offsets;
    void reset() { *this = Index(); }
    void read(XlsRecords &xls, uint16_t size) { read(xls, size, kFirst32BitVersion); }
    void read(XlsRecords &xls, uint16_t size, uint16_t version);
    // Always the 32-bit form.
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<Index>::read;
};
} // namespace tabrix
#endif
