// BoundSheet8 (id 133): one sheet of the book as the globals list it: the
// stream offset of its BOF, its visibility, its type and its name.
#ifndef TABRIX_BIFF_RECORDS_BOUND_SHEET8_H
#define TABRIX_BIFF_RECORDS_BOUND_SHEET8_H

#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include "biff/strings/short_xl_unicode_string.h"
#include "book/mem_pool.h"

#include <cstdint>

namespace tabrix {

class BoundSheet8 : public Record<BoundSheet8> {
public:
    static constexpr uint16_t kId = rid::BoundSheet8;
    static constexpr const char *kName = "BoundSheet8";
    static constexpr uint16_t kMinSize = 8;

    // hsState
    static constexpr uint8_t kVisible = 0;
    static constexpr uint8_t kHidden = 1;
    static constexpr uint8_t kVeryHidden = 2;
    // dt
    static constexpr uint8_t kWorksheet = 0;
    static constexpr uint8_t kMacroSheet = 1;
    static constexpr uint8_t kChartSheet = 2;
    static constexpr uint8_t kVBModule = 6;

    uint32_t lbPlyPos = 0;
    uint8_t hsState = kVisible;
    uint8_t dt = kWorksheet;
    ShortXLUnicodeString name;

    void reset() { *this = BoundSheet8(); }
    void setName(const wchar_t *text, MemPool &pool) { name.setString(text, pool); }
    const wchar_t *nameText() const { return name.text ? name.text : L""; }
    uint16_t size() const { return uint16_t(6u + name.size() - (name.noFlags ? 1u : 0u)); }

    using Record<BoundSheet8>::read;
    // `noFlags`: the name of an old-format file, 8-bit without a flags byte.
    // The name must lie inside the record; bytes behind it are skipped.
    void read(XlsRecords &xls, uint16_t size, MemPool &pool, bool noFlags = false);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
};

} // namespace tabrix

#endif
