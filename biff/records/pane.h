// Pane (id 65): the split of a sheet's window: the split position, the
// first row and column of the lower right pane and the active pane.  A new
// Pane is absent and writes nothing.
#ifndef TABRIX_BIFF_RECORDS_PANE_H
#define TABRIX_BIFF_RECORDS_PANE_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {
class Pane : public Record<Pane> {
public:
    static constexpr uint16_t kId = rid::Pane;
    static constexpr const char *kName = "Pane";
    uint16_t x = 0;
    uint16_t y = 0;
    uint16_t rwTop = 0;
    uint16_t colLeft = 0;
    uint8_t pnnAct = 3;
    uint8_t reserved = 0;
    bool absent = true;

    void reset() { *this = Pane(); }
    // 10 bytes; 9 without the reserved byte is accepted too.
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<Pane>::read;
};
} // namespace tabrix
#endif
