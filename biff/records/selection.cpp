#include "biff/records/selection.h"

#include <algorithm>

namespace tabrix {
void Selection::read(XlsRecords &xls, uint16_t size) {
    if (size < 9) sizeError();
    xls.read(&pnn, 1);
    xls.readInt16(rwAct);
    xls.readInt16(colAct);
    xls.readInt16(irefAct);
    xls.readInt16(cref);
    size_t n = std::min<size_t>(cref, (size - 9u) / 6u);
    refs.assign(n, RefU());
    for (RefU &r : refs) {
        xls.readInt16(r.rwFirst);
        xls.readInt16(r.rwLast);
        xls.read(&r.colFirst, 1);
        xls.read(&r.colLast, 1);
    }
    cref = uint16_t(n);
    for (size_t rest = size - 9u - 6u * n; rest > 0 && !xls.eof(); --rest) {
        uint8_t skip = 0;
        xls.read(&skip, 1);
    }
}

void Selection::write(XlsRecords &xls) const {
    size_t n = std::min(refs.size(), kMaxRefs);
    xls.write(kId, uint16_t(9 + 6 * n));
    xls.write(&pnn, 1);
    xls.writeInt16(rwAct);
    xls.writeInt16(colAct);
    xls.writeInt16(irefAct);
    xls.writeInt16(uint16_t(n));
    for (size_t i = 0; i < n; ++i) {
        const RefU &r = refs[i];
        xls.writeInt16(r.rwFirst);
        xls.writeInt16(r.rwLast);
        xls.write(&r.colFirst, 1);
        xls.write(&r.colLast, 1);
    }
}

void Selection::dumpTo(std::wostream &os) const {
    os << L" pnn=" << int(pnn) << L" rwAct=" << rwAct << L" colAct=" << colAct << L" irefAct="
       << irefAct << L" cref=" << cref << L" rgref=(";
    for (const RefU &r : refs)
        os << L"{" << r.rwFirst << L"-" << r.rwLast << L":" << int(r.colFirst) << L"-"
           << int(r.colLast) << L"}";
    os << L")";
}
} // namespace tabrix
