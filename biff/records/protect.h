// Protect (id 18): 1 when the book's structure or a sheet's content is
// protected.
#ifndef TABRIX_BIFF_RECORDS_PROTECT_H
#define TABRIX_BIFF_RECORDS_PROTECT_H

#include "biff/record_ids.h"
#include "biff/records/word_record.h"

namespace tabrix {

class Protect : public WordRecord<Protect> {
public:
    static constexpr uint16_t kId = rid::Protect;
    static constexpr const char *kName = "Protect";
    static constexpr const wchar_t *kField = L"fLock";

    uint16_t fLock = 0;

    uint16_t &word() { return fLock; }
    uint16_t word() const { return fLock; }

    bool protect() const { return fLock != 0; }
    void setProtect(bool on) { fLock = on ? 1 : 0; }
};

} // namespace tabrix

#endif
