// SubstreamHeader: the BOF record (id 2057) that opens a sheet's substream.
// The bytes are kept as read so that an unknown form comes back unchanged;
// `vers` and `dt` are the first two words.
#ifndef TABRIX_BIFF_SHEET_HEADER_H
#define TABRIX_BIFF_SHEET_HEADER_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {
struct SubstreamHeader {
    static constexpr uint16_t kId = rid::BOF;
    static constexpr uint16_t kWorksheet = 16;
    static constexpr uint16_t kChart = 32;

    uint16_t vers = 0x0600;
    uint16_t dt = kWorksheet;
    Biff raw;

    // A worksheet's header as a new sheet writes it.
    SubstreamHeader();
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const { raw.write(xls); }
};
} // namespace tabrix
#endif
