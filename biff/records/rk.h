// RK (id 638): one number cell in the compact 30-bit form.
#ifndef TABRIX_BIFF_RECORDS_RK_H
#define TABRIX_BIFF_RECORDS_RK_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {
// True when `v` survives the RK form unchanged: low 32 bits zero and the
// low two bits of the high word zero.
bool rkExact(double v);
// The number an RK word stands for, in any of its four forms.
double rkDecode(uint32_t rk);
class RK : public Record<RK> {
public:
    static constexpr uint16_t kId = rid::RK;
    static constexpr const char *kName = "RK";
    uint16_t row = 0, col = 0, xf = 0;
    uint32_t rk = 0;
    void reset() { *this = RK(); }
    double value() const { return rkDecode(rk); }
    // Keeps the high 32 bits only: use on values for which rkExact holds.
    void setValue(double v);
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<RK>::read;
};
} // namespace tabrix
#endif
