// Scl (id 160): the zoom of a sheet's window as a fraction, numerator and
// denominator, 16-bit signed, both 100 when new.
#ifndef TABRIX_BIFF_RECORDS_SCL_H
#define TABRIX_BIFF_RECORDS_SCL_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {
class Scl : public Record<Scl> {
public:
    static constexpr uint16_t kId = rid::Scl;
    static constexpr const char *kName = "Scl";
    int16_t nscl = 100;
    int16_t dscl = 100;

    void reset() { *this = Scl(); }
    // Percent: numerator times 100 over the denominator; 100 with a zero
    // denominator.
    int zoom() const { return dscl == 0 ? 100 : nscl * 100 / dscl; }
    // No range check: the caller's number stands over 100.
    void setZoom(int percent) {
        nscl = int16_t(percent);
        dscl = 100;
    }
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const { os << L" nscl=" << nscl << L" dscl=" << dscl; }
    using Record<Scl>::read;
};
} // namespace tabrix
#endif
