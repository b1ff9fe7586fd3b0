// ObjProtect (id 99): 1 when a protected sheet also protects its objects.
#ifndef TABRIX_BIFF_RECORDS_OBJ_PROTECT_H
#define TABRIX_BIFF_RECORDS_OBJ_PROTECT_H

#include "biff/record_ids.h"
#include "biff/records/word_record.h"

namespace tabrix {

class ObjProtect : public WordRecord<ObjProtect> {
public:
    static constexpr uint16_t kId = rid::ObjProtect;
    static constexpr const char *kName = "ObjProtect";
    static constexpr const wchar_t *kField = L"fLockObj";

    uint16_t fLockObj = 0;

    uint16_t &word() { return fLockObj; }
    uint16_t word() const { return fLockObj; }
};

} // namespace tabrix

#endif
