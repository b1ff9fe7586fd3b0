#include "biff/records/rk.h"
#include <cstring>
namespace tabrix {
static uint64_t bitsOf(double v) {
    uint64_t b = 0;
    std::memcpy(&b, &v, sizeof b);
    return b;
}

bool rkExact(double v) {
    uint64_t b = bitsOf(v);
    return (b & 0xFFFFFFFFu) == 0 && ((b >> 32) & 3u) == 0;
}

double rkDecode(uint32_t rk) {
    double v;
    if (rk & 2u) {
        // Arithmetic shift of the signed word, written without relying on
        // the implementation's right shift of negatives.
        int32_t s = int32_t(rk & ~3u);
        v = double(s / 4);
    } else {
        uint64_t b = uint64_t(rk & ~3u) << 32;
        std::memcpy(&v, &b, sizeof v);
    }
    return (rk & 1u) ? v / 100 : v;
}

void RK::setValue(double v) { rk = uint32_t(bitsOf(v) >> 32); }

void RK::read(XlsRecords &xls, uint16_t size) {
    checkSize(size, 10);
    xls.readInt16(row);
    xls.readInt16(col);
    xls.readInt16(xf);
    xls.readInt32(rk);
}

void RK::write(XlsRecords &xls) const {
    xls.write(kId, 10);
    xls.writeInt16(row);
    xls.writeInt16(col);
    xls.writeInt16(xf);
    xls.writeInt32(rk);
}

void RK::dumpTo(std::wostream &os) const {
    os << L" row=" << row << L" col=" << col << L" xf=" << xf << L" value=" << value();
}
} // namespace tabrix
