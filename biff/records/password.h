// Password (id 19): the hash of the protection password of the book or of
// a sheet, 0 for none; kept and written as read.
#ifndef TABRIX_BIFF_RECORDS_PASSWORD_H
#define TABRIX_BIFF_RECORDS_PASSWORD_H

#include "biff/record_ids.h"
#include "biff/records/word_record.h"

namespace tabrix {

class Password : public WordRecord<Password> {
public:
    static constexpr uint16_t kId = rid::Password;
    static constexpr const char *kName = "Password";
    static constexpr const wchar_t *kField = L"wPassword";

    uint16_t wPassword = 0;

    uint16_t &word() { return wPassword; }
    uint16_t word() const { return wPassword; }
};

} // namespace tabrix

#endif
