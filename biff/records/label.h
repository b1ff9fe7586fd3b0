// Label (id 516): a text cell holding its own string, as older writers
// store it instead of pointing into the shared string table.
#ifndef TABRIX_BIFF_RECORDS_LABEL_H
#define TABRIX_BIFF_RECORDS_LABEL_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include "biff/strings/xl_unicode_string.h"
#include "book/mem_pool.h"
#include <cstdint>
namespace tabrix {
// The text lives in the pool given at construction (the sheet's), so a
// Label is cheap to keep in a vector.
class Label : public Record<Label> {
public:
    static constexpr uint16_t kId = rid::Label;
    static constexpr const char *kName = "Label";
    uint16_t row = 0, col = 0, xf = 0;
    XLUnicodeString text;
    explicit Label(MemPool &pool) : _pool(&pool) {}
    void reset() { *this = Label(*_pool); }
    // The record must hold the cell and its whole string; bytes behind the
    // string are skipped.  `old`: the older format's string, without a flags
    // byte, in the book's `codePage`.
    void read(XlsRecords &xls, uint16_t size, bool old = false, unsigned codePage = 1200);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<Label>::read;

private:
    MemPool *_pool;
};
} // namespace tabrix
#endif
