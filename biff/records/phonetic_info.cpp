#include "biff/records/phonetic_info.h"

namespace tabrix {

void PhoneticInfo::reset() {
    ifnt = 0;
    phs = 55;
    ranges.clear();
}

void PhoneticInfo::read(XlsRecords &xls, uint16_t size) {
    reset();
    if (size < 6) sizeError();
    unsigned short remaining = size;
    uint16_t count = 0;
    xls.readInt16(ifnt, remaining);
    xls.readInt16(phs, remaining);
    xls.readInt16(count, remaining);
    if (size != 6u + 8u * count) sizeError();
    for (uint16_t i = 0; i < count; ++i) {
        Ref8 r;
        xls.readInt16(r.rwFirst, remaining);
        xls.readInt16(r.rwLast, remaining);
        xls.readInt16(r.colFirst, remaining);
        xls.readInt16(r.colLast, remaining);
        ranges.push_back(r);
    }
}

void PhoneticInfo::write(XlsRecords &xls) const {
    size_t n = std::min<size_t>(ranges.size(), (65535 - 6) / 8);
    uint16_t size = uint16_t(6 + 8 * n);
    xls.write(kId, size);
    xls.writeInt16(ifnt);
    xls.writeInt16(phs);
    xls.writeInt16(uint16_t(n));
    for (size_t i = 0; i < n; ++i) {
        xls.writeInt16(ranges[i].rwFirst);
        xls.writeInt16(ranges[i].rwLast);
        xls.writeInt16(ranges[i].colFirst);
        xls.writeInt16(ranges[i].colLast);
    }
}

void PhoneticInfo::dumpTo(std::wostream &os) const {
    os << L" ifnt=" << ifnt << L" phs=" << phs << L" rgref=(";
    for (const Ref8 &r : ranges)
        os << L"{" << r.rwFirst << L" " << r.rwLast << L" " << r.colFirst << L" " << r.colLast
           << L"}";
    os << L")";
}

} // namespace tabrix
