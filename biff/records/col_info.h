// ColInfo (id 125): width, format and flags of a run of columns.  In flags,
// bit 0 is hidden, bits 8-10 the outline level, bit 12 collapsed.
#ifndef TABRIX_BIFF_RECORDS_COL_INFO_H
#define TABRIX_BIFF_RECORDS_COL_INFO_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {
class ColInfo : public Record<ColInfo> {
public:
    static constexpr uint16_t kId = rid::ColInfo;
    static constexpr const char *kName = "ColInfo";
    uint16_t colFirst = 0, colLast = 0, coldx = 0, ixfe = 0, flags = 0, reserved = 0;
    void reset() { *this = ColInfo(); }
    bool hidden() const { return flags & 1u; }
    void setHidden(bool on) { flags = uint16_t(on ? flags | 1u : flags & ~1u); }
    bool covers(int col) const { return col >= colFirst && col <= colLast; }
    // Same width, format and flags.
    bool isEqual(const ColInfo &o) const {
        return coldx == o.coldx && ixfe == o.ixfe && flags == o.flags;
    }
    // 12 bytes, or 11 with a one-byte last field.
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<ColInfo>::read;
};
} // namespace tabrix
#endif
