#include "biff/records/extern_sheet.h"
#include "book/tberror.h"

#include <algorithm>

namespace tabrix {

namespace {

void readField(XlsRecords &xls, uint16_t &v, unsigned short &remaining) {
    xls.checkContinue(remaining);
    if (remaining < 2) throw tberror("error in XTI");
    xls.readInt16(v, remaining);
}

} // namespace

void XTI::read(XlsRecords &xls, unsigned short &remaining) {
    readField(xls, iSupBook, remaining);
    readField(xls, itabFirst, remaining);
    readField(xls, itabLast, remaining);
}

void XTI::write(XlsRecords &xls) const {
    xls.writeInt16(iSupBook);
    xls.writeInt16(itabFirst);
    xls.writeInt16(itabLast);
}

void ExternSheet::read(XlsRecords &xls, uint16_t size) {
    reset();
    unsigned short remaining = size;
    if (remaining < 2) throw tberror("error in record ExternSheet");
    uint16_t count = 0;
    xls.readInt16(count, remaining);
    rgXTI.resize(count);
    for (XTI &x : rgXTI) x.read(xls, remaining);
    // Bytes behind the last entry belong to no entry.
    uint8_t skip[64];
    while (remaining > 0 && !xls.eof()) {
        unsigned short n = remaining < sizeof skip ? remaining : sizeof skip;
        xls.read(skip, n);
        remaining = static_cast<unsigned short>(remaining - n);
    }
}

void ExternSheet::write(XlsRecords &xls) const {
    if (rgXTI.size() > 0xFFFF) throw tberror("error in record ExternSheet");
    uint32_t total = 2u + XTI::kSize * uint32_t(rgXTI.size());
    unsigned short remaining =
        static_cast<unsigned short>(std::min<uint32_t>(total, XlsRecords::kMaxRecordData));
    bool continued = false;
    xls.write(kId, remaining);
    xls.writeInt16(uint16_t(rgXTI.size()));
    remaining = static_cast<unsigned short>(remaining - 2);
    for (const XTI &x : rgXTI) {
        if (remaining < XTI::kSize) {
            writeContinue(xls, remaining);
            continued = true;
        }
        x.write(xls);
        remaining = static_cast<unsigned short>(remaining - XTI::kSize);
    }
    if (continued) {
        xls.patchInt16(xls.writePos() - (XlsRecords::kMaxRecordData - remaining) - 2u,
                       uint16_t(XlsRecords::kMaxRecordData - remaining));
    }
}

void ExternSheet::dumpTo(std::wostream &os) const {
    os << L" cXTI=" << rgXTI.size() << L" rgXTI=(";
    for (const XTI &x : rgXTI)
        os << L"{iSupBook=" << x.iSupBook << L" itabFirst=" << x.itabFirst << L" itabLast="
           << x.itabLast << L"}";
    os << L")";
}

} // namespace tabrix
