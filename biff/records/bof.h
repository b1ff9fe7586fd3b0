// Bof (id 2057): the header of the globals and of every sheet substream.
// `dt` names the substream: 5 globals, 16 worksheet, 32 chart, 64 macro
// sheet, 6 VB module.
#ifndef TABRIX_BIFF_RECORDS_BOF_H
#define TABRIX_BIFF_RECORDS_BOF_H

#include "biff/record_ids.h"
#include "biff/biff_record.h"

#include <cstdint>

namespace tabrix {

class Bof : public Record<Bof> {
public:
    static constexpr uint16_t kId = rid::BOF;
    static constexpr const char *kName = "Bof";
    static constexpr uint16_t kSize = 16;

    static constexpr uint16_t kGlobals = 5;
    static constexpr uint16_t kWorksheet = 16;
    static constexpr uint16_t kChart = 32;
    static constexpr uint16_t kMacro = 64;
    static constexpr uint16_t kVBModule = 6;

    uint16_t vers = 0x0600;
    uint16_t dt = kGlobals;
    uint16_t rupBuild = 8346;
    uint16_t rupYear = 1997;
    uint32_t fields1 = 49353;
    uint32_t fields2 = 774;

    void reset() { *this = Bof(); }
    using Record<Bof>::read;
    // Reads the fields one after another up to `size`: a short record of an
    // older file keeps the fields it lacks at 0.  A size that ends inside a
    // field fails; bytes past the 16 known ones are skipped.
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    // The dump names the record "BOF", as the file format does.
    void dump() const { dumpOn(std::wcout); }
    void dumpOn(std::wostream &os) const;
    std::wstring dumpText() const;
};

} // namespace tabrix

#endif
