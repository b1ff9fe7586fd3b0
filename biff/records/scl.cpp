#include "biff/records/scl.h"
namespace tabrix {
void Scl::read(XlsRecords &xls, uint16_t size) {
    checkSize(size, 4);
    uint16_t n = 0, d = 0;
    xls.readInt16(n);
    xls.readInt16(d);
    nscl = int16_t(n);
    dscl = int16_t(d);
}

void Scl::write(XlsRecords &xls) const {
    xls.write(kId, 4);
    xls.writeInt16(uint16_t(nscl));
    xls.writeInt16(uint16_t(dscl));
}
} // namespace tabrix
