#include "biff/records/write_access.h"

#include <cstring>

namespace tabrix {

void WriteAccess::reset() {
    std::memset(block, ' ', kSize);
    // Count 1, 8-bit characters, "T".
    const uint8_t head[] = {0x01, 0x00, 0x00, 'T', ' ', 0, 0, 0, 0};
    std::memcpy(block, head, sizeof head);
}

void WriteAccess::read(XlsRecords &xls, uint16_t size) {
    reset();
    uint16_t n = size < kSize ? size : kSize;
    if (n) {
        size_t got = xls.read(block, n);
        if (got < n) std::memset(block + got, ' ', n - got);
    }
    uint8_t skip[64];
    for (uint16_t left = uint16_t(size - n); left > 0 && !xls.eof();) {
        uint16_t k = left < sizeof skip ? left : uint16_t(sizeof skip);
        xls.read(skip, k);
        left = uint16_t(left - k);
    }
}

void WriteAccess::write(XlsRecords &xls) const { xls.write(kId, block, kSize); }

void WriteAccess::dumpTo(std::wostream &os) const {
    // The user name: a 16-bit count, a flags byte, then 8-bit or 16-bit
    // characters, as far as the block holds them.
    unsigned cch = block[0] | (block[1] << 8);
    bool wide = block[2] & 1;
    os << L" userName=";
    for (unsigned i = 0, p = 3; i < cch && p + (wide ? 1u : 0u) < kSize; ++i, p += wide ? 2 : 1)
        os << wchar_t(wide ? (block[p] | (block[p + 1] << 8)) : block[p]);
}

} // namespace tabrix
