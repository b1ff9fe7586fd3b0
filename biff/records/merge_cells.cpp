#include "biff/records/merge_cells.h"

#include <algorithm>

namespace tabrix {
void MergeCells::add(int rowFirst, int rowLast, int colFirst, int colLast) {
    Area a;
    a.ref.rwFirst = uint16_t(rowFirst);
    a.ref.rwLast = uint16_t(rowLast);
    a.ref.colFirst = uint16_t(colFirst);
    a.ref.colLast = uint16_t(colLast);
    areas.push_back(a);
    count = uint16_t(areas.size());
}

void MergeCells::eraseDeleted() {
    areas.erase(std::remove_if(areas.begin(), areas.end(), [](const Area &a) { return a.deleted; }),
                areas.end());
    count = uint16_t(areas.size());
}

void MergeCells::read(XlsRecords &xls, uint16_t size) {
    if (size < 2) sizeError();
    xls.readInt16(count);
    size_t room = (size - 2u) / 8u;
    size_t n = std::min<size_t>(count, room);
    areas.assign(n, Area());
    for (Area &a : areas) {
        xls.readInt16(a.ref.rwFirst);
        xls.readInt16(a.ref.rwLast);
        xls.readInt16(a.ref.colFirst);
        xls.readInt16(a.ref.colLast);
    }
    size_t rest = size - 2u - n * 8u;
    uint8_t skip[8];
    while (rest > 0) {
        size_t k = std::min<size_t>(rest, sizeof skip);
        if (xls.read(skip, k) < k) break;
        rest -= k;
    }
    count = uint16_t(areas.size());
}

void MergeCells::write(XlsRecords &xls) const {
    uint16_t n = uint16_t(std::min(areas.size(), kMaxAreas));
    xls.write(kId, uint16_t(2 + 8 * n));
    xls.writeInt16(n);
    for (uint16_t i = 0; i < n; ++i) {
        const Ref8 &r = areas[i].ref;
        xls.writeInt16(r.rwFirst);
        xls.writeInt16(r.rwLast);
        xls.writeInt16(r.colFirst);
        xls.writeInt16(r.colLast);
    }
}

void MergeCells::dumpTo(std::wostream &os) const {
    os << L" count=" << areas.size();
    for (const Area &a : areas)
        os << L" " << a.ref.rwFirst << L":" << a.ref.colFirst << L"-" << a.ref.rwLast << L":"
           << a.ref.colLast;
}
} // namespace tabrix
