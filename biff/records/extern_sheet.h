// ExternSheet (id 23): the references that names and formulas use to reach
// sheets, each an XTI of a SupBook index and a range of sheets.  A long
// list runs on in CONTINUE records; an XTI may be split between fields
// there, never inside one.
#ifndef TABRIX_BIFF_RECORDS_EXTERN_SHEET_H
#define TABRIX_BIFF_RECORDS_EXTERN_SHEET_H

#include "biff/record_ids.h"
#include "biff/biff_record.h"

#include <cstdint>
#include <vector>

namespace tabrix {

struct XTI {
    static constexpr uint16_t kSize = 6;

    uint16_t iSupBook = 0;
    uint16_t itabFirst = 0;
    uint16_t itabLast = 0;

    XTI() = default;
    explicit XTI(uint16_t sheet) : itabFirst(sheet), itabLast(sheet) {}
    XTI(uint16_t supBook, uint16_t first, uint16_t last)
        : iSupBook(supBook), itabFirst(first), itabLast(last) {}

    bool operator==(const XTI &o) const {
        return iSupBook == o.iSupBook && itabFirst == o.itabFirst && itabLast == o.itabLast;
    }
    bool operator!=(const XTI &o) const { return !(*this == o); }

    // Enters a CONTINUE before a field when the record is used up; a field
    // cut by the record's end gives "error in XTI".
    void read(XlsRecords &xls, unsigned short &remaining);
    void write(XlsRecords &xls) const;
};

class ExternSheet : public Record<ExternSheet> {
public:
    static constexpr uint16_t kId = rid::ExternSheet;
    static constexpr const char *kName = "ExternSheet";

    std::vector<XTI> rgXTI;

    void reset() { rgXTI.clear(); }
    using Record<ExternSheet>::read;
    // Reads the count and the entries, CONTINUE records included.
    void read(XlsRecords &xls, uint16_t size);
    // Never splits an XTI: a record ends early when the next one doesn't fit.
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
};

} // namespace tabrix

#endif
