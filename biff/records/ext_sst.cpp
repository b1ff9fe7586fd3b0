#include "biff/records/ext_sst.h"

namespace tabrix {

void ExtSST::reset() {
    dsst = 0;
    rgISSTInf.clear();
}

void ExtSST::read(XlsRecords &xls, uint16_t size) {
    reset();
    unsigned short remaining = size;
    if (size < 2) {
        // Too short for even the bucket size: passed over.
        uint8_t b[2];
        xls.read(b, size);
        return;
    }
    xls.readInt16(dsst, remaining);
    while (remaining >= 8 && !xls.eof()) {
        ISSTInf e;
        xls.readInt32(e.ib, remaining);
        xls.readInt16(e.cbOffset, remaining);
        xls.readInt16(e.reserved, remaining);
        rgISSTInf.push_back(e);
    }
    if (remaining) { // a trailing partial entry
        std::vector<uint8_t> tail(remaining);
        xls.read(tail.data(), remaining);
    }
}

void ExtSST::write(XlsRecords &xls) const {
    // Entries beyond what one record holds are dropped.
    size_t n = std::min<size_t>(rgISSTInf.size(), (XlsRecords::kMaxRecordData - 2) / 8);
    uint16_t size = uint16_t(2 + 8 * n);
    xls.write(kId, size);
    xls.writeInt16(dsst);
    for (size_t i = 0; i < n; ++i) {
        xls.writeInt32(rgISSTInf[i].ib);
        xls.writeInt16(rgISSTInf[i].cbOffset);
        xls.writeInt16(rgISSTInf[i].reserved);
    }
}

void ExtSST::dumpTo(std::wostream &os) const {
    os << L" dsst=" << dsst << L" rgISSTInf=(";
    for (const ISSTInf &e : rgISSTInf)
        os << L"{ib=" << e.ib << L" cbOffset=" << e.cbOffset << L" reserved=" << e.reserved << L"}";
    os << L")";
}

} // namespace tabrix
