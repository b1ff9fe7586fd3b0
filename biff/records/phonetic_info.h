// PhoneticInfo (id 239): a sheet's default phonetic settings and the
// ranges they apply to.
#ifndef TABRIX_BIFF_RECORDS_PHONETIC_INFO_H
#define TABRIX_BIFF_RECORDS_PHONETIC_INFO_H

#include "biff/record_ids.h"
#include "biff/biff_record.h"

#include <vector>

namespace tabrix {

struct Ref8 {
    uint16_t rwFirst = 0, rwLast = 0, colFirst = 0, colLast = 0;
};

class PhoneticInfo : public Record<PhoneticInfo> {
public:
    static const uint16_t kId = rid::PhoneticInfo;
    static constexpr const char *kName = "PhoneticInfo";

    uint16_t ifnt = 0;
    uint16_t phs = 55;
    std::vector<Ref8> ranges;

    void reset();
    using Record<PhoneticInfo>::read;
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
};

} // namespace tabrix

#endif
