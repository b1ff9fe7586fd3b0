// Prot4RevPass (id 444): the hash of the revision-log password, 0 for none.
#ifndef TABRIX_BIFF_RECORDS_PROT4REV_PASS_H
#define TABRIX_BIFF_RECORDS_PROT4REV_PASS_H

#include "biff/record_ids.h"
#include "biff/records/word_record.h"

namespace tabrix {

class Prot4RevPass : public WordRecord<Prot4RevPass> {
public:
    static constexpr uint16_t kId = rid::Prot4RevPass;
    static constexpr const char *kName = "Prot4RevPass";
    static constexpr const wchar_t *kField = L"protPwdRev";

    uint16_t protPwdRev = 0;

    uint16_t &word() { return protPwdRev; }
    uint16_t word() const { return protPwdRev; }
};

} // namespace tabrix

#endif
