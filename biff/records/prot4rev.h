// Prot4Rev (id 431): 1 when the shared book's revision log is locked.
#ifndef TABRIX_BIFF_RECORDS_PROT4REV_H
#define TABRIX_BIFF_RECORDS_PROT4REV_H

#include "biff/record_ids.h"
#include "biff/records/word_record.h"

namespace tabrix {

class Prot4Rev : public WordRecord<Prot4Rev> {
public:
    static constexpr uint16_t kId = rid::Prot4Rev;
    static constexpr const char *kName = "Prot4Rev";
    static constexpr const wchar_t *kField = L"fRevLock";

    uint16_t fRevLock = 0;

    uint16_t &word() { return fRevLock; }
    uint16_t word() const { return fRevLock; }
};

} // namespace tabrix

#endif
