// ExtSST (id 255): the hash-bucket index of the shared string table.  It is
// read and kept; a save does not write it.
#ifndef TABRIX_BIFF_RECORDS_EXT_SST_H
#define TABRIX_BIFF_RECORDS_EXT_SST_H

#include "biff/record_ids.h"
#include "biff/biff_record.h"

#include <vector>

namespace tabrix {

struct ISSTInf {
    uint32_t ib = 0;
    uint16_t cbOffset = 0;
    uint16_t reserved = 0;
};

class ExtSST : public Record<ExtSST> {
public:
    static const uint16_t kId = rid::ExtSST;
    static constexpr const char *kName = "ExtSST";

    uint16_t dsst = 0;
    std::vector<ISSTInf> rgISSTInf;

    void reset();
    using Record<ExtSST>::read;
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
};

} // namespace tabrix

#endif
