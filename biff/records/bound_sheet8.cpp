#include "biff/records/bound_sheet8.h"

#include <deque>
#include <vector>

namespace tabrix {

void BoundSheet8::read(XlsRecords &xls, uint16_t size, MemPool &pool, bool noFlags) {
    if (size < kMinSize) sizeError();
    reset();
    std::vector<uint8_t> b(size, 0);
    xls.read(b.data(), size);
    lbPlyPos =
        uint32_t(b[0]) | (uint32_t(b[1]) << 8) | (uint32_t(b[2]) << 16) | (uint32_t(b[3]) << 24);
    hsState = b[4];
    dt = b[5];
    std::deque<unsigned char> q(b.begin() + 6, b.end());
    name.read(q, noFlags, pool);
}

void BoundSheet8::write(XlsRecords &xls) const {
    uint16_t n = size();
    xls.write(kId, n);
    xls.writeInt32(lbPlyPos);
    uint8_t st[2] = {hsState, dt};
    xls.write(st, 2);
    ShortXLUnicodeString copy = name;
    if (!copy.text) copy.cch = 0;
    copy.write(xls);
}

void BoundSheet8::dumpTo(std::wostream &os) const {
    os << L" lbPlyPos=" << lbPlyPos << L" hsState=" << unsigned(hsState) << L" dt=" << unsigned(dt)
       << L" stName=" << nameText();
}

} // namespace tabrix
