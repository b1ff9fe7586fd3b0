// WinProtect (id 25): 1 when the book's window layout is locked.
#ifndef TABRIX_BIFF_RECORDS_WIN_PROTECT_H
#define TABRIX_BIFF_RECORDS_WIN_PROTECT_H

#include "biff/record_ids.h"
#include "biff/records/word_record.h"

namespace tabrix {

class WinProtect : public WordRecord<WinProtect> {
public:
    static constexpr uint16_t kId = rid::WinProtect;
    static constexpr const char *kName = "WinProtect";
    static constexpr const wchar_t *kField = L"fLockWn";

    uint16_t fLockWn = 0;

    uint16_t &word() { return fLockWn; }
    uint16_t word() const { return fLockWn; }
};

} // namespace tabrix

#endif
