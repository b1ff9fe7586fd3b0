// Blank (id 513): an empty cell that carries only a format.
#ifndef TABRIX_BIFF_RECORDS_BLANK_H
#define TABRIX_BIFF_RECORDS_BLANK_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {
class Blank : public Record<Blank> {
public:
    static constexpr uint16_t kId = rid::Blank;
    static constexpr const char *kName = "Blank";
    uint16_t row = 0, col = 0, xf = 0;

    void reset() { *this = Blank(); }
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<Blank>::read;
};
} // namespace tabrix
#endif
