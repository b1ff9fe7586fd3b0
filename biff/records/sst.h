// SST: the shared string table record (id 252), the text of string cells.
#ifndef TABRIX_BIFF_RECORDS_SST_H
#define TABRIX_BIFF_RECORDS_SST_H

#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include "biff/strings/str_map.h"

namespace tabrix {

class SST : public Record<SST> {
public:
    static const uint16_t kId = rid::SST;
    static constexpr const char *kName = "SST";

    int32_t cstTotal = 0;
    int32_t cstUnique = 0;

    explicit SST(MemPool &pool) : _pool(pool) {}

    // Index of `text`; without `force` an equal string already present is
    // reused.
    unsigned insert(const wchar_t *text, bool force);
    void insert(unsigned index, const wchar_t *text);
    const wchar_t *extract(unsigned index) const;
    const StrMap &strings() const { return _map; }
    StrMap &strings() { return _map; }
    void reset();

    using Record<SST>::read;
    // Reads the record and all its CONTINUE records, and no record after
    // them, whatever the counts say.
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls);
    void dumpTo(std::wostream &os) const;

private:
    MemPool &_pool;
    StrMap _map;
};

} // namespace tabrix

#endif
